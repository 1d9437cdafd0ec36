#include "core/FilterExpression.h"
#include "support/DateUtils.h"

#include <gtest/gtest.h>

namespace {

TNoticeRecord Notice(int severity, const char* source, const char* summary) {
    TNoticeRecord r;
    r.SetInteger(nf_nb_internal_key, 7);
    r.SetString(nf_adpt_source_id, source);
    r.SetString(nf_note_summary, summary);
    r.SetInteger(nf_note_severity, severity);
    r.SetInteger(nf_note_count, 3);
    r.SetDateTime(nf_note_raised_date, EncodeDateTime(2026, 11, 21, 10, 30, 0, 0));
    return r;
}

bool Passes(const std::string& expr, const TNoticeRecord& row) {
    return CompileFilterExpression(expr)->Accept(row);
}

std::string ErrorOf(const std::string& expr) {
    try {
        CompileFilterExpression(expr);
    } catch (const EFilterExpressionError& e) {
        return e.Message();
    }
    return "no error";
}

} // namespace

TEST(FilterLanguage, EditorLinesJoinedByLineBreaks) {
    const TNoticeRecord row = Notice(3, "ABC", "Disk full on /var");
    EXPECT_TRUE(Passes("( note_severity >= 3 )\r\nAND ( adpt_source_id = 'ABC' )", row));
    EXPECT_FALSE(Passes("( note_severity >= 4 )\r\nOR NOT ( adpt_source_id = 'ABC' )", row));
    EXPECT_TRUE(Passes("NOT ( note_severity = 1 )\r\nAND NOT ( ack_date IS NOT NULL  )", row));
    EXPECT_TRUE(Passes("((( note_summary LIKE '%full%' )))", row));
    EXPECT_TRUE(Passes("( note_severity IN 2,3 )", row));
}

TEST(FilterLanguage, SmokeErrors) {
    EXPECT_EQ(ErrorOf("( note_severity >= 3 )\nAND ( note_sumary = 'x' )"),
              "Unknown field name 'note_sumary' at line 2, column 7");
    EXPECT_EQ(ErrorOf("(  =  )"), "Expected a field name or a value but found '=' at line 1, column 4");
}
