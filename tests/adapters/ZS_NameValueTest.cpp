#include "adapters/ZS_NameValue.h"

#include <gtest/gtest.h>

TEST(NameValueList, DecodeLowerCasesNamesAndEncodeIsAlphabeticalWithoutTrailingSeparator) {
    TName_Value_List list;
    list.Decode_String("internal=false;DLL_Name=ZNBA_RV;Configured=false;Enabled=false;Loadable=false;");
    ASSERT_EQ(list.Count(), 5);
    EXPECT_EQ(list.Names(1), "dll_name");
    EXPECT_EQ(list.Look_Up_Value("DLL_Name"), "ZNBA_RV");
    EXPECT_EQ(list.Look_Up_Value("dll_NAME"), "ZNBA_RV");
    EXPECT_EQ(list.Look_Up_Value("missing"), "");
    std::string text = "stale";
    list.Encode_String(text);
    EXPECT_EQ(text, "configured=false;dll_name=ZNBA_RV;enabled=false;internal=false;loadable=false");

    TName_Value_List empty;
    empty.Encode_String(text);
    EXPECT_EQ(text, "");
}

TEST(NameValueList, ValueKeepsEverythingAfterTheFirstEquals) {
    TName_Value_List list;
    list.Decode_String("a=b=c;flag;;last=1");
    EXPECT_EQ(list.Look_Up_Value("a"), "b=c");
    EXPECT_EQ(list.Look_Up_Value("flag"), "");
    EXPECT_EQ(list.Count(), 4); // the empty item between two separators is the empty name
    EXPECT_EQ(list.Names(0), "");
    EXPECT_EQ(list.Look_Up_Value("last"), "1");
}

TEST(NameValueList, EscapeIsUndoneOnlyWhenTheCharacterIsAlreadyThere) {
    TName_Value_List list;
    list.Decode_String("x=1&&EQ2;y=a=1&&EQ2;z=p|q&&SDr;w=pq&&SDr;v=&&FD;u=a=&&eq");
    EXPECT_EQ(list.Look_Up_Value("x"), "1&&EQ2");
    EXPECT_EQ(list.Look_Up_Value("y"), "a=1=2");
    EXPECT_EQ(list.Look_Up_Value("z"), "p|q|r");
    EXPECT_EQ(list.Look_Up_Value("w"), "pq&&SDr");
    EXPECT_EQ(list.Look_Up_Value("v"), "&&FD");   // an item never holds the item separator
    EXPECT_EQ(list.Look_Up_Value("u"), "a=&&eq"); // escapes are case-sensitive
}

TEST(NameValueList, LaterItemWinsAndFirstSpellingStays) {
    TName_Value_List list;
    list.Add_Name_Value("Mixed", "long value");
    list.Decode_String("MIXED=x;other=1");
    list.Decode_String("other=22;");
    EXPECT_EQ(list.Count(), 2);
    EXPECT_EQ(list.Names(0), "Mixed");
    EXPECT_EQ(list.Look_Up_Value("mixed"), "x"); // short value written into the old buffer
    EXPECT_EQ(list.Look_Up_Value("other"), "22");
    list.Add_Name_Value("mixed", "");
    EXPECT_EQ(list.Look_Up_Value("Mixed"), "");
    list.Add_Name_Value("mixed", "a much longer value than before");
    EXPECT_EQ(list.Look_Up_Value("Mixed"), "a much longer value than before");
}

TEST(NameValueList, ListStaysSortedWhateverTheInsertionOrder) {
    TName_Value_List list;
    for (const char* n : {"m", "B", "z", "a", "C", "b2"})
        list.Add_Name_Value(n, n);
    std::string text;
    list.Encode_String(text);
    EXPECT_EQ(text, "a=a;B=B;b2=b2;C=C;m=m;z=z");
    for (const char* n : {"M", "b", "Z", "A", "c", "B2"})
        EXPECT_EQ(list.Look_Up_Value(n).size(), std::string(n).size()) << n;
}

TEST(NameValueList, BooleansTestOnlyTheFirstLetterAndBadNumbersAreZero) {
    TName_Value_List list;
    list.Decode_String("a=true;b=True;c=t;d=Tx;e=yes;f=1;g=false;h=");
    for (const char* n : {"a", "b", "c", "d"})
        EXPECT_TRUE(list.Look_Up_Boolean(n)) << n;
    for (const char* n : {"e", "f", "g", "h", "missing"})
        EXPECT_FALSE(list.Look_Up_Boolean(n)) << n;

    // Numbers that do not convert give zero.
    list.Decode_String("n1=12abc;n2=-7;n3=;n4=2147483648");
    EXPECT_EQ(list.Look_Up_Num("n2"), -7);
    for (const char* n : {"n1", "n3", "n4", "missing"})
        EXPECT_EQ(list.Look_Up_Num(n), 0) << n;
}

TEST(NameValueList, LongTextIsDecodedInOnePass) {
    // Two megabytes of items: copying the unread rest once per item would take minutes.
    std::string text;
    for (int i = 0; i < 500000; ++i)
        text += "k=v;";
    text += "last=1";
    TName_Value_List list;
    list.Decode_String(text);
    EXPECT_EQ(list.Count(), 2);
    EXPECT_EQ(list.Look_Up_Value("K"), "v");
    EXPECT_EQ(list.Look_Up_Num("last"), 1);
}
