// djlpXML: the board's own small XML library. Adapters' notice messages are parsed with it (one
// TXMLNode constructed from the text), walked by name (getChildNodeByName / getNextChildNodeByName) and
// read through GetContents. The reader is deliberately lenient and byte-oriented; its quirks are relied
// upon by the message texts adapters produce, so they are kept (see the comments in XMLReader.cpp).
//
// Ownership: a node owns its children. A node constructed with a Parent is owned by that parent and must
// be created with new (the returned pointer does not own it); a node constructed without one belongs to
// whoever created it (a local, a member, a std::unique_ptr). Deleting a node frees its subtree and takes
// it out of its parent's list first.
// Threads: a tree is used by one thread at a time; distinct trees are independent.
// Failures: exceptions only (EXMLReadError for malformed input, EXMLDOMError for misuse of the tree); a
// constructor that fails leaves nothing behind, not even in the parent it was given.
#pragma once

#include "support/Exception.h"
#include "xml/XMLStrings.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class EXMLException : public Exception {
public:
    using Exception::Exception;
    const char* ClassName() const noexcept override { return "EXMLException"; }
};

// Misuse of the tree (removing a node that is not a child, ...).
class EXMLDOMError : public EXMLException {
public:
    using EXMLException::EXMLException;
    const char* ClassName() const noexcept override { return "EXMLDOMError"; }
};

// Malformed input ("Malformed XML.  Missing 'x'", "Element end mismatch.  Looking for a found b", ...).
class EXMLReadError : public EXMLException {
public:
    using EXMLException::EXMLException;
    const char* ClassName() const noexcept override { return "EXMLReadError"; }
};

// Elements nested deeper than this raise EXMLReadError instead of exhausting the stack.
constexpr int32_t MaxXMLNestingDepth = 1000;

// A set of stop bytes for ReadUntil.
struct TCharSet {
    bool In[256] = {};
    constexpr explicit TCharSet(std::string_view Chars) {
        for (char c : Chars)
            In[static_cast<unsigned char>(c)] = true;
    }
    constexpr bool Contains(char c) const { return In[static_cast<unsigned char>(c)]; }
};

// The reader's input: a read position over bytes held elsewhere (the bytes must outlive the stream).
class TXMLStream {
public:
    explicit TXMLStream(std::string_view Bytes)
        : FBegin(Bytes.data()), FEnd(FBegin + Bytes.size()), FPos(FBegin) {}
    size_t Position() const { return static_cast<size_t>(FPos - FBegin); }
    size_t Size() const { return static_cast<size_t>(FEnd - FBegin); }
    bool AtEnd() const { return FPos >= FEnd; }
    void SetPosition(size_t Position) { FPos = FBegin + (Position < Size() ? Position : Size()); }

    // For the reader: the raw cursor and the number of elements being read right now.
    const char* Cursor() const { return FPos; }
    const char* End() const { return FEnd; }
    void MoveTo(const char* Pos) { FPos = Pos; }
    int32_t& Depth() { return FDepth; }

private:
    const char* FBegin;
    const char* FEnd;
    const char* FPos;
    int32_t FDepth = 0;
};

// The three reading primitives. ReadChar reads one byte (past the end: none, taken as a zero byte), turns
// bytes below 32 into a space and raises EXMLReadError when Expected is not '\0' and the byte differs.
// NextChar skips spaces; at the end of the stream its result is '\0'. ReadUntil returns the bytes before
// the first stop byte and leaves that byte to be read again.
char ReadChar(TXMLStream& Stream, char Expected);
char NextChar(TXMLStream& Stream, char Expected);
std::string ReadUntil(const TCharSet& StopSet, TXMLStream& Stream);

class TCDATAXMLNode;

class TXMLNode {
public:
    // The base constructor: Name, a copy of Properties (none: empty); adopted by Parent when given.
    TXMLNode(TXMLNode* Parent, std::string Name, const TXMLStrings* Properties = nullptr);
    explicit TXMLNode(TXMLNode* Parent);
    // Parses one element from Stream (EXMLReadError on malformed input).
    TXMLNode(TXMLNode* Parent, TXMLStream& Stream);
    explicit TXMLNode(TXMLStream& Stream);
    // Parses Text; the entry for a whole notice message. The text need not outlive the node.
    explicit TXMLNode(std::string_view Text);
    virtual ~TXMLNode();
    TXMLNode(const TXMLNode&) = delete;
    TXMLNode& operator=(const TXMLNode&) = delete;
    // Nodes come from a per-thread pool of recycled blocks: a notice message builds and frees dozens.
    static void* operator new(size_t Size);
    static void operator delete(void* Block, size_t Size) noexcept;

    TXMLNode* Parent() const { return FParent; }
    // Moves Child here from its old parent. Adding a present child again lists it twice (kept). Child must
    // be owned by a tree; EXMLDOMError for a node owned elsewhere, for null, or for this node or an ancestor.
    void Add(TXMLNode* Child);
    // Adopts a node that has no parent; returns it.
    TXMLNode* Add(std::unique_ptr<TXMLNode> Child);
    // Takes the first listing of Child out (EXMLDOMError "Node not a child of this node" when absent) and
    // clears its Parent. Returns the node's ownership once no listing is left, else null.
    std::unique_ptr<TXMLNode> Remove(TXMLNode* Child);
    // Frees every child, last first.
    void Clear();

    int32_t GetChildCount() const { return static_cast<int32_t>(FChildren.size()); }
    TXMLNode* GetChild(int32_t Index) const; // EListError when out of range
    // First child named exactly Name (bytes, case-sensitive); null when none.
    TXMLNode* getChildNodeByName(std::string_view Name) const;
    // The next child after Sibling with Sibling's name; null when none. Sibling not a child: Exception
    // "Sibling not found".
    TXMLNode* getNextChildNodeByName(const TXMLNode* Sibling) const;

    const std::string& GetName() const { return FName; }
    void SetName(std::string Name) { FName = std::move(Name); }
    // The text lines themselves; GetContents().JoinedText() is the element's text.
    TXMLStrings& GetContents() { return FContents; }
    const TXMLStrings& GetContents() const { return FContents; }
    void SetContents(const TXMLStrings* Lines) { FContents = Lines ? *Lines : TXMLStrings(); }
    const TXMLStrings& GetProperties() const { return FProperties; }
    void SetProperties(const TXMLStrings* Lines) { FProperties = Lines ? *Lines : TXMLStrings(); }
    // Attribute access by name (any letter case); values are stored escaped and come back unescaped.
    std::string GetValue(std::string_view Name) const;
    void SetValue(std::string_view Name, std::string_view Value);
    bool GetEncodeName() const { return FEncodeName; }
    void SetEncodeName(bool Value) { FEncodeName = Value; }

    TXMLNode* NewNode(std::string Name);          // a new child, owned by this node
    TCDATAXMLNode* ReadCDATA(TXMLStream& Stream); // a new character-data child read from Stream
    std::string GetAsString() const;              // the subtree as WriteToStream writes it
    void SetAsString(std::string_view Text);      // ReadFromStream over Text

    // Appends the subtree's XML to Stream.
    virtual void WriteToStream(std::string& Stream) const;
    // Reads this element from Stream: children are replaced, attributes kept, the name replaced.
    virtual void ReadFromStream(TXMLStream& Stream);

protected:
    // Creates a child that parses itself from Stream (at its "<").
    virtual TXMLNode* ReadChild(TXMLStream& Stream);
    // What closes an empty element without text: "/>" here.
    virtual const char* EmptyElementClose() const { return "/>"; }

    bool FEncodeName = true;

private:
    void Adopt(TXMLNode* Child);                                    // takes ownership of a fresh node
    std::unique_ptr<TXMLNode> ReleaseAll(TXMLNode* Child) noexcept; // every listing out, no freeing
    void ReadProperty(TXMLStream& Stream);
    void ReadText(TXMLStream& Stream);
    void ReadEndTag(TXMLStream& Stream);

    struct TChildSlot {
        TXMLNode* Node;
        std::unique_ptr<TXMLNode> Owned; // set on exactly one listing of each child
    };

    TXMLNode* FParent = nullptr; // the parent as callers see it
    TXMLNode* FOwner = nullptr;  // the node whose list owns this one (differs only after a partial Remove)
    std::vector<TChildSlot> FChildren;
    mutable size_t FLookupHint = 0; // index of the child a lookup returned last: iteration stays linear
    bool FListedTwice = false;      // some child is listed more than once (the hint may then mislead)
    TXMLStrings FProperties;
    std::string FName;
    TXMLStrings FContents;
};

// A character-data section. Its data lives only in its name, "![CDATA[" + data + "]]".
class TCDATAXMLNode : public TXMLNode {
public:
    explicit TCDATAXMLNode(TXMLNode* Parent);
    TCDATAXMLNode(TXMLNode* Parent, TXMLStream& Stream);

    void SetData(std::string_view Data) { SetName("![CDATA[" + std::string(Data) + "]]"); }
    // Always empty: the data is read from the name. Kept as the library has always behaved.
    std::string GetData() const { return {}; }

    void ReadFromStream(TXMLStream& Stream) override;

protected:
    const char* EmptyElementClose() const override { return ">"; }
};

// A document: one root node, <xml version="1.0"/> when new. Owned by whoever creates it.
class TdjlpDOM {
public:
    TdjlpDOM();
    virtual ~TdjlpDOM() = default;

    TXMLNode& RootNode() { return *FRootNode; }
    // EInOutError when the file cannot be opened/created; EXMLReadError for malformed content.
    void LoadFromFile(const std::string& FileName);
    void LoadFromStream(TXMLStream& Stream);
    void SaveToFile(const std::string& FileName) const;
    void SaveToStream(std::string& Stream) const;
    // Does nothing at all; present for the interface's sake.
    void ThreadedSaveToFile(const std::string& FileName, const std::function<void(int32_t)>& Progress);

protected:
    // Replaces the root with a new "xml" node carrying version="1.0". Runs from the constructor; a derived
    // document that overrides it calls it again from its own constructor.
    virtual void CreateRootNode();

    std::unique_ptr<TXMLNode> FRootNode;
};

// The writer's escapes: PercentEscape keeps space ! $ ' ( ) * - . digits @ letters _ and writes every
// other byte as "%" + two lower-case hex digits, stopping at the first zero byte; EncodeXMLName writes
// bytes not allowed in a name as "__ZS_ASCII_P__" + decimal value + "__ZS_ASCII_S__".
std::string PercentEscape(std::string_view Text);
std::string EncodeXMLName(const std::string& Name);

// The topmost ancestor of Node (Node itself when it has no parent).
TXMLNode* GetRootNode(TXMLNode* Node);

// Node itself when it is a NodeClass (or derived), else its nearest ancestor that is; null when none.
template <class NodeClass> NodeClass* FindParentNodeType(TXMLNode* Node) {
    for (; Node; Node = Node->Parent())
        if (auto* found = dynamic_cast<NodeClass*>(Node)) return found;
    return nullptr;
}
