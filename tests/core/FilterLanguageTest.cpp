// The filter language on the expressions the filter editor writes and on hand-typed ones.
#include "core/FilterExpression.h"
#include "core/FilterLike.h"
#include "support/DateUtils.h"

#include <gtest/gtest.h>

namespace {

TNoticeRecord Notice(int severity, const char* source, const char* summary) {
    TNoticeRecord r;
    r.SetInteger(nf_nb_internal_key, 7);
    r.SetString(nf_adpt_source_id, source);
    r.SetString(nf_adpt_source_type, "DuskMere");
    r.SetString(nf_note_summary, summary);
    r.SetInteger(nf_note_severity, severity);
    r.SetInteger(nf_note_count, 3);
    r.SetDateTime(nf_note_raised_date, EncodeDateTime(2026, 11, 21, 10, 30, 15, 0));
    r.SetDateTime(nf_note_last_raised_date, EncodeDateTime(2026, 11, 22, 8, 0, 0, 0));
    return r;
}

bool Passes(const std::string& expr, const TNoticeRecord& row) {
    return CompileFilterExpression(expr)->Accept(row);
}

void ExpectEach(const TNoticeRecord& row, bool accepted, std::initializer_list<std::string> exprs) {
    for (const std::string& expr : exprs)
        EXPECT_EQ(Passes(expr, row), accepted) << expr;
}

} // namespace

TEST(FilterLanguage, EditorLinesJoinedByLineBreaks) {
    const TNoticeRecord row = Notice(3, "ABC", "Disk full on /var");
    // Lines whose boolean operator is empty or a bare NOT join the line before with AND.
    ExpectEach(row, true,
               {"( note_severity >= 3 )\r\nAND ( adpt_source_id = 'ABC' )",
                "NOT ( note_severity = 1 )\r\nAND NOT ( ack_date IS NOT NULL  )",
                "((( note_summary LIKE '%full%' )))", "( note_severity IN 2,3 )\nOR ( note_count < 0 )",
                "( adpt_source_id IN 'XYZ','ABC' )",
                "( note_count <> 4 )\rAND ( note_count > 2 )\nAND ( note_count <= 3 )",
                "( note_count = 3 )\r\n( note_severity = 3 )",
                "( note_count = 1 )\r\nOR ( note_count = 3 )\r\nNOT ( note_severity = 1 )"});
    ExpectEach(row, false,
               {"( note_severity >= 4 )\r\nOR NOT ( adpt_source_id = 'ABC' )",
                "( note_count = 3 )\r\n( note_severity = 1 )",
                "( note_count = 3 )\r\nNOT ( note_severity = 3 )"});
    EXPECT_THROW(CompileFilterExpression("( note_count = 3 ) ( note_severity = 3 )"), EFilterExpressionError);
}

TEST(FilterLanguage, KeywordsNamesAndBlanksInAnyForm) {
    const TNoticeRecord row = Notice(2, "ABC", "x");
    ExpectEach(row, true,
               {"Note_Severity = 2 and NOT [note_summary] like 'y%' Or 1 = 0", "\t[NOTE_COUNT]\n=\n3",
                "ack_date is null AND note_text Is Not Null OR note_count in (3)",
                "   " /* a blank text is no condition */});
}

TEST(FilterLanguage, TextComparisonIsCaseSensitiveAndByteOrdered) {
    const TNoticeRecord row = Notice(1, "ABC", "Disk");
    EXPECT_FALSE(Passes("adpt_source_id = 'abc'", row));
    ExpectEach(row, true,
               {"adpt_source_id < 'ABD' AND adpt_source_id > 'AB'",
                "UPPER(note_summary) = 'DISK' AND LOWER(adpt_source_id) = 'abc'",
                "adpt_source_id = 'AB' + 'C'"});
}

TEST(FilterLanguage, QuotedTextIsADateForDateTimeFields) {
    TFormatSettingsGuard guard;
    FormatSettings().ShortDateFormat = "dd/mm/yyyy";
    FormatSettings().DateSeparator = '/';
    const TNoticeRecord row = Notice(1, "A", "s");
    ExpectEach(row, true,
               {"note_raised_date >= '2026-11-21' AND note_raised_date < '2026-11-22'",
                "note_raised_date = '2026-11-21T10:30:15'", "note_raised_date > '2026-11-21 10:30'",
                "note_raised_date >= '21/11/2026 10:30' AND note_raised_date < '22/11/2026'",
                "note_last_raised_date > note_raised_date",
                "note_raised_date IN ('2026-11-21T10:30:15', '2020-01-01')"});
    EXPECT_THROW(CompileFilterExpression("note_raised_date > '2026-13-01'"), EFilterExpressionError);
    EXPECT_THROW(CompileFilterExpression("note_raised_date > 'soon'"), EFilterExpressionError);
}

TEST(FilterLanguage, SeverityTextsCompareAsTheirNumbers) {
    const TNoticeRecord fatal = Notice(3, "A", "s");
    const TNoticeRecord warning = Notice(2, "A", "s");
    // The line editor stores the value bare; LIKE sees the severity as its text.
    ExpectEach(fatal, true,
               {"note_severity = 'Fatal'", "note_severity >= 'Fatal'", "'Critical' > note_severity",
                "( note_severity = Fatal )", "note_severity = '3'", "note_severity LIKE 'Fat%'",
                "( note_severity LIKE Fatal )"});
    EXPECT_FALSE(Passes("note_severity >= 'Fatal'", warning));
    EXPECT_TRUE(Passes("note_severity IN ('Warning', 'Critical')", warning));
    EXPECT_THROW(CompileFilterExpression("note_severity = 'Severe'"), EFilterExpressionError);
    EXPECT_THROW(CompileFilterExpression("note_count = 'Fatal'"), EFilterExpressionError);
}

TEST(FilterLanguage, NullsFollowThreeValuedLogic) {
    TNoticeRecord row = Notice(2, "A", "s"); // ack_date, note_text, del_code null
    row.SetString(nf_ack_code, "");
    ExpectEach(row, false,
               {"ack_date > '2000-01-01'", "NOT (ack_date > '2000-01-01')", "ack_date = ack_date",
                "ack_date > '2000-01-01' AND note_count = 3",
                "NOT (ack_date > '2000-01-01' OR note_count = 4)", "del_code LIKE '%'",
                "del_code NOT LIKE 'x%'", "del_code IN ('a') OR del_code NOT IN ('a')"});
    ExpectEach(row, true,
               {"ack_date > '2000-01-01' OR note_count = 3",
                "ack_date IS NULL AND del_code IS NULL AND ack_code IS NOT NULL",
                "ack_code = ''" /* an empty text is not null */,
                "UPPER(del_code) IS NULL AND note_count / 0 IS NULL"});
}

TEST(FilterLanguage, LikeShapes) {
    const TNoticeRecord row = Notice(1, "A", "Disk full on /var");
    for (const char* yes : {"Disk full on /var", "Disk%", "%/var", "%full%", "Disk%var", "D_sk%", "%f_ll%o%",
                            "%", "%%", "Disk full on /va_", "D%k%l%r"})
        EXPECT_TRUE(Passes(std::string("note_summary LIKE '") + yes + "'", row)) << yes;
    for (const char* no : {"disk%", "%/va", "Disk", "%fill%", "Disk%x%var", "_", "Disk full on /var_"})
        EXPECT_FALSE(Passes(std::string("note_summary LIKE '") + no + "'", row)) << no;
    EXPECT_TRUE(Passes("note_summary NOT LIKE '%error%'", row));
    TNoticeRecord utf = Notice(1, "A", "Caf\xC3\xA9");
    EXPECT_TRUE(Passes("note_summary LIKE 'Caf_'", utf)) << "'_' stands for one character";
    EXPECT_TRUE(Passes("note_summary LIKE adpt_source_type OR note_summary LIKE SUBSTRING('%af%', 1)", utf));
}

TEST(FilterLanguage, ArithmeticAndFunctions) {
    TFormatSettingsGuard guard;
    const TNoticeRecord row = Notice(1, "  padded  ", "Disk full");
    ExpectEach(row, true,
               {"note_count * 2 + 1 = 7 AND -note_count = 0 - 3 AND note_count / 2 = 1.5",
                "note_count / (note_severity - 1) IS NULL" /* division by zero is null */,
                "note_raised_date + 1 > '2026-11-22' AND note_last_raised_date - note_raised_date < 1",
                "TRIM(adpt_source_id) = 'padded' AND TRIMLEFT(adpt_source_id) = 'padded  '",
                "TRIMRIGHT(adpt_source_id) = '  padded'",
                "SUBSTRING(note_summary, 6) = 'full' AND SUBSTRING(note_summary, 1, 4) = 'Disk'",
                "SUBSTRING(note_summary, 0, 2) = 'D' AND SUBSTRING(note_summary, 50) = ''",
                "YEAR(note_raised_date) = 2026 AND MONTH(note_raised_date) = 11 AND "
                "DAY(note_raised_date) = 21 AND HOUR(note_raised_date) = 10 AND "
                "MINUTE(note_raised_date) = 30 AND SECOND(note_raised_date) = 15",
                "DATE(note_raised_date) = '2026-11-21' AND TIME(note_raised_date) > '10:00'",
                "note_raised_date < GETDATE() + 36500 AND YEAR('2001-02-03') = 2001"});
}

TEST(FilterLanguage, InLists) {
    const TNoticeRecord row = Notice(2, "B", "s");
    EXPECT_TRUE(Passes("adpt_source_id IN ('A', 'B', 'C')", row));
    EXPECT_FALSE(Passes("adpt_source_id NOT IN ('A', 'B')", row));
    EXPECT_TRUE(Passes("note_count IN (1, 2, 3) AND note_severity NOT IN (1)", row));
    EXPECT_TRUE(Passes("'B' IN (adpt_source_type, adpt_source_id)", row)) << "items need not be constants";
    EXPECT_THROW(CompileFilterExpression("adpt_source_id IN (1, 2)"), EFilterExpressionError);
}

TEST(FilterLanguage, LikeBacktracksOnlyToTheLastPercent) {
    // A naive matcher takes exponential time here; ours at most text length x pattern length.
    TNoticeRecord row;
    row.SetString(nf_note_text, std::string(20000, 'a'));
    EXPECT_FALSE(Passes("note_text LIKE '%a%a%a%a%a%a%a%a%a%a%a%a%b'", row));
    EXPECT_TRUE(Passes("note_text LIKE '%a%a%a%a%a%a%a%a%a%a%a%a_'", row));
}

TEST(FilterLanguage, ContainsFindsPartsAtEveryPlace) {
    // Parts at every offset of texts longer and shorter than one search block, and near misses.
    for (size_t len : {3u, 15u, 16u, 17u, 20u, 31u, 32u, 33u, 47u, 100u}) {
        for (size_t at = 0; at + 3 <= len; ++at) {
            std::string text(len, '.');
            text.replace(at, 3, "f-l");
            EXPECT_TRUE(FilterLanguage::ContainsText(text, "f-l")) << len << " " << at;
            EXPECT_FALSE(FilterLanguage::ContainsText(text, "f_l")) << len << " " << at;
            text[at + 1] = '+';
            EXPECT_FALSE(FilterLanguage::ContainsText(text, "f-l")) << len << " " << at;
        }
        EXPECT_TRUE(FilterLanguage::ContainsText(std::string(len, 'a'), "a"));
        EXPECT_TRUE(FilterLanguage::ContainsText(std::string(len, 'a'), ""));
    }
}

TEST(FilterLanguage, LongPartsOfLongTextsAreFoundInLinearTime) {
    TNoticeRecord row;
    row.SetString(nf_note_text, std::string(2000000, 'a'));
    EXPECT_FALSE(Passes("note_text LIKE '%" + std::string(1000000, 'a') + "b%'", row));
    EXPECT_TRUE(Passes("note_text LIKE '%" + std::string(1000000, 'a') + "%'", row));
}

TEST(FilterLanguage, EmptiedTextValueAfterIsNullIsIgnored) {
    TNoticeRecord row = Notice(2, "A", "s"); // del_code null
    EXPECT_TRUE(Passes("( del_code IS NULL '' )\r\nAND ( note_summary IS NOT NULL '' )", row));
    EXPECT_FALSE(Passes("( note_summary IS NULL '' )", row));
    EXPECT_THROW(CompileFilterExpression("del_code IS NULL 'x'"), EFilterExpressionError);
}
