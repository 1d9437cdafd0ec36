// Whatever bytes arrive, the reader ends in a tree or an exception.
#include "XMLTestUtil.h"

#include <random>

namespace {

const std::string SampleNotice =
    "<?xml version=\"1.0\"?>\r\n<NoticeList><Notice a=\"1\"><Command>post</Command>"
    "<adpt_orig_key>key &amp; 1</adpt_orig_key><note_text>line one\r\nline two</note_text>"
    "<note_severity>2</note_severity><empty/></Notice></NoticeList>";

// Parses Text; true for a tree, false for an EXMLException. Anything else fails the test.
bool ParsesOrRaises(std::string_view Text) {
    try {
        TXMLNode node(Text);
        (void)node.GetAsString();
        return true;
    } catch (const EXMLException&) {
        return false;
    }
}

} // namespace

TEST(XMLHostileInput, EveryTruncationOfSampleEndsInTreeOrError) {
    int trees = 0;
    for (size_t n = 0; n <= SampleNotice.size(); ++n)
        if (ParsesOrRaises(std::string_view(SampleNotice).substr(0, n))) ++trees;
    EXPECT_GT(trees, 0);
    EXPECT_TRUE(ParsesOrRaises(SampleNotice));
}

TEST(XMLHostileInput, RandomBytesEndInTreeOrError) {
    std::mt19937 rng(12345);
    const std::string alphabet = "<>/=\" \r\n\tab![]?&";
    for (int round = 0; round < 3000; ++round) {
        std::string text(rng() % 64, '\0');
        for (char& c : text)
            c = (round % 2) ? static_cast<char>(rng() & 0xff) : alphabet[rng() % alphabet.size()];
        if (round % 3 == 0) text.insert(0, "<");
        ParsesOrRaises(text);
    }
}

TEST(XMLHostileInput, DeepNestingIsRefusedWithReadError) {
    std::string deep;
    for (int i = 0; i < 100000; ++i)
        deep += "<a>";
    try {
        TXMLNode node(deep);
        FAIL() << "deep nesting accepted";
    } catch (const EXMLReadError& e) {
        EXPECT_EQ(e.Message(), "Malformed XML.  Elements nested deeper than 1000");
    }
    std::string allowed;
    for (int i = 0; i < MaxXMLNestingDepth; ++i)
        allowed += "<a>";
    EXPECT_TRUE(ParsesOrRaises(allowed));
    // A "<" with nothing after it starts a child at that "<" again: the input still ends the read.
    EXPECT_TRUE(ParsesOrRaises("<a><<"));
}

TEST(XMLHostileInput, MultiMegabyteTextIsReadWhole) {
    const std::string big(4 * 1024 * 1024, 'x');
    auto node = Parse("<a>" + big + "</a>");
    EXPECT_EQ(node->GetContents().JoinedText().size(), big.size());
    std::string many = "<a>";
    for (int i = 0; i < 200000; ++i)
        many += "line\n";
    many += "</a>";
    EXPECT_EQ(Parse(many)->GetContents().Count(), 200000);
    std::string wide = "<a>";
    for (int i = 0; i < 100000; ++i)
        wide += "<b/>";
    wide += "</a>";
    EXPECT_EQ(Parse(wide)->GetChildCount(), 100000);
}
