// Cell text as the spreadsheet exports write it. The store holds whatever bytes adapters sent; a file must
// hold text its readers accept, and the same text in every format. So every exported text is cleaned the
// same way: an invalid UTF-8 sequence becomes U+FFFD (one per maximal ill-formed part, as the Unicode
// standard and most decoders count them), and so do the control characters other than tab, line feed and
// carriage return, and the noncharacters U+FFFE and U+FFFF (XML, and so .xlsx, cannot carry them).
// Pure functions; any thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// The most UTF-16 units a spreadsheet cell holds.
constexpr size_t MaxCellUnits = 32767;
constexpr size_t NoUnitLimit = static_cast<size_t>(-1);

// Text as cleaned UTF-8, cut after at most MaxUnits UTF-16 units (never inside a character). Returns Text
// itself when it needs no change, otherwise a view of Buffer, which it overwrites.
std::string_view CleanCellText(std::string_view Text, std::string& Buffer, size_t MaxUnits = NoUnitLimit);

// Text cleaned and converted to UTF-16, cut after at most MaxUnits units (never inside a surrogate pair).
// Out is overwritten. Returns true when every unit is below 0x100 (the text fits 8-bit storage).
bool CellTextToUtf16(std::string_view Text, std::u16string& Out, size_t MaxUnits);

// True when cleaning leaves Text as it is and each byte is one character: printable ASCII, tab, line feed,
// carriage return. The writers' fast path.
inline bool IsPlainCellText(std::string_view Text) {
    for (const char ch : Text) {
        const unsigned char c = static_cast<unsigned char>(ch);
        if (c >= 0x80 || (c < 0x20 && c != '\t' && c != '\n' && c != '\r')) return false;
    }
    return true;
}

// Characters of cleaned text (code points), for column widths.
size_t CellTextChars(std::string_view CleanText);
