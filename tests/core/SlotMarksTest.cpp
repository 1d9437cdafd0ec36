#include "core/TNoticeRecord.h"
#include "core/TSlotMarks.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace {

// Marks in an irregular pattern over several groups of 4096, with long runs of both values.
std::vector<bool> Marks(int32_t n) {
    std::vector<bool> marks;
    for (int32_t i = 0; i < n; ++i)
        marks.push_back(i % 9000 < 5000 ? (i * 7 + i / 3) % 5 < 3 : i % 9000 > 8990);
    return marks;
}

void ExpectCounts(const TSlotMarks& m, const std::vector<bool>& marks) {
    ASSERT_EQ(m.Size(), int32_t(marks.size()));
    int32_t count = 0;
    for (int32_t s = 0; s < int32_t(marks.size()); ++s) {
        ASSERT_EQ(m.Get(s), marks[size_t(s)]) << "slot " << s;
        count += marks[size_t(s)] ? 1 : 0;
        ASSERT_EQ(m.Prefix(s), count) << "slot " << s;
        if (marks[size_t(s)]) {
            ASSERT_EQ(m.FindKth(count), s) << "k " << count;
        }
    }
    EXPECT_EQ(m.Total(), count);
    EXPECT_EQ(m.FindKth(count + 1), -1);
    EXPECT_EQ(m.FindKth(0), -1);
    EXPECT_EQ(m.Prefix(-1), 0);
}

} // namespace

TEST(SlotMarksTest, AppendedAssignedAndChangedMarksCountLikeTheBits) {
    std::vector<bool> marks = Marks(3 * 4096 + 1000);
    TSlotMarks appended, assigned;
    for (bool b : marks)
        appended.Append(b);
    assigned.Assign(int32_t(marks.size()), [&](int32_t s) { return marks[size_t(s)]; });
    ASSERT_NO_FATAL_FAILURE(ExpectCounts(appended, marks));
    ASSERT_NO_FATAL_FAILURE(ExpectCounts(assigned, marks));
    std::mt19937 rng(1);
    for (int i = 0; i < 3000; ++i) {
        const int32_t s = int32_t(rng() % marks.size());
        const bool b = rng() % 2 == 0;
        marks[size_t(s)] = b;
        appended.Set(s, b);
    }
    ASSERT_NO_FATAL_FAILURE(ExpectCounts(appended, marks));
}

// Copied rows share their text until one of them changes a string field, also to a value of the same
// length (which is written in place only while the text is not shared).
TEST(BlockVectorTest, CopiedRowsShareTextUntilChanged) {
    TNoticeRecord row;
    row.SetString(nf_note_summary, "disk full");
    row.SetString(nf_adpt_orig_key, "k1");
    TNoticeRecord copy = row;
    EXPECT_EQ(copy.TextData(), row.TextData());
    EXPECT_TRUE(row.TextShared());
    copy.SetString(nf_note_summary, "DISK FULL");
    EXPECT_EQ(row.AsString(nf_note_summary), "disk full");
    EXPECT_EQ(copy.AsString(nf_note_summary), "DISK FULL");
    EXPECT_EQ(copy.AsString(nf_adpt_orig_key), "k1");
    EXPECT_FALSE(row.TextShared());
    const char* own = copy.TextData();
    copy.SetString(nf_note_summary, "disk FULL"); // unshared now: in place
    EXPECT_EQ(copy.TextData(), own);
}
