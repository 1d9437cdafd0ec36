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
