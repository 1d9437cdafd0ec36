// How the grid orders notice rows, value by value: the comparison behind TNoticeGridView and
// CompareNoticeRows, and the order-preserving forms of values that its bulk sort works on.
//
// Per column: a null value sorts before every value (an empty string included); integers (note_severity
// among them) and dates by value; text case-insensitively first, by Unicode simple case folding compared
// code point by code point (ASCII folds by table, without a look-up), then, among texts that fold alike,
// by their bytes (so upper case before lower case), so that only equal texts compare equal. A descending
// column reverses its whole order, nulls included. Pure functions; any thread.
#pragma once

#include "core/TGridLayout.h"
#include "core/TNoticeRecord.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// One column's comparison of two rows: <0, 0, >0, its direction applied.
int CompareNoticeColumn(const TNoticeRecord& A, const TNoticeRecord& B, const TSortColumn& Column);
// Columns[0..Count) in turn, without the key.
int CompareNoticeColumns(const TNoticeRecord& A, const TNoticeRecord& B, const TSortColumn* Columns,
                         size_t Count);

// Text order: folded text first, then bytes.
int CompareNoticeText(std::string_view A, std::string_view B);
// The folded comparison alone: 0 for texts that differ only in letter case.
int CompareFoldedText(std::string_view A, std::string_view B);
bool IsAsciiText(std::string_view Text);
// Appends the case-folded form of Text as UTF-8 whose byte order is CompareFoldedText's order. Bytes that
// are not well-formed UTF-8 stand for the code points U+DC80..U+DCFF (never produced by decoding), so every
// byte string has a folded form.
void AppendFoldedText(std::string_view Text, std::string& Out);

// The kind of comparison a field takes.
enum class TSortKind { Integer, Date, Text };
TSortKind SortKindOf(TNoticeField Field);
// Integer and date values as unsigned numbers in the same order, above 0, which stands for null.
inline uint64_t IntegerSortValue(int32_t Value) {
    return static_cast<uint64_t>(static_cast<int64_t>(Value) - INT32_MIN + 1);
}
uint64_t DateSortValue(double Value);
// A row's integer or date column as such a number (0 for null).
uint64_t NumericSortValue(const TNoticeRecord& Row, TNoticeField Field, TSortKind Kind);

// Chunk k of a text as a 64-bit digit: bytes [7k, 7k + 7) (zero-padded, ASCII letters lowered when Fold)
// above a mark of 1 + the bytes left from 7k when they end within the chunk, or TextDigitMore when they go
// on. Equal digits with a mark below TextDigitMore mean equal texts; a text that is a prefix of another
// gets the smaller digit; a non-null text's first digit is never 0, which stands for null.
constexpr uint64_t TextDigitMore = 9;
inline uint64_t TextDigit(const char* Text, uint32_t Len, uint32_t Chunk, bool Fold) {
    const uint32_t off = Chunk * 7;
    const uint32_t left = Len - off;
    const uint32_t n = left < 7 ? left : 7;
    uint64_t d = 0;
    for (uint32_t i = 0; i < 7; ++i) {
        uint8_t c = i < n ? static_cast<uint8_t>(Text[off + i]) : 0;
        if (Fold && c >= 'A' && c <= 'Z') c = static_cast<uint8_t>(c + ('a' - 'A'));
        d = (d << 8) | c;
    }
    return (d << 8) | (left >= 8 ? TextDigitMore : left + 1);
}

// A number that never decreases along the order of Columns then the key (equal numbers decide nothing):
// the whole order packed with the key when it is one integer column or none, else the first column's
// first digit, its direction applied. Lets a search compare numbers instead of rows where they differ.
uint64_t OrderKeyOf(const TNoticeRecord& Row, const std::vector<TSortColumn>& Columns);
