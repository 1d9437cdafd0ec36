// Starting another program, as the desktop's "open" verb does for an executable file.
#pragma once

#include <string>

// Starts the program at path detached from this process, with no arguments, in the current folder.
// Returns true when it was started; false when it could not be (missing, not executable, ...): what it
// does after starting is not waited for. Any thread.
bool ShellOpen(const std::string& path);
