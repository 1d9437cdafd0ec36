#include "reports/ExportJob.h"

#include "core/Nb_utils.h"
#include "core/Znb_fieldtext.h"
#include "reports/ExportDateFormat.h"
#include "reports/ExportText.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int32_t WidthSampleRows = 1000;
constexpr double MinWidth = 6, MaxWidth = 60;

TCellKind KindOf(TNoticeField Field) {
    switch (NoticeFieldType(Field)) {
    case TFieldType::ftString:
    case TFieldType::ftMemo:
        return TCellKind::Text;
    case TFieldType::ftDateTime:
        return TCellKind::Date;
    case TFieldType::ftAutoInc:
    case TFieldType::ftInteger:
        break;
    }
    return Field == nf_note_severity ? TCellKind::Severity : TCellKind::Integer;
}

// Characters the cell shows (text as written, numbers in decimal, dates as the grid shows them).
size_t CellChars(const TNoticeRecord& Row, const TJobColumn& Column, std::string& Buffer, size_t& Bytes) {
    if (Row.IsNull(Column.Field)) return 0;
    switch (Column.Kind) {
    case TCellKind::Text: {
        const std::string_view text = Row.AsString(Column.Field);
        Bytes += text.size();
        // Only the start matters once it is wider than a column gets.
        return CellTextChars(CleanCellText(text.substr(0, 4 * static_cast<size_t>(MaxWidth)), Buffer));
    }
    case TCellKind::Severity:
        return Get_Severity_String(Row.AsInteger(Column.Field)).size();
    case TCellKind::Integer:
        return std::to_string(Row.AsInteger(Column.Field)).size();
    case TCellKind::Date:
        return FieldDisplayText(Row, Column.Field).size();
    }
    return 0;
}

} // namespace

TExportJob::TExportJob(const std::vector<TExportColumn>& Columns_, const IExportRows& Rows_,
                       IExportProgress* Progress, const TExportOptions& Options_, std::string FileName_)
    : Rows(Rows_), RowCount(std::max<int32_t>(0, Rows_.Count())), Options(Options_),
      FileName(std::move(FileName_)), FProgress(Progress) {
    const TFormatSettings& settings = FormatSettings();
    DateFormat = SpreadsheetDateFormat(GridDateFormat(settings), settings);
    std::string buffer;
    for (const TExportColumn& c : Columns_) {
        TJobColumn column;
        column.Field = c.Field;
        column.Kind = KindOf(c.Field);
        column.Caption = std::string(CleanCellText(c.Caption, buffer, MaxCellUnits));
        Columns.push_back(std::move(column));
    }
    // Widths from rows spread over the whole export: the caption (bold, a little wider) or the widest
    // value, with a character of margin on each side, within bounds.
    std::vector<size_t> widest(Columns.size(), 0);
    const int32_t step = std::max<int32_t>(1, RowCount / WidthSampleRows);
    size_t bytes = 0, sampled = 0;
    for (int32_t r = 0; r < RowCount; r += step) {
        const TNoticeRecord* row = Row(r);
        if (!row) continue;
        ++sampled;
        for (size_t c = 0; c < Columns.size(); ++c)
            widest[c] = std::max(widest[c], CellChars(*row, Columns[c], buffer, bytes));
    }
    AverageRowBytes = sampled ? static_cast<double>(bytes) / static_cast<double>(sampled) : 0;
    for (size_t c = 0; c < Columns.size(); ++c) {
        const double caption = std::ceil(1.15 * static_cast<double>(CellTextChars(Columns[c].Caption)));
        Columns[c].Width =
            std::clamp(std::max(caption, static_cast<double>(widest[c])) + 2, MinWidth, MaxWidth);
    }
}

void TExportJob::Report(int32_t Done) {
    if (FProgress && !FProgress->Progress(Done, RowCount))
        throw EExportCancelled("The export to " + FileName + " was cancelled");
}
