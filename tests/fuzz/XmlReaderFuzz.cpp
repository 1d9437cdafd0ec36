// The XML reader on any bytes: a notice message's way in (a node built from the text), the character-data
// reader, and the tree operations callers use on what was read. The only exception malformed input may
// raise is EXMLReadError (the character-data reader also raises its assertion failure); whatever was read
// must be walkable by name, writable, and freed without a trace.
//
// The reader scans runs of bytes with pointers, yet promises the decisions of a reader that takes one
// byte at a time. TPlainReader below is that reader, written the slow and obvious way: both must build
// the same tree, or fail with the same message.
#include "FuzzSupport.h"

#include "support/StrUtils.h"
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

// One byte at a time: every read takes a byte (none past the end), every step back gives one back.
class TPlainReader {
public:
    explicit TPlainReader(std::string_view Text) : FText(Text) {}

    void ReadElement(TXMLNode& Node, int Depth) {
        if (Depth >= MaxXMLNestingDepth)
            throw EXMLReadError("Malformed XML.  Elements nested deeper than " +
                                std::to_string(MaxXMLNestingDepth));
        ReadChar('<');
        Node.SetName(ReadUntil(" />"));
        bool inStartTag = true;
        while (!AtEnd()) {
            const size_t at = FPos;
            const char c = ReadChar('\0');
            if (c == ' ') {
                if (inStartTag) ReadProperty(Node);
            } else if (c == '/') {
                ReadChar('>');
                return;
            } else if (c == '<') {
                if (ReadChar('\0') == '/') {
                    const std::string found = ReadUntil(">");
                    if (found != Node.GetName())
                        throw EXMLReadError("Element end mismatch.  Looking for " + Node.GetName() +
                                            " found " + found);
                    ReadChar('\0');
                    return;
                }
                FPos = at;
                ReadElement(*Node.NewNode(""), Depth + 1);
            } else if (c == '>') {
                inStartTag = false;
                TXMLStrings lines;
                lines.SetText(Trim(ReadUntil("<")));
                Node.SetContents(&lines);
            }
        }
    }

private:
    bool AtEnd() const { return FPos >= FText.size(); }
    char Take() { return AtEnd() ? '\0' : FText[FPos++]; }

    char ReadChar(char Expected) {
        char c = Take();
        if (static_cast<unsigned char>(c) < 32) c = ' ';
        if (Expected != '\0' && c != Expected) Missing(c);
        return c;
    }
    char NextChar(char Expected) {
        char c;
        do
            c = ReadChar('\0');
        while (c == ' ' && !AtEnd());
        if (AtEnd()) c = '\0';
        if (Expected != '\0' && c != Expected) Missing(c);
        return c;
    }
    // Past the end nothing is read, so nothing is given back.
    std::string ReadUntil(std::string_view Stops) {
        if (AtEnd()) return {};
        std::string result;
        char b = Take();
        while (!AtEnd() && Stops.find(b) == std::string_view::npos) {
            result += b;
            b = Take();
        }
        --FPos;
        return result;
    }
    void ReadProperty(TXMLNode& Node) {
        std::string name = ReadUntil("=");
        if (name.empty()) throw EXMLReadError("Malformed XML.  Missing property name");
        NextChar('=');
        NextChar('"');
        const std::string value = ReadUntil("\"");
        ReadChar('"');
        Node.SetValue(Trim(name), value);
    }
    [[noreturn]] static void Missing(char Found) {
        throw EXMLReadError(std::string("Malformed XML.  Missing '") + Found + "'");
    }

    std::string_view FText;
    size_t FPos = 0;
};

void CheckSameTree(const TXMLNode& A, const TXMLNode& B) {
    FUZZ_CHECK(A.GetName() == B.GetName(), "name '" + A.GetName() + "', plainly '" + B.GetName() + "'");
    FUZZ_CHECK(A.GetProperties() == B.GetProperties(), "attributes of " + A.GetName());
    FUZZ_CHECK(A.GetContents() == B.GetContents(), "text of " + A.GetName());
    FUZZ_CHECK(A.GetChildCount() == B.GetChildCount(), "children of " + A.GetName());
    for (int32_t i = 0; i < A.GetChildCount(); ++i)
        CheckSameTree(*A.GetChild(i), *B.GetChild(i));
}

// The plain reader's tree, or its error message.
std::unique_ptr<TXMLNode> ReadPlainly(std::string_view Text, std::string& Error) {
    auto root = std::make_unique<TXMLNode>(nullptr, "");
    try {
        TPlainReader(Text).ReadElement(*root, 0);
    } catch (const EXMLReadError& e) {
        Error = e.Message();
        return nullptr;
    }
    return root;
}

void ReadElement(std::string_view Text) {
    std::string plainError;
    const std::unique_ptr<TXMLNode> plain = ReadPlainly(Text, plainError);
    std::unique_ptr<TXMLNode> root;
    try {
        root = std::make_unique<TXMLNode>(Text);
    } catch (const EXMLReadError& e) {
        FUZZ_CHECK(!plain, "refused what reads plainly: " + e.Message());
        FUZZ_CHECK(e.Message() == plainError, "'" + e.Message() + "', plainly '" + plainError + "'");
        return;
    }
    FUZZ_CHECK(plain != nullptr, "read what plainly fails with '" + plainError + "'");
    CheckSameTree(*root, *plain);
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
