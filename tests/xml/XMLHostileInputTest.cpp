// Whatever bytes arrive, the reader ends in a tree or an exception.
#include "XMLTestUtil.h"

namespace {

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
