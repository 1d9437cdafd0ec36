// Exports read back by real readers: the same cells, types, sheets and header in every format.
#include "ExportReadBack.h"

#include "reports/ExportJob.h"
#include "reports/ExportRows.h"

#include <gtest/gtest.h>

namespace {

// One expected cell: kind t(ext), n(umber), d(ate) or - (empty) in a workbook, and the CSV field.
struct TExpect {
    char Kind;
    std::string Text;
    double Number;
    std::string Csv;
};

TExpect T(std::string s) {
    return {'t', s, 0, s};
}
TExpect T(std::string inBook, std::string inCsv) {
    return {'t', std::move(inBook), 0, std::move(inCsv)};
}
TExpect N(double v) {
    return {'n', "", v, std::to_string(static_cast<long long>(v))};
}
TExpect D(double v, std::string iso) {
    return {'d', "", v, std::move(iso)};
}
TExpect E() {
    return {'-', "", 0, ""};
}

std::string Repeat(std::string_view s, int n) {
    std::string out;
    for (int i = 0; i < n; ++i)
        out += s;
    return out;
}

const TDateTime Raised = EncodeDateTime(2026, 11, 21, 8, 15, 0, 0);
const TDateTime Acked = EncodeDateTime(2026, 11, 22, 9, 0, 30, 0);
const std::string Fffd = "\xEF\xBF\xBD";

class ExportRoundTrip : public ::testing::TestWithParam<const char*> {};

TEST_P(ExportRoundTrip, CellsTypesHeaderAndWidthsReadBackAsWritten) {
    TFormatSettingsGuard keep;
    FormatSettings().ShortDateFormat = "dd/mm/yyyy";
    FormatSettings().LongTimeFormat = "hh:nn:ss";
    FormatSettings().DateSeparator = '/';
    FormatSettings().TimeSeparator = ':';
    const std::string ext = GetParam();
    const bool csv = ext == ".csv";

    // Not the store's order: the grid's order and captions are what count.
    const std::vector<TExportColumn> columns = {
        {nf_note_severity, "Severity"}, {nf_note_summary, "Summary <b>&</b>"},
        {nf_nb_internal_key, "Key"},    {nf_note_raised_date, "Raised"},
        {nf_note_text, "Détails"},      {nf_note_count, "Count"},
        {nf_ack_date, "Acknowledged"}};
    const std::string wide = Repeat("\xE2\x82\xAC", 32766); // 32 766 euro signs: 16-bit characters
    const std::string longSummary = Repeat("x", 1000) + "\xC3\xA9";
    std::vector<TNoticeRecord> rows;
    std::vector<std::vector<TExpect>> expect;
    auto add = [&](TNoticeRecord row, std::vector<TExpect> cells) {
        rows.push_back(std::move(row));
        expect.push_back(std::move(cells));
    };
    add(TNoticeBuilder()
            .Int(nf_nb_internal_key, 1)
            .Int(nf_note_severity, 3)
            .Text(nf_note_summary, "Disk full")
            .Text(nf_note_text, "line one\r\nline two")
            .Date(nf_note_raised_date, Raised)
            .Int(nf_note_count, 3),
        {T("Fatal"), T("Disk full"), N(1), D(Raised, "2026-11-21 08:15:00"), T("line one\r\nline two"), N(3),
         E()});
    add(TNoticeBuilder()
            .Int(nf_nb_internal_key, 2147483647) // too wide for the compact integer record
            .Int(nf_note_severity, 4)
            .Text(nf_note_summary, "<b>&amp;</b> \"quoted\", 'single' =1+2")
            .Text(nf_note_text, "tab\there;semi")
            .Date(nf_note_raised_date, Raised + 0.5)
            .Int(nf_note_count, -5)
            .Date(nf_ack_date, Acked),
        {T("Critical"), T("<b>&amp;</b> \"quoted\", 'single' =1+2"), N(2147483647),
         D(Raised + 0.5, "2026-11-21 20:15:00"), T("tab\there;semi"), N(-5),
         D(Acked, "2026-11-22 09:00:30")});
    add(TNoticeBuilder()
            .Int(nf_nb_internal_key, 3)
            .Int(nf_note_severity, 1)
            .Text(nf_note_summary, std::string_view("a\x01"
                                                    "b\x1f"
                                                    "c\x7f"
                                                    "d\0e",
                                                    9))
            .Text(nf_note_text, "x\xFFy\xE2\x82z\xED\xA0\x80w\xF0\x9F\x98"),
        {T("Normal"),
         T("a" + Fffd + "b" + Fffd +
           "c\x7f"
           "d" +
           Fffd + "e"),
         N(3), E(), T("x" + Fffd + "y" + Fffd + "z" + Fffd + Fffd + Fffd + "w" + Fffd), E(), E()});
    add(TNoticeBuilder()
            .Int(nf_nb_internal_key, 4)
            .Int(nf_note_severity, 2)
            .Text(nf_note_summary, "Gr\xC3\xBC\xC3\x9F"
                                   "e \xE2\x80\x94 \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x98\x80")
            .Text(nf_note_text, "\xC3\x9Cn\xC3\xAF"
                                "c\xC3\xB6"
                                "d\xC3\xA9"),
        {T("Warning"),
         T("Gr\xC3\xBC\xC3\x9F"
           "e \xE2\x80\x94 \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x98\x80"),
         N(4), E(),
         T("\xC3\x9Cn\xC3\xAF"
           "c\xC3\xB6"
           "d\xC3\xA9"),
         E(), E()});
    add(TNoticeBuilder().Text(nf_note_summary, ""), {E(), E(), E(), E(), E(), E(), E()});
    add(TNoticeBuilder()
            .Int(nf_nb_internal_key, 6)
            .Text(nf_note_summary, Repeat("s", 255))
            .Text(nf_note_text, Repeat("a", 300)),
        {E(), T(Repeat("s", 255)), N(6), E(), T(Repeat("a", 300)), E(), E()});
    // Longer than a cell holds: cut at 32 767 UTF-16 units, never inside a surrogate pair; CSV keeps all.
    add(TNoticeBuilder()
            .Int(nf_nb_internal_key, 7)
            .Text(nf_note_summary, longSummary)
            .Text(nf_note_text, wide + "\xF0\x9F\x98\x80tail"),
        {E(), T(longSummary), N(7), E(), T(wide, wide + "\xF0\x9F\x98\x80tail"), E(), E()});
    // Spreadsheets count 29 February 1900: dates before March 1900 go as the grid's text.
    add(TNoticeBuilder().Int(nf_nb_internal_key, 8).Date(nf_note_raised_date, 0.0).Date(nf_ack_date, 61.0),
        {E(), E(), N(8), T("30/12/1899 00:00:00", "1899-12-30 00:00:00"), E(), E(),
         D(61.0, "1900-03-01 00:00:00")});

    TTempFolder folder;
    const std::string file = folder / ("grid" + ext);
    WriteTextFile(file, "an older export, replaced");
    TRecordExportRows source(rows);
    ExportGrid(columns, source, file);

    const TReadBook book = ReadBack(file);
    ASSERT_TRUE(book.Read) << book.Errors;
    ASSERT_EQ(book.Sheets.size(), 1u);
    const TReadSheet& sheet = book.Sheets[0];
    EXPECT_EQ(sheet.Rows, static_cast<int>(rows.size()) + 1);
    if (csv) {
        EXPECT_TRUE(book.Bom);
        EXPECT_TRUE(book.EndsCrLf);
    } else {
        EXPECT_EQ(sheet.Name, "Notices");
    }
    for (size_t c = 0; c < columns.size(); ++c) {
        const TReadCell* caption = sheet.Cell(0, static_cast<int>(c));
        ASSERT_TRUE(caption);
        EXPECT_EQ(caption->Text, columns[c].Caption);
        if (!csv) {
            EXPECT_TRUE(sheet.Bold.at({0, static_cast<int>(c)})) << c;
            EXPECT_FALSE(sheet.Bold.at({1, static_cast<int>(c)})) << c;
        }
    }
    for (size_t r = 0; r < expect.size(); ++r) {
        for (size_t c = 0; c < columns.size(); ++c) {
            const TExpect& e = expect[r][c];
            const TReadCell* cell = sheet.Cell(static_cast<int>(r) + 1, static_cast<int>(c));
            SCOPED_TRACE("row " + std::to_string(r) + " column " + std::to_string(c));
            if (csv ? e.Csv.empty() : e.Kind == '-') {
                EXPECT_FALSE(cell) << cell->Type << " " << cell->Text;
                continue;
            }
            ASSERT_TRUE(cell);
            if (csv || e.Kind == 't') {
                EXPECT_EQ(cell->Type, "text");
                EXPECT_EQ(cell->Text, csv ? e.Csv : e.Text);
            } else {
                EXPECT_EQ(cell->Type, e.Kind == 'n' ? "number" : "date");
                EXPECT_NEAR(cell->Number, e.Number, 1e-9);
            }
        }
    }
    if (!csv) {
        ASSERT_EQ(sheet.Widths.size(), columns.size());
        EXPECT_LT(sheet.Widths.at(5), sheet.Widths.at(1)); // Count is narrower than Summary
        EXPECT_LE(sheet.Widths.at(1), 61.0); // capped (.xlsx adds the cell padding to the width)
        EXPECT_GE(sheet.Widths.at(6), 12.0); // as wide as its caption
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, ExportRoundTrip, ::testing::Values(".xls", ".xlsx", ".csv"));

class ExportSheets : public ::testing::TestWithParam<const char*> {};

TEST_P(ExportSheets, RowsBeyondASheetContinueOnFurtherSheetsUnderTheHeader) {
    TExportOptions options;
    options.XlsRowsPerSheet = 3;
    options.XlsxRowsPerSheet = 3;
    for (const int count : {0, 6, 7}) {
        SCOPED_TRACE(std::to_string(count) + " rows");
        TTempFolder folder;
        const std::string file = folder / (std::string("n") + GetParam());
        const std::vector<TNoticeRecord> rows = NumberedNotices(count);
        ExportGridWith(KeySummaryCount(), TRecordExportRows(rows), file, nullptr, options);
        const TReadBook book = ReadBack(file);
        ASSERT_TRUE(book.Read) << book.Errors;
        const size_t sheets = count == 0 ? 1 : (count + 2) / 3;
        ASSERT_EQ(book.Sheets.size(), sheets);
        int key = 0;
        for (size_t s = 0; s < sheets; ++s) {
            const TReadSheet& sheet = book.Sheets[s];
            EXPECT_EQ(sheet.Name, s == 0 ? "Notices" : "Notices (" + std::to_string(s + 1) + ")");
            EXPECT_EQ(sheet.Cell(0, 1)->Text, "Summary");
            EXPECT_TRUE(sheet.Bold.at({0, 0}));
            for (int r = 1; r < sheet.Rows; ++r) {
                ++key;
                EXPECT_EQ(sheet.Cell(r, 0)->Number, key);
                EXPECT_EQ(sheet.Cell(r, 1)->Text, "Notice " + std::to_string(key));
            }
        }
        EXPECT_EQ(key, count);
    }
}

INSTANTIATE_TEST_SUITE_P(Workbooks, ExportSheets, ::testing::Values(".xls", ".xlsx"));

TEST(ExportXls, SeventyThousandRowsFillOneFullSheetAndContinueOnASecond) {
    TTempFolder folder;
    const std::string file = folder / "big.xls";
    const std::vector<TNoticeRecord> rows = NumberedNotices(70000);
    ExportGrid(KeySummaryCount(), TRecordExportRows(rows), file);
    const TReadBook book = ReadBack(file);
    ASSERT_TRUE(book.Read) << book.Errors;
    ASSERT_EQ(book.Sheets.size(), 2u);
    const TReadSheet& first = book.Sheets[0];
    const TReadSheet& second = book.Sheets[1];
    EXPECT_EQ(first.Rows, 65536);
    EXPECT_EQ(second.Rows, 1 + 70000 - 65535);
    EXPECT_EQ(first.Cell(65535, 0)->Number, 65535);
    EXPECT_EQ(first.Cell(65535, 1)->Text, "Notice 65535");
    EXPECT_EQ(second.Name, "Notices (2)");
    EXPECT_EQ(second.Cell(0, 2)->Text, "Count");
    EXPECT_EQ(second.Cell(1, 0)->Number, 65536);
    EXPECT_EQ(second.Cell(second.Rows - 1, 2)->Number, 70000);
}

} // namespace
