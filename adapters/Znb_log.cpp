#include "adapters/Znb_log.h"

#include "platform/FileLock.h"
#include "platform/Process.h"
#include "platform/Random.h"
#include "support/DateUtils.h"
#include "support/Exception.h"
#include "support/StrUtils.h"

#include <cerrno>
#include <cstring>
#include <exception>
#include <fstream>
#include <sstream>
#include <vector>

int32_t MAX_LOG_LINES = 1000;
std::string Log_Date_Format = "c";
std::string Log_File_1;
INBLogMemo* Log_TMemo = nullptr;
int32_t Max_Retry_Count = 5;
int32_t Retry_Time = 1750;
void (*Log_Sleep)(int Milliseconds) = SleepMs;

namespace {

// The retry jitter spreads out writers that collided; seed it once per process.
const bool Seeded = (Randomize(), true);

// This platform's text line end.
const char* const LineEnd = "\n";

// Reads a text file as lines: LF, CR LF or a lone CR end a line; a final line end adds no empty line.
bool LoadLines(const std::string& FileName, std::vector<std::string>& Lines) {
    std::ifstream in(FileName, std::ios::binary);
    if (!in) return false;
    std::ostringstream buf;
    buf << in.rdbuf();
    const std::string text = buf.str();
    Lines.clear();
    size_t start = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\n' && text[i] != '\r') continue;
        Lines.push_back(text.substr(start, i - start));
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
        start = i + 1;
    }
    if (start < text.size()) Lines.push_back(text.substr(start));
    return true;
}

bool SaveLines(const std::string& FileName, const std::vector<std::string>& Lines, size_t From) {
    std::string text;
    for (size_t i = From; i < Lines.size(); ++i)
        text += Lines[i] + LineEnd;
    std::ofstream out(FileName, std::ios::binary | std::ios::trunc);
    out << text;
    out.flush();
    return static_cast<bool>(out);
}

// Hands every line of a text file to Each; a missing file does nothing.
void LogLinesOf(const std::string& FileName, void (*Each)(const std::string& Line)) {
    try {
        std::vector<std::string> lines;
        if (!LoadLines(FileName, lines)) return;
        for (const std::string& line : lines)
            Each(line);
    } catch (...) {
    }
}

} // namespace

std::string Log_Dated_Line(const std::string& Message) {
    return FormatDateTime(Log_Date_Format, Now()) + "  " + Message;
}

void rvWriteFile(const std::string& FileName, const std::string& Line) {
    if (FileName.empty()) return;
    try {
        const std::string data = Line + LineEnd;
        int32_t attempts = 0;
        bool done = false;
        while (attempts < Max_Retry_Count && !done) {
            // One append write under an exclusive lock: a writer holding the file makes this attempt fail.
            done = AppendLockedNoWait(FileName, data) == 0;
            if (!done) {
                ++attempts;
                // Also after the last attempt: callers have always waited out the full budget.
                const int wait = Retry_Time + Random(500);
                if (Log_Sleep)
                    Log_Sleep(wait);
                else
                    SleepMs(wait);
            }
        }
    } catch (...) {
        // The log never fails its caller; a line that cannot be written is lost.
    }
}

void ZS_Log(const std::string& FileName, const std::string& Message) {
    if (FileName.empty()) return;
    try {
        rvWriteFile(FileName, Log_Dated_Line(Message));
    } catch (...) {
    }
}

void rvLog_Display(const std::string& Message) {
    try {
        if (Log_TMemo) {
            bool added = false;
            try {
                added = Log_TMemo->AddLine(Message);
            } catch (...) {
            }
            if (!added) {
                // A full control is emptied so that the newest line is always visible.
                try {
                    Log_TMemo->Clear();
                    Log_TMemo->AddLine(Message);
                } catch (...) {
                }
            }
        }
        rvWriteFile(Log_File_1, Log_Dated_Line(Message));
    } catch (...) {
    }
}

void rvLog_TextFile(const std::string& FileName) {
    LogLinesOf(FileName, [](const std::string& Line) { ZS_Log(Log_File_1, Line); });
}

void rvLog_Display_TextFile(const std::string& FileName) {
    LogLinesOf(FileName, rvLog_Display);
}

void Truncate_Log_File() {
    if (Log_File_1.empty() || !FileExists(Log_File_1)) return;
    try {
        // Other writers retry while this holds the file, so no line is lost between reading and rewriting.
        TExclusiveFileLock lock(Log_File_1, false);
        std::vector<std::string> lines;
        if (!LoadLines(Log_File_1, lines)) return;
        const int64_t n = static_cast<int64_t>(lines.size());
        if (n <= MAX_LOG_LINES) return;
        // Keeps MAX_LOG_LINES + 1 lines, one more than the limit; hosts rely on this count.
        const int64_t drop = n - MAX_LOG_LINES - 1;
        SaveLines(Log_File_1, lines, static_cast<size_t>(drop > 0 ? drop : 0));
    } catch (...) {
    }
}

// ---- ZNB_Log_Obj

ZNB_Log_Obj::ZNB_Log_Obj(const std::string& FileName) : FFileName(FileName), FFile(FileName) {
    if (FFile.OpenError() != 0)
        throw EInOutError("Cannot open log file \"" + FileName + "\": " + std::strerror(FFile.OpenError()));
}

ZNB_Log_Obj::~ZNB_Log_Obj() noexcept(false) {
    const bool failed = FFile.Close() != 0;
    // Never raise while another exception is unwinding the stack.
    if (failed && std::uncaught_exceptions() == 0)
        throw EInOutError("Cannot close log file \"" + FFileName + "\"");
}

uint8_t ZNB_Log_Obj::Write_Log(const std::string& Line) {
    try {
        // The file is shared with other writers: the whole line goes out in one append write, so their
        // lines never land inside it. A failed write is swallowed.
        FFile.Append(Line + LineEnd);
    } catch (...) {
    }
    return 0;
}

uint8_t ZNB_Log_Obj::Write_Dated_Log(const std::string& Message) {
    return Write_Log(Log_Dated_Line(Message));
}
