#include "support/StrUtils.h"
#include "support/Exception.h"

#include <gtest/gtest.h>

TEST(StrUtils, TrimRemovesBlanksAndControlCharacters) {
    EXPECT_EQ(Trim(" \t\r\n abc \x01"), "abc");
    EXPECT_EQ(TrimLeft("  a "), "a ");
    EXPECT_EQ(TrimRight("  a "), "  a");
}

TEST(StrUtils, StrToIntAcceptsSignedDecimalsWithin32Bits) {
    EXPECT_EQ(StrToInt("-7"), -7);
    EXPECT_EQ(StrToInt("+2147483647"), 2147483647);
    EXPECT_EQ(StrToInt("-2147483648"), INT32_MIN);
    EXPECT_EQ(StrToInt("$1F"), 31);
    EXPECT_THROW(StrToInt("2147483648"), EConvertError);
    EXPECT_THROW(StrToInt("12abc"), EConvertError);
    EXPECT_EQ(StrToInt("  1"), 1);
    EXPECT_THROW(StrToInt("1 "), EConvertError);
    EXPECT_EQ(StrToInt("-$80000000"), INT32_MIN);
    EXPECT_THROW(StrToInt(""), EConvertError);
    EXPECT_EQ(StrToIntDef("x", 5), 5);
}

TEST(StrUtils, ReplaceAllDoesNotRescanReplacedText) {
    EXPECT_EQ(ReplaceAll("a&b&", "&", "&amp;"), "a&amp;b&amp;");
    EXPECT_EQ(ReplaceAll("x&AMP;y", "&amp;", "&", true), "x&y");
    EXPECT_EQ(ReplaceAll("x&AMP;y", "&amp;", "&", false), "x&AMP;y");
    // Candidates of either case, near misses, overlaps and a match at the very end.
    EXPECT_EQ(ReplaceAll("tTitle tit TITLE", "title", "<>", true), "t<> tit <>");
    EXPECT_EQ(ReplaceAll("aaa", "aa", "b"), "ba");
    EXPECT_EQ(ReplaceAll("Xx", "x", "y", true), "yy");
    EXPECT_EQ(ReplaceAll("Xx", "x", "y"), "Xy");
    EXPECT_EQ(ReplaceAll("ab", "abc", "z", true), "ab");
    EXPECT_EQ(FindText("xTiTlE title", "title"), 1u);
    EXPECT_EQ(FindText("xTiTlE title", "title", 2), 7u);
    EXPECT_EQ(FindText("xtitl", "title"), std::string::npos);
}

TEST(StrUtils, FileNameParts) {
    EXPECT_EQ(ExtractFilePath("/a/b/c.txt"), "/a/b/");
    EXPECT_EQ(ExtractFileName("/a/b/c.txt"), "c.txt");
    EXPECT_EQ(ExtractFileExt("/a/b.d/c"), "");
    EXPECT_EQ(ExtractFileExt("c.tar.gz"), ".gz");
    EXPECT_EQ(IncludeTrailingPathDelimiter("/a"), "/a/");
    EXPECT_EQ(IncludeTrailingPathDelimiter("/a/"), "/a/");
}
