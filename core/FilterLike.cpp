#include "core/FilterLike.h"

namespace {

// Length of the character starting at s[i]: one byte, or a whole UTF-8 sequence, so that '_' stands for
// one character of a non-ASCII text.
size_t CharLength(std::string_view s, size_t i) {
    size_t n = 1;
    if (static_cast<unsigned char>(s[i]) >= 0xC0) {
        while (i + n < s.size() && (static_cast<unsigned char>(s[i + n]) & 0xC0) == 0x80)
            ++n;
    }
    return n;
}

} // namespace

bool LikeMatch(std::string_view s, std::string_view p) {
    size_t si = 0, pi = 0;
    size_t starP = std::string_view::npos, starS = 0;
    while (si < s.size()) {
        if (pi < p.size() && p[pi] == '%') {
            starP = ++pi;
            starS = si;
        } else if (pi < p.size() && p[pi] == '_') {
            si += CharLength(s, si);
            ++pi;
        } else if (pi < p.size() && p[pi] == s[si]) {
            ++si;
            ++pi;
        } else if (starP != std::string_view::npos) {
            pi = starP;
            starS += CharLength(s, starS);
            si = starS;
        } else {
            return false;
        }
    }
    while (pi < p.size() && p[pi] == '%')
        ++pi;
    return pi == p.size();
}

TLikePattern::TLikePattern(std::string_view pattern) {
    for (const char c : pattern) {
        if (c == '%' && !FPattern.empty() && FPattern.back() == '%') continue;
        FPattern += c;
    }
    if (FPattern.find('_') != std::string::npos) return;
    const size_t first = FPattern.find('%');
    if (first == std::string::npos) {
        FShape = TShape::Exact;
        FFirst = FPattern;
        return;
    }
    const size_t second = FPattern.find('%', first + 1);
    if (second == std::string::npos) {
        if (first == 0) {
            FShape = TShape::Suffix;
            FFirst = FPattern.substr(1);
        } else if (first == FPattern.size() - 1) {
            FShape = TShape::Prefix;
            FFirst = FPattern.substr(0, first);
        } else {
            FShape = TShape::PrefixSuffix;
            FFirst = FPattern.substr(0, first);
            FSecond = FPattern.substr(first + 1);
        }
        return;
    }
    if (first == 0 && second == FPattern.size() - 1) {
        FShape = TShape::Contains;
        FFirst = FPattern.substr(1, second - 1);
    }
}

bool TLikePattern::Match(std::string_view s) const {
    switch (FShape) {
    case TShape::Exact:
        return s == FFirst;
    case TShape::Prefix:
        return s.starts_with(FFirst);
    case TShape::Suffix:
        return s.ends_with(FFirst);
    case TShape::Contains:
        return s.find(FFirst) != std::string_view::npos;
    case TShape::PrefixSuffix:
        return s.size() >= FFirst.size() + FSecond.size() && s.starts_with(FFirst) && s.ends_with(FSecond);
    case TShape::General:
        break;
    }
    return LikeMatch(s, FPattern);
}
