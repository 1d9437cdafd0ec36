// Splits a filter text into tokens, one at a time, keeping the line and column of each for messages.
// Owned by the parser that drives it; reads the text it was given, which must outlive it.
#pragma once

#include <string>
#include <string_view>

namespace FilterLanguage {

enum class TFilterTokenKind { End, Name, BracketName, Text, Number, Symbol };

struct TFilterToken {
    TFilterTokenKind Kind = TFilterTokenKind::End;
    std::string Text; // name, unquoted text literal, number as written, or the symbol ("<=", "(", ...)
    int Line = 1;
    int Column = 1;
    bool FirstOnLine = false; // a line break separates it from the token before

    bool Is(const char* symbol) const { return Kind == TFilterTokenKind::Symbol && Text == symbol; }
    // True for a plain name equal to keyword in any letter case.
    bool IsKeyword(const char* keyword) const;
};

// Arbitrary bytes as they may appear in a message: control and non-ASCII bytes as \xNN, cut after 40.
std::string PrintableFilterText(std::string_view s);

// How a token is shown in a message: "'AND'", "end of text", a text literal with its quotes.
std::string DescribeFilterToken(const TFilterToken& token);

// Raises EFilterExpressionError with what + " at line L, column C".
[[noreturn]] void ThrowFilterError(const std::string& what, int line, int column);

class TFilterLexer {
public:
    explicit TFilterLexer(std::string_view text) : FText(text) {}
    // The next token; raises EFilterExpressionError for a character that starts none, or an unterminated
    // text literal or bracketed name.
    TFilterToken Next();

private:
    void SkipBlanks();
    void Advance(); // one byte, keeping line and column

    std::string_view FText;
    size_t FPos = 0;
    int FLine = 1;
    int FColumn = 1;
};

} // namespace FilterLanguage
