#include "support/Productintegrationutils.h"

#include "platform/ShellOpen.h"
#include "platform/SystemSettings.h"
#include "support/NBPrompt.h"
#include "support/StrUtils.h"

namespace {

const char* const kClassRoot = "CLSID";
const char* const kRVistaClassId = "{5E2A9C41-7D13-4B8F-9A26-C03B7E5D1F84}";
const char* const kConsoleApplication = "DuskmereOperationsConsole";
const char* const kConsoleKey = "InstallExists";
const char* const kInstallFolderValue = "CurrentDirectory";
const char* const kConnectorProgram = "/dskconnector.exe";
const char* const kLauncherProgram = "StartDsk.exe";
const char* const kLaunchFailed = "Failed to launch Duskmere";

std::string gInstallFolder;

// Reads the install folder into gInstallFolder when the console's key exists; a failed read of the value
// leaves it empty. Returns whether the key exists.
bool ReadInstallFolder() {
    if (!SystemSettingsKeyExists(kConsoleApplication, kConsoleKey)) return false;
    std::string folder;
    SystemSettingsReadString(kConsoleApplication, kConsoleKey, kInstallFolderValue, folder);
    gInstallFolder = folder;
    return true;
}

} // namespace

namespace Productintegrationutils {

bool FindGUID(const std::string& id) {
    return SystemSettingsKeyExists(kClassRoot, id);
}

bool FindRVista() {
    return FindGUID(kRVistaClassId);
}

bool FindDuskmere() {
    if (!ReadInstallFolder()) return false;
    if (!DirectoryExists(gInstallFolder)) return false;
    // Any directory entry of that name counts, as the search allows every attribute.
    const std::string connector = gInstallFolder + kConnectorProgram;
    return FileExists(connector) || DirectoryExists(connector);
}

bool LaunchDuskmere() {
    ReadInstallFolder();
    const bool accepted = ShellOpen(LauncherPath());
    if (!accepted) NBPrompt().ShowMessage(kLaunchFailed);
    return accepted;
}

const std::string& InstallFolder() {
    return gInstallFolder;
}

std::string LauncherPath() {
    return gInstallFolder + "/" + kLauncherProgram;
}

void Finalize() {
    gInstallFolder.clear();
}

} // namespace Productintegrationutils

extern "C" uint8_t FindDuskmere() {
    return Productintegrationutils::FindDuskmere() ? 1 : 0;
}

extern "C" uint8_t LaunchDuskmere() {
    return Productintegrationutils::LaunchDuskmere() ? 1 : 0;
}
