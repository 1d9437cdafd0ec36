// Facts about the running process and the calling thread.
#pragma once

#include <string>

// The folder of the running executable, with a trailing separator. Any thread.
std::string ExecutableFolder();

// Blocks the calling thread for the given number of milliseconds (nothing for <= 0).
void SleepMs(int milliseconds);
