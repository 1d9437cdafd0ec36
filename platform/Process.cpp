#include "platform/Process.h"

#include <chrono>
#include <climits>
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

void SleepMs(int milliseconds) {
    if (milliseconds > 0) std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}
