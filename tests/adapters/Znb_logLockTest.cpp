// The log against a real second process that holds the file's exclusive lock.
#include "adapters/Znb_log.h"

#include "TempFolder.h"
#include "platform/FileLock.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

// A child process that locks the file, reports "locked", and on request unlocks and reports "released".
class TLockingProcess {
public:
    explicit TLockingProcess(const std::string& fileName) {
        if (::pipe(FToChild) != 0 || ::pipe(FFromChild) != 0) return;
        FPid = ::fork();
        if (FPid == 0) {
            char c = 0;
            {
                TExclusiveFileLock lock(fileName);
                c = lock.Locked() ? 'L' : 'E';
                (void)!::write(FFromChild[1], &c, 1);
                (void)!::read(FToChild[0], &c, 1);
            }
            c = 'R';
            (void)!::write(FFromChild[1], &c, 1);
            ::_exit(0);
        }
        char c = 0;
        Locked = ::read(FFromChild[0], &c, 1) == 1 && c == 'L';
    }
    // Returns once the child has dropped the lock.
    void Release() {
        if (FReleased || FPid <= 0) return;
        FReleased = true;
        char c = 'x';
        (void)!::write(FToChild[1], &c, 1);
        (void)!::read(FFromChild[0], &c, 1);
    }
    ~TLockingProcess() {
        Release();
        if (FPid > 0) ::waitpid(FPid, nullptr, 0);
        for (int fd : {FToChild[0], FToChild[1], FFromChild[0], FFromChild[1]})
            if (fd >= 0) ::close(fd);
    }
    bool Locked = false;

private:
    int FToChild[2] = {-1, -1};
    int FFromChild[2] = {-1, -1};
    pid_t FPid = -1;
    bool FReleased = false;
};

std::vector<int> Waits;
TLockingProcess* ReleaseOnSecondWait = nullptr;

void CountingSleep(int ms) {
    Waits.push_back(ms);
    if (ReleaseOnSecondWait && Waits.size() == 2) ReleaseOnSecondWait->Release();
}

class LockedLog : public ::testing::Test {
protected:
    LockedLog() {
        Waits.clear();
        ReleaseOnSecondWait = nullptr;
        Log_Sleep = CountingSleep;
        Retry_Time = 5;
    }
    ~LockedLog() override {
        Log_Sleep = FSavedSleep;
        Retry_Time = FSavedRetryTime;
        ReleaseOnSecondWait = nullptr;
    }
    TTempFolder Folder;

private:
    void (*FSavedSleep)(int) = Log_Sleep;
    int32_t FSavedRetryTime = Retry_Time;
};

} // namespace

TEST_F(LockedLog, LineIsDroppedAfterEveryAttemptFoundTheFileLocked) {
    const std::string log = Folder / "znb.log";
    WriteTextFile(log, "before\n");
    TLockingProcess other(log);
    ASSERT_TRUE(other.Locked);
    ZS_Log(log, "lost");
    EXPECT_EQ(Waits.size(), 5u);
    for (int ms : Waits) {
        EXPECT_GE(ms, 5);
        EXPECT_LT(ms, 5 + 500);
    }
    other.Release();
    EXPECT_EQ(ReadTextFile(log), "before\n");
}

TEST_F(LockedLog, LockReleasedDuringTheRetriesLetsTheLineThrough) {
    const std::string log = Folder / "znb.log";
    TLockingProcess other(log);
    ASSERT_TRUE(other.Locked);
    ReleaseOnSecondWait = &other;
    rvWriteFile(log, "late");
    EXPECT_EQ(Waits.size(), 2u);
    EXPECT_EQ(ReadTextFile(log), "late\n");
}
