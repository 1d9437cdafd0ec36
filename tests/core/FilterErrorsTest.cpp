// What the filter language says about bad texts, and that deep or huge texts neither crash nor hang it
// (arbitrary texts: the FilterExpression fuzz target).
#include "core/FilterExpression.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

std::string ErrorOf(const std::string& expr) {
    try {
        CompileFilterExpression(expr);
    } catch (const EFilterExpressionError& e) {
        return e.Message();
    }
    return "no error";
}

std::string Repeat(const std::string& s, size_t n) {
    std::string out;
    out.reserve(s.size() * n);
    for (size_t i = 0; i < n; ++i)
        out += s;
    return out;
}

} // namespace

TEST(FilterErrors, MessagesNameTheProblemTheTokenAndThePlace) {
    for (const auto& [text, message] : std::initializer_list<std::pair<std::string, std::string>>{
             {"( note_severity >= 3 )\r\nAND ( note_sumary = 'x' )",
              "Unknown field name 'note_sumary' at line 2, column 7"},
             {"(  =  )", "Expected a field name or a value but found '=' at line 1, column 4"},
             {"( note_count = 1", "Expected ')' but found end of text at line 1, column 17"},
             {"note_count = 1 )",
              "Expected AND, OR or the end of the filter but found ')' at line 1, column 16"},
             {"note_count = 1 AND",
              "Expected a field name or a value but found end of text at line 1, column 19"},
             {"note_summary = 'abc", "Unterminated text literal at line 1, column 16"},
             {"note_count = 1 &\x01", "Unexpected character '&' at line 1, column 16"},
             {"note_count = \x01", "Unexpected character '\\x01' at line 1, column 14"},
             {"[note_count = 1", "Unterminated field name in brackets at line 1, column 1"},
             {"ack_date IS 1", "Expected NULL after IS but found '1' at line 1, column 13"},
             {"note_count = 1 note_count",
              "Expected AND, OR or the end of the filter but found 'note_count' at line 1, column 16"},
             {"AND note_count = 1", "Expected a field name or a value but found 'AND' at line 1, column 1"},
         })
        EXPECT_EQ(ErrorOf(text), message) << text;
}

TEST(FilterErrors, TypeAndNameProblemsPointAtTheirPart) {
    for (const auto& [text, message] : std::initializer_list<std::pair<std::string, std::string>>{
             {"note_summary = 5", "Cannot compare text with a number at line 1, column 14"},
             {"note_count = note_summary", "Cannot compare text with a number at line 1, column 12"},
             {"\n  note_raised_date >= 'someday'", "Invalid date 'someday' at line 2, column 23"},
             {"note_severity = 'Severe'",
              "'Severe' is not a severity (Normal, Warning, Fatal or Critical) at line 1, column 17"},
             {"( note_raised_date >= 21/11/2026 )", "Cannot compare a date-time with a number (write a date "
                                                    "in quotes, as '2026-11-21') at line 1, column 20"},
             {"FOO(note_count) = 1", "Unknown function 'FOO' at line 1, column 1"},
             {"SUBSTRING(note_summary) = 'a'",
              "Function SUBSTRING takes 2 or 3 arguments, not 1 at line 1, column 1"},
             {"GETDATE(1) > note_raised_date",
              "Function GETDATE takes 0 arguments, not 1 at line 1, column 1"},
             {"note_count + 1", "A filter needs a condition (a comparison, IS NULL, LIKE or IN), not a "
                                "number at line 1, column 12"},
             {"note_count = 1 AND note_summary",
              "AND needs a condition (a comparison, IS NULL, LIKE or IN), not text at line 1, column 20"},
             {"(note_count = 1) = (note_count = 2)",
              "A condition cannot be compared with '=' at line 1, column 18"},
             {"note_summary + 1 = 'a'", "Operator '+' cannot combine text and a number at line 1, column 14"},
             {"note_count = " + std::string(400, '9'),
              "Invalid number '9999999999999999999999999999999999999999...' at line 1, column 14"},
             {"[\x01\xff] = 1", "Unknown field name '\\x01\\xFF' at line 1, column 1"},
         })
        EXPECT_EQ(ErrorOf(text), message) << text;
}

TEST(FilterErrors, DeepNestingIsRefusedWithAClearMessage) {
    const std::string deep = Repeat("(", 100000) + "note_count = 1" + Repeat(")", 100000);
    EXPECT_EQ(ErrorOf(deep).substr(0, 46), "Expression nested too deeply (more than 256 le");
    EXPECT_NE(ErrorOf(Repeat("NOT ", 100000) + "note_count = 1"), "no error");
    EXPECT_NE(ErrorOf("note_count = " + Repeat("-", 100000) + "1"), "no error");
    EXPECT_NE(ErrorOf("note_count = 1" + Repeat(" + 1", 100000)), "no error");
    EXPECT_NE(ErrorOf(Repeat("UPPER(", 100000)), "no error");
    EXPECT_EQ(ErrorOf(Repeat("(", 200) + "note_count = 1" + Repeat(")", 200)), "no error");
}

TEST(FilterErrors, LongFlatFiltersCompile) {
    // A million characters of OR-ed lines: flat, so no depth limit applies.
    const std::string text = "note_count = -1" + Repeat("\r\nOR ( note_summary LIKE '%x%' )", 35000);
    ASSERT_GT(text.size(), 1000000u);
    auto filter = CompileFilterExpression(text);
    TNoticeRecord row;
    row.SetString(nf_note_summary, "axb");
    EXPECT_TRUE(filter->Accept(row));
    EXPECT_EQ(ErrorOf("note_summary = '" + std::string(1000000, 'x') + "'"), "no error");
}
