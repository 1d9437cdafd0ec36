#include "XMLTestUtil.h"

TEST(XMLReader, NoticeMessageParsesIntoTreeWalkedByName) {
    auto root =
        Parse("<NoticeList><Notice><Command> post </Command><adpt_orig_key>k1</adpt_orig_key></Notice>"
              "<Other/><Notice><Command>delete</Command></Notice></NoticeList>");
    EXPECT_EQ(root->GetName(), "NoticeList");
    ASSERT_EQ(root->GetChildCount(), 3);
    TXMLNode* first = root->getChildNodeByName("Notice");
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->getChildNodeByName("Command")->GetContents().JoinedText(), "post");
    EXPECT_EQ(first->getChildNodeByName("adpt_orig_key")->GetContents().Text(),
              "k1" + std::string(TXMLStrings::LineBreak));
    TXMLNode* second = root->getNextChildNodeByName(first);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(second->getChildNodeByName("Command")->GetContents()[0], "delete");
    EXPECT_EQ(root->getNextChildNodeByName(second), nullptr);
    EXPECT_EQ(root->getChildNodeByName("notice"), nullptr); // names are case-sensitive
    EXPECT_EQ(first->Parent(), root.get());
}

TEST(XMLReader, EmptyElementNeedsSlashRightAfterName) {
    auto a = Parse("<a/>");
    EXPECT_EQ(a->GetName(), "a");
    EXPECT_EQ(a->GetChildCount(), 0);
    EXPECT_TRUE(a->GetContents().Empty());
    // The blank starts an attribute read that runs to the end of the input.
    EXPECT_EQ(ParseError("<a />"), std::string("EXMLReadError: Malformed XML.  Missing '") + '\0' + "'");
    auto odd = Parse("<a />=\"1\"/>");
    EXPECT_EQ(odd->GetValue("/>"), "1");
}

TEST(XMLReader, AnythingBeforeFirstElementIsReportedAsFound) {
    EXPECT_EQ(ParseError(" <a/>"), "EXMLReadError: Malformed XML.  Missing ' '");
    EXPECT_EQ(ParseError("\n<a/>"), "EXMLReadError: Malformed XML.  Missing ' '");
    EXPECT_EQ(ParseError("\t<a/>"), "EXMLReadError: Malformed XML.  Missing ' '");
    EXPECT_EQ(ParseError("\xEF\xBB\xBF<a/>"), "EXMLReadError: Malformed XML.  Missing '\xEF'");
    EXPECT_EQ(ParseError("x"), "EXMLReadError: Malformed XML.  Missing 'x'");
    EXPECT_EQ(ParseError(""), "EXMLReadError: Malformed XML.  Missing ' '");
}

TEST(XMLReader, DeclarationBecomesTopNodeHoldingDocumentElement) {
    auto top = Parse("<?xml version=\"1.0\"?>\r\n<NoticeList><Notice/></NoticeList>\r\n");
    EXPECT_EQ(top->GetName(), "?xml");
    EXPECT_EQ(top->GetValue("version"), "1.0");
    ASSERT_EQ(top->GetChildCount(), 1);
    EXPECT_EQ(top->GetChild(0)->GetName(), "NoticeList");
    EXPECT_NE(top->getChildNodeByName("NoticeList")->getChildNodeByName("Notice"), nullptr);
}

TEST(XMLReader, CharacterDataIsReadAsOddlyNamedChild) {
    EXPECT_EQ(ParseError("<a><![CDATA[hello]]></a>"),
              "EXMLReadError: Element end mismatch.  Looking for ![CDATA[hello]] found a");
}

TEST(XMLReader, OnlyFirstTextBeforeChildCounts) {
    auto a = Parse("<a>x<b/>y</a>");
    EXPECT_EQ(a->GetContents().JoinedText(), "x");
    EXPECT_EQ(a->GetChildCount(), 1);
    EXPECT_EQ(ParseError("<a>x<b/>y/z</a>"), "EXMLReadError: Malformed XML.  Missing 'z'");
    auto replaced = Parse("<a>x<b/>y>z</a>");
    EXPECT_EQ(replaced->GetContents().JoinedText(), "z");
}

TEST(XMLReader, TextIsTrimmedAndSplitIntoLines) {
    EXPECT_EQ(Parse("<a>  hello  </a>")->GetContents().JoinedText(), "hello");
    auto multi = Parse("<a>\r\n one\r\ntwo\n\nthree \r\n</a>");
    ASSERT_EQ(multi->GetContents().Count(), 4);
    EXPECT_EQ(multi->GetContents()[0], "one");
    EXPECT_EQ(multi->GetContents()[2], "");
    EXPECT_EQ(multi->GetContents()[3], "three");
    // Entities and percent escapes are the caller's business.
    EXPECT_EQ(Parse("<a>a &amp; b %26</a>")->GetContents().JoinedText(), "a &amp; b %26");
    EXPECT_TRUE(Parse("<a>   </a>")->GetContents().Empty());
}

TEST(XMLReader, AttributesNeedDoubleQuotesAndNames) {
    auto a = Parse("<a  one = \"1\" two=\"x&lt;y\"\tthree=\"a&b\"/>");
    EXPECT_EQ(a->GetValue("one"), "1");
    EXPECT_EQ(a->GetValue("TWO"), "x<y");
    EXPECT_EQ(a->GetProperties()[1], "two=x&lt;y"); // stored as read
    EXPECT_EQ(a->GetValue("three"), "a&b");
    EXPECT_EQ(ParseError("<a b='x'/>"), "EXMLReadError: Malformed XML.  Missing '''");
    EXPECT_EQ(ParseError("<a =\"x\"/>"), "EXMLReadError: Malformed XML.  Missing property name");
}

TEST(XMLReader, EndTagMustNameTheElement) {
    EXPECT_EQ(ParseError("<a></b>"), "EXMLReadError: Element end mismatch.  Looking for a found b");
    EXPECT_EQ(ParseError("<a><b></a></b>"), "EXMLReadError: Element end mismatch.  Looking for b found a");
    EXPECT_EQ(ParseError("<a>x</A>"), "EXMLReadError: Element end mismatch.  Looking for a found A");
}

TEST(XMLReader, InputEndingInsideElementKeepsWhatWasRead) {
    // The reader stops quietly at the end of the input unless a primitive needs one more byte.
    auto a = Parse("<a><b>text");
    ASSERT_EQ(a->GetChildCount(), 1);
    EXPECT_EQ(a->GetChild(0)->GetContents().JoinedText(), "tex"); // the last byte is never kept
    EXPECT_EQ(ParseError("<a/"), "EXMLReadError: Malformed XML.  Missing ' '");
    EXPECT_EQ(ParseError("<a></a"), "EXMLReadError: Element end mismatch.  Looking for a found ");
}

TEST(XMLReader, PrimitivesFollowByteRules) {
    TXMLStream s("a\tb");
    EXPECT_EQ(ReadChar(s, 'a'), 'a');
    EXPECT_EQ(ReadChar(s, '\0'), ' ');
    EXPECT_EQ(NextChar(s, '\0'), '\0'); // last byte read, so the stream is at its end
    TXMLStream u("ab>cd");
    EXPECT_EQ(ReadUntil(TCharSet(">"), u), "ab");
    EXPECT_EQ(u.Position(), 2u);
    u.SetPosition(3);
    EXPECT_EQ(ReadUntil(TCharSet(">"), u), "c"); // no stop byte: the last one stays unread
    EXPECT_EQ(u.Position(), 4u);
    TXMLStream v("  x");
    try {
        NextChar(v, 'y');
        FAIL();
    } catch (const EXMLReadError& e) {
        EXPECT_EQ(e.Message(), std::string("Malformed XML.  Missing '") + '\0' + "'");
    }
}

TEST(XMLReader, FailedChildLeavesParentUntouched) {
    TXMLNode parent(nullptr, "p");
    TXMLStream s("<c><d></e></c>");
    EXPECT_THROW((void)new TXMLNode(&parent, s), EXMLReadError);
    EXPECT_EQ(parent.GetChildCount(), 0);
}

TEST(XMLReader, CDATAReaderKeepsDataInName) {
    TXMLNode parent(nullptr, "p");
    TXMLStream s("<![CDATA[some data]]>");
    TCDATAXMLNode* cdata = parent.ReadCDATA(s);
    EXPECT_EQ(cdata->GetName(), "![CDATA[some data]]");
    EXPECT_EQ(cdata->GetData(), "");
    EXPECT_EQ(s.Position(), s.Size() - 1); // the '>' is left for the parent
    EXPECT_EQ(parent.GetChildCount(), 1);
    TXMLStream bad("<!DOCTYPE[x]>");
    EXPECT_THROW(parent.ReadCDATA(bad), EAssertionFailed);
    EXPECT_EQ(parent.GetChildCount(), 1);
}
