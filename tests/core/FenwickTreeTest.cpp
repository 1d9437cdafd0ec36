#include "core/TFenwickTree.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

// Marks in an irregular pattern, so that every kind of node (low bit 1, 2, 4, ...) sees both values.
std::vector<int8_t> Marks(int32_t n) {
    std::vector<int8_t> marks;
    for (int32_t i = 0; i < n; ++i)
        marks.push_back(static_cast<int8_t>((i * 7 + i / 3) % 5 < 3));
    return marks;
}

} // namespace

TEST(FenwickTreeTest, AppendedTreeCountsLikeOneBuiltAtOnce) {
    const std::vector<int8_t> marks = Marks(1100);
    TFenwickTree appended;
    TFenwickTree assigned;
    assigned.Assign(marks);
    int32_t expected = 0;
    for (size_t i = 0; i < marks.size(); ++i) {
        appended.Append(marks[i] != 0);
        expected += marks[i];
        ASSERT_EQ(appended.Prefix(static_cast<int32_t>(i)), expected) << "slot " << i;
    }
    EXPECT_EQ(appended.Total(), assigned.Total());
    for (int32_t k = 1; k <= assigned.Total(); ++k)
        ASSERT_EQ(appended.FindKth(k), assigned.FindKth(k)) << "k " << k;
    // Marks changed after appending keep both trees in step.
    for (int32_t slot = 0; slot < 1100; slot += 13) {
        appended.Set(slot, slot % 2 == 0);
        assigned.Set(slot, slot % 2 == 0);
    }
    for (int32_t slot = 0; slot < 1100; ++slot)
        ASSERT_EQ(appended.Prefix(slot), assigned.Prefix(slot)) << "slot " << slot;
}
