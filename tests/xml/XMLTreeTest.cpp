#include "XMLTestUtil.h"

#include <cstdio>
#include <fstream>

TEST(XMLTree, AttributeValuesAreStoredEscapedAndReadBackUnescaped) {
    TXMLNode n(nullptr, "n");
    n.SetValue("N", "a&b");
    EXPECT_EQ(n.GetProperties()[0], "N=a&b"); // a bare ampersand is stored as it is
    n.SetValue("n", "x<y");                   // same attribute, any letter case; overwritten in place
    EXPECT_EQ(n.GetProperties().Count(), 1);
    EXPECT_EQ(n.GetProperties()[0], "n=x&lt;y");
    EXPECT_EQ(n.GetValue("N"), "x<y");
    n.SetValue("q", "say \"hi\" > zarvo;AMP;");
    EXPECT_EQ(n.GetValue("q"), "say \"hi\" > &");
    n.SetValue("d", "&amp;lt;");
    EXPECT_EQ(n.GetValue("d"), "<"); // decoded twice: "&amp;" goes first
    n.SetValue("n", "");
    EXPECT_EQ(n.GetProperties().IndexOfName("n"), -1);
    EXPECT_EQ(n.GetValue("missing"), "");
}

TEST(XMLTree, AddingPresentChildListsItTwiceAndRemoveTakesFirst) {
    TXMLNode p(nullptr, "p");
    TXMLNode* a = p.NewNode("a");
    TXMLNode* b = p.NewNode("b");
    p.Add(a);
    ASSERT_EQ(p.GetChildCount(), 3);
    EXPECT_EQ(p.GetChild(2), a);
    EXPECT_EQ(p.getNextChildNodeByName(a), a); // counted from its first listing
    EXPECT_EQ(p.Remove(a), nullptr);           // still listed, so still owned here
    EXPECT_EQ(p.GetChild(0), b);
    EXPECT_EQ(p.GetChild(1), a);
    EXPECT_EQ(a->Parent(), nullptr);
    std::unique_ptr<TXMLNode> owned = p.Remove(a);
    EXPECT_EQ(owned.get(), a);
    EXPECT_EQ(p.GetChildCount(), 1);
    try {
        (void)p.Remove(a);
        FAIL();
    } catch (const EXMLDOMError& e) {
        EXPECT_EQ(e.Message(), "Node not a child of this node");
    }
}

TEST(XMLTree, AddMovesNodeFromItsOldParent) {
    TXMLNode p(nullptr, "p"), q(nullptr, "q");
    TXMLNode* a = p.NewNode("a");
    a->NewNode("inner");
    q.Add(a);
    EXPECT_EQ(p.GetChildCount(), 0);
    EXPECT_EQ(q.GetChild(0), a);
    EXPECT_EQ(a->Parent(), &q);
    EXPECT_THROW(a->Add(&q), EXMLDOMError); // would make a cycle
    TXMLNode outside(nullptr, "o");
    EXPECT_THROW(q.Add(&outside), EXMLDOMError); // owned by the caller, not by a tree
    TXMLNode* adopted = q.Add(std::make_unique<TXMLNode>(nullptr, "u"));
    EXPECT_EQ(adopted->Parent(), &q);
}

TEST(XMLTree, DeletingChildTakesItOutOfParent) {
    TXMLNode p(nullptr, "p");
    TXMLNode* a = p.NewNode("a");
    TXMLNode* b = new TXMLNode(&p, "b");
    delete a;
    ASSERT_EQ(p.GetChildCount(), 1);
    EXPECT_EQ(p.GetChild(0), b);
    p.Clear();
    EXPECT_EQ(p.GetChildCount(), 0);
    EXPECT_THROW(p.GetChild(0), EListError);
}

TEST(XMLTree, NextChildByNameNeedsSiblingFromThisNode) {
    auto root = Parse("<r><x>1</x><y/><x>2</x></r>");
    TXMLNode* x1 = root->getChildNodeByName("x");
    TXMLNode* x2 = root->getNextChildNodeByName(x1);
    ASSERT_NE(x2, nullptr);
    EXPECT_EQ(x2->GetContents().JoinedText(), "2");
    ASSERT_NE(root->getChildNodeByName("y"), nullptr);
    EXPECT_EQ(root->getNextChildNodeByName(x1), x2); // another lookup in between changes nothing
    EXPECT_EQ(root->getNextChildNodeByName(x2), nullptr);
    TXMLNode stranger(nullptr, "x");
    try {
        root->getNextChildNodeByName(&stranger);
        FAIL();
    } catch (const EXMLException&) {
        FAIL() << "not an XML error";
    } catch (const Exception& e) {
        EXPECT_STREQ(e.ClassName(), "Exception");
        EXPECT_EQ(e.Message(), "Sibling not found");
    }
}

TEST(XMLTree, RootAndTypedAncestorLookups) {
    TXMLNode top(nullptr, "top");
    TXMLNode* mid = top.NewNode("mid");
    auto* cdata = new TCDATAXMLNode(mid);
    TXMLNode* leaf = cdata->NewNode("leaf");
    EXPECT_EQ(GetRootNode(leaf), &top);
    EXPECT_EQ(GetRootNode(&top), &top);
    EXPECT_EQ(FindParentNodeType<TCDATAXMLNode>(leaf), cdata);
    EXPECT_EQ(FindParentNodeType<TXMLNode>(leaf), leaf);
    EXPECT_EQ(FindParentNodeType<TCDATAXMLNode>(mid), nullptr);
}

TEST(XMLTree, CDATANodeHoldsDataInNameAndWritesUnencoded) {
    TCDATAXMLNode c(nullptr);
    EXPECT_EQ(c.GetName(), "![CDATA[]]");
    EXPECT_FALSE(c.GetEncodeName());
    c.SetData("1 < 2");
    EXPECT_EQ(c.GetData(), "");
    EXPECT_EQ(c.GetAsString(), "<![CDATA[1 < 2]]>");
}

TEST(XMLTree, DocumentStartsAsVersionedXmlAndLoadsKeepingAttributes) {
    TdjlpDOM dom;
    std::string text;
    dom.SaveToStream(text);
    EXPECT_EQ(text, "<xml version=\"1.0\"/>");
    TXMLStream s("<doc a=\"1\"><c/></doc>");
    dom.LoadFromStream(s);
    EXPECT_EQ(dom.RootNode().GetAsString(), "<doc version=\"1.0\" a=\"1\"><c/></doc>");

    const std::string file = std::string(NB_BINARY_DIR) + "/xml_dom_test.xml";
    dom.SaveToFile(file);
    TdjlpDOM other;
    other.LoadFromFile(file);
    EXPECT_EQ(other.RootNode().GetAsString(), dom.RootNode().GetAsString());
    std::remove(file.c_str());
    other.ThreadedSaveToFile(file, [](int32_t) { FAIL(); });
    EXPECT_FALSE(std::ifstream(file).good());
    EXPECT_THROW(other.LoadFromFile(file), EInOutError);
    EXPECT_THROW(other.LoadFromFile(NB_BINARY_DIR), EInOutError);
}
