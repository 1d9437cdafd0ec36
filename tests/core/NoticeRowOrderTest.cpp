#include "core/TNoticeGridView.h"
#include "core/TNoticeRowOrder.h"

#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>
#include <vector>

namespace {

int Sign(int v) {
    return (v > 0) - (v < 0);
}

TNoticeRecord TextRow(int32_t key, std::optional<std::string> summary) {
    TNoticeRecord r;
    r.SetInteger(nf_nb_internal_key, key);
    if (summary) r.SetString(nf_note_summary, *summary);
    return r;
}

} // namespace

TEST(NoticeRowOrder, TextSortsNullsFirstThenIgnoringCaseThenByCase) {
    struct TCase {
        std::optional<std::string> A, B;
        int Expected; // ascending; the key breaks nothing here: A has key 1, B key 2
    };
    const std::vector<TCase> cases = {
        {std::nullopt, "", -1},           // null before the empty string
        {"", "a", -1},                    // empty before any text
        {"apple", "Zebra", -1},           // letter case does not decide first ...
        {"ABC", "abc", -1},               // ... but among equal folded texts, bytes do: upper case first
        {"abc", "ABD", -1},               //
        {"ab", "AB c", -1},               // a prefix first
        {"_x", "ax", -1},                 // folded code points: '_' (0x5F) before 'a'
        {"É", "é", -1},                   // non-ASCII letters fold too
        {"eclair", "Éclair", -1},         // e before é
        {"ωMEGA", "Ωmega", 1},            // fold alike; bytes: ω (CF 89) after Ω (CE A9)
        {"\xc7\x84", "\xc7\x86", -1},     // Ǆ and ǆ fold alike, then by bytes
        {"\xe2\x84\xaa", "K", 1},         // the Kelvin sign folds to k; by bytes it is after K
        {"\xfe", "\xff", -1},             // bytes that are not UTF-8 still have an order
        {"z", "\xc3", -1},                // ... after every ASCII letter
        {"same", "same", -1},             // equal texts: the key decides
        {std::nullopt, std::nullopt, -1}, // two nulls: the key decides
    };
    const std::vector<TSortColumn> asc = {{nf_note_summary, false}};
    const std::vector<TSortColumn> desc = {{nf_note_summary, true}};
    for (const TCase& c : cases) {
        const TNoticeRecord a = TextRow(1, c.A), b = TextRow(2, c.B);
        SCOPED_TRACE(c.A.value_or("<null>") + " vs " + c.B.value_or("<null>"));
        EXPECT_EQ(Sign(CompareNoticeRows(a, b, asc)), c.Expected);
        EXPECT_EQ(Sign(CompareNoticeRows(b, a, asc)), -c.Expected);
        // Descending reverses the values (nulls last), never the key.
        const bool tie = CompareNoticeColumn(a, b, asc[0]) == 0;
        EXPECT_EQ(Sign(CompareNoticeRows(a, b, desc)), tie ? -1 : -c.Expected);
    }
}

TEST(NoticeRowOrder, NumbersAndDatesByValueThenFurtherColumnsThenKey) {
    TNoticeRecord a, b;
    a.SetInteger(nf_nb_internal_key, 7);
    b.SetInteger(nf_nb_internal_key, 3);
    a.SetInteger(nf_note_severity, 2);
    b.SetInteger(nf_note_severity, 10); // by number, not by its text
    EXPECT_LT(CompareNoticeRows(a, b, {{nf_note_severity, false}}), 0);
    a.SetInteger(nf_note_count, -5);
    EXPECT_GT(CompareNoticeRows(a, b, {{nf_note_count, false}}), 0); // b's count is null
    b.SetInteger(nf_note_count, INT32_MIN);
    EXPECT_GT(CompareNoticeRows(a, b, {{nf_note_count, false}}), 0);
    EXPECT_LT(CompareNoticeRows(a, b, {{nf_note_count, true}}), 0);

    a.SetDateTime(nf_ack_date, 45000.5);
    EXPECT_GT(CompareNoticeRows(a, b, {{nf_ack_date, false}}), 0); // b has no date
    b.SetDateTime(nf_ack_date, -1.25);                             // before 1899 is still a date
    EXPECT_GT(CompareNoticeRows(a, b, {{nf_ack_date, false}}), 0);

    // Equal on the first column: the second decides; equal on all: the key, ascending either way.
    b.SetInteger(nf_note_severity, 2);
    EXPECT_GT(CompareNoticeRows(a, b, {{nf_note_severity, false}}), 0);
    EXPECT_GT(CompareNoticeRows(a, b, {{nf_note_severity, true}}), 0);
    EXPECT_LT(CompareNoticeRows(a, b, {{nf_note_severity, false}, {nf_note_count, true}}), 0);
    EXPECT_GT(CompareNoticeRows(a, b, {{nf_note_severity, false}, {nf_note_severity, true}}), 0);
}

// The bulk sort reads folded text as bytes: their order must be the comparison's, for every kind of text.
TEST(NoticeRowOrder, FoldedBytesKeepTheFoldedOrder) {
    // clang-format off
    const std::vector<std::string> pieces = {"a", "A", "z", "_", "\xc3\xa9", "\xc3\x89", "\xc3\x9f", "ss",
        "\xce\xa3", "\xcf\x82", "\xcf\x83", "\xe2\x84\xaa", "k", "\xff", "\xc3", "\xe2\x84",
        "\xf0\x9f\x98\x80", "\x7f", ""};
    // clang-format on
    std::mt19937 rng(7);
    const auto random = [&] {
        std::string s;
        for (int n = int(rng() % 5); n > 0; --n)
            s += pieces[rng() % pieces.size()];
        return s;
    };
    for (int i = 0; i < 20000; ++i) {
        const std::string a = random(), b = random();
        std::string fa, fb;
        AppendFoldedText(a, fa);
        AppendFoldedText(b, fb);
        ASSERT_EQ(Sign(CompareFoldedText(a, b)), Sign(fa.compare(fb))) << a << " / " << b;
        if (IsAsciiText(a)) {
            std::string lower = a;
            for (char& c : lower)
                c = (c >= 'A' && c <= 'Z') ? char(c + 32) : c;
            ASSERT_EQ(fa, lower);
        }
    }
}

// Order keys let a search skip rows where they differ, so they must never run against the order.
TEST(NoticeRowOrder, OrderKeysNeverRunAgainstTheOrder) {
    // clang-format off
    const std::vector<std::string> texts = {"", "a", "A", "abcdefgh", "ABCDEFGHI", "abcdefg", "\u00e9",
        "\u00c9t\u00e9 \u00e0 la plage", "\u03a3\u03a3\u03a3\u03a3\u03a3\u03a3\u03a3\u03a3\u03a3", "zz\xff"};
    // clang-format on
    std::mt19937 rng(3);
    std::vector<TNoticeRecord> rows(300);
    for (size_t i = 0; i < rows.size(); ++i) {
        TNoticeRecord& r = rows[i];
        r.SetInteger(nf_nb_internal_key, int32_t(i + 1));
        if (rng() % 6)
            r.SetInteger(nf_note_count, int32_t(rng() % 7) - 3 + (rng() % 9 == 0 ? INT32_MIN + 3 : 0));
        if (rng() % 6) r.SetDateTime(nf_ack_date, double(int(rng() % 9) - 4) / 3);
        if (rng() % 6)
            r.SetString(nf_note_summary, texts[rng() % texts.size()] + texts[rng() % texts.size()]);
    }
    const std::vector<std::vector<TSortColumn>> orders = {
        {},
        {{nf_note_count, false}},
        {{nf_note_count, true}},
        {{nf_note_count, true}, {nf_note_summary, false}},
        {{nf_ack_date, true}},
        {{nf_note_summary, false}},
        {{nf_note_summary, true}, {nf_note_count, false}},
    };
    for (const auto& cols : orders) {
        for (const TNoticeRecord& a : rows) {
            for (const TNoticeRecord& b : rows) {
                if (CompareNoticeRows(a, b, cols) >= 0) continue;
                ASSERT_LE(OrderKeyOf(a, cols), OrderKeyOf(b, cols))
                    << a.AsInteger(nf_nb_internal_key) << " before " << b.AsInteger(nf_nb_internal_key);
            }
        }
    }
}
