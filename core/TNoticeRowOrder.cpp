#include "core/TNoticeRowOrder.h"

#include "core/TNoticeGridView.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace {

inline uint8_t FoldAscii(uint8_t c) {
    return c >= 'A' && c <= 'Z' ? static_cast<uint8_t>(c + ('a' - 'A')) : c;
}

// The folded code point at Text[i], advancing i. An ill-formed sequence stands for U+DC00 + its first byte.
inline UChar32 NextFolded(std::string_view Text, int32_t& i) {
    const uint8_t lead = static_cast<uint8_t>(Text[static_cast<size_t>(i)]);
    if (lead < 0x80) {
        ++i;
        return FoldAscii(lead);
    }
    UChar32 c;
    U8_NEXT(Text.data(), i, static_cast<int32_t>(Text.size()), c);
    return c < 0 ? 0xDC00 + lead : static_cast<UChar32>(u_foldCase(c, U_FOLD_CASE_DEFAULT));
}

int Sign(int64_t v) {
    return v < 0 ? -1 : v > 0 ? 1 : 0;
}

} // namespace

bool IsAsciiText(std::string_view Text) {
    uint8_t any = 0;
    for (const char c : Text)
        any |= static_cast<uint8_t>(c);
    return any < 0x80;
}

int CompareFoldedText(std::string_view A, std::string_view B) {
    const int32_t na = static_cast<int32_t>(A.size()), nb = static_cast<int32_t>(B.size());
    int32_t i = 0, j = 0;
    while (i < na && j < nb) {
        const uint8_t a = static_cast<uint8_t>(A[size_t(i)]), b = static_cast<uint8_t>(B[size_t(j)]);
        if ((a | b) < 0x80) { // both ASCII: the common case, no decoding
            const int d = FoldAscii(a) - FoldAscii(b);
            if (d != 0) return d;
            ++i;
            ++j;
            continue;
        }
        const UChar32 ca = NextFolded(A, i), cb = NextFolded(B, j);
        if (ca != cb) return ca < cb ? -1 : 1;
    }
    return (i < na) - (j < nb);
}

int CompareNoticeText(std::string_view A, std::string_view B) {
    const int folded = CompareFoldedText(A, B);
    return folded != 0 ? folded : A.compare(B);
}

void AppendFoldedText(std::string_view Text, std::string& Out) {
    const int32_t n = static_cast<int32_t>(Text.size());
    for (int32_t i = 0; i < n;) {
        const UChar32 c = NextFolded(Text, i);
        // Encoded by the plain UTF-8 rule, surrogates included, which keeps code point order as byte order.
        uint8_t buf[4];
        int32_t len = 0;
        U8_APPEND_UNSAFE(buf, len, c);
        Out.append(reinterpret_cast<const char*>(buf), static_cast<size_t>(len));
    }
}

TSortKind SortKindOf(TNoticeField Field) {
    // Asked once per column per comparison: a table made once rather than a look-up of the field's type.
    static const std::array<TSortKind, NoticeFieldCount> kinds = [] {
        std::array<TSortKind, NoticeFieldCount> k{};
        for (int f = 0; f < NoticeFieldCount; ++f) {
            const TFieldType type = NoticeFieldType(static_cast<TNoticeField>(f));
            k[size_t(f)] = type == TFieldType::ftString || type == TFieldType::ftMemo ? TSortKind::Text
                           : type == TFieldType::ftDateTime                           ? TSortKind::Date
                                                                                      : TSortKind::Integer;
        }
        return k;
    }();
    return kinds[size_t(Field)];
}

uint64_t DateSortValue(double Value) {
    const uint64_t bits = std::bit_cast<uint64_t>(Value);
    const uint64_t ordered = (bits >> 63) ? ~bits : bits | (uint64_t(1) << 63);
    return std::max<uint64_t>(ordered, 1); // 0 is null's; only a NaN would land there
}

uint64_t NumericSortValue(const TNoticeRecord& Row, TNoticeField Field, TSortKind Kind) {
    if (Row.IsNull(Field)) return 0;
    return Kind == TSortKind::Date ? DateSortValue(Row.AsDateTime(Field))
                                   : IntegerSortValue(Row.AsInteger(Field));
}

uint64_t OrderKeyOf(const TNoticeRecord& Row, const std::vector<TSortColumn>& Columns) {
    const uint64_t key = static_cast<uint32_t>(Row.AsInteger(nf_nb_internal_key)) & 0x7FFFFFFFu;
    if (Columns.empty()) return key;
    const TSortColumn& first = Columns[0];
    const TSortKind kind = SortKindOf(first.Field);
    if (kind == TSortKind::Integer && Columns.size() == 1) {
        // 33 bits of value (null or any int32) above the key's 31.
        constexpr uint64_t ValueMask = (uint64_t(1) << 33) - 1;
        const uint64_t value = NumericSortValue(Row, first.Field, kind);
        return ((first.Descending ? ValueMask - value : value) << 31) | key;
    }
    uint64_t digit = 0; // null
    if (kind != TSortKind::Text) {
        digit = NumericSortValue(Row, first.Field, kind);
    } else if (!Row.IsNull(first.Field)) {
        const std::string_view text = Row.AsString(first.Field);
        if (IsAsciiText(text)) {
            digit = TextDigit(text.data(), static_cast<uint32_t>(text.size()), 0, true);
        } else {
            // The first 8 code points (at most 32 bytes) fold to at least the 8 bytes the digit reads.
            std::string folded;
            AppendFoldedText(text.substr(0, 32), folded);
            digit = TextDigit(folded.data(), static_cast<uint32_t>(folded.size()), 0, false);
        }
    }
    return first.Descending ? ~digit : digit;
}

int CompareNoticeColumn(const TNoticeRecord& A, const TNoticeRecord& B, const TSortColumn& Column) {
    const TNoticeField f = Column.Field;
    const bool nullA = A.IsNull(f), nullB = B.IsNull(f);
    int r;
    if (nullA || nullB) {
        r = nullB - nullA;
    } else {
        const TSortKind kind = SortKindOf(f);
        if (kind == TSortKind::Text) {
            r = CompareNoticeText(A.AsString(f), B.AsString(f));
        } else {
            const uint64_t a = NumericSortValue(A, f, kind), b = NumericSortValue(B, f, kind);
            r = (a > b) - (a < b);
        }
    }
    return Column.Descending ? -Sign(r) : r;
}

int CompareNoticeColumns(const TNoticeRecord& A, const TNoticeRecord& B, const TSortColumn* Columns,
                         size_t Count) {
    for (size_t i = 0; i < Count; ++i)
        if (const int r = CompareNoticeColumn(A, B, Columns[i])) return r;
    return 0;
}

// A column named twice compares equal at its second place whenever it got there, so repeats need no
// special case here.
int CompareNoticeRows(const TNoticeRecord& A, const TNoticeRecord& B,
                      const std::vector<TSortColumn>& Columns) {
    if (const int r = CompareNoticeColumns(A, B, Columns.data(), Columns.size())) return r;
    const int32_t ka = A.AsInteger(nf_nb_internal_key), kb = B.AsInteger(nf_nb_internal_key);
    return (ka > kb) - (ka < kb);
}
