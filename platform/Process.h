// Facts about the running process and the calling thread.
#pragma once

#include <string>

// The folder of the running executable, with a trailing separator. Any thread.
std::string ExecutableFolder();

// The folder of the board's zpnbd.ini and of the files it writes by default (the notice board folder
// under it, exports): the executable's folder when this user may write there, as in a build tree or a
// copied bin/ folder. An installed program's folder is not writable, so then the board keeps a per-user
// copy instead, $XDG_CONFIG_HOME/noticeboard/ (by default ~/.config/noticeboard/), created on first use
// and seeded with the zpnbd.ini shipped beside the executable. Falls back to the executable's folder when
// no per-user folder can be made. Any thread; with a trailing separator.
std::string DataFolder();

// Blocks the calling thread for the given number of milliseconds (nothing for <= 0).
void SleepMs(int milliseconds);
