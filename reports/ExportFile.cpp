#include "reports/ExportFile.h"

#include "platform/FileLock.h"
#include "support/StrUtils.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

void RaiseExportError(const std::string& FileName, const std::string& Reason) {
    throw EExportError("Cannot create file " + FileName + ": " + Reason);
}

void RaiseExportError(const std::string& FileName, int Errno) {
    RaiseExportError(FileName, std::generic_category().message(Errno ? Errno : EIO));
}

namespace {

void CloseQuietly(int& Fd) {
    if (Fd >= 0) ::close(Fd);
    Fd = -1;
}

} // namespace

TExportFile::TExportFile(const std::string& FileName, const TTemporaryFileMaker& Maker)
    : FFileName(FileName) {
    struct stat target {};
    const bool exists = ::stat(FileName.c_str(), &target) == 0;
    if (exists && S_ISDIR(target.st_mode)) RaiseExportError(FileName, EISDIR);
    if (exists) {
        // Another process that holds a lock on the file is using it: replacing it under that process
        // would lose whatever it writes. Holding the lock ourselves keeps others off until the rename.
        FTargetLockFd = ::open(FileName.c_str(), O_RDONLY | O_CLOEXEC);
        if (FTargetLockFd >= 0 && ::flock(FTargetLockFd, LOCK_EX | LOCK_NB) != 0) {
            const int err = errno;
            CloseQuietly(FTargetLockFd);
            if (err == EWOULDBLOCK) RaiseExportError(FileName, "the file is locked by another process");
        }
    }
    std::string name = ExtractFilePath(FileName) + "." + ExtractFileName(FileName) + ".XXXXXX";
    FFd = Maker ? Maker(name) : ::mkostemp(name.data(), O_CLOEXEC);
    if (FFd < 0) {
        const int err = errno;
        CloseQuietly(FTargetLockFd);
        RaiseExportError(FileName, err);
    }
    FTempName = name;
    // mkstemp makes the file private; the export gets the old file's permissions, or the usual ones.
    struct stat made {};
    if (::fstat(FFd, &made) == 0 && S_ISREG(made.st_mode))
        ::fchmod(FFd, exists ? (target.st_mode & 07777) : 0644);
}

TExportFile::~TExportFile() {
    CloseQuietly(FFd);
    if (!FCommitted && !FTempName.empty()) ::unlink(FTempName.c_str());
    CloseQuietly(FTargetLockFd);
}

void TExportFile::CloseFd() {
    if (FFd < 0) return;
    const int rc = ::close(FFd);
    FFd = -1;
    // Some file systems report a failed write only when the file is closed.
    if (rc != 0) RaiseExportError(FFileName, errno);
}

void TExportFile::Commit() {
    CloseFd();
    if (::rename(FTempName.c_str(), FFileName.c_str()) != 0) RaiseExportError(FFileName, errno);
    FCommitted = true;
    CloseQuietly(FTargetLockFd);
}

TExportOutput::TExportOutput(int Fd, std::string FileName)
    : FFd(Fd), FFileName(std::move(FileName)), FBuffer(new char[Capacity]) {}

void TExportOutput::Flush() {
    if (FUsed == 0) return;
    if (!WriteAll(FFd, std::string_view(FBuffer.get(), FUsed))) RaiseExportError(FFileName, errno);
    FFlushed += FUsed;
    FUsed = 0;
}

void TExportOutput::WriteSlow(const void* Data, size_t Size) {
    Flush();
    if (Size >= Capacity) {
        if (!WriteAll(FFd, std::string_view(static_cast<const char*>(Data), Size)))
            RaiseExportError(FFileName, errno);
        FFlushed += Size;
    } else {
        std::memcpy(FBuffer.get(), Data, Size);
        FUsed = Size;
    }
}

void TExportOutput::Patch(uint64_t Offset, const void* Data, size_t Size) {
    const auto* bytes = static_cast<const char*>(Data);
    while (Size > 0 && Offset < FFlushed) {
        const size_t n = static_cast<size_t>(std::min<uint64_t>(Size, FFlushed - Offset));
        const ssize_t done = ::pwrite(FFd, bytes, n, static_cast<off_t>(Offset));
        if (done < 0 && errno == EINTR) continue;
        if (done <= 0) RaiseExportError(FFileName, errno);
        bytes += done;
        Offset += static_cast<uint64_t>(done);
        Size -= static_cast<size_t>(done);
    }
    if (Size > 0) std::memcpy(FBuffer.get() + (Offset - FFlushed), bytes, Size);
}
