#include "adapters/Znb_log.h"

#include "TempFolder.h"
#include "platform/FileLock.h"
#include "support/DateUtils.h"
#include "support/Exception.h"
#include "support/StrUtils.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
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

// Restores the unit settings a test changes, and counts the retry loop's waits instead of sleeping.
class LogTest : public ::testing::Test {
protected:
    LogTest() {
        Waits.clear();
        ReleaseOnSecondWait = nullptr;
        Log_Sleep = CountingSleep;
        Retry_Time = 5;
    }
    ~LogTest() override {
        MAX_LOG_LINES = FSavedMax;
        Log_Date_Format = FSavedFormat;
        Log_File_1 = FSavedFile1;
        Log_TMemo = FSavedMemo;
        Max_Retry_Count = FSavedRetries;
        Retry_Time = FSavedRetryTime;
        Log_Sleep = FSavedSleep;
        ReleaseOnSecondWait = nullptr;
    }

    TTempFolder Folder;
    TFormatSettingsGuard FSettings;

private:
    int32_t FSavedMax = MAX_LOG_LINES;
    std::string FSavedFormat = Log_Date_Format;
    std::string FSavedFile1 = Log_File_1;
    INBLogMemo* FSavedMemo = Log_TMemo;
    int32_t FSavedRetries = Max_Retry_Count;
    int32_t FSavedRetryTime = Retry_Time;
    void (*FSavedSleep)(int) = Log_Sleep;
};

class TFakeMemo final : public INBLogMemo {
public:
    explicit TFakeMemo(size_t capacity) : FCapacity(capacity) {}
    bool AddLine(const std::string& line) override {
        if (Lines.size() >= FCapacity) return false;
        Lines.push_back(line);
        return true;
    }
    void Clear() override {
        Lines.clear();
        ++Clears;
    }
    std::vector<std::string> Lines;
    int Clears = 0;

private:
    size_t FCapacity;
};

std::string NumberedLines(int count, const char* lineEnd) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += "line " + std::to_string(i) + lineEnd;
    return text;
}

} // namespace

TEST_F(LogTest, EmptyFileNameWritesNothingAndReturnsAtOnce) {
    ZS_Log("", "message");
    rvWriteFile("", "line");
    EXPECT_TRUE(Waits.empty());
}

TEST_F(LogTest, FirstLineCreatesTheFileWithShortDateLongTimeAndTwoBlanks) {
    FormatSettings().ShortDateFormat = "dd/mm/yyyy";
    FormatSettings().LongTimeFormat = "hh:nn:ss";
    FormatSettings().DateSeparator = '/';
    FormatSettings().TimeSeparator = ':';
    const std::string log = Folder / "znb.log";
    ZS_Log(log, "first");
    ZS_Log(log, "second");
    const std::string text = ReadTextFile(log);
    const std::regex dated(
        R"(\d\d/\d\d/\d{4}( \d\d:\d\d:\d\d)?  first\n\d\d/\d\d/\d{4}( \d\d:\d\d:\d\d)?  second\n)");
    EXPECT_TRUE(std::regex_match(text, dated)) << text;

    Log_Date_Format = "yyyy";
    EXPECT_EQ(Log_Dated_Line("msg"), FormatDateTime("yyyy", Now()) + "  msg");
    rvWriteFile(log, "plain");
    EXPECT_EQ(ReadTextFile(log).substr(text.size()), "plain\n");
    EXPECT_TRUE(Waits.empty());
}

TEST_F(LogTest, WritesIntoAMissingFolderAreDroppedAfterEveryRetry) {
    Max_Retry_Count = 3;
    ZS_Log(Folder / "missing/znb.log", "lost");
    ASSERT_EQ(Waits.size(), 3u); // a wait follows every failed attempt, the last one too
    for (int ms : Waits) {
        EXPECT_GE(ms, 5);
        EXPECT_LE(ms, 5 + 499);
    }
    EXPECT_FALSE(FileExists(Folder / "missing/znb.log"));
}

TEST_F(LogTest, MemoMirrorIsClearedWhenFullAndFileGetsEveryLine) {
    Log_File_1 = Folder / "display.log";
    rvLog_Display("no memo");
    TFakeMemo memo(2);
    Log_TMemo = &memo;
    for (const char* m : {"m1", "m2", "m3"})
        rvLog_Display(m);
    EXPECT_EQ(memo.Lines, std::vector<std::string>{"m3"});
    EXPECT_EQ(memo.Clears, 1);
    const std::string text = ReadTextFile(Log_File_1);
    for (const char* m : {"  no memo\n", "  m1\n", "  m2\n", "  m3\n"})
        EXPECT_NE(text.find(m), std::string::npos) << m;
}

TEST_F(LogTest, TextFilesAreCopiedLineByLine) {
    Log_File_1 = Folder / "copy.log";
    WriteTextFile(Folder / "in.txt", "a\r\nb\nc");
    TFakeMemo memo(100);
    Log_TMemo = &memo;
    rvLog_TextFile(Folder / "in.txt");
    EXPECT_TRUE(memo.Lines.empty());
    rvLog_Display_TextFile(Folder / "in.txt");
    EXPECT_EQ(memo.Lines, (std::vector<std::string>{"a", "b", "c"}));
    const std::regex six(R"(((.*  [abc]\n){6}))");
    EXPECT_TRUE(std::regex_match(ReadTextFile(Log_File_1), six)) << ReadTextFile(Log_File_1);
    rvLog_TextFile(Folder / "absent.txt"); // nothing to copy, nothing raised
}

TEST_F(LogTest, TruncationKeepsOneLineMoreThanTheLimit) {
    Log_File_1 = Folder / "long.log";
    WriteTextFile(Log_File_1, NumberedLines(1500, "\n"));
    Truncate_Log_File();
    std::string text = ReadTextFile(Log_File_1);
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1001);
    EXPECT_EQ(text.substr(0, 9), "line 499\n");
    EXPECT_EQ(text.substr(text.size() - 10), "line 1499\n");

    // One line over the limit: nothing dropped, but rewritten (with this platform's line ends).
    WriteTextFile(Log_File_1, NumberedLines(1001, "\r\n"));
    Truncate_Log_File();
    EXPECT_EQ(ReadTextFile(Log_File_1), NumberedLines(1001, "\n"));

    // At the limit: not touched at all.
    WriteTextFile(Log_File_1, NumberedLines(1000, "\r\n"));
    Truncate_Log_File();
    EXPECT_EQ(ReadTextFile(Log_File_1), NumberedLines(1000, "\r\n"));

    MAX_LOG_LINES = 10;
    Truncate_Log_File();
    EXPECT_EQ(ReadTextFile(Log_File_1), NumberedLines(1000, "\n").substr(NumberedLines(989, "\n").size()));

    Log_File_1 = Folder / "absent.log";
    Truncate_Log_File();
    EXPECT_FALSE(FileExists(Log_File_1));
}

TEST_F(LogTest, LogObjectAppendsWithoutRetries) {
    const std::string log = Folder / "obj.log";
    WriteTextFile(log, "old\n");
    {
        ZNB_Log_Obj obj(log);
        EXPECT_EQ(obj.FileName(), log);
        EXPECT_EQ(obj.Write_Log("one"), 0);
        EXPECT_EQ(obj.Write_Dated_Log("two"), 0);
    }
    const std::string text = ReadTextFile(log);
    EXPECT_EQ(text.substr(0, 8), "old\none\n");
    EXPECT_EQ(text.substr(text.size() - 6), "  two\n");
    EXPECT_THROW(ZNB_Log_Obj(Folder / "missing/obj.log"), EInOutError);
    EXPECT_TRUE(Waits.empty());
}

TEST_F(LogTest, LineIsDroppedAfterEveryAttemptFoundTheFileLocked) {
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

TEST_F(LogTest, LockReleasedDuringTheRetriesLetsTheLineThrough) {
    const std::string log = Folder / "znb.log";
    TLockingProcess other(log);
    ASSERT_TRUE(other.Locked);
    ReleaseOnSecondWait = &other;
    rvWriteFile(log, "late");
    EXPECT_EQ(Waits.size(), 2u);
    EXPECT_EQ(ReadTextFile(log), "late\n");
}
