// A streaming writer of Excel 97-2003 workbooks (BIFF8 in an OLE2 compound document): one table of
// columns with a bold header row, text, numbers and date-times with a date format, column widths, and rows
// spread over as many sheets as they need ("Notices", "Notices (2)", ...; the header repeated on each).
//
// Cells go to the file as they come, in blocks of 32 rows, so memory does not grow with the row count.
// Text of up to 255 characters is stored in the cell itself (a LABEL record): no table of strings to build,
// hash or keep. Longer text (up to 32 767 characters, Excel's limit per cell) has to live in the shared
// string table, which the format places before the first sheet; the caller therefore hands those texts over
// first (SharedString), in the order the cells will refer to them (SharedText). A table of only the long
// texts keeps the common case free of any per-string bookkeeping.
//
// Use: construct (writes the workbook's globals), SharedString for each announced long text, then for every
// data row NextRow and its cells (any order of columns, each at most once, null cells simply left out), then
// Finish. Owned by one export, one thread. Write failures raise EExportError (through the output); misuse
// (more rows than announced, a column out of range) raises EAssertionFailed.
#pragma once

#include "reports/XlsCompoundFile.h"
#include "reports/XlsRecords.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

struct TXlsColumn {
    std::string Caption; // UTF-8
    double Width = 10;   // in characters of the default font
};

struct TXlsLayout {
    std::vector<TXlsColumn> Columns; // at most 256
    int64_t DataRows = 0;            // rows that will follow the header, over all sheets
    int32_t RowsPerSheet = 65535;    // data rows on one sheet, under its header (65 535 at most)
    std::string SheetName = "Notices";
    std::string DateFormat = "yyyy-mm-dd hh:mm:ss"; // number format of date cells
    uint32_t SharedStrings = 0;                     // long texts handed over before the first row
};

class TXlsWriter {
public:
    TXlsWriter(TCompoundFileWriter& File, TXlsLayout Layout);

    // The next long text (more than MaxLabelUnits once converted), cut at 32 767 characters.
    void SharedString(std::string_view Utf8);
    // Starts the next data row (the first call starts the first one).
    void NextRow();
    // Text stored in the cell; cut at MaxLabelUnits when longer (the caller shares long texts instead).
    void Text(int Col, std::string_view Utf8);
    void SharedText(int Col, uint32_t Index);
    void Integer(int Col, int32_t Value);
    void Number(int Col, double Value);
    void Date(int Col, double Value); // days since 30 December 1899, shown with the date format
    // Ends the last sheet and completes the file. EExportError when the workbook passes 2 GB.
    void Finish();

    static constexpr size_t MaxLabelUnits = 255;
    // Whether Text would be cut: more than MaxLabelUnits UTF-16 units once cleaned.
    static bool NeedsSharedString(std::string_view Utf8);

private:
    // Formats of the cells: the default cell format, the header's bold and the date format.
    static constexpr uint16_t XfCell = 15, XfHeader = 16, XfDate = 17;

    void WriteGlobals();
    void WriteSheetPrologue();
    void FlushSstRecord(uint16_t NextType);
    void EndSharedStrings();
    void BeginSheet();
    void EndSheet();
    void BeginRow();
    void EndRow();
    void FlushBlock();
    uint8_t* Cell(uint16_t Type, uint16_t Length, int Col, uint16_t Xf);
    void Label(int Col, std::string_view Utf8, uint16_t Xf);

    TCompoundFileWriter& FFile;
    TXlsLayout FLayout;
    int FSheetCount = 1;
    std::vector<uint64_t> FSheetOffsetAt; // where each sheet's stream offset goes in its BOUNDSHEET

    // The shared string table, one record (SST, then CONTINUE) at a time.
    biff::TBiffBuffer FSst;
    uint16_t FSstType = biff::rtSst;
    uint32_t FSstAdded = 0;
    uint32_t FSstBucket = 8;
    biff::TBiffBuffer FExtSst;
    bool FSheetsStarted = false;

    // The sheet being written.
    int FSheet = -1;
    int32_t FSheetRows = 0;    // rows of this sheet, header included
    int32_t FRowInSheet = -1;  // the open row, -1 before the header
    int64_t FDataRowsDone = 0; // data rows started, over all sheets
    uint64_t FIndexBlocksAt = 0;
    std::vector<uint32_t> FDbCellAt;

    // The block of up to 32 rows being collected: their cells, where each row's cells start, their spans.
    biff::TBiffBuffer FCells;
    biff::TBiffBuffer FBlock;
    int FBlockRows = 0;
    bool FRowOpen = false;
    uint32_t FRowCellsAt[32] = {};
    uint16_t FColMic[32] = {};
    uint16_t FColMac[32] = {};

    std::u16string FUnits; // conversion scratch
};
