// Advisory whole-file locks between processes (flock). A log file "locked by another process" is one on
// which another open file description holds an exclusive lock.
#pragma once

#include <string>
#include <string_view>

// Appends data to the file in one write(2), creating the file when it does not exist, while holding an
// exclusive lock taken without waiting. Returns 0 on success, or an errno value: EWOULDBLOCK when another
// process holds the lock, the open or write error otherwise. A short write counts as a failure (EIO).
int AppendLockedNoWait(const std::string& fileName, std::string_view data);

// Holds an exclusive lock on a file for its lifetime (the file is created if needed). Used by writers
// that need a file to themselves, and by tests that play "another process".
class TExclusiveFileLock {
public:
    // wait = false: Locked() tells whether the lock was obtained at once.
    explicit TExclusiveFileLock(const std::string& fileName, bool wait = true);
    ~TExclusiveFileLock();
    TExclusiveFileLock(const TExclusiveFileLock&) = delete;
    TExclusiveFileLock& operator=(const TExclusiveFileLock&) = delete;
    bool Locked() const { return FLocked; }

private:
    int FFd = -1;
    bool FLocked = false;
};

// Writes all of data to an open descriptor, going on after short writes and interruptions. False on any
// write error; the caller keeps the descriptor.
bool WriteAll(int fd, std::string_view data);

// A file kept open for appending (created when missing) for the object's life; a log that other processes
// write too. Plain value owned by its creator; one thread at a time. Nothing here throws.
class TAppendFile {
public:
    explicit TAppendFile(const std::string& fileName);
    ~TAppendFile(); // closes the file if Close has not
    TAppendFile(const TAppendFile&) = delete;
    TAppendFile& operator=(const TAppendFile&) = delete;

    // 0 when the file is open, else the errno value of the failed open.
    int OpenError() const { return FOpenError; }
    // Sends data in one write(2) (a short write sends the rest after it). False on a write error.
    bool Append(std::string_view data);
    // Closes the file: 0, or the errno value of the failed close. Later calls return 0.
    int Close();

private:
    int FFd = -1;
    int FOpenError = 0;
};
