#include "reports/ExportText.h"

namespace {

constexpr char32_t Replacement = 0xFFFD;

bool AllowedAscii(unsigned char c) {
    return c >= 0x20 || c == '\t' || c == '\n' || c == '\r';
}

// Decodes the character at p and moves p past it. An ill-formed sequence gives U+FFFD and p stops at the
// first byte that cannot continue it, so the next call starts there (one U+FFFD per maximal part).
char32_t NextChar(const unsigned char*& p, const unsigned char* end) {
    const unsigned char b0 = *p++;
    if (b0 < 0x80) return AllowedAscii(b0) ? b0 : Replacement;
    int need;
    unsigned char lo = 0x80, hi = 0xBF; // range of the second byte; later bytes are 80..BF
    char32_t cp;
    if (b0 >= 0xC2 && b0 <= 0xDF) {
        need = 1;
        cp = b0 & 0x1F;
    } else if (b0 >= 0xE0 && b0 <= 0xEF) {
        need = 2;
        cp = b0 & 0x0F;
        if (b0 == 0xE0) lo = 0xA0; // no overlong forms
        if (b0 == 0xED) hi = 0x9F; // no surrogates
    } else if (b0 >= 0xF0 && b0 <= 0xF4) {
        need = 3;
        cp = b0 & 0x07;
        if (b0 == 0xF0) lo = 0x90;
        if (b0 == 0xF4) hi = 0x8F; // nothing above U+10FFFF
    } else {
        return Replacement;
    }
    for (int i = 0; i < need; ++i) {
        if (p == end || *p < lo || *p > hi) return Replacement;
        cp = (cp << 6) | (*p++ & 0x3F);
        lo = 0x80;
        hi = 0xBF;
    }
    return cp == 0xFFFE || cp == 0xFFFF ? Replacement : cp;
}

void AppendUtf8(std::string& out, char32_t cp) {
    if (cp < 0x80) {
        out += static_cast<char>(cp);
    } else if (cp < 0x800) {
        out += static_cast<char>(0xC0 | (cp >> 6));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
        out += static_cast<char>(0xE0 | (cp >> 12));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (cp >> 18));
        out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    }
}

bool IsEncodedReplacement(const unsigned char* p, const unsigned char* q) {
    return q - p == 3 && p[0] == 0xEF && p[1] == 0xBF && p[2] == 0xBD;
}

} // namespace

std::string_view CleanCellText(std::string_view Text, std::string& Buffer, size_t MaxUnits) {
    const auto* begin = reinterpret_cast<const unsigned char*>(Text.data());
    const auto* end = begin + Text.size();
    if (Text.size() <= MaxUnits && IsPlainCellText(Text)) return Text;
    // A valid character decodes to exactly the bytes it came from, so the text only changes where a
    // replacement or the cut happens; up to there it is copied as is.
    const unsigned char* p = begin;
    size_t units = 0;
    bool changed = false;
    while (p < end) {
        const unsigned char* start = p;
        const char32_t cp = NextChar(p, end);
        const size_t n = cp >= 0x10000 ? 2 : 1;
        if (units + n > MaxUnits) {
            if (!changed) Buffer.assign(Text.data(), start - begin);
            return Buffer;
        }
        units += n;
        if (!changed && cp == Replacement && !IsEncodedReplacement(start, p)) {
            Buffer.assign(Text.data(), start - begin);
            changed = true;
        }
        if (changed) AppendUtf8(Buffer, cp);
    }
    return changed ? std::string_view(Buffer) : Text;
}

bool CellTextToUtf16(std::string_view Text, std::u16string& Out, size_t MaxUnits) {
    Out.clear();
    const auto* p = reinterpret_cast<const unsigned char*>(Text.data());
    const auto* end = p + Text.size();
    char16_t all = 0;
    while (p < end) {
        const char32_t cp = NextChar(p, end);
        if (cp >= 0x10000) {
            if (Out.size() + 2 > MaxUnits) break;
            Out += static_cast<char16_t>(0xD800 + ((cp - 0x10000) >> 10));
            Out += static_cast<char16_t>(0xDC00 + ((cp - 0x10000) & 0x3FF));
            all |= 0xFF00;
        } else {
            if (Out.size() + 1 > MaxUnits) break;
            Out += static_cast<char16_t>(cp);
            all |= static_cast<char16_t>(cp);
        }
    }
    return (all & 0xFF00) == 0;
}

size_t CellTextChars(std::string_view CleanText) {
    size_t n = 0;
    for (const char ch : CleanText)
        n += (static_cast<unsigned char>(ch) & 0xC0) != 0x80;
    return n;
}
