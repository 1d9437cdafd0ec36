#include "support/Zs_strings.h"

#include <utility>

namespace {

constexpr char QuoteChar = '"';
// Until a caller sets one, the delimiter is the quote character itself.
char CurrentDelimiter = QuoteChar;

// The token around index `at` of S, as [begin, end) between delimiters.
std::pair<size_t, size_t> TokenBounds(std::string_view S, size_t at) {
    size_t begin = at;
    while (begin > 0 && S[begin - 1] != CurrentDelimiter)
        --begin;
    size_t end = at;
    while (end < S.size() && S[end] != CurrentDelimiter)
        ++end;
    return {begin, end};
}

} // namespace

bool SetDelimiter(char Ch) {
    if (Ch == '\0') return false;
    CurrentDelimiter = Ch;
    return true;
}

char GetDelimiter() {
    return CurrentDelimiter;
}

int GetTokenPos(std::string_view S, int N) {
    if (S.empty() || N < 1) return 0;
    if (N == 1) return 1;
    int seen = 0;
    for (size_t i = 0; i < S.size(); ++i) {
        if (S[i] == CurrentDelimiter && ++seen == N - 1) return static_cast<int>(i) + 2;
    }
    return 0;
}

std::string GetToken(std::string_view S, int Pos) {
    if (Pos < 1 || static_cast<size_t>(Pos) > S.size()) return {};
    const size_t at = static_cast<size_t>(Pos) - 1;
    if (S[at] == CurrentDelimiter) return {};
    const auto [begin, end] = TokenBounds(S, at);
    return std::string(S.substr(begin, end - begin));
}

bool ReplaceToken(std::string& S, std::string_view Token, int Pos) {
    if (Pos < 1 || static_cast<size_t>(Pos) > S.size()) return false;
    const size_t at = static_cast<size_t>(Pos) - 1;
    if (S[at] == CurrentDelimiter) {
        S.insert(at, Token);
        return true;
    }
    const auto [begin, end] = TokenBounds(S, at);
    S.replace(begin, end - begin, Token);
    return true;
}

void Parse(std::string_view S, std::string_view Delim, int& Index, std::string& Token) {
    if (Index < 1 || static_cast<size_t>(Index) > S.size() || Delim.empty()) {
        Token.clear();
        Index = 0;
        return;
    }
    const size_t start = static_cast<size_t>(Index) - 1;
    bool inQuotes = false;
    for (size_t i = start; i < S.size(); ++i) {
        const char c = S[i];
        if (c == QuoteChar) {
            inQuotes = !inQuotes;
        } else if (!inQuotes && Delim.find(c) != std::string_view::npos) {
            Token.assign(S.substr(start, i - start));
            Index = static_cast<int>(i) + 2;
            return;
        }
    }
    Token.assign(S.substr(start));
    Index = 0;
}

uint32_t HexToInt(std::string_view S) {
    uint32_t result = 0;
    for (const char ch : S) {
        const unsigned char c = static_cast<unsigned char>(ch);
        if (c < '0') continue;
        uint32_t digit;
        if (c <= '9') {
            digit = c - '0';
        } else if (c - 55 <= 15) {
            digit = c - 55u;
        } else {
            break;
        }
        result = (result << 4) + digit;
    }
    return result;
}
