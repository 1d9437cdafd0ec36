#include "XMLTestUtil.h"

TEST(XMLWriter, WritesOneUnbrokenRun) {
    TXMLNode root(nullptr, "NoticeList");
    TXMLNode* notice = root.NewNode("Notice");
    notice->NewNode("Command")->GetContents().SetText("post");
    notice->NewNode("empty");
    TXMLStrings lines{"two", "lines"};
    notice->NewNode("memo")->SetContents(&lines);
    EXPECT_EQ(root.GetAsString(), "<NoticeList><Notice><Command>post</Command><empty/>"
                                  "<memo>two%0alines</memo></Notice></NoticeList>");
    root.GetContents().SetText("  top  ");
    root.SetValue("v", "1");
    EXPECT_EQ(root.GetAsString().substr(0, 25), "<NoticeList v=\"1\">top<Not");
}

TEST(XMLWriter, PercentEscapeKeepsOnlyPlainBytes) {
    EXPECT_EQ(PercentEscape("50% & more"), "50%25 %26 more");
    EXPECT_EQ(PercentEscape(" !$'()*-.09@AZaz_"), " !$'()*-.09@AZaz_");
    EXPECT_EQ(PercentEscape("\"#+,/:;<=>?[\\]^`{|}~"),
              "%22%23%2b%2c%2f%3a%3b%3c%3d%3e%3f%5b%5c%5d%5e%60%7b%7c%7d%7e");
    EXPECT_EQ(PercentEscape("\t\x7f\xc3\xa9"), "%09%7f%c3%a9");
    EXPECT_EQ(PercentEscape(std::string("ab\0cd", 5)), "ab"); // stops at the first zero byte
    TXMLNode n(nullptr, "n");
    n.SetValue("v", "x<y");
    EXPECT_EQ(n.GetAsString(), "<n v=\"x%26lt%3by\"/>"); // the stored form, never decoded
}

TEST(XMLWriter, NameEncodingReplacesDisallowedBytes) {
    TXMLNode n(nullptr, "1 a");
    EXPECT_EQ(n.GetAsString(), "<__ZS_ASCII_P__49__ZS_ASCII_S____ZS_ASCII_P__32__ZS_ASCII_S__a/>");
    EXPECT_EQ(EncodeXMLName("_a:b-c.9"), "_a:b-c.9");
    EXPECT_EQ(EncodeXMLName("-x"), "__ZS_ASCII_P__45__ZS_ASCII_S__x");
    EXPECT_EQ(EncodeXMLName(""), "");
    n.SetEncodeName(false);
    EXPECT_EQ(n.GetAsString(), "<1 a/>");
    // The reader does not decode: the encoded name comes back as written.
    TXMLNode encoded(nullptr, "a b");
    auto back = Parse(encoded.GetAsString());
    EXPECT_EQ(back->GetName(), "a__ZS_ASCII_P__32__ZS_ASCII_S__b");
}

TEST(XMLWriter, WrittenNoticeReadsBackToSameTree) {
    const std::string text =
        "<NoticeList><Notice><Command>post</Command><adpt_orig_key>k-1</adpt_orig_key>"
        "<note_text>Disk full</note_text><note_count>3</note_count></Notice>"
        "<Notice a=\"1\" b=\"two words\"><Command>delete</Command></Notice></NoticeList>";
    auto tree = Parse(text);
    EXPECT_EQ(tree->GetAsString(), text);
    auto again = Parse(tree->GetAsString());
    EXPECT_EQ(again->GetAsString(), text);
    // Text with escaped bytes reads back escaped: decoding is the caller's business.
    TXMLNode n(nullptr, "n");
    n.GetContents().SetText("a<b");
    EXPECT_EQ(Parse(n.GetAsString())->GetContents().JoinedText(), "a%3cb");
}
