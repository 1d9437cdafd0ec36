// Read-only, machine-wide product registrations: what the original platform keeps under the registry's
// local-machine and classes roots. Here each product is one settings file of the organisation
// "Zarvo Software" in the system scope (on Linux "/etc/xdg/Zarvo Software/<application>.conf", an ini
// file; on Windows the registry under HKEY_LOCAL_MACHINE\SOFTWARE\Zarvo Software\<application>).
// A key is a section (group) of that file, a value a name inside it. A key "exists" when it holds at least
// one value: installers write a value into every key they create.
// Any thread; nothing is ever written; a missing file reads as empty.
#pragma once

#include <string>

// True when application's key (a group path, "/"-separated, e.g. "InstallExists") holds a value.
bool SystemSettingsKeyExists(const std::string& application, const std::string& key);

// The string value name of key; false (value untouched) when the key or the value is missing.
bool SystemSettingsReadString(const std::string& application, const std::string& key, const std::string& name,
                              std::string& value);

// Tests: read the system scope from folder instead ("<folder>/Zarvo Software/<application>.conf").
// An empty folder restores the platform's default. Call before reading; affects the whole process.
void SetSystemSettingsFolder(const std::string& folder);

// The file that holds application's settings (for documentation and tools).
std::string SystemSettingsFileName(const std::string& application);
