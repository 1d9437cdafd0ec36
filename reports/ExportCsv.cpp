// The grid as UTF-8 CSV (RFC 4180): comma-separated, CR LF after every record, a field quoted when it holds
// a comma, a quote or a line break, quotes inside doubled. The file starts with a byte order mark: without
// it Excel reads the file in the ANSI code page and garbles every non-ASCII character, while LibreOffice and
// most CSV readers recognise the mark. Date-times are written as "yyyy-mm-dd hh:nn:ss", which every reader
// parses the same way whatever its locale.
#include "core/Nb_utils.h"
#include "reports/ExportJob.h"
#include "reports/ExportText.h"

#include <charconv>

namespace {

void Field(TExportOutput& Out, std::string_view Text, std::string& Buffer) {
    const std::string_view clean = CleanCellText(Text, Buffer);
    if (clean.find_first_of(",\"\r\n") == std::string_view::npos) {
        Out.Write(clean);
        return;
    }
    Out.Write("\"", 1);
    for (size_t start = 0;;) {
        const size_t quote = clean.find('"', start);
        if (quote == std::string_view::npos) {
            Out.Write(clean.substr(start));
            break;
        }
        Out.Write(clean.substr(start, quote + 1 - start));
        Out.Write("\"", 1);
        start = quote + 1;
    }
    Out.Write("\"", 1);
}

void Digits(char*& p, int Value, int Width) {
    for (int i = Width - 1; i >= 0; --i, Value /= 10)
        p[i] = static_cast<char>('0' + Value % 10);
    p += Width;
}

void IsoDateTime(TExportOutput& Out, TDateTime Value) {
    int year, month, day, hour, min, sec, msec;
    DecodeDateTime(Value, year, month, day, hour, min, sec, msec);
    char text[19];
    char* p = text;
    Digits(p, year, 4);
    *p++ = '-';
    Digits(p, month, 2);
    *p++ = '-';
    Digits(p, day, 2);
    *p++ = ' ';
    Digits(p, hour, 2);
    *p++ = ':';
    Digits(p, min, 2);
    *p++ = ':';
    Digits(p, sec, 2);
    Out.Write(text, sizeof text);
}

} // namespace

void WriteCsv(TExportJob& Job, TExportFile& File) {
    TExportOutput out(File.Fd(), File.FileName());
    std::string buffer;
    out.Write("\xEF\xBB\xBF", 3);
    for (size_t c = 0; c < Job.Columns.size(); ++c) {
        if (c) out.Write(",", 1);
        Field(out, Job.Columns[c].Caption, buffer);
    }
    out.Write("\r\n", 2);
    for (int32_t r = 0; r < Job.RowCount; ++r) {
        const TNoticeRecord* row = Job.Row(r);
        for (size_t c = 0; c < Job.Columns.size(); ++c) {
            if (c) out.Write(",", 1);
            const TJobColumn& column = Job.Columns[c];
            if (!row || row->IsNull(column.Field)) continue;
            switch (column.Kind) {
            case TCellKind::Text:
                Field(out, row->AsString(column.Field), buffer);
                break;
            case TCellKind::Severity:
                out.Write(Get_Severity_String(row->AsInteger(column.Field)));
                break;
            case TCellKind::Integer: {
                char digits[12];
                const auto end =
                    std::to_chars(digits, digits + sizeof digits, row->AsInteger(column.Field)).ptr;
                out.Write(digits, static_cast<size_t>(end - digits));
                break;
            }
            case TCellKind::Date:
                IsoDateTime(out, row->AsDateTime(column.Field));
                break;
            }
        }
        out.Write("\r\n", 2);
        Job.RowsDone(r + 1);
    }
    out.Flush();
}
