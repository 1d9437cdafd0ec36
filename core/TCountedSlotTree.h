// An order-statistics B+tree of row slots: a sequence of distinct slots in an order its user decides, with
// the slot at a position and the position of a slot in O(log n), and insertion by comparison. Inner nodes
// count the slots under each child and keep each child's first slot, so that a search by comparison reads
// one row per probe and no leaf above the one it ends in. Leaves keep their ids for their life and a map
// from slot to leaf finds a slot without comparing, so a row whose values are already gone can still be
// removed. Slots are plain integers: a user that renumbers its rows rewrites them in one pass (Renumber).
//
// The grid's row order (TNoticeGridView) uses one; the capacities are parameters so that tests can make
// every split and merge happen with a few dozen slots. A leaf or inner node holds at most Cap - 1 entries
// (it splits when it fills), and at least a quarter of Cap unless it is the root.
// Owned by its user; not thread-safe.
#pragma once

#include "core/TBlockVector.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <span>
#include <vector>

template <int LeafCap, int InnerCap> class TCountedSlotTree {
    static_assert(LeafCap >= 4 && InnerCap >= 4, "nodes must split into non-empty halves");

public:
    TCountedSlotTree() { Clear(); }

    int32_t Size() const { return FSize; }
    bool Contains(int32_t slot) const { return slot >= 0 && slot < FLeafOf.Size() && FLeafOf[slot] != None; }

    // The slot at a position, -1 outside 0..Size()-1.
    int32_t At(int32_t pos) const {
        if (pos < 0 || pos >= FSize) return -1;
        uint32_t leaf = Descend(pos);
        return FLeaves[leaf]->Slots[pos];
    }

    // Position of a slot, -1 when absent. O(height * InnerCap + LeafCap), no comparisons.
    int32_t PositionOf(int32_t slot) const {
        if (!Contains(slot)) return -1;
        const uint32_t leaf = FLeafOf[slot];
        int32_t pos = IndexInLeaf(leaf, slot);
        uint32_t child = leaf;
        for (uint32_t p = FLeaves[leaf]->Parent; p != None; child = p, p = FInners[p]->Parent) {
            const TInner& in = *FInners[p];
            for (int32_t i = 0; in.Child[i] != child; ++i)
                pos += in.Sizes[i];
        }
        return pos;
    }

    // The slot before (Step -1) or after (Step +1) a present slot in the order, -1 at either end.
    int32_t Neighbour(int32_t slot, int Step) const {
        uint32_t leaf = FLeafOf[slot];
        const int32_t i = IndexInLeaf(leaf, slot) + Step;
        if (i >= 0 && i < FLeaves[leaf]->Count) return FLeaves[leaf]->Slots[i];
        leaf = Step < 0 ? FLeaves[leaf]->Prev : FLeaves[leaf]->Next;
        if (leaf == None) return -1;
        return Step < 0 ? FLeaves[leaf]->Slots[FLeaves[leaf]->Count - 1] : FLeaves[leaf]->Slots[0];
    }

    // How many slots Before(slot) holds for, when it holds for a prefix of the sequence and for no slot
    // after it: the position at which such a boundary lies. O(log n) calls of Before.
    template <class F> int32_t Partition(F&& Before) const {
        int32_t pos = 0;
        uint32_t node = FRoot;
        for (int level = FHeight; level > 0; --level) {
            const TInner& in = *FInners[node];
            const int32_t j = LastChildBefore(in, Before, nullptr);
            for (int32_t i = 0; i < j; ++i)
                pos += in.Sizes[i];
            node = in.Child[j];
        }
        return pos + CountBefore(*FLeaves[node], Before);
    }

    // An optional number per slot that never decreases along the order (equal numbers decide nothing).
    // Inner nodes keep it for each child's first slot, so that insertion compares numbers where they
    // differ and asks Before only where they tie. Set it before Assign; null for none.
    void SetOrderKey(std::function<uint64_t(int32_t)> KeyOf) { FKeyOf = std::move(KeyOf); }
    // A present slot's order key changed while it kept its place.
    void Refresh(int32_t slot) {
        if (!FKeyOf || !Contains(slot)) return;
        const uint32_t leaf = FLeafOf[slot];
        if (FLeaves[leaf]->Slots[0] == slot) FirstChanged(leaf, 0);
    }

    // Inserts a slot that is not present right after the slots Before(slot) holds for (a prefix).
    template <class F> void Insert(int32_t slot, F&& Before) {
        const uint64_t key = FKeyOf ? FKeyOf(slot) : 0;
        uint32_t node = FRoot;
        for (int level = FHeight; level > 0; --level) {
            TInner& in = *FInners[node];
            const int32_t j = LastChildBefore(in, Before, FKeyOf ? &key : nullptr);
            ++in.Sizes[j];
            node = in.Child[j];
        }
        TLeaf& leaf = *FLeaves[node];
        const int32_t i = CountBefore(leaf, Before);
        std::memmove(leaf.Slots + i + 1, leaf.Slots + i, sizeof(int32_t) * size_t(leaf.Count - i));
        leaf.Slots[i] = slot;
        ++leaf.Count;
        ++FSize;
        MapSlot(slot, node);
        if (i == 0) FirstChanged(node, 0);
        if (leaf.Count == LeafCap) SplitLeaf(node);
    }

    // Removes a slot; nothing when it is absent.
    void Erase(int32_t slot) {
        if (!Contains(slot)) return;
        const uint32_t id = FLeafOf[slot];
        TLeaf& leaf = *FLeaves[id];
        const int32_t i = IndexInLeaf(id, slot);
        std::memmove(leaf.Slots + i, leaf.Slots + i + 1, sizeof(int32_t) * size_t(leaf.Count - i - 1));
        --leaf.Count;
        --FSize;
        FLeafOf.Write(slot) = None;
        uint32_t child = id;
        for (uint32_t p = leaf.Parent; p != None; child = p, p = FInners[p]->Parent)
            --FInners[p]->Sizes[ChildIndex(*FInners[p], child)];
        if (i == 0 && leaf.Count > 0) FirstChanged(id, 0);
        if (leaf.Parent != None && leaf.Count < MinLeaf) RebalanceLeaf(id);
    }

    // Replaces the contents by Count distinct slots in this order, in O(Count).
    void Assign(const int32_t* Slots, int32_t Count) {
        BeginAssign(Count);
        for (int32_t i = 0; i < Count; ++i)
            Append(Slots[i]);
        EndAssign();
    }

    // The same in steps, for a caller that produces the slots in order: BeginAssign(Count), Append each of
    // the Count slots, then EndAssign; the tree is not used otherwise in between. The tree keeps its leaves
    // and the blocks of its slot map that it holds alone, so re-sorting a tree writes over memory it already
    // has instead of touching new pages. A failure (memory) leaves the tree to be assigned again or cleared.
    void BeginAssign(int32_t Count);
    void Append(int32_t slot) {
        if (FLoad.Left == 0) NextLoadLeaf();
        FLoad.Leaf->Slots[FLoad.Leaf->Count++] = slot;
        --FLoad.Left;
        MapSlot(slot, FLoad.Id);
    }
    void EndAssign();

    // Every present slot s becomes NewSlotOf[s] (distinct, not negative); the order and the order keys stay.
    // O(Size + nodes). A failure (memory) leaves the tree to be cleared or assigned again.
    void Renumber(std::span<const int32_t> NewSlotOf);

    // Takes the other tree's slots, order and order keys (its nodes are copied, its slot map shared until
    // either side changes it). This tree keeps its own order-key function, which must give the same keys.
    void CopyFrom(const TCountedSlotTree& Other);

    // Removes every slot.
    void Clear() {
        FLeaves.clear();
        FFreeLeaves.clear();
        FInners.clear();
        FFreeInners.clear();
        FLeafOf.Clear();
        FLoad.Spare.clear();
        FSize = 0;
        FHeight = 0;
        FRoot = NewLeaf();
    }

    // Calls Visit(slot) for the slots from position Pos on, in order, until it returns false.
    template <class F> void ForEachFrom(int32_t Pos, F&& Visit) const {
        if (Pos < 0 || Pos >= FSize) return;
        uint32_t leaf = Descend(Pos);
        for (int32_t i = Pos; leaf != None; leaf = FLeaves[leaf]->Next, i = 0)
            for (; i < FLeaves[leaf]->Count; ++i)
                if (!Visit(FLeaves[leaf]->Slots[i])) return;
    }

    // Checks every structural rule (counts, parents, leaf chain, slot map); for tests.
    bool Validate() const;

private:
    static constexpr uint32_t None = UINT32_MAX;
    static constexpr int32_t MinLeaf = LeafCap / 4;
    static constexpr int32_t MinInner = std::max(2, InnerCap / 4);

    struct TLeaf {
        int32_t Count = 0;
        uint32_t Parent = None;
        uint32_t Prev = None;
        uint32_t Next = None;
        int32_t Slots[LeafCap];
    };
    struct TInner {
        int32_t Count = 0;
        uint32_t Parent = None;
        uint32_t Child[InnerCap]; // leaves when this node's level is 1, inner nodes above
        int32_t Sizes[InnerCap];  // slots under each child
        int32_t First[InnerCap];  // each child's first slot
        uint64_t Keys[InnerCap];  // and its order key, when there is a key
    };

    uint32_t NewLeaf() { return NewNode(FLeaves, FFreeLeaves); }
    uint32_t NewInner() { return NewNode(FInners, FFreeInners); }
    template <class T>
    static uint32_t NewNode(std::vector<std::unique_ptr<T>>& pool, std::vector<uint32_t>& free) {
        if (!free.empty()) {
            const uint32_t id = free.back();
            free.pop_back();
            pool[id] = std::make_unique<T>();
            return id;
        }
        pool.push_back(std::make_unique<T>());
        return static_cast<uint32_t>(pool.size() - 1);
    }
    void FreeLeaf(uint32_t id) {
        FLeaves[id].reset();
        FFreeLeaves.push_back(id);
    }
    void FreeInner(uint32_t id) {
        FInners[id].reset();
        FFreeInners.push_back(id);
    }

    void MapSlot(int32_t slot, uint32_t leaf) {
        while (FLeafOf.Size() <= slot)
            FLeafOf.PushBack(uint32_t(None));
        FLeafOf.Write(slot) = leaf;
    }
    // Parent of a node of the given level (0 = leaf).
    uint32_t& ParentOf(uint32_t node, int level) {
        return level == 0 ? FLeaves[node]->Parent : FInners[node]->Parent;
    }
    void SetParent(uint32_t node, int level, uint32_t parent) { ParentOf(node, level) = parent; }

    int32_t IndexInLeaf(uint32_t leaf, int32_t slot) const {
        const TLeaf& l = *FLeaves[leaf];
        return static_cast<int32_t>(std::find(l.Slots, l.Slots + l.Count, slot) - l.Slots);
    }
    static int32_t ChildIndex(const TInner& in, uint32_t child) {
        return static_cast<int32_t>(std::find(in.Child, in.Child + in.Count, child) - in.Child);
    }

    // The leaf holding position pos; pos becomes the index within it.
    uint32_t Descend(int32_t& pos) const {
        uint32_t node = FRoot;
        for (int level = FHeight; level > 0; --level) {
            const TInner& in = *FInners[node];
            int32_t i = 0;
            while (pos >= in.Sizes[i]) {
                pos -= in.Sizes[i];
                ++i;
            }
            node = in.Child[i];
        }
        return node;
    }

    int32_t FirstOf(uint32_t node, int level) const {
        return level == 0 ? FLeaves[node]->Slots[0] : FInners[node]->First[0];
    }
    // The first slot of a node changed: its entry in its parent follows, and the parent's own entry while
    // the node is its parent's first child.
    void FirstChanged(uint32_t node, int level) {
        for (uint32_t p = ParentOf(node, level); p != None; node = p, p = FInners[p]->Parent, ++level) {
            TInner& in = *FInners[p];
            const int32_t i = ChildIndex(in, node);
            SetFirst(in, i, FirstOf(node, level));
            if (i != 0) return;
        }
    }
    void SetFirst(TInner& in, int32_t i, int32_t first) {
        in.First[i] = first;
        if (FKeyOf) in.Keys[i] = FKeyOf(first);
    }
    // Moves N entries of inner nodes (child, size, first slot and key) from Src[From..] to Dst[To..].
    static void MoveEntries(TInner& dst, int32_t to, const TInner& src, int32_t from, int32_t n) {
        std::memmove(dst.Child + to, src.Child + from, sizeof(uint32_t) * size_t(n));
        std::memmove(dst.Sizes + to, src.Sizes + from, sizeof(int32_t) * size_t(n));
        std::memmove(dst.First + to, src.First + from, sizeof(int32_t) * size_t(n));
        std::memmove(dst.Keys + to, src.Keys + from, sizeof(uint64_t) * size_t(n));
    }
    // The child in which the Before/not-Before boundary lies: the last whose first slot is Before (or 0).
    template <class F> static int32_t LastChildBefore(const TInner& in, F& Before, const uint64_t* key) {
        int32_t lo = 0, hi = in.Count; // child lo's first slot is Before (or lo is 0); hi's is not
        while (hi - lo > 1) {
            const int32_t mid = (lo + hi) / 2;
            const bool before = key && in.Keys[mid] != *key ? in.Keys[mid] < *key : Before(in.First[mid]);
            if (before)
                lo = mid;
            else
                hi = mid;
        }
        return lo;
    }
    template <class F> static int32_t CountBefore(const TLeaf& leaf, F& Before) {
        int32_t lo = 0, hi = leaf.Count;
        while (lo < hi) {
            const int32_t mid = (lo + hi) / 2;
            if (Before(leaf.Slots[mid]))
                lo = mid + 1;
            else
                hi = mid;
        }
        return lo;
    }

    // Puts Child (holding ChildSize slots, the first of them First) right after the child at index At of
    // Parent, whose own size becomes LeftSize; splits Parent when that fills it.
    void InsertChild(uint32_t parent, int32_t at, int32_t leftSize, uint32_t child, int32_t childSize,
                     int32_t first, int childLevel);

    // Gives a node that was split its new right sibling in the parent, making a new root when needed.
    void LinkSplit(uint32_t left, int32_t leftSize, uint32_t right, int32_t rightSize, int level);

    void SplitLeaf(uint32_t id);

    void SplitInner(uint32_t id, int level);

    // Removes the child at index At from an inner node of the given level, then mends the node.
    void RemoveChild(uint32_t parent, int32_t at, int level);

    void RebalanceLeaf(uint32_t id);

    void RebalanceInner(uint32_t id, int level);

    // Starts the next leaf of a bulk load, reusing one of the tree's former leaves when there is one.
    void NextLoadLeaf();

    // Checks the subtree of node and returns its slot count through Seen; Prev follows the leaf chain.
    bool ValidateNode(uint32_t node, int level, uint32_t parent, int32_t& seen, uint32_t& prev) const;

    std::vector<std::unique_ptr<TLeaf>> FLeaves; // by leaf id; null for a freed id
    std::vector<uint32_t> FFreeLeaves;
    std::vector<std::unique_ptr<TInner>> FInners;
    std::vector<uint32_t> FFreeInners;
    uint32_t FRoot = None;
    int FHeight = 0; // 0: the root is a leaf
    int32_t FSize = 0;
    TBlockVector<uint32_t> FLeafOf; // per slot, its leaf (None when absent)
    std::function<uint64_t(int32_t)> FKeyOf;
    // A bulk load in progress: the leaf being filled and the slots it still takes, the leaves made so far
    // out of LeafCount for Count slots, and the former leaves waiting to be reused.
    struct TLoad {
        int32_t Count = 0, LeafCount = 0, Made = 0, Left = 0;
        uint32_t Id = None;
        TLeaf* Leaf = nullptr;
        std::vector<std::unique_ptr<TLeaf>> Spare;
    } FLoad;
};

#include "core/TCountedSlotTreeBalance.h"
