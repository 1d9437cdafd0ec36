#include "core/Znb_const.h"

#include "support/StrUtils.h"

using enum TFieldType;

const nbColumn_array NoticeBdColumnArray = {{
    {"nb_internal_key", "Key", 0, ftAutoInc, 0, false, nf_nb_internal_key},
    {"adpt_id", "Adapter ID", 32, ftString, 0, false, nf_adpt_id},
    {"adpt_orig_key", "Originator Key", 256, ftString, 25, false, nf_adpt_orig_key},
    {"adpt_orig_server", "Server", 64, ftString, 25, false, nf_adpt_orig_server},
    {"adpt_source_type", "Source Type", 32, ftString, 70, false, nf_adpt_source_type},
    {"adpt_source_id", "Source ID", 32, ftString, 50, true, nf_adpt_source_id},
    {"note_summary", "Summary", 128, ftString, 100, true, nf_note_summary},
    {"note_text", "Details", 20, ftMemo, 90, false, nf_note_text},
    {"note_raised_date", "Date Raised", 0, ftDateTime, 30, true, nf_note_raised_date},
    {"note_last_raised_date", "Last Raised", 0, ftDateTime, 30, false, nf_note_last_raised_date},
    {"note_count", "Count", 0, ftInteger, 10, true, nf_note_count},
    {"note_severity", "Severity", 0, ftInteger, 10, true, nf_note_severity},
    {"note_severity_str", "Severity String", 20, ftString, 20, false, nf_note_severity_str},
    {"note_group_notified", "Group Notified", 32, ftString, 20, false, nf_note_group_notified},
    {"note_pvo_node", "PVO Node", 32, ftString, 20, false, nf_note_pvo_node},
    {"ack_date", "Date Acknowledged", 0, ftDateTime, 30, false, nf_ack_date},
    {"ack_code", "Ack Code", 32, ftString, 15, false, nf_ack_code},
    {"del_code", "Del Code", 64, ftString, 50, false, nf_del_code},
}};

const std::array<std::string, 4> SeverityStrings = {"Normal", "Warning", "Fatal", "Critical"};

namespace {

struct TFieldInfo {
    const char* Name;
    TFieldType Type;
};

// Store order.
constexpr TFieldInfo Fields[NoticeFieldCount] = {
    {"nb_internal_key", ftAutoInc},
    {"adpt_id", ftString},
    {"adpt_orig_key", ftString},
    {"adpt_orig_server", ftString},
    {"adpt_source_type", ftString},
    {"adpt_source_id", ftString},
    {"note_summary", ftString},
    {"note_text", ftMemo},
    {"note_raised_date", ftDateTime},
    {"note_last_raised_date", ftDateTime},
    {"note_count", ftInteger},
    {"note_severity", ftInteger},
    {"note_group_notified", ftString},
    {"note_pvo_node", ftString},
    {"ack_date", ftDateTime},
    {"ack_code", ftString},
    {"del_code", ftString},
    {"note_severity_str", ftString},
};

} // namespace

const char* NoticeFieldName(TNoticeField field) {
    return Fields[field].Name;
}
TFieldType NoticeFieldType(TNoticeField field) {
    return Fields[field].Type;
}

bool FindNoticeField(std::string_view name, TNoticeField& field) {
    for (int i = 0; i < NoticeFieldCount; ++i) {
        if (SameText(name, Fields[i].Name)) {
            field = static_cast<TNoticeField>(i);
            return true;
        }
    }
    return false;
}
