// What the board knows about the monitoring products installed beside it: is the R/Vista class
// registered, is the Duskmere operations console installed with its connector program, and starting that
// console. Registrations are read through the platform's machine-wide settings (SystemSettings.h):
//   R/Vista:  application "CLSID", key "{5E2A9C41-7D13-4B8F-9A26-C03B7E5D1F84}" holding any value;
//   Duskmere: application "DuskmereOperationsConsole", key "InstallExists", value "CurrentDirectory"
//             (the install folder, which holds "dskconnector.exe" and the launcher "StartDsk.exe").
// Board's thread (the unit remembers the install folder between calls); nothing is logged or raised.
#pragma once

#include <cstdint>
#include <string>

namespace Productintegrationutils {

// True when the COM-style class id is registered (its key exists; nothing is read).
bool FindGUID(const std::string& id);

// FindGUID of the R/Vista class id.
bool FindRVista();

// True when the console's key exists, its install folder exists and holds "dskconnector.exe". Remembers
// the folder read from the key (also when it does not exist).
bool FindDuskmere();

// Starts "StartDsk.exe" of the install folder (read again from the key when present; otherwise the one
// remembered from an earlier call, possibly empty). False, after showing "Failed to launch Duskmere"
// through NBPrompt(), when it could not be started.
bool LaunchDuskmere();

// The remembered install folder (empty until a key was read), and the launcher path LaunchDuskmere uses:
// folder + "/" + "StartDsk.exe".
const std::string& InstallFolder();
std::string LauncherPath();

// Forgets the remembered install folder, as unloading the package does.
void Finalize();

} // namespace Productintegrationutils

#if defined(_WIN32)
#define PIU_EXPORT __declspec(dllexport)
#else
#define PIU_EXPORT __attribute__((visibility("default")))
#endif

// The same two answers under their plain names, for the host console: 1 for true, 0 for false.
extern "C" {
PIU_EXPORT uint8_t FindDuskmere();
PIU_EXPORT uint8_t LaunchDuskmere();
}
