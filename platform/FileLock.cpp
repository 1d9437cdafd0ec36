#include "platform/FileLock.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

int AppendLockedNoWait(const std::string& fileName, std::string_view data) {
    const int fd = ::open(fileName.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
    if (fd < 0) return errno ? errno : EIO;
    int result = 0;
    if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
        result = errno ? errno : EWOULDBLOCK;
    } else {
        ssize_t n;
        do {
            n = ::write(fd, data.data(), data.size());
        } while (n < 0 && errno == EINTR);
        if (n < 0)
            result = errno ? errno : EIO;
        else if (static_cast<size_t>(n) != data.size())
            result = EIO;
        ::flock(fd, LOCK_UN);
    }
    ::close(fd); // a failing close does not make the write fail
    return result;
}

TExclusiveFileLock::TExclusiveFileLock(const std::string& fileName, bool wait) {
    FFd = ::open(fileName.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    if (FFd < 0) return;
    int rc;
    do {
        rc = ::flock(FFd, LOCK_EX | (wait ? 0 : LOCK_NB));
    } while (rc != 0 && errno == EINTR);
    FLocked = rc == 0;
}

TExclusiveFileLock::~TExclusiveFileLock() {
    if (FFd >= 0) {
        if (FLocked) ::flock(FFd, LOCK_UN);
        ::close(FFd);
    }
}

TAppendFile::TAppendFile(const std::string& fileName) {
    FFd = ::open(fileName.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
    if (FFd < 0) FOpenError = errno ? errno : EIO;
}

TAppendFile::~TAppendFile() {
    Close();
}

bool WriteAll(int fd, std::string_view data) {
    size_t done = 0;
    while (done < data.size()) {
        const ssize_t n = ::write(fd, data.data() + done, data.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        done += static_cast<size_t>(n);
    }
    return true;
}

bool TAppendFile::Append(std::string_view data) {
    return FFd >= 0 && WriteAll(FFd, data);
}

int TAppendFile::Close() {
    if (FFd < 0) return 0;
    const int rc = ::close(FFd);
    FFd = -1;
    return rc == 0 ? 0 : (errno ? errno : EIO);
}
