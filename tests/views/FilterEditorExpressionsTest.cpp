// Every filter the line editor can build from sensible values compiles into a filter.
#include "views/Ufilter.h"

#include "core/FilterExpression.h"
#include "core/Znb_const.h"
#include "support/DateUtils.h"

#include <gtest/gtest.h>

#include <random>

namespace {

bool IsTextField(const std::string& name) {
    for (const char* f : {"nb_internal_key", "note_raised_date", "note_last_raised_date", "note_count",
                          "note_severity", "ack_date"})
        if (name == f) return false;
    return true;
}

bool IsDateField(const std::string& name) {
    return name.find("date") != std::string::npos;
}

template <size_t N> const char* Pick(std::mt19937& rng, const char* const (&items)[N]) {
    return items[rng() % N];
}

// The value the line editor stores for an operator and field: text in quotes, the rest bare.
std::string ValueFor(std::mt19937& rng, const std::string& field, const std::string& op) {
    // A text field's value box emptied by choosing IS NULL is stored as ''.
    if (op == "IS NULL" || op == "IS NOT NULL") return IsTextField(field) && rng() % 2 ? "''" : "";
    if (IsTextField(field)) {
        static const char* const texts[] = {"abc", "", "a%", "%x_y%", "db-prod-07"};
        // Typed for IN, a','b becomes the list 'a','b'.
        return std::string("'") + (op == "IN" ? "a','b" : Pick(rng, texts)) + "'";
    }
    if (IsDateField(field)) {
        static const char* const dates[] = {"'2026-11-21'", "'2026-11-21 10:30'", "'21/11/2026'",
                                            "'21/11/2026 08:00:05'", "GETDATE() - 1"};
        return Pick(rng, dates);
    }
    if (op == "IN") return rng() % 2 ? "1,2" : "(3, 4)";
    if (field == "note_severity") {
        static const char* const severities[] = {"3", "Fatal", "'Critical'", "'2'"};
        return Pick(rng, severities);
    }
    return rng() % 2 ? "10" : "2.5";
}

} // namespace

TEST(FilterEditorExpressions, EveryEditorFilterCompiles) {
    TFormatSettingsGuard guard;
    FormatSettings().ShortDateFormat = "dd/mm/yyyy";
    FormatSettings().DateSeparator = '/';
    static const char* const ops[] = {"=", "<>",      ">=",          "<=",   ">",
                                      "<", "IS NULL", "IS NOT NULL", "LIKE", "IN"};
    static const char* const boolops[] = {"", "AND", "OR", "NOT", "AND NOT", "OR NOT"};
    std::mt19937 rng(1121);
    for (int i = 0; i < 2000; ++i) {
        TFilter filter;
        const int lines = 1 + static_cast<int>(rng() % 6);
        int open = 0;
        for (int l = 0; l < lines; ++l) {
            filter.Append();
            if (l == 0 && rng() % 3 == 0) filter.SetFieldByName("boolop", "NOT");
            if (l > 0) filter.SetFieldByName("boolop", Pick(rng, boolops));
            const auto& column = NoticeBdColumnArray[rng() % NoticeBdColumnArray.size()];
            const std::string op = Pick(rng, ops);
            const std::string field = column.FieldName;
            // Parentheses: "((" sometimes opens a group that a later line closes with "))".
            const int extra = l + 1 < lines && rng() % 4 == 0 ? 1 : 0;
            open += extra;
            const int close = l + 1 == lines ? open : (open > 0 && rng() % 2 ? 1 : 0);
            open -= close;
            filter.SetFieldByName("leftPar", std::string(1 + extra, '('));
            filter.SetFieldByName("fieldname", field);
            filter.SetFieldByName("operator", op);
            filter.SetFieldByName("value", ValueFor(rng, field, op));
            filter.SetFieldByName("RightPar", std::string(1 + close, ')'));
        }
        const std::string text = filter.GetFilterString();
        try {
            CompileFilterExpression(text)->Accept(TNoticeRecord());
        } catch (const EFilterExpressionError& e) {
            ADD_FAILURE() << text << "\n" << e.Message();
            break;
        }
    }
}
