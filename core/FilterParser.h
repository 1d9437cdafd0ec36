// The syntax tree of a filter text and the parser that builds it. The tree is untyped: names are not yet
// resolved to fields and literals not yet converted; the binder (FilterExpression.cpp) does that.
// A tree owns its children; its depth never exceeds MaxFilterNesting, so walking it recursively is safe.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace FilterLanguage {

enum class TFilterAstKind {
    Number,  // Text: the number as written
    Text,    // Text: the literal's value
    Name,    // Text: a field name (or a bare word such as a severity text)
    Call,    // Text: the function name; Children: the arguments
    Negate,  // unary minus
    Arith,   // Text: "+", "-", "*" or "/"
    Compare, // Text: "=", "<>", "<", ">", "<=" or ">="
    IsNull,  // Negated for IS NOT NULL
    Like,    // Negated for NOT LIKE; Children: value, pattern
    In,      // Negated for NOT IN; Children: value, then the list
    Not,
    And, // two or more children
    Or,  // two or more children
};

struct TFilterAst {
    TFilterAstKind Kind;
    std::string Text;
    bool Negated = false;
    int Line = 1;
    int Column = 1;
    int Depth = 1;
    std::vector<std::unique_ptr<TFilterAst>> Children;
};

// Parses a whole filter text. Raises EFilterExpressionError naming the problem, the token found and its
// line and column. An empty or blank text gives nullptr (no condition).
std::unique_ptr<TFilterAst> ParseFilterText(std::string_view text);

} // namespace FilterLanguage
