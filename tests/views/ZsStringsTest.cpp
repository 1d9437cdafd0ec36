// The tokenizer the filter format is read and written with.
#include "support/Zs_strings.h"

#include <gtest/gtest.h>

#include <cstdlib>

TEST(ZsStrings, TokenPositionsCountDelimiters) {
    ASSERT_TRUE(SetDelimiter(','));
    EXPECT_FALSE(SetDelimiter('\0'));
    EXPECT_EQ(GetDelimiter(), ',');
    EXPECT_EQ(GetTokenPos("", 1), 0);
    EXPECT_EQ(GetTokenPos("a,bc,d", 3), 6);
    EXPECT_EQ(GetTokenPos("a,bc,d", 4), 0);
    EXPECT_EQ(GetTokenPos("a,,d", 2), 3) << "an empty token sits on the delimiter that ends it";
    EXPECT_EQ(GetTokenPos("a,", 2), 3) << "an empty last token lies past the end";
}

TEST(ZsStrings, GetTokenAndReplaceToken) {
    SetDelimiter(',');
    EXPECT_EQ(GetToken("a,bcd,e", 4), "bcd");
    EXPECT_EQ(GetToken("a,bcd,e", 2), "");
    std::string s = "a,bcd,e";
    EXPECT_TRUE(ReplaceToken(s, "XY", 5));
    EXPECT_EQ(s, "a,XY,e");
    s = "a,,e";
    EXPECT_TRUE(ReplaceToken(s, "new", 3));
    EXPECT_EQ(s, "a,new,e");
    s = "a,";
    EXPECT_FALSE(ReplaceToken(s, "z", 3));
    EXPECT_FALSE(ReplaceToken(s, "z", 0));
    EXPECT_EQ(s, "a,");
    std::string empty;
    EXPECT_FALSE(ReplaceToken(empty, "z", 1));
}

TEST(ZsStrings, ParseSkipsQuotedStretches) {
    int index = 1;
    std::string token;
    const std::string s = "ab;\"c;d\";e";
    Parse(s, ";", index, token);
    EXPECT_EQ(token, "ab");
    EXPECT_EQ(index, 4);
    Parse(s, ";", index, token);
    EXPECT_EQ(token, "\"c;d\"");
    Parse(s, ";", index, token);
    EXPECT_EQ(token, "e");
    EXPECT_EQ(index, 0);
    index = 99;
    Parse(s, ";", index, token);
    EXPECT_EQ(token, "");
    EXPECT_EQ(index, 0);
    index = 1;
    Parse(s, "", index, token);
    EXPECT_EQ(index, 0);
}

TEST(ZsStrings, HexToIntReadsUpperCaseOnly) {
    EXPECT_EQ(HexToInt("80000018"), 0x80000018u);
    EXPECT_EQ(HexToInt("C0C0C0"), 0xC0C0C0u);
    EXPECT_EQ(HexToInt("c0c0c0"), 0u);
    EXPECT_EQ(HexToInt("1 2"), 0x12u) << "bytes below '0' are skipped";
    EXPECT_EQ(HexToInt("1:@"), 0x139u) << "':' to '@' count as 3 to 9";
    EXPECT_EQ(HexToInt("1G2"), 1u);
    EXPECT_EQ(HexToInt("123456789"), 0x23456789u) << "only the low 32 bits are kept";
}

TEST(ZsStringsDeathTest, DelimiterIsTheDoubleQuoteUntilSet) {
    // The delimiter is process-wide and other tests set it: look at it in a fresh process.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(std::exit(GetDelimiter() == '"' && GetTokenPos("a,b\"c", 2) == 5 ? 0 : 1),
                ::testing::ExitedWithCode(0), "");
}
