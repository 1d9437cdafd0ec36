#include "core/Znb_fieldtext.h"

#include "core/Nb_utils.h"
#include "support/StrUtils.h"

namespace {

std::string DateText(TDateTime Value, bool AlwaysTime) {
    if (!AlwaysTime) return FormatDateTime("c", Value);
    const TFormatSettings& fs = FormatSettings();
    return FormatDateTime(fs.ShortDateFormat + " " + fs.LongTimeFormat, Value);
}

std::string Text(const TNoticeRecord& Row, TNoticeField Field, bool Display) {
    if (Row.IsNull(Field)) return {};
    switch (NoticeFieldType(Field)) {
    case TFieldType::ftString:
    case TFieldType::ftMemo:
        return std::string(Row.AsString(Field));
    case TFieldType::ftDateTime:
        return DateText(Row.AsDateTime(Field), Display);
    case TFieldType::ftInteger:
    case TFieldType::ftAutoInc:
        if (Display && Field == nf_note_severity) return Get_Severity_String(Row.AsInteger(Field));
        return IntToStr(Row.AsInteger(Field));
    }
    return {};
}

} // namespace

std::string FieldDisplayText(const TNoticeRecord& Row, TNoticeField Field) {
    return Text(Row, Field, true);
}

std::string FieldAsString(const TNoticeRecord& Row, TNoticeField Field) {
    return Text(Row, Field, false);
}
