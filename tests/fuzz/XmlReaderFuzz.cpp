// The XML reader on any bytes: a notice message's way in (a node built from the text), the character-data
// reader, and the tree operations callers use on what was read. The only exception malformed input may
// raise is EXMLReadError (the character-data reader also raises its assertion failure); whatever was read
// must be walkable by name, writable, and freed without a trace.
#include "FuzzSupport.h"

#include "xml/djlpXML.h"

#include <memory>

namespace {

// Walks the subtree as callers do: by name, first child then next of the same name, which must visit the
// children of each name in document order and nothing else. Returns the number of nodes.
size_t Walk(const TXMLNode& Node, int Depth) {
    FUZZ_CHECK(Depth <= MaxXMLNestingDepth + 1, "tree deeper than the reader allows");
    size_t nodes = 1;
    const int32_t count = Node.GetChildCount();
    for (int32_t i = 0; i < count; ++i) {
        const TXMLNode* child = Node.GetChild(i);
        FUZZ_CHECK(child->Parent() == &Node, "child without its parent");
        // The first of this name: every later child of the name must be reached with getNext.
        if (Node.getChildNodeByName(child->GetName()) == child) {
            int32_t seen = 0;
            for (const TXMLNode* c = child; c; c = Node.getNextChildNodeByName(c))
                ++seen;
            int32_t expected = 0;
            for (int32_t j = 0; j < count; ++j)
                expected += Node.GetChild(j)->GetName() == child->GetName();
            FUZZ_CHECK(seen == expected, "getNextChildNodeByName skipped or repeated a child");
        }
        nodes += Walk(*child, Depth + 1);
    }
    const TXMLStrings& props = Node.GetProperties();
    for (int32_t i = 0; i < props.Count(); ++i)
        Node.GetValue(props.Names(i));
    Node.GetContents().JoinedText();
    return nodes;
}

void ReadElement(std::string_view Text) {
    std::unique_ptr<TXMLNode> root;
    try {
        root = std::make_unique<TXMLNode>(Text);
    } catch (const EXMLReadError&) {
        return;
    }
    Walk(*root, 0);
    const std::string written = root->GetAsString();
    FUZZ_CHECK(!written.empty() && written[0] == '<', "the writer wrote no element");
    // Reading again into the same node replaces its children and keeps its attributes.
    const int32_t props = root->GetProperties().Count();
    try {
        root->SetAsString(Text);
    } catch (const EXMLReadError&) {
        FUZZ_CHECK(false, "a text that parsed once failed the second time");
    }
    FUZZ_CHECK(root->GetProperties().Count() >= props, "reading again lost attributes");
}

void ReadCharacterData(std::string_view Text) {
    TXMLNode parent(nullptr, "a");
    TXMLStream stream(Text);
    int32_t expected = 0;
    try {
        TCDATAXMLNode* data = parent.ReadCDATA(stream);
        FUZZ_CHECK(data->Parent() == &parent, "character data not adopted");
        data->GetAsString();
        expected = 1;
    } catch (const EXMLReadError&) {
    } catch (const EAssertionFailed&) {
    }
    FUZZ_CHECK(parent.GetChildCount() == expected, "a failed character-data read left a child behind");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* Data, size_t Size) {
    const std::string_view text = InputText(Data, Size);
    ReadElement(text);
    if (text.size() >= 3 && text.substr(0, 3) == "<![") ReadCharacterData(text);
    return 0;
}
