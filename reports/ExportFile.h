// Where an export's bytes go. TExportFile is the temporary file beside the target that becomes the target
// only when complete; TExportOutput is the buffered writer over it that the .xls and .csv writers use.
// Both belong to one export on one thread. Every failure raises EExportError naming the target and the
// system's reason ("Cannot create file /home/ann/n.xls: No space left on device").
#pragma once

#include "reports/GridExport.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

// Creates and opens a new file from a mkstemp template (the X's are replaced by the name it chose);
// returns the descriptor, or -1 with errno set. Tests put another file behind the name (a full disk).
using TTemporaryFileMaker = std::function<int(std::string& Template)>;

// Raise EExportError "Cannot create file <FileName>: <reason>", the reason being the system's text for
// Errno or the given words.
[[noreturn]] void RaiseExportError(const std::string& FileName, int Errno);
[[noreturn]] void RaiseExportError(const std::string& FileName, const std::string& Reason);

// A temporary file in the target's folder. Commit renames it over the target (replacing an old file);
// until then the target is not touched, and the destructor removes the temporary file. While it lives it
// holds a lock on an existing target, and it refuses a target that another process has locked.
class TExportFile {
public:
    // EExportError when the folder is missing or not writable, or the target is a folder or locked.
    explicit TExportFile(const std::string& FileName, const TTemporaryFileMaker& Maker = {});
    ~TExportFile();
    TExportFile(const TExportFile&) = delete;
    TExportFile& operator=(const TExportFile&) = delete;

    const std::string& FileName() const { return FFileName; }
    const std::string& TemporaryName() const { return FTempName; }
    int Fd() const { return FFd; }
    // Closes the descriptor, for writers that open the temporary file by name themselves.
    void CloseFd();
    // Closes the file and renames it over the target.
    void Commit();

private:
    std::string FFileName;
    std::string FTempName;
    int FFd = -1;
    int FTargetLockFd = -1;
    bool FCommitted = false;
};

// Buffered writing to a descriptor it does not own, with the bytes counted from 0 and earlier bytes
// patchable (a record whose contents are known only later).
class TExportOutput {
public:
    TExportOutput(int Fd, std::string FileName);
    TExportOutput(const TExportOutput&) = delete;
    TExportOutput& operator=(const TExportOutput&) = delete;

    const std::string& FileName() const { return FFileName; }
    uint64_t Position() const { return FFlushed + FUsed; }

    void Write(const void* Data, size_t Size) {
        if (Size <= Capacity - FUsed) {
            // An empty field's view may have no address at all, which memcpy must not be given.
            if (Size != 0) std::memcpy(FBuffer.get() + FUsed, Data, Size);
            FUsed += Size;
        } else {
            WriteSlow(Data, Size);
        }
    }
    void Write(std::string_view Text) { Write(Text.data(), Text.size()); }
    // Room for Size bytes (at most Capacity) at the end of the buffer; Advance(n) keeps n of them.
    char* Reserve(size_t Size) {
        if (Size > Capacity - FUsed) Flush();
        return FBuffer.get() + FUsed;
    }
    void Advance(size_t Size) { FUsed += Size; }
    // Overwrites bytes written earlier, at Offset.
    void Patch(uint64_t Offset, const void* Data, size_t Size);
    void Flush();

    static constexpr size_t Capacity = 1 << 20;

private:
    void WriteSlow(const void* Data, size_t Size);

    int FFd;
    std::string FFileName;
    std::unique_ptr<char[]> FBuffer;
    size_t FUsed = 0;
    uint64_t FFlushed = 0;
};
