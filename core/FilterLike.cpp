#include "core/FilterLike.h"

#include <cstring>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace FilterLanguage {

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

constexpr size_t LongNeedle = 32;

#if defined(__SSE2__)
// Candidate positions of needle in the 16 starting at p: its first byte at p + i and its last at p + i + n
// - 1.
inline unsigned Candidates(const char* p, size_t n, __m128i first, __m128i last) {
    const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + n - 1));
    return static_cast<unsigned>(
        _mm_movemask_epi8(_mm_and_si128(_mm_cmpeq_epi8(a, first), _mm_cmpeq_epi8(b, last))));
}

bool Verify(const char* p, unsigned mask, std::string_view needle) {
    while (mask != 0) {
        const unsigned bit = static_cast<unsigned>(__builtin_ctz(mask));
        if (std::memcmp(p + bit + 1, needle.data() + 1, needle.size() - 2) == 0) return true;
        mask &= mask - 1;
    }
    return false;
}
#endif

} // namespace

// A summary is tens of bytes long, so the search is mostly per-call overhead: testing sixteen positions at
// once for the needle's first and last byte leaves little but the final comparison.
bool ContainsText(std::string_view s, std::string_view needle) {
    const size_t n = needle.size();
#if defined(__GLIBC__) || defined(__APPLE__)
    // A long part could make any candidate-by-candidate search quadratic; memmem is linear.
    if (n > LongNeedle) return n <= s.size() && memmem(s.data(), s.size(), needle.data(), n) != nullptr;
#endif
#if defined(__SSE2__)
    if (n >= 2 && s.size() >= n + 15) {
        const __m128i first = _mm_set1_epi8(needle[0]);
        const __m128i last = _mm_set1_epi8(needle[n - 1]);
        const size_t end = s.size() - n + 1; // one past the last possible start
        size_t i = 0;
        for (; i + 16 <= end; i += 16) {
            if (Verify(s.data() + i, Candidates(s.data() + i, n, first, last), needle)) return true;
        }
        if (i == end) return false;
        // The last block ends at the last start; positions already tested are masked off.
        const size_t start = end - 16;
        const unsigned mask = Candidates(s.data() + start, n, first, last) & (0xFFFFu << (i - start));
        return Verify(s.data() + start, mask, needle);
    }
#endif
    return s.find(needle) != std::string_view::npos;
}

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
        return ContainsText(s, FFirst);
    case TShape::PrefixSuffix:
        return s.size() >= FFirst.size() + FSecond.size() && s.starts_with(FFirst) && s.ends_with(FSecond);
    case TShape::General:
        break;
    }
    return LikeMatch(s, FPattern);
}

} // namespace FilterLanguage
