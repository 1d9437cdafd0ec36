// The notice table's fixed vocabulary: the 18 fields (in the store's order), the column table that drives
// the XML mapping, the grid captions, the default display and the filter editor (in its own order), and the
// severity texts.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

enum class TFieldType { ftAutoInc, ftString, ftMemo, ftDateTime, ftInteger };

// Fields in the store's order. The column table lists the same fields, but with note_severity_str as its
// thirteenth entry, while the store keeps it last.
enum TNoticeField : int {
    nf_nb_internal_key,
    nf_adpt_id,
    nf_adpt_orig_key,
    nf_adpt_orig_server,
    nf_adpt_source_type,
    nf_adpt_source_id,
    nf_note_summary,
    nf_note_text,
    nf_note_raised_date,
    nf_note_last_raised_date,
    nf_note_count,
    nf_note_severity,
    nf_note_group_notified,
    nf_note_pvo_node,
    nf_ack_date,
    nf_ack_code,
    nf_del_code,
    nf_note_severity_str,
};
constexpr int NoticeFieldCount = 18;

struct NoticeBdColRec {
    const char* FieldName;
    const char* Caption;
    int32_t Size;
    TFieldType DataType;
    int32_t DefaultWidth;
    bool ShownByDefault;
    TNoticeField Field; // the store field this entry describes
};
using nbColumn_array = std::array<NoticeBdColRec, NoticeFieldCount>;

extern const nbColumn_array NoticeBdColumnArray;

// Indexed from 1 by the severity number: 1 "Normal", 2 "Warning", 3 "Fatal", 4 "Critical". Fatal below
// Critical is intended.
extern const std::array<std::string, 4> SeverityStrings;

// Name and type of a store field.
const char* NoticeFieldName(TNoticeField field);
TFieldType NoticeFieldType(TNoticeField field);

// The store field with that name (any letter case); false when there is none.
bool FindNoticeField(std::string_view name, TNoticeField& field);
