#include "platform/Process.h"

#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <thread>
#include <unistd.h>

std::string ExecutableFolder() {
    char buf[PATH_MAX];
    const ssize_t n = ::readlink("/proc/self/exe", buf, sizeof(buf) - 1);
    if (n <= 0) return "./";
    std::string path(buf, static_cast<size_t>(n));
    const size_t p = path.rfind('/');
    return p == std::string::npos ? std::string("./") : path.substr(0, p + 1);
}

std::string DataFolder() {
    const std::string exe = ExecutableFolder();
    if (::access(exe.c_str(), W_OK) == 0) return exe;
    std::string base;
    if (const char* xdg = std::getenv("XDG_CONFIG_HOME"); xdg && *xdg == '/')
        base = xdg;
    else if (const char* home = std::getenv("HOME"); home && *home)
        base = std::string(home) + "/.config";
    else
        return exe;
    namespace fs = std::filesystem;
    const fs::path folder = fs::path(base) / "noticeboard";
    std::error_code ec;
    fs::create_directories(folder, ec);
    if (ec || ::access(folder.c_str(), W_OK) != 0) return exe;
    // The shipped settings are the starting point; later the user's copy is the only one read.
    const fs::path shipped = fs::path(exe) / "zpnbd.ini";
    if (!fs::exists(folder / "zpnbd.ini", ec) && fs::exists(shipped, ec))
        fs::copy_file(shipped, folder / "zpnbd.ini", ec);
    return folder.string() + "/";
}

void SleepMs(int milliseconds) {
    if (milliseconds > 0) std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}
