// The counted slot tree's bulk load, splits, merges and loans, and its structural check: the members of
// TCountedSlotTree that reshape nodes. Included by core/TCountedSlotTree.h only.
#pragma once

#include "core/TCountedSlotTree.h"

// Leaves and inner nodes are filled to 7/8 so that the first insertions do not split them all.
template <int LeafCap, int InnerCap> void TCountedSlotTree<LeafCap, InnerCap>::BeginAssign(int32_t Count) {
    FLoad.Spare.clear();
    FLoad.Spare.reserve(FLeaves.size() - FFreeLeaves.size());
    for (auto& leaf : FLeaves)
        if (leaf) FLoad.Spare.push_back(std::move(leaf));
    FLeaves.clear();
    FFreeLeaves.clear();
    FInners.clear();
    FFreeInners.clear();
    // Written over rather than cleared: the blocks the map holds alone are kept.
    for (int32_t s = 0; s < FLeafOf.Size(); ++s)
        FLeafOf.Write(s) = None;
    FSize = 0;
    FHeight = 0;
    constexpr int32_t LeafFill = std::min(LeafCap - 1, std::max(MinLeaf * 2, LeafCap * 7 / 8));
    FLoad.Count = Count;
    FLoad.LeafCount = std::max<int32_t>(1, (Count + LeafFill - 1) / LeafFill);
    FLoad.Made = 0;
    FLoad.Left = 0;
    FLeaves.reserve(size_t(FLoad.LeafCount));
}

template <int LeafCap, int InnerCap> void TCountedSlotTree<LeafCap, InnerCap>::NextLoadLeaf() {
    const int32_t l = FLoad.Made++;
    const int32_t count = FLoad.Count, leaves = FLoad.LeafCount;
    // Leaf ids run from 0 in order: the load started with no leaves.
    if (FLoad.Spare.empty()) {
        FLeaves.push_back(std::make_unique<TLeaf>());
    } else {
        FLeaves.push_back(std::move(FLoad.Spare.back()));
        FLoad.Spare.pop_back();
    }
    const uint32_t id = static_cast<uint32_t>(FLeaves.size() - 1);
    TLeaf& leaf = *FLeaves[id];
    leaf.Count = 0;
    leaf.Parent = None;
    leaf.Next = None;
    leaf.Prev = id == 0 ? None : id - 1;
    if (id > 0) FLeaves[id - 1]->Next = id;
    FLoad.Id = id;
    FLoad.Leaf = &leaf;
    FLoad.Left = count / leaves + (l < count % leaves ? 1 : 0);
}

template <int LeafCap, int InnerCap> void TCountedSlotTree<LeafCap, InnerCap>::EndAssign() {
    while (FLoad.Made < FLoad.LeafCount)
        NextLoadLeaf(); // only an empty tree's one leaf
    FLoad.Spare.clear();
    FLoad.Leaf = nullptr;
    FSize = FLoad.Count;
    std::vector<uint32_t> level(FLeaves.size());
    std::vector<int32_t> sizes(level.size()), firsts(level.size());
    for (uint32_t id = 0; id < level.size(); ++id) {
        level[id] = id;
        sizes[id] = FLeaves[id]->Count;
        firsts[id] = FLeaves[id]->Slots[0];
    }
    constexpr int32_t InnerFill = std::min(InnerCap - 1, std::max(MinInner * 2, InnerCap * 7 / 8));
    while (level.size() > 1) {
        ++FHeight;
        const int32_t total = static_cast<int32_t>(level.size());
        const int32_t groups = (total + InnerFill - 1) / InnerFill;
        std::vector<uint32_t> up(static_cast<size_t>(groups));
        std::vector<int32_t> upSizes(up.size(), 0), upFirsts(up.size());
        for (int32_t g = 0, at = 0; g < groups; ++g) {
            const int32_t n = total / groups + (g < total % groups ? 1 : 0);
            const uint32_t id = NewInner();
            TInner& in = *FInners[id];
            for (int32_t i = 0; i < n; ++i) {
                in.Child[i] = level[size_t(at + i)];
                in.Sizes[i] = sizes[size_t(at + i)];
                SetFirst(in, i, firsts[size_t(at + i)]);
                upSizes[size_t(g)] += in.Sizes[i];
                SetParent(in.Child[i], FHeight - 1, id);
            }
            in.Count = n;
            at += n;
            up[size_t(g)] = id;
            upFirsts[size_t(g)] = in.First[0];
        }
        level.swap(up);
        sizes.swap(upSizes);
        firsts.swap(upFirsts);
    }
    FRoot = level[0];
}

template <int LeafCap, int InnerCap>
void TCountedSlotTree<LeafCap, InnerCap>::Renumber(std::span<const int32_t> NewSlotOf) {
    for (const auto& inner : FInners)
        if (inner)
            for (int32_t i = 0; i < inner->Count; ++i)
                inner->First[i] = NewSlotOf[size_t(inner->First[i])];
    FLeafOf.Clear();
    for (uint32_t id = 0; id < FLeaves.size(); ++id) {
        TLeaf* leaf = FLeaves[id].get();
        if (!leaf) continue;
        for (int32_t i = 0; i < leaf->Count; ++i) {
            leaf->Slots[i] = NewSlotOf[size_t(leaf->Slots[i])];
            MapSlot(leaf->Slots[i], id);
        }
    }
}

template <int LeafCap, int InnerCap>
void TCountedSlotTree<LeafCap, InnerCap>::CopyFrom(const TCountedSlotTree& Other) {
    if (&Other == this) return;
    const auto copyNodes = [](auto& to, const auto& from) {
        to.clear();
        to.reserve(from.size());
        for (const auto& node : from)
            to.push_back(node ? std::make_unique<std::decay_t<decltype(*node)>>(*node) : nullptr);
    };
    copyNodes(FLeaves, Other.FLeaves);
    copyNodes(FInners, Other.FInners);
    FFreeLeaves = Other.FFreeLeaves;
    FFreeInners = Other.FFreeInners;
    FRoot = Other.FRoot;
    FHeight = Other.FHeight;
    FSize = Other.FSize;
    FLeafOf = Other.FLeafOf;
}

template <int LeafCap, int InnerCap> bool TCountedSlotTree<LeafCap, InnerCap>::Validate() const {
    int32_t seen = 0;
    uint32_t expectPrev = None;
    if (!ValidateNode(FRoot, FHeight, None, seen, expectPrev)) return false;
    if (seen != FSize || (expectPrev != None && FLeaves[expectPrev]->Next != None)) return false;
    int32_t mapped = 0;
    for (int32_t s = 0; s < FLeafOf.Size(); ++s)
        if (FLeafOf[s] != None) ++mapped;
    return mapped == FSize;
}

template <int LeafCap, int InnerCap>
void TCountedSlotTree<LeafCap, InnerCap>::InsertChild(uint32_t parent, int32_t at, int32_t leftSize,
                                                      uint32_t child, int32_t childSize, int32_t first,
                                                      int childLevel) {
    TInner& in = *FInners[parent];
    MoveEntries(in, at + 2, in, at + 1, in.Count - at - 1);
    in.Sizes[at] = leftSize;
    in.Child[at + 1] = child;
    in.Sizes[at + 1] = childSize;
    SetFirst(in, at + 1, first);
    ++in.Count;
    SetParent(child, childLevel, parent);
    if (in.Count == InnerCap) SplitInner(parent, childLevel + 1);
}

template <int LeafCap, int InnerCap>
void TCountedSlotTree<LeafCap, InnerCap>::LinkSplit(uint32_t left, int32_t leftSize, uint32_t right,
                                                    int32_t rightSize, int level) {
    const uint32_t parent = ParentOf(left, level);
    if (parent == None) {
        const uint32_t root = NewInner();
        TInner& in = *FInners[root];
        in.Count = 2;
        in.Child[0] = left;
        in.Child[1] = right;
        in.Sizes[0] = leftSize;
        in.Sizes[1] = rightSize;
        SetFirst(in, 0, FirstOf(left, level));
        SetFirst(in, 1, FirstOf(right, level));
        SetParent(left, level, root);
        SetParent(right, level, root);
        FRoot = root;
        ++FHeight;
        return;
    }
    InsertChild(parent, ChildIndex(*FInners[parent], left), leftSize, right, rightSize, FirstOf(right, level),
                level);
}

template <int LeafCap, int InnerCap> void TCountedSlotTree<LeafCap, InnerCap>::SplitLeaf(uint32_t id) {
    const uint32_t rightId = NewLeaf();
    TLeaf& left = *FLeaves[id];
    TLeaf& right = *FLeaves[rightId];
    const int32_t keep = left.Count / 2;
    right.Count = left.Count - keep;
    std::memcpy(right.Slots, left.Slots + keep, sizeof(int32_t) * size_t(right.Count));
    left.Count = keep;
    for (int32_t i = 0; i < right.Count; ++i)
        FLeafOf.Write(right.Slots[i]) = rightId;
    right.Next = left.Next;
    right.Prev = id;
    if (left.Next != None) FLeaves[left.Next]->Prev = rightId;
    left.Next = rightId;
    LinkSplit(id, left.Count, rightId, right.Count, 0);
}

template <int LeafCap, int InnerCap>
void TCountedSlotTree<LeafCap, InnerCap>::SplitInner(uint32_t id, int level) {
    const uint32_t rightId = NewInner();
    TInner& left = *FInners[id];
    TInner& right = *FInners[rightId];
    const int32_t keep = left.Count / 2;
    right.Count = left.Count - keep;
    MoveEntries(right, 0, left, keep, right.Count);
    left.Count = keep;
    int32_t leftSize = 0, rightSize = 0;
    for (int32_t i = 0; i < keep; ++i)
        leftSize += left.Sizes[i];
    for (int32_t i = 0; i < right.Count; ++i) {
        rightSize += right.Sizes[i];
        SetParent(right.Child[i], level - 1, rightId);
    }
    LinkSplit(id, leftSize, rightId, rightSize, level);
}

template <int LeafCap, int InnerCap>
void TCountedSlotTree<LeafCap, InnerCap>::RemoveChild(uint32_t parent, int32_t at, int level) {
    TInner& in = *FInners[parent];
    MoveEntries(in, at, in, at + 1, in.Count - at - 1);
    --in.Count;
    RebalanceInner(parent, level);
}

template <int LeafCap, int InnerCap> void TCountedSlotTree<LeafCap, InnerCap>::RebalanceLeaf(uint32_t id) {
    const uint32_t parent = FLeaves[id]->Parent;
    TInner& p = *FInners[parent];
    const int32_t at = ChildIndex(p, id);
    const int32_t li = at + 1 < p.Count ? at : at - 1; // merge with the right sibling, else the left
    TLeaf& left = *FLeaves[p.Child[li]];
    TLeaf& right = *FLeaves[p.Child[li + 1]];
    const uint32_t leftId = p.Child[li], rightId = p.Child[li + 1];
    if (left.Count + right.Count < LeafCap) {
        std::memcpy(left.Slots + left.Count, right.Slots, sizeof(int32_t) * size_t(right.Count));
        for (int32_t i = 0; i < right.Count; ++i)
            FLeafOf.Write(right.Slots[i]) = leftId;
        left.Count += right.Count;
        left.Next = right.Next;
        if (right.Next != None) FLeaves[right.Next]->Prev = leftId;
        p.Sizes[li] = left.Count;
        FreeLeaf(rightId);
        FirstChanged(leftId, 0); // the left one may have been the empty one
        RemoveChild(parent, li + 1, 1);
        return;
    }
    const int32_t total = left.Count + right.Count;
    const int32_t newLeft = total / 2;
    if (left.Count < newLeft) { // the right one lends its first slots
        const int32_t n = newLeft - left.Count;
        std::memcpy(left.Slots + left.Count, right.Slots, sizeof(int32_t) * size_t(n));
        std::memmove(right.Slots, right.Slots + n, sizeof(int32_t) * size_t(right.Count - n));
        for (int32_t i = left.Count; i < newLeft; ++i)
            FLeafOf.Write(left.Slots[i]) = leftId;
    } else { // the left one lends its last slots
        const int32_t n = left.Count - newLeft;
        std::memmove(right.Slots + n, right.Slots, sizeof(int32_t) * size_t(right.Count));
        std::memcpy(right.Slots, left.Slots + newLeft, sizeof(int32_t) * size_t(n));
        for (int32_t i = 0; i < n; ++i)
            FLeafOf.Write(right.Slots[i]) = rightId;
    }
    left.Count = newLeft;
    right.Count = total - newLeft;
    p.Sizes[li] = left.Count;
    p.Sizes[li + 1] = right.Count;
    SetFirst(p, li + 1, right.Slots[0]);
    FirstChanged(leftId, 0);
}

template <int LeafCap, int InnerCap>
void TCountedSlotTree<LeafCap, InnerCap>::RebalanceInner(uint32_t id, int level) {
    TInner& node = *FInners[id];
    if (node.Parent == None) {
        if (node.Count == 1 && level > 0) { // a root with one child hands the root to it
            FRoot = node.Child[0];
            SetParent(FRoot, level - 1, None);
            FreeInner(id);
            --FHeight;
        }
        return;
    }
    if (node.Count >= MinInner) return;
    const uint32_t parent = node.Parent;
    TInner& p = *FInners[parent];
    const int32_t at = ChildIndex(p, id);
    const int32_t li = at + 1 < p.Count ? at : at - 1;
    const uint32_t leftId = p.Child[li], rightId = p.Child[li + 1];
    TInner& left = *FInners[leftId];
    TInner& right = *FInners[rightId];
    if (left.Count + right.Count < InnerCap) {
        MoveEntries(left, left.Count, right, 0, right.Count);
        for (int32_t i = 0; i < right.Count; ++i)
            SetParent(right.Child[i], level - 1, leftId);
        left.Count += right.Count;
        p.Sizes[li] += p.Sizes[li + 1];
        FreeInner(rightId);
        RemoveChild(parent, li + 1, level + 1);
        return;
    }
    const int32_t total = left.Count + right.Count;
    const int32_t newLeft = total / 2;
    if (left.Count < newLeft) {
        const int32_t n = newLeft - left.Count;
        MoveEntries(left, left.Count, right, 0, n);
        for (int32_t i = 0; i < n; ++i)
            SetParent(right.Child[i], level - 1, leftId);
        MoveEntries(right, 0, right, n, right.Count - n);
    } else {
        const int32_t n = left.Count - newLeft;
        MoveEntries(right, n, right, 0, right.Count);
        MoveEntries(right, 0, left, newLeft, n);
        for (int32_t i = 0; i < n; ++i)
            SetParent(right.Child[i], level - 1, rightId);
    }
    left.Count = newLeft;
    right.Count = total - newLeft;
    int32_t leftSize = 0;
    for (int32_t i = 0; i < left.Count; ++i)
        leftSize += left.Sizes[i];
    p.Sizes[li + 1] += p.Sizes[li] - leftSize;
    p.Sizes[li] = leftSize;
    SetFirst(p, li + 1, right.First[0]);
}

template <int LeafCap, int InnerCap>
bool TCountedSlotTree<LeafCap, InnerCap>::ValidateNode(uint32_t node, int level, uint32_t parent,
                                                       int32_t& seen, uint32_t& prev) const {
    const bool root = parent == None;
    if (level == 0) {
        const TLeaf& l = *FLeaves[node];
        if (l.Parent != parent || l.Count >= LeafCap || (!root && l.Count < std::max(1, MinLeaf)))
            return false;
        if (l.Prev != prev || (prev != None && FLeaves[prev]->Next != node)) return false;
        for (int32_t i = 0; i < l.Count; ++i)
            if (!Contains(l.Slots[i]) || FLeafOf[l.Slots[i]] != node) return false;
        prev = node;
        seen += l.Count;
        return true;
    }
    const TInner& in = *FInners[node];
    if (in.Parent != parent || in.Count >= InnerCap || in.Count < (root ? 2 : MinInner)) return false;
    for (int32_t i = 0; i < in.Count; ++i) {
        int32_t under = 0;
        if (!ValidateNode(in.Child[i], level - 1, node, under, prev) || under != in.Sizes[i] ||
            in.First[i] != FirstOf(in.Child[i], level - 1) || (FKeyOf && in.Keys[i] != FKeyOf(in.First[i])))
            return false;
        seen += under;
    }
    return true;
}
