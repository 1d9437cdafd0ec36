// The grid as an Excel 97-2003 workbook, through our own BIFF8 writer.
#include "core/Nb_utils.h"
#include "core/Znb_fieldtext.h"
#include "reports/ExportJob.h"
#include "reports/XlsWriter.h"

namespace {

uint64_t CellKey(int32_t Row, size_t Col) {
    return static_cast<uint64_t>(Row) << 16 | Col;
}

// Texts too long to sit in their cells, as (row, column) keys in the order the cells are written. The
// workbook keeps them in its string table ahead of the sheets, so they are found before any row is
// written; typical notices have none, and the list costs 8 bytes per long text.
std::vector<uint64_t> FindLongTexts(const TExportJob& Job) {
    std::vector<uint64_t> keys;
    for (int32_t r = 0; r < Job.RowCount; ++r) {
        const TNoticeRecord* row = Job.Row(r);
        if (!row) continue;
        for (size_t c = 0; c < Job.Columns.size(); ++c) {
            const TJobColumn& column = Job.Columns[c];
            if (column.Kind != TCellKind::Text || row->IsNull(column.Field)) continue;
            const std::string_view text = row->AsString(column.Field);
            if (text.size() > TXlsWriter::MaxLabelUnits && TXlsWriter::NeedsSharedString(text))
                keys.push_back(CellKey(r, c));
        }
    }
    return keys;
}

} // namespace

void WriteXls(TExportJob& Job, TExportFile& File) {
    const std::vector<uint64_t> longTexts = FindLongTexts(Job);
    TExportOutput out(File.Fd(), File.FileName());
    TCompoundFileWriter container(out);
    TXlsLayout layout;
    for (const TJobColumn& c : Job.Columns)
        layout.Columns.push_back({c.Caption, c.Width});
    layout.DataRows = Job.RowCount;
    layout.RowsPerSheet = Job.Options.XlsRowsPerSheet;
    layout.DateFormat = Job.DateFormat;
    layout.SharedStrings = static_cast<uint32_t>(longTexts.size());
    TXlsWriter book(container, std::move(layout));
    for (const uint64_t key : longTexts) {
        const TNoticeRecord* row = Job.Row(static_cast<int32_t>(key >> 16));
        book.SharedString(row ? row->AsString(Job.Columns[key & 0xFFFF].Field) : std::string_view());
    }

    size_t nextLong = 0;
    for (int32_t r = 0; r < Job.RowCount; ++r) {
        book.NextRow();
        const TNoticeRecord* row = Job.Row(r);
        for (size_t c = 0; row && c < Job.Columns.size(); ++c) {
            const TJobColumn& column = Job.Columns[c];
            const int col = static_cast<int>(c);
            if (row->IsNull(column.Field)) continue;
            switch (column.Kind) {
            case TCellKind::Text: {
                const std::string_view text = row->AsString(column.Field);
                const uint64_t key = CellKey(r, c);
                while (nextLong < longTexts.size() && longTexts[nextLong] < key)
                    ++nextLong; // a long text whose cell became null meanwhile
                if (nextLong < longTexts.size() && longTexts[nextLong] == key)
                    book.SharedText(col, static_cast<uint32_t>(nextLong++));
                else if (!text.empty())
                    book.Text(col, text);
                break;
            }
            case TCellKind::Severity: {
                const std::string text = Get_Severity_String(row->AsInteger(column.Field));
                if (!text.empty()) book.Text(col, text); // a number outside 1 to 4 shows nothing
                break;
            }
            case TCellKind::Integer:
                book.Integer(col, row->AsInteger(column.Field));
                break;
            case TCellKind::Date: {
                const TDateTime value = row->AsDateTime(column.Field);
                if (IsSpreadsheetDate(value))
                    book.Date(col, value);
                else
                    book.Text(col, FieldDisplayText(*row, column.Field));
                break;
            }
            }
        }
        Job.RowsDone(r + 1);
    }
    book.Finish();
}
