#include "reports/XlsWriter.h"

#include "reports/ExportText.h"
#include "support/Exception.h"

#include <algorithm>

using namespace biff;

TXlsWriter::TXlsWriter(TCompoundFileWriter& File, TXlsLayout Layout)
    : FFile(File), FLayout(std::move(Layout)) {
    if (FLayout.Columns.size() > 256) throw EAssertionFailed("An .xls sheet holds at most 256 columns");
    if (FLayout.RowsPerSheet < 1 || FLayout.RowsPerSheet > 65535)
        throw EAssertionFailed("An .xls sheet holds 1 to 65535 rows under its header");
    const int64_t sheets = (FLayout.DataRows + FLayout.RowsPerSheet - 1) / FLayout.RowsPerSheet;
    FSheetCount = static_cast<int>(std::max<int64_t>(1, sheets));
    FSstBucket = std::max<uint32_t>(FLayout.SharedStrings / 128 + 1, 8);
    WriteGlobals();
    if (FLayout.SharedStrings == 0) EndSharedStrings();
}

bool TXlsWriter::NeedsSharedString(std::string_view Utf8) {
    // Cleaning never gives more UTF-16 units than there are bytes.
    if (Utf8.size() <= MaxLabelUnits) return false;
    if (IsPlainCellText(Utf8)) return true;
    std::u16string units;
    CellTextToUtf16(Utf8, units, MaxLabelUnits + 1);
    return units.size() > MaxLabelUnits;
}

void TXlsWriter::SharedString(std::string_view Utf8) {
    if (FSheetsStarted) throw EAssertionFailed("More shared strings than announced");
    const bool narrow = CellTextToUtf16(Utf8, FUnits, MaxCellUnits);
    const size_t charSize = narrow ? 1 : 2;
    // A string's header and its first character stay in one record.
    if (MaxRecordData - FSst.Size() < 3 + charSize) FlushSstRecord(rtContinue);
    if (FSstAdded % FSstBucket == 0) {
        // The index readers may use to find every FSstBucket-th string without reading the table.
        uint8_t* e = FExtSst.Extend(8);
        Put32(e, static_cast<uint32_t>(FFile.StreamPosition() + 4 + FSst.Size()));
        Put16(e + 4, static_cast<uint16_t>(4 + FSst.Size()));
        Put16(e + 6, 0);
    }
    const size_t n = FUnits.size();
    uint8_t* h = FSst.Extend(3);
    Put16(h, static_cast<uint16_t>(n));
    h[2] = narrow ? 0 : 1;
    for (size_t i = 0;;) {
        const size_t fit = std::min((MaxRecordData - FSst.Size()) / charSize, n - i);
        uint8_t* p = FSst.Extend(fit * charSize);
        for (size_t k = 0; k < fit; ++k) {
            if (narrow)
                p[k] = static_cast<uint8_t>(FUnits[i + k]);
            else
                Put16(p + 2 * k, FUnits[i + k]);
        }
        i += fit;
        if (i == n) break;
        FlushSstRecord(rtContinue);
        *FSst.Extend(1) = narrow ? 0 : 1; // a continued string restates its character size
    }
    if (++FSstAdded == FLayout.SharedStrings) EndSharedStrings();
}

void TXlsWriter::FlushSstRecord(uint16_t NextType) {
    uint8_t header[4];
    Put16(header, FSstType);
    Put16(header + 2, static_cast<uint16_t>(FSst.Size()));
    FFile.Write(header, 4);
    FFile.Write(FSst.Data(), FSst.Size());
    FSst.Clear();
    FSstType = NextType;
    FFile.CheckSize();
}

void TXlsWriter::EndSharedStrings() {
    FlushSstRecord(rtContinue);
    TBiffBuffer b;
    uint8_t* p = b.Record(rtExtSst, static_cast<uint16_t>(2 + FExtSst.Size()));
    Put16(p, static_cast<uint16_t>(FSstBucket));
    if (FExtSst.Size()) std::memcpy(p + 2, FExtSst.Data(), FExtSst.Size());
    b.Record(rtEOF, 0);
    FFile.Write(b.Data(), b.Size());
    FSheetsStarted = true;
    BeginSheet();
}

void TXlsWriter::NextRow() {
    if (!FSheetsStarted) throw EAssertionFailed("Rows before the announced shared strings");
    if (FDataRowsDone == FLayout.DataRows) throw EAssertionFailed("More rows than announced");
    EndRow();
    if (FRowInSheet + 1 == FSheetRows) {
        EndSheet();
        BeginSheet();
    }
    ++FDataRowsDone;
    BeginRow();
}

void TXlsWriter::BeginRow() {
    ++FRowInSheet;
    FRowCellsAt[FBlockRows] = static_cast<uint32_t>(FCells.Size());
    FColMic[FBlockRows] = 0xFFFF;
    FColMac[FBlockRows] = 0;
    FRowOpen = true;
}

void TXlsWriter::EndRow() {
    if (!FRowOpen) return;
    FRowOpen = false;
    if (FColMic[FBlockRows] == 0xFFFF) FColMic[FBlockRows] = 0; // no cells: an empty span
    if (++FBlockRows == 32) FlushBlock();
}

uint8_t* TXlsWriter::Cell(uint16_t Type, uint16_t Length, int Col, uint16_t Xf) {
    if (!FRowOpen || Col < 0 || static_cast<size_t>(Col) >= FLayout.Columns.size())
        throw EAssertionFailed("A cell outside the table");
    uint8_t* p = FCells.Record(Type, Length);
    Put16(p, static_cast<uint16_t>(FRowInSheet));
    Put16(p + 2, static_cast<uint16_t>(Col));
    Put16(p + 4, Xf);
    FColMic[FBlockRows] = std::min<uint16_t>(FColMic[FBlockRows], static_cast<uint16_t>(Col));
    FColMac[FBlockRows] = std::max<uint16_t>(FColMac[FBlockRows], static_cast<uint16_t>(Col + 1));
    return p + 6;
}

void TXlsWriter::Label(int Col, std::string_view Utf8, uint16_t Xf) {
    if (Utf8.size() <= MaxLabelUnits && IsPlainCellText(Utf8)) {
        const size_t n = Utf8.size();
        uint8_t* p = Cell(rtLabel, static_cast<uint16_t>(9 + n), Col, Xf);
        Put16(p, static_cast<uint16_t>(n));
        p[2] = 0;
        std::memcpy(p + 3, Utf8.data(), n);
        return;
    }
    const bool narrow = CellTextToUtf16(Utf8, FUnits, MaxLabelUnits);
    const size_t n = FUnits.size();
    uint8_t* p = Cell(rtLabel, static_cast<uint16_t>(9 + (narrow ? n : 2 * n)), Col, Xf);
    Put16(p, static_cast<uint16_t>(n));
    p[2] = narrow ? 0 : 1;
    for (size_t k = 0; k < n; ++k) {
        if (narrow)
            p[3 + k] = static_cast<uint8_t>(FUnits[k]);
        else
            Put16(p + 3 + 2 * k, FUnits[k]);
    }
}

void TXlsWriter::Text(int Col, std::string_view Utf8) {
    Label(Col, Utf8, XfCell);
}

void TXlsWriter::SharedText(int Col, uint32_t Index) {
    if (Index >= FLayout.SharedStrings) throw EAssertionFailed("A shared string that was not handed over");
    Put32(Cell(rtLabelSst, 10, Col, XfCell), Index);
}

void TXlsWriter::Integer(int Col, int32_t Value) {
    // An RK record holds a 30-bit integer in 4 bytes; larger ones need the 8-byte number.
    if (Value >= -(1 << 29) && Value < (1 << 29))
        Put32(Cell(rtRk, 10, Col, XfCell), (static_cast<uint32_t>(Value) << 2) | 2u);
    else
        Number(Col, Value);
}

void TXlsWriter::Number(int Col, double Value) {
    PutDouble(Cell(rtNumber, 14, Col, XfCell), Value);
}

void TXlsWriter::Date(int Col, double Value) {
    PutDouble(Cell(rtNumber, 14, Col, XfDate), Value);
}

void TXlsWriter::FlushBlock() {
    const int k = FBlockRows;
    if (k == 0) return;
    const uint32_t firstRow = static_cast<uint32_t>(FRowInSheet - k + 1);
    const uint64_t start = FFile.StreamPosition();
    FBlock.Clear();
    for (int r = 0; r < k; ++r) {
        uint8_t* p = FBlock.Record(rtRow, 16);
        Put16(p, static_cast<uint16_t>(firstRow + r));
        Put16(p + 2, FColMic[r]);
        Put16(p + 4, FColMac[r]);
        Put16(p + 6, 0x00FF); // default height
        Put32(p + 8, 0);
        Put16(p + 12, 0x0100);
        Put16(p + 14, XfCell);
    }
    FFile.Write(FBlock.Data(), FBlock.Size());
    FFile.Write(FCells.Data(), FCells.Size());
    const uint64_t dbCell = start + FBlock.Size() + FCells.Size();
    // The block's index: back to its first ROW record, then from row to row to each row's first cell.
    // A row of more than 64 KB of cells (hundreds of long columns) cannot be indexed; readers that load
    // the sheet read the cells in order and do not need it.
    FBlock.Clear();
    uint8_t* p = FBlock.Record(rtDbCell, static_cast<uint16_t>(4 + 2 * k));
    Put32(p, static_cast<uint32_t>(dbCell - start));
    for (int r = 0; r < k; ++r) {
        const uint32_t offset = r == 0 ? 20u * (k - 1) : FRowCellsAt[r] - FRowCellsAt[r - 1];
        Put16(p + 4 + 2 * r, static_cast<uint16_t>(std::min<uint32_t>(offset, 0xFFFF)));
    }
    FFile.Write(FBlock.Data(), FBlock.Size());
    FDbCellAt.push_back(static_cast<uint32_t>(dbCell));
    FCells.Clear();
    FBlockRows = 0;
    FFile.CheckSize(); // fail early rather than after gigabytes more
}

void TXlsWriter::BeginSheet() {
    ++FSheet;
    FSheetRows =
        1 + static_cast<int32_t>(std::min<int64_t>(FLayout.DataRows - FDataRowsDone, FLayout.RowsPerSheet));
    FRowInSheet = -1;
    FDbCellAt.clear();
    uint8_t at[4];
    Put32(at, static_cast<uint32_t>(FFile.StreamPosition()));
    FFile.Patch(FSheetOffsetAt[FSheet], at, 4);
    WriteSheetPrologue();
    BeginRow();
    for (size_t c = 0; c < FLayout.Columns.size(); ++c)
        Label(static_cast<int>(c), FLayout.Columns[c].Caption, XfHeader);
}

void TXlsWriter::EndSheet() {
    EndRow();
    FlushBlock();
    TBiffBuffer b;
    uint8_t* p = b.Record(rtWindow2, 18);
    std::memset(p, 0, 18);
    // Grid lines, headings, zeros, outline symbols; the first sheet is the selected one.
    Put16(p, FSheet == 0 ? 0x06B6 : 0x00B6);
    Put16(p + 6, 0x0040); // default grid line colour
    b.Record(rtEOF, 0);
    FFile.Write(b.Data(), b.Size());
    if (FDbCellAt.size() != static_cast<size_t>((FSheetRows + 31) / 32))
        throw EAssertionFailed("Sheet rows differ from the announced count");
    std::vector<uint8_t> index(4 * FDbCellAt.size());
    for (size_t i = 0; i < FDbCellAt.size(); ++i)
        Put32(index.data() + 4 * i, FDbCellAt[i]);
    FFile.Patch(FIndexBlocksAt, index.data(), index.size());
}

void TXlsWriter::Finish() {
    if (!FSheetsStarted) throw EAssertionFailed("Fewer shared strings than announced");
    if (FDataRowsDone != FLayout.DataRows) throw EAssertionFailed("Fewer rows than announced");
    EndSheet();
    FFile.Finish();
}
