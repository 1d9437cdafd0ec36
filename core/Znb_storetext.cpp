#include "core/Znb_storetext.h"

#include "support/DateUtils.h"

#include <cmath>
#include <cstdio>

namespace {

void AppendEscaped(std::string& out, std::string_view text) {
    for (char c : text) {
        switch (c) {
        case '\\':
            out += "\\\\";
            break;
        case '\t':
            out += "\\t";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\n':
            out += "\\n";
            break;
        default:
            out += c;
        }
    }
}

std::string DateTimeText(TDateTime value) {
    int y, mo, d, h, mi, s, ms;
    DecodeDateTime(value, y, mo, d, h, mi, s, ms);
    char text[48];
    if (ms)
        std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d.%03d", y, mo, d, h, mi, s, ms);
    else
        std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", y, mo, d, h, mi, s);
    return text;
}

} // namespace

std::string StoreFieldText(const TNoticeRecord& Row, TNoticeField Field) {
    if (Row.IsNull(Field)) return "\\N";
    switch (NoticeFieldType(Field)) {
    case TFieldType::ftString:
    case TFieldType::ftMemo: {
        std::string out;
        AppendEscaped(out, Row.AsString(Field));
        return out;
    }
    case TFieldType::ftDateTime:
        return DateTimeText(Row.AsDateTime(Field));
    case TFieldType::ftInteger:
    case TFieldType::ftAutoInc:
        break;
    }
    return std::to_string(Row.AsInteger(Field));
}

std::string StoreAsText(const TNoticeStore& Store) {
    std::string out;
    for (size_t i = 0; i < NoticeBdColumnArray.size(); ++i) {
        if (i) out += '\t';
        out += NoticeBdColumnArray[i].FieldName;
    }
    out += '\n';
    Store.ForEachRow([&](const TNoticeRecord& row) {
        for (size_t i = 0; i < NoticeBdColumnArray.size(); ++i) {
            if (i) out += '\t';
            out += StoreFieldText(row, NoticeBdColumnArray[i].Field);
        }
        out += '\n';
    });
    return out;
}

std::string CountersAsText(const TStats_Obj& Stats) {
    std::string out;
    const std::vector<std::string>& rows = Stats.RowNames();
    const std::vector<std::string>& columns = Stats.ColumnNames();
    for (size_t r = 0; r < rows.size(); ++r) {
        for (size_t c = 0; c < columns.size(); ++c) {
            out += rows[r] + '\t' + columns[c] + '\t' +
                   std::to_string(Stats.CountAt(static_cast<int32_t>(r), static_cast<int32_t>(c))) + '\n';
        }
    }
    return out;
}
