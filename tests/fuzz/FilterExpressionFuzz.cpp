// The filter language on any text: compiling may raise EFilterExpressionError and nothing else; a compiled
// filter answers for every row without throwing, and answers the same however often and in whatever order
// rows are asked (it keeps scratch buffers between rows).
#include "FuzzSupport.h"

#include "core/FilterExpression.h"
#include "support/DateUtils.h"
#include "support/StrUtils.h"

#include <string>
#include <vector>

namespace {

// A handful of rows covering every field kind: nulls, empty and long texts, texts with quotes, wildcard and
// non-ASCII bytes, dates at the edges, extreme integers.
std::vector<TNoticeRecord> Rows() {
    std::vector<TNoticeRecord> rows;
    TNoticeRecord full;
    full.SetInteger(nf_nb_internal_key, 1);
    full.SetString(nf_adpt_id, "DEMO");
    full.SetString(nf_adpt_orig_key, "db01/tablespace/USERS");
    full.SetString(nf_adpt_orig_server, "db01");
    full.SetString(nf_adpt_source_type, "R/Vista");
    full.SetString(nf_adpt_source_id, "TS_FULL");
    full.SetString(nf_note_summary, "Tablespace USERS is 91% full");
    full.SetString(nf_note_text, "9% free space left.\r\nConsider adding a data file.");
    full.SetDateTime(nf_note_raised_date, EncodeDateTime(2026, 11, 21, 8, 15, 0, 0));
    full.SetDateTime(nf_note_last_raised_date, EncodeDateTime(2026, 11, 21, 9, 0, 0, 0));
    full.SetInteger(nf_note_count, 3);
    full.SetInteger(nf_note_severity, 2);
    full.SetString(nf_note_severity_str, "Warning");
    full.SetString(nf_note_group_notified, "DBA");
    full.SetString(nf_note_pvo_node, "Node1");
    full.SetDateTime(nf_ack_date, EncodeDateTime(2026, 11, 22, 0, 0, 0, 0));
    full.SetString(nf_ack_code, "A-17");
    full.SetString(nf_del_code, "D-17");
    rows.push_back(full);

    rows.emplace_back(); // every field null

    TNoticeRecord odd;
    odd.SetInteger(nf_nb_internal_key, 2147483647);
    odd.SetString(nf_adpt_orig_key, "");
    odd.SetString(nf_note_summary, "it's 100%_done [x] \xc3\x84rger \xff");
    odd.SetString(nf_note_text, std::string(3000, 'x') + "%" + std::string(1, '\0') + "tail");
    odd.SetDateTime(nf_note_raised_date, -693593.0);        // 1 January 0001
    odd.SetDateTime(nf_note_last_raised_date, 2958465.999); // 31 December 9999
    odd.SetInteger(nf_note_count, -2147483647 - 1);
    odd.SetInteger(nf_note_severity, 9);
    odd.SetString(nf_note_severity_str, "critical");
    odd.SetString(nf_note_pvo_node, "   ");
    rows.push_back(odd);

    TNoticeRecord zero;
    zero.SetInteger(nf_nb_internal_key, 0);
    zero.SetInteger(nf_note_count, 0);
    zero.SetInteger(nf_note_severity, 0);
    zero.SetDateTime(nf_note_raised_date, 0.0);
    zero.SetString(nf_note_summary, "0");
    rows.push_back(zero);
    return rows;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* Data, size_t Size) {
    static const std::vector<TNoticeRecord> rows = Rows();
    const std::string text(InputText(Data, Size));
    std::unique_ptr<IRowFilter> filter;
    try {
        filter = CompileFilterExpression(text);
    } catch (const EFilterExpressionError&) {
        return 0;
    }
    FUZZ_CHECK(filter != nullptr, "compiled to nothing");
    std::vector<bool> first;
    for (const TNoticeRecord& row : rows)
        first.push_back(filter->Accept(row));
    filter->ReadsText();
    // GETDATE reads the clock, so only a filter without it must answer the same a second time.
    if (FindText(text, "getdate") != std::string::npos) return 0;
    for (size_t i = rows.size(); i-- > 0;)
        FUZZ_CHECK(filter->Accept(rows[i]) == first[i], "row " + std::to_string(i) + " answered differently");
    return 0;
}
