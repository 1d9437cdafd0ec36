#include "core/FilterLexer.h"

#include "core/FilterExpression.h"
#include "support/StrUtils.h"

#include <cstdio>

namespace FilterLanguage {

namespace {

bool IsNameStart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}
bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsNameChar(char c) {
    return IsNameStart(c) || IsDigit(c);
}
bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v';
}

} // namespace

std::string PrintableFilterText(std::string_view s) {
    constexpr size_t MaxShown = 40;
    std::string out;
    for (size_t i = 0; i < s.size() && i < MaxShown; ++i) {
        const unsigned char c = static_cast<unsigned char>(s[i]);
        if (c < ' ' || c >= 127) {
            char buf[8];
            std::snprintf(buf, sizeof buf, "\\x%02X", c);
            out += buf;
        } else {
            out += static_cast<char>(c);
        }
    }
    if (s.size() > MaxShown) out += "...";
    return out;
}

namespace {

std::string Printable(std::string_view s) {
    return PrintableFilterText(s);
}

} // namespace

bool TFilterToken::IsKeyword(const char* keyword) const {
    return Kind == TFilterTokenKind::Name && SameText(Text, keyword);
}

std::string DescribeFilterToken(const TFilterToken& token) {
    switch (token.Kind) {
    case TFilterTokenKind::End:
        return "end of text";
    case TFilterTokenKind::Text:
        return "text '" + Printable(ReplaceAll(token.Text, "'", "''")) + "'";
    case TFilterTokenKind::BracketName:
        return "'[" + Printable(token.Text) + "]'";
    default:
        return "'" + Printable(token.Text) + "'";
    }
}

void ThrowFilterError(const std::string& what, int line, int column) {
    throw EFilterExpressionError(what + " at line " + std::to_string(line) + ", column " +
                                 std::to_string(column));
}

void TFilterLexer::Advance() {
    const char c = FText[FPos++];
    // CR LF, CR and LF each end a line.
    if (c == '\n' || (c == '\r' && (FPos >= FText.size() || FText[FPos] != '\n'))) {
        ++FLine;
        FColumn = 1;
    } else {
        ++FColumn;
    }
}

void TFilterLexer::SkipBlanks() {
    while (FPos < FText.size() && IsBlank(FText[FPos]))
        Advance();
}

TFilterToken TFilterLexer::Next() {
    const int previousEnd = FLine;
    SkipBlanks();
    TFilterToken tok;
    tok.FirstOnLine = FLine > previousEnd;
    tok.Line = FLine;
    tok.Column = FColumn;
    if (FPos >= FText.size()) return tok;
    const char c = FText[FPos];
    const size_t start = FPos;
    if (IsNameStart(c)) {
        while (FPos < FText.size() && IsNameChar(FText[FPos]))
            Advance();
        tok.Kind = TFilterTokenKind::Name;
        tok.Text.assign(FText.substr(start, FPos - start));
    } else if (IsDigit(c) || (c == '.' && FPos + 1 < FText.size() && IsDigit(FText[FPos + 1]))) {
        while (FPos < FText.size() && IsDigit(FText[FPos]))
            Advance();
        if (FPos < FText.size() && FText[FPos] == '.') {
            Advance();
            while (FPos < FText.size() && IsDigit(FText[FPos]))
                Advance();
        }
        if (FPos + 1 < FText.size() && (FText[FPos] == 'e' || FText[FPos] == 'E')) {
            size_t k = FPos + 1;
            if (k < FText.size() && (FText[k] == '+' || FText[k] == '-')) ++k;
            if (k < FText.size() && IsDigit(FText[k])) {
                while (FPos < k)
                    Advance();
                while (FPos < FText.size() && IsDigit(FText[FPos]))
                    Advance();
            }
        }
        tok.Kind = TFilterTokenKind::Number;
        tok.Text.assign(FText.substr(start, FPos - start));
    } else if (c == '\'') {
        Advance();
        tok.Kind = TFilterTokenKind::Text;
        for (;;) {
            if (FPos >= FText.size()) ThrowFilterError("Unterminated text literal", tok.Line, tok.Column);
            if (FText[FPos] == '\'') {
                Advance();
                if (FPos < FText.size() && FText[FPos] == '\'') {
                    tok.Text += '\'';
                    Advance();
                    continue;
                }
                break;
            }
            tok.Text += FText[FPos];
            Advance();
        }
    } else if (c == '[') {
        Advance();
        const size_t nameStart = FPos;
        while (FPos < FText.size() && FText[FPos] != ']' && FText[FPos] != '\n' && FText[FPos] != '\r')
            Advance();
        if (FPos >= FText.size() || FText[FPos] != ']')
            ThrowFilterError("Unterminated field name in brackets", tok.Line, tok.Column);
        tok.Kind = TFilterTokenKind::BracketName;
        tok.Text.assign(FText.substr(nameStart, FPos - nameStart));
        Advance();
    } else {
        static const char* const TwoByte[] = {"<=", ">=", "<>", "!="};
        for (const char* s : TwoByte) {
            if (FText.substr(FPos, 2) == s) {
                Advance();
                Advance();
                tok.Kind = TFilterTokenKind::Symbol;
                tok.Text = s[0] == '!' ? "<>" : s;
                return tok;
            }
        }
        if (std::string_view("=<>+-*/(),").find(c) == std::string_view::npos)
            ThrowFilterError("Unexpected character '" + Printable(FText.substr(FPos, 1)) + "'", tok.Line,
                             tok.Column);
        Advance();
        tok.Kind = TFilterTokenKind::Symbol;
        tok.Text.assign(1, c);
    }
    return tok;
}

} // namespace FilterLanguage
