// The element tree: construction, ownership, lookup and attribute values. Reading is in XMLReader.cpp,
// writing in XMLWriter.cpp.
#include "xml/djlpXML.h"

#include "support/StrUtils.h"

#include <algorithm>
#include <fstream>

TXMLNode::TXMLNode(TXMLNode* Parent, std::string Name, const TXMLStrings* Properties)
    : FName(std::move(Name)) {
    if (Properties) FProperties = *Properties;
    if (Parent) Parent->Adopt(this);
}

TXMLNode::TXMLNode(TXMLNode* Parent) : TXMLNode(Parent, std::string()) {}

// Delegating: when the read fails the destructor runs, which takes the node out of Parent again.
TXMLNode::TXMLNode(TXMLNode* Parent, TXMLStream& Stream) : TXMLNode(Parent, std::string()) {
    ReadFromStream(Stream);
}

TXMLNode::TXMLNode(TXMLStream& Stream) : TXMLNode(nullptr, Stream) {}

TXMLNode::TXMLNode(std::string_view Text) : TXMLNode(nullptr, std::string()) {
    TXMLStream stream(Text);
    ReadFromStream(stream);
}

TXMLNode::~TXMLNode() {
    if (FOwner) {
        // Deleted by hand while still listed: the owner must forget it without freeing it again.
        std::unique_ptr<TXMLNode> self = FOwner->ReleaseAll(this);
        (void)self.release();
    }
    Clear();
}

namespace {

// Room for one more child, made before ownership is taken so that a failing allocation leaves no owner.
template <class V> void MakeRoomForOne(V& Slots) {
    // Elements that have children usually have a dozen or more (a notice has up to twenty): starting at
    // 24 gives a notice one allocation instead of several regrowths.
    if (Slots.size() == Slots.capacity()) Slots.reserve(Slots.empty() ? 24 : Slots.size() * 2);
}

// Refuses a child that would close a cycle: Parent itself or one of its ancestors.
void CheckNotAncestor(const TXMLNode& Parent, const TXMLNode* Child) {
    for (const TXMLNode* n = &Parent; n; n = n->Parent())
        if (n == Child) throw EXMLDOMError("Node cannot become a child of itself or its descendant");
}

} // namespace

void TXMLNode::Adopt(TXMLNode* Child) {
    MakeRoomForOne(FChildren);
    FChildren.push_back(TChildSlot{Child, std::unique_ptr<TXMLNode>(Child)});
    Child->FParent = this;
    Child->FOwner = this;
}

std::unique_ptr<TXMLNode> TXMLNode::ReleaseAll(TXMLNode* Child) noexcept {
    std::unique_ptr<TXMLNode> owned;
    for (auto& slot : FChildren)
        if (slot.Node == Child && slot.Owned) owned = std::move(slot.Owned);
    std::erase_if(FChildren, [Child](const TChildSlot& slot) { return slot.Node == Child; });
    Child->FOwner = nullptr;
    if (Child->FParent == this) Child->FParent = nullptr;
    return owned;
}

void TXMLNode::Add(TXMLNode* Child) {
    if (!Child) throw EXMLDOMError("Node not assigned");
    CheckNotAncestor(*this, Child);
    std::unique_ptr<TXMLNode> owned;
    if (Child->FParent && Child->FParent != this) owned = Child->FParent->Remove(Child);
    if (!owned && Child->FOwner && Child->FOwner != this) owned = Child->FOwner->ReleaseAll(Child);
    if (owned) {
        Add(std::move(owned));
        return;
    }
    if (Child->FOwner != this) throw EXMLDOMError("Node is not owned by a tree");
    // Already one of ours: it is listed once more, as callers of the library have always seen it.
    FChildren.push_back(TChildSlot{Child, nullptr});
    FListedTwice = true;
    Child->FParent = this;
}

TXMLNode* TXMLNode::Add(std::unique_ptr<TXMLNode> Child) {
    if (!Child) throw EXMLDOMError("Node not assigned");
    if (Child->FParent || Child->FOwner) throw EXMLDOMError("Node already has a parent");
    CheckNotAncestor(*this, Child.get());
    TXMLNode* node = Child.get();
    MakeRoomForOne(FChildren);
    FChildren.push_back(TChildSlot{node, std::move(Child)});
    node->FParent = this;
    node->FOwner = this;
    return node;
}

std::unique_ptr<TXMLNode> TXMLNode::Remove(TXMLNode* Child) {
    auto it = std::find_if(FChildren.begin(), FChildren.end(),
                           [Child](const TChildSlot& slot) { return slot.Node == Child; });
    if (it == FChildren.end()) throw EXMLDOMError("Node not a child of this node");
    std::unique_ptr<TXMLNode> owned = std::move(it->Owned);
    it = FChildren.erase(it);
    Child->FParent = nullptr;
    if (!owned) return nullptr;
    auto later =
        std::find_if(it, FChildren.end(), [Child](const TChildSlot& slot) { return slot.Node == Child; });
    if (later != FChildren.end()) {
        later->Owned = std::move(owned); // still listed: ownership stays with this node
        return nullptr;
    }
    Child->FOwner = nullptr;
    return owned;
}

void TXMLNode::Clear() {
    std::vector<TChildSlot> children;
    children.swap(FChildren);
    const bool listedTwice = FListedTwice;
    FListedTwice = false;
    if (listedTwice) {
        // A node listed again may have its owning listing before a later one: unlink every node before
        // any is freed.
        for (auto& slot : children) {
            slot.Node->FParent = nullptr;
            slot.Node->FOwner = nullptr;
        }
    }
    // Each node listed once: unlink and free in one pass, last first, so every child is visited once.
    for (size_t i = children.size(); i-- > 0;) {
        TChildSlot& slot = children[i];
        if (!listedTwice) {
            slot.Node->FParent = nullptr;
            slot.Node->FOwner = nullptr;
        }
        slot.Owned.reset();
    }
}

TXMLNode* TXMLNode::GetChild(int32_t Index) const {
    if (Index < 0 || Index >= GetChildCount()) throw EListError::OutOfBounds(Index);
    return FChildren[static_cast<size_t>(Index)].Node;
}

TXMLNode* TXMLNode::getChildNodeByName(std::string_view Name) const {
    for (size_t i = 0; i < FChildren.size(); ++i) {
        if (FChildren[i].Node->FName == Name) {
            FLookupHint = i;
            return FChildren[i].Node;
        }
    }
    return nullptr;
}

TXMLNode* TXMLNode::getNextChildNodeByName(const TXMLNode* Sibling) const {
    // The sibling is usually the child the previous lookup returned; otherwise its first listing counts.
    size_t i = FLookupHint;
    if (FListedTwice || i >= FChildren.size() || FChildren[i].Node != Sibling) {
        i = 0;
        while (i < FChildren.size() && FChildren[i].Node != Sibling)
            ++i;
        if (i == FChildren.size()) throw Exception("Sibling not found");
    }
    for (++i; i < FChildren.size(); ++i) {
        if (FChildren[i].Node->FName == Sibling->FName) {
            FLookupHint = i;
            return FChildren[i].Node;
        }
    }
    return nullptr;
}

std::string TXMLNode::GetValue(std::string_view Name) const {
    std::string value = FProperties.Values(Name);
    if (value.find('&') == std::string::npos) return value;
    // "&amp;" first, so "&amp;lt;" comes back as "<"; readers rely on that order.
    value = ReplaceAll(value, "&amp;", "&", true);
    value = ReplaceAll(value, "&lt;", "<", true);
    value = ReplaceAll(value, "&gt;", ">", true);
    return ReplaceAll(value, "&quot;", "\"", true);
}

void TXMLNode::SetValue(std::string_view Name, std::string_view Value) {
    // Only the placeholder becomes "&amp;"; a bare "&" is stored as it is. Readers rely on ampersands
    // passing through unchanged.
    std::string stored = ReplaceAll(Value, "ZARVO;amp;", "&amp;", true);
    bool special = false;
    for (char c : stored)
        special = special || c == '<' || c == '>' || c == '"';
    if (special) {
        stored = ReplaceAll(stored, "<", "&lt;");
        stored = ReplaceAll(stored, ">", "&gt;");
        stored = ReplaceAll(stored, "\"", "&quot;");
    }
    FProperties.SetValues(Name, stored);
}

TXMLNode* TXMLNode::NewNode(std::string Name) {
    return new TXMLNode(this, std::move(Name));
}

TCDATAXMLNode* TXMLNode::ReadCDATA(TXMLStream& Stream) {
    return new TCDATAXMLNode(this, Stream);
}

TXMLNode* TXMLNode::ReadChild(TXMLStream& Stream) {
    return new TXMLNode(this, Stream);
}

void TXMLNode::SetAsString(std::string_view Text) {
    TXMLStream stream(Text);
    ReadFromStream(stream);
}

std::string TXMLNode::GetAsString() const {
    std::string text;
    WriteToStream(text);
    return text;
}

TCDATAXMLNode::TCDATAXMLNode(TXMLNode* Parent) : TXMLNode(Parent, "![CDATA[]]") {
    FEncodeName = false;
}

TCDATAXMLNode::TCDATAXMLNode(TXMLNode* Parent, TXMLStream& Stream) : TCDATAXMLNode(Parent) {
    ReadFromStream(Stream);
}

TXMLNode* GetRootNode(TXMLNode* Node) {
    while (Node && Node->Parent())
        Node = Node->Parent();
    return Node;
}

TdjlpDOM::TdjlpDOM() {
    TdjlpDOM::CreateRootNode();
}

void TdjlpDOM::CreateRootNode() {
    auto root = std::make_unique<TXMLNode>(nullptr, "xml");
    root->SetValue("version", "1.0");
    FRootNode = std::move(root);
}

void TdjlpDOM::LoadFromFile(const std::string& FileName) {
    std::string bytes;
    switch (ReadFileBytes(FileName, bytes)) {
    case TFileRead::CannotOpen:
        throw EInOutError("Cannot open file \"" + FileName + "\"");
    case TFileRead::CannotRead:
        throw EInOutError("Cannot read file \"" + FileName + "\"");
    case TFileRead::Read:
        break;
    }
    TXMLStream stream(bytes);
    LoadFromStream(stream);
}

void TdjlpDOM::LoadFromStream(TXMLStream& Stream) {
    FRootNode->ReadFromStream(Stream);
}

void TdjlpDOM::SaveToFile(const std::string& FileName) const {
    std::string text;
    SaveToStream(text);
    std::ofstream file(FileName, std::ios::binary | std::ios::trunc);
    if (!file) throw EInOutError("Cannot create file \"" + FileName + "\"");
    file.write(text.data(), static_cast<std::streamsize>(text.size()));
    file.close();
    if (!file) throw EInOutError("Cannot write file \"" + FileName + "\"");
}

void TdjlpDOM::SaveToStream(std::string& Stream) const {
    FRootNode->WriteToStream(Stream);
}

void TdjlpDOM::ThreadedSaveToFile(const std::string&, const std::function<void(int32_t)>&) {}
