#include "views/FilterApply.h"

#include <gtest/gtest.h>

TEST(FilterApply, NoFilterSwitchesFilteringOff) {
    std::string text = "stale";
    EXPECT_FALSE(FilterTextForName("<No Filter>", NB_SOURCE_DIR "/examples/filters/", text));
    EXPECT_EQ(text, "");
}

TEST(FilterApply, NamedFilterGivesItsExpression) {
    std::string text;
    EXPECT_TRUE(FilterTextForName("unacknowledged", NB_SOURCE_DIR "/examples/filters/", text));
    EXPECT_EQ(text, "( ack_date IS NULL  )");
    EXPECT_TRUE(FilterTextForName("gone", NB_SOURCE_DIR "/examples/filters/", text));
    EXPECT_EQ(text, "") << "a missing file is an empty filter";
}
