// Turns a filter's syntax tree into its compiled node tree: resolves field names, gives every value a type,
// converts literals to the type they are compared with (a date text against a date-time field, a severity
// text against note_severity), folds constant parts, and picks the fast node for "field op constant".
// Internal to the filter language; raises EFilterExpressionError with the position of the offending part.
#pragma once

#include "core/FilterNodes.h"
#include "core/FilterParser.h"

#include <string>
#include <string_view>

namespace FilterLanguage {

TBoolPtr BindFilterCondition(const TFilterAst& root);

enum class TVType { Bool, Number, DateTime, Text };

// A bound value: exactly one of B, N, S is set according to Type. Constants also keep their value.
struct TTyped {
    TVType Type = TVType::Number;
    TBoolPtr B;
    TNumPtr N;
    TStrPtr S;
    bool IsField = false;
    TNoticeField Field = nf_nb_internal_key;
    bool IsConst = false;
    double Num = 0;
    std::string Str;
    int Line = 1;
    int Column = 1;
};

// Shared by the two halves of the binder (FilterBinder.cpp: values; FilterConditions.cpp: conditions).
TTyped BindValue(const TFilterAst& ast, const TTyped* comparedWith = nullptr);
TTyped BindCondition(const TFilterAst& ast);
// The number (1 to 4) of a severity name in any letter case, or 0 when the text names none.
int SeverityNumber(std::string_view text);
TTyped NumConst(double value, TVType type, int line, int column);
TTyped StrConst(std::string value, const TFilterAst& at);
// Converts a value to text (numbers and dates are shown as the grid shows them); a condition is an error.
TTyped ToText(TTyped v);
// Accepts numbers and date-times as they are and converts a constant text to a date-time.
TTyped ToDateTime(TTyped v);
TTyped ToNumber(TTyped v);
// A decimal number, blanks around it allowed.
bool TryTextToNumber(const std::string& text, double& value);
// A date text: ISO 8601 (date, optional time after 'T' or a blank) or the locale's short date and time.
bool ParseFilterDate(const std::string& text, double& value);
std::string TypeName(TVType type);
[[noreturn]] void ThrowAt(const std::string& what, const TTyped& at);

} // namespace FilterLanguage
