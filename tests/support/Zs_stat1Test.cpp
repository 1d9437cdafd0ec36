#include "support/Zs_stat1.h"

#include <gtest/gtest.h>

namespace {
std::vector<std::string> Severities() {
    return {"Normal", "Warning", "Fatal", "Critical"};
}
} // namespace

TEST(TStats_Obj, NodeNamesAreStandardisedAndBlankCountsUnderNotSet) {
    const auto cols = Severities();
    TStats_Obj stats(nullptr, &cols);
    stats.Inc("  Node1 ", "Warning");
    stats.Inc("NODE1", "warning");
    stats.Inc("", "Fatal");
    stats.Inc("   ", "Fatal");
    EXPECT_EQ(stats.Get_Count("node1", "WARNING"), 2);
    EXPECT_EQ(stats.Get_Count("not set", "Fatal"), 2);
    ASSERT_EQ(stats.RowNames().size(), 2u);
    EXPECT_EQ(stats.RowNames()[0], "node1");
    EXPECT_EQ(stats.RowNames()[1], "not set");
    EXPECT_EQ(stats.ColumnNames()[0], "Normal"); // given names are kept as given
    EXPECT_EQ(stats.Get_Row_Count("node1"), 2);
}

TEST(TStats_Obj, ReadingCreatesRowsAndColumns) {
    const auto cols = Severities();
    TStats_Obj stats(nullptr, &cols);
    EXPECT_EQ(stats.Get_Count("ghost", "Normal"), 0);
    EXPECT_EQ(stats.Find_Row("GHOST"), 0);
    stats.Dec("other", "");
    EXPECT_EQ(stats.Get_Count("other", ""), -1);
    EXPECT_EQ(stats.ColumnNames().size(), 5u);
    EXPECT_EQ(stats.ColumnNames()[4], "");
    EXPECT_EQ(stats.Get_Count("ghost", ""), 0); // the new column was zeroed in older rows
}

TEST(TStats_Obj, ColumnCountIsAlwaysMinusOne) {
    TStats_Obj stats(nullptr, nullptr);
    stats.Add("n", "c", 5);
    EXPECT_EQ(stats.Get_Column_Count("c"), -1);
    EXPECT_EQ(stats.Get_Column_Count("fresh"), -1);
    EXPECT_EQ(stats.Find_Column("fresh"), 1);
    stats.Subtract("n", "c", 7);
    EXPECT_EQ(stats.Get_Count("n", "c"), -2);
}

TEST(TStats_Obj, AddRowRefusesExistingNamesAndRowMaxLeavesOutputs) {
    TStats_Obj stats(nullptr, nullptr);
    EXPECT_EQ(stats.Add_Row("A"), 0);
    EXPECT_EQ(stats.Add_Row(" a "), -1);
    EXPECT_EQ(stats.Add_Column("X"), 0);
    EXPECT_EQ(stats.Add_Column("x"), -1);
    std::string col = "keep";
    int32_t count = 42;
    stats.Get_Row_Max("a", col, count);
    EXPECT_EQ(col, "keep");
    EXPECT_EQ(count, 42);
}
