// The dynamic-library loader: how the board finds and opens adapter and report libraries.
//
// Library names come from configuration files written for the original platform ("ZNBA_Duskmere.dll")
// or for this one ("ZNBA_Demo", "/opt/x/libfoo.so"), so a name is mapped before it is opened:
//   - a name without extension gets the platform's (".so"); a ".dll" ending (any case) becomes ".so";
//   - a name without a folder is looked for in the executable's folder, then in its plugins/ folder, then
//     by the system loader (LD_LIBRARY_PATH, the cache, ...); a name with a folder is opened as it is.
// Failures leave a per-thread last error: code 2 (ENOENT) when no file was found, ENOEXEC when a file was
// found but could not be loaded, and the loader's own message as text. Every function may be called from
// any thread.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

using TLibHandle = void*; // an open library; nullptr for none

// Opens the library (see above). Returns its handle, or nullptr with the last error set. The handle is
// owned by the caller, who releases it with FreeLibrary; opening the same file twice counts twice.
TLibHandle PvLoadLib(const std::string& name);

// The address of an exported symbol, or nullptr when the library does not export it (last error set).
// The address is valid until the library is released.
void* GetProcAddress(TLibHandle library, const std::string& name);

// The file an open library was loaded from, as the system loader resolved it (an absolute path when it
// was opened by path, else what the loader found); empty for a null or unknown handle. The library stays
// open; the last error is not touched.
std::string LibraryFileName(TLibHandle library);

// Releases a library opened by PvLoadLib. Returns false with the last error set when the system refused.
bool FreeLibrary(TLibHandle library);

// The calling thread's last loader error code (0 when the last call succeeded) and its text.
int32_t GetLastError();
std::string GetLastErrorText();

// The system's message for an errno-style code ("No such file or directory" for 2). Never empty.
std::string SysErrorMessage(int32_t code);

// The file names PvLoadLib tries for a name, in order; the last entry of a name without a folder is the
// bare mapped name handed to the system loader.
std::vector<std::string> LibraryCandidates(const std::string& name);
