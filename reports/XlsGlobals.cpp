// The fixed parts of the workbook: the globals substream in front of the sheets (fonts, number formats,
// cell formats, the sheet list) and the records that open each sheet. Values are the ones Excel itself
// writes for a new workbook where the format leaves a choice.
#include "reports/ExportText.h"
#include "reports/XlsWriter.h"

#include "support/Exception.h"

#include <algorithm>
#include <string>

using namespace biff;

namespace {

constexpr uint16_t DateFormatIndex = 164; // the first number format a workbook may define
constexpr uint16_t BoldFontIndex = 5;     // font 4 does not exist: the fifth FONT record is font 5

// BIFF8, the given substream type (5 globals, 0x10 sheet), built by Excel 97.
void Bof(TBiffBuffer& b, uint16_t Type) {
    uint8_t* p = b.Record(rtBOF, 16);
    Put16(p, 0x0600);
    Put16(p + 2, Type);
    Put16(p + 4, 0x0DBB);
    Put16(p + 6, 0x07CC);
    Put32(p + 8, 0);
    Put32(p + 12, 6); // lowest BIFF version that can read the file
}

// A string with a 16-bit (Short = false) or 8-bit character count, one flag byte and the characters.
void UnicodeString(TBiffBuffer& b, std::string_view Utf8, bool Short, size_t MaxUnits) {
    std::u16string units;
    const bool narrow = CellTextToUtf16(Utf8, units, MaxUnits);
    if (Short) {
        *b.Extend(1) = static_cast<uint8_t>(units.size());
    } else {
        Put16(b.Extend(2), static_cast<uint16_t>(units.size()));
    }
    *b.Extend(1) = narrow ? 0 : 1;
    for (char16_t u : units) {
        if (narrow)
            *b.Extend(1) = static_cast<uint8_t>(u);
        else
            Put16(b.Extend(2), u);
    }
}

// A record whose length is known once its data is in: Begin, append, End.
size_t BeginRecord(TBiffBuffer& b, uint16_t Type) {
    b.Record(Type, 0);
    return b.Size();
}

void EndRecord(TBiffBuffer& b, size_t DataStart) {
    Put16(const_cast<uint8_t*>(b.Data()) + DataStart - 2, static_cast<uint16_t>(b.Size() - DataStart));
}

void Font(TBiffBuffer& b, bool Bold) {
    const size_t at = BeginRecord(b, rtFont);
    uint8_t* p = b.Extend(14);
    Put16(p, 200);              // 10 points, in twips
    Put16(p + 2, Bold ? 1 : 0); // the old bold flag: Excel ignores it, older readers go by it
    Put16(p + 4, 0x7FFF);       // automatic colour
    Put16(p + 6, Bold ? 700 : 400);
    Put16(p + 8, 0);  // no super- or subscript
    Put32(p + 10, 0); // no underline, family, character set
    UnicodeString(b, "Arial", true, 255);
    EndRecord(b, at);
}

// A cell format (Style = false, parent: the Normal style) or a style format.
void Xf(TBiffBuffer& b, uint16_t Font, uint16_t Format, bool Style) {
    uint8_t* p = b.Record(rtXF, 20);
    std::memset(p, 0, 20);
    Put16(p, Font);
    Put16(p + 2, Format);
    Put16(p + 4, Style ? 0xFFF5 : 0x0001); // locked; a style has no parent
    p[6] = 0x20;                           // bottom aligned
    p[9] = Style ? 0x00 : 0xFC;            // a cell format sets every attribute itself
    Put16(p + 18, 0x20C0);                 // automatic pattern colours
}

} // namespace

void TXlsWriter::WriteGlobals() {
    TBiffBuffer b;
    Bof(b, 0x0005);
    b.Record16(rtInterfaceHdr, 1200); // UTF-16
    b.Record16(rtMms, 0);
    b.Record(rtInterfaceEnd, 0);
    uint8_t* access = b.Record(rtWriteAccess, 112); // no user name, padded with blanks
    std::memset(access, ' ', 112);
    Put16(access, 0);
    access[2] = 0;
    b.Record16(rtCodePage, 1200);
    b.Record16(rtDsf, 0);
    b.Record16(rtFnGroupCount, 14);
    for (uint16_t type : {rtWindowProtect, rtProtect, rtPassword, rtProt4Rev, rtProt4RevPass})
        b.Record16(type, 0);
    uint8_t* w = b.Record(rtWindow1, 18);
    Put16(w, 360);
    Put16(w + 2, 270);
    Put16(w + 4, 14940);
    Put16(w + 6, 9150);
    Put16(w + 8, 0x0038); // horizontal and vertical scroll bars, sheet tabs
    Put16(w + 10, 0);     // first sheet active
    Put16(w + 12, 0);     // and first visible tab
    Put16(w + 14, 1);     // one sheet selected
    Put16(w + 16, 600);   // tab bar width
    b.Record16(rtBackup, 0);
    b.Record16(rtHideObj, 0);
    b.Record16(rtDateMode, 0); // 1900 date system: serial numbers are the board's date-times
    b.Record16(rtPrecision, 1);
    b.Record16(rtRefreshAll, 0);
    b.Record16(rtBookBool, 0);
    for (int i = 0; i < 4; ++i)
        Font(b, false);
    Font(b, true);
    const size_t format = BeginRecord(b, rtFormat);
    Put16(b.Extend(2), DateFormatIndex);
    UnicodeString(b, FLayout.DateFormat, false, 255);
    EndRecord(b, format);
    for (int i = 0; i < 15; ++i)
        Xf(b, 0, 0, true);
    Xf(b, 0, 0, false);               // XfCell
    Xf(b, BoldFontIndex, 0, false);   // XfHeader
    Xf(b, 0, DateFormatIndex, false); // XfDate
    uint8_t* style = b.Record(rtStyle, 4);
    Put16(style, 0x8000); // built-in style on format 0: Normal
    style[2] = 0;
    style[3] = 0xFF;
    b.Record16(rtUsesElfs, 1);
    for (int s = 0; s < FSheetCount; ++s) {
        const size_t at = BeginRecord(b, rtBoundSheet);
        FSheetOffsetAt.push_back(FFile.StreamPosition() + b.Size()); // filled in when the sheet starts
        Put32(b.Extend(4), 0);
        Put16(b.Extend(2), 0); // visible worksheet
        const std::string name =
            s == 0 ? FLayout.SheetName : FLayout.SheetName + " (" + std::to_string(s + 1) + ")";
        UnicodeString(b, name, true, 31);
        EndRecord(b, at);
    }
    FFile.Write(b.Data(), b.Size());
    // The shared string table follows: its counts now, the strings as they are handed over.
    Put32(FSst.Extend(4), FLayout.SharedStrings);
    Put32(FSst.Extend(4), FLayout.SharedStrings);
}

void TXlsWriter::WriteSheetPrologue() {
    const uint64_t start = FFile.StreamPosition();
    const uint32_t blocks = static_cast<uint32_t>((FSheetRows + 31) / 32);
    TBiffBuffer b;
    Bof(b, 0x0010);
    // The index of the sheet's row blocks; their positions are filled in when the sheet ends.
    uint8_t* index = b.Record(rtIndex, static_cast<uint16_t>(16 + 4 * blocks));
    std::memset(index, 0, 16 + 4 * blocks);
    Put32(index + 8, static_cast<uint32_t>(FSheetRows));
    const size_t defColWidthFieldAt = static_cast<size_t>(index + 12 - b.Data());
    FIndexBlocksAt = start + static_cast<size_t>(index + 16 - b.Data());
    b.Record16(rtCalcMode, 1);
    b.Record16(rtCalcCount, 100);
    b.Record16(rtRefMode, 1);
    b.Record16(rtIteration, 0);
    PutDouble(b.Record(rtDelta, 8), 0.001);
    b.Record16(rtSaveRecalc, 1);
    b.Record16(rtPrintHeaders, 0);
    b.Record16(rtPrintGridlines, 0);
    b.Record16(rtGridSet, 1);
    std::memset(b.Record(rtGuts, 8), 0, 8);
    Put32(b.Record(rtDefaultRowHeight, 4), 0x00FF0000); // no flags, 255 twips
    b.Record16(rtWsBool, 0x04C1);
    Put32(const_cast<uint8_t*>(b.Data()) + defColWidthFieldAt, static_cast<uint32_t>(start + b.Size()));
    b.Record16(rtDefColWidth, 8);
    for (size_t c = 0; c < FLayout.Columns.size(); ++c) {
        uint8_t* p = b.Record(rtColInfo, 12);
        const double width = std::clamp(FLayout.Columns[c].Width, 0.0, 255.0);
        Put16(p, static_cast<uint16_t>(c));
        Put16(p + 2, static_cast<uint16_t>(c));
        Put16(p + 4, static_cast<uint16_t>(width * 256 + 0.5)); // in 1/256 of a character
        Put16(p + 6, XfCell);
        Put32(p + 8, 0);
    }
    uint8_t* dim = b.Record(rtDimensions, 14);
    Put32(dim, 0);
    Put32(dim + 4, static_cast<uint32_t>(FSheetRows));
    Put16(dim + 8, 0);
    Put16(dim + 10, static_cast<uint16_t>(FLayout.Columns.size()));
    Put16(dim + 12, 0);
    FFile.Write(b.Data(), b.Size());
}
