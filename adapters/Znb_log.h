// The board's log: one time-stamped line per call, appended to a plain text file that other processes
// (the console's other modules, adapters) write too. Lines go out whole in one append write, under an
// exclusive lock; a locked file is retried a few times, then the line is dropped.
// All functions are called from the board's thread; none of them throws.
#pragma once

#include "platform/FileLock.h"

#include <cstdint>
#include <string>

class INBLogMemo; // the on-screen mirror of rvLog_Display, implemented by the UI

// Unit settings (a host may overwrite them).
extern int32_t MAX_LOG_LINES;       // 1000: line limit of Truncate_Log_File
extern std::string Log_Date_Format; // "c": short date, blank, long time (time left out at midnight)
extern std::string Log_File_1;      // the "default" log of the display and text-file routines; empty
extern INBLogMemo* Log_TMemo;       // not owned; null by default
extern int32_t Max_Retry_Count;     // 5 attempts per line
extern int32_t Retry_Time;          // 1750 ms + random 0..499 ms after every failed attempt
// How the retry loop waits (SleepMs by default). Tests replace it to count the waits or to act between
// attempts; never null.
extern void (*Log_Sleep)(int Milliseconds);

// The on-screen mirror: a multi-line text control. AddLine returns false when the control refused the line
// (for example because it is full).
class INBLogMemo {
public:
    virtual ~INBLogMemo() = default;
    virtual bool AddLine(const std::string& line) = 0;
    virtual void Clear() = 0;
};

// The time-stamped form of a message: FormatDateTime(Log_Date_Format, Now()) + "  " + message.
std::string Log_Dated_Line(const std::string& Message);

// Appends one time-stamped line to FileName; an empty FileName writes nothing. Never throws or reports.
void ZS_Log(const std::string& FileName, const std::string& Message);

// Appends Line (no time stamp) and a line end to FileName with the retry loop. Never throws or reports.
void rvWriteFile(const std::string& FileName, const std::string& Line);

void rvLog_Display(const std::string& Message);
void rvLog_TextFile(const std::string& FileName);
void rvLog_Display_TextFile(const std::string& FileName);
void Truncate_Log_File();

// A log file kept open for the object's life; writes without retries, each line in one append write.
class ZNB_Log_Obj {
public:
    explicit ZNB_Log_Obj(const std::string& FileName); // EInOutError when the file cannot be opened
    ~ZNB_Log_Obj() noexcept(false);                    // a failing close raises EInOutError
    ZNB_Log_Obj(const ZNB_Log_Obj&) = delete;
    ZNB_Log_Obj& operator=(const ZNB_Log_Obj&) = delete;

    uint8_t Write_Log(const std::string& Line);          // always 0; write errors are swallowed
    uint8_t Write_Dated_Log(const std::string& Message); // Write_Log of the time-stamped line
    const std::string& FileName() const { return FFileName; }

private:
    std::string FFileName;
    TAppendFile FFile;
};
