// The container of an Excel 97-2003 workbook: an OLE2 compound document (version 3, 512-byte sectors)
// holding one stream, "Workbook". The stream is written front to back straight into the file, filling
// sectors 0, 1, 2 ... in order, so nothing of it stays in memory however large it grows; Finish appends
// the sector allocation table (with its extension sectors once it needs more than the header's 109), the
// directory, and fills in the header at the start of the file. One export, one thread; write failures
// raise EExportError through the output.
#pragma once

#include "reports/ExportFile.h"

#include <cstdint>

class TCompoundFileWriter {
public:
    // Reserves the header at the start of Out, which must be empty.
    explicit TCompoundFileWriter(TExportOutput& Out);

    TExportOutput& Out() { return FOut; }
    // Bytes of the stream written so far: the position of the next byte within the stream.
    uint64_t StreamPosition() const { return FOut.Position() - HeaderSize; }
    void Write(const void* Data, size_t Size) { FOut.Write(Data, Size); }
    void Patch(uint64_t StreamOffset, const void* Data, size_t Size) {
        FOut.Patch(StreamOffset + HeaderSize, Data, Size);
    }
    // EExportError when the stream is already over the 2 GB a version 3 compound document can hold.
    void CheckSize() const;
    // Completes the file and flushes it; CheckSize's error first.
    void Finish();

    static constexpr uint64_t HeaderSize = 512;
    static constexpr uint64_t MaxStreamSize = 0x80000000u;

private:
    TExportOutput& FOut;
};
