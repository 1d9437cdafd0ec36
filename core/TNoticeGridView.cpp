// The view keeps the member slots in a counted B+tree (TCountedSlotTree): positions and the slot at a
// position come from the counts, and the tree's slot-to-leaf map finds a row that was updated or deleted
// without comparing it (its old values are gone by the time the store says so). Only insertions compare,
// O(log n) times. The tree refers to rows by slot only and reads them through the store, so when the store
// compacts and renumbers its slots the view rewrites the tree's slots in one pass, without comparing.
//
// Membership is decided by the filter the view was built for (Member): null means every live row, else
// the store's compiled filter, whose pass marks the store keeps even while filtering is switched off. So
// the switch a notice message flips off and on again changes nothing here; the filter in effect is
// compared when the view is next read, and the view is rebuilt only when it really differs.
//
// A narrowing (the quick search) is applied on top of Member: events ask it about the one row, a rebuild
// asks it about all rows at once, and a new condition is applied at the next read by dropping rows from an
// order that stands (so nothing is compared): from the rows served when it only narrows, else from a
// second tree of all Member's rows that is kept only while a narrowing narrows.
#include "core/TNoticeGridView.h"

#include "core/TCountedSlotTree.h"
#include "core/TNoticeRowOrder.h"
#include "core/TNoticeRowSort.h"

#include <algorithm>

struct TNoticeGridView::TImpl final : INoticeRowObserver {
    // Leaves of 128 slots (512 bytes) and inner nodes of 64 children: three levels above the leaves hold
    // well over a million rows, and a row costs about 5 bytes in the leaves plus 4 in the slot map.
    using TTree = TCountedSlotTree<128, 64>;

    explicit TImpl(TNoticeStore& store) : Store(store) { KeyTree(Tree); }

    TNoticeStore& Store;
    TTree Tree; // the rows served
    // While a narrowing narrows: every row Member passes, in order, so that a search taken back (a letter
    // deleted, the box cleared) is served by dropping rows from it rather than by sorting again.
    std::unique_ptr<TTree> Full;
    std::vector<TSortColumn> Groups;
    std::vector<TSortColumn> Sorts;
    std::vector<TSortColumn> Columns; // Groups then Sorts: the order applied
    const IRowFilter* Member = nullptr;
    IRowNarrowing* Narrowing = nullptr;
    uint64_t NarrowSeen = 0; // the narrowing's generation Tree holds
    bool Stale = true;       // rebuild at the next read
    uint64_t Revision = 1;
    uint64_t Rebuilds = 0;

    // The order to apply, a field named twice counting at its first place; false when it stands.
    bool SetColumns(const std::vector<TSortColumn>& groupColumns,
                    const std::vector<TSortColumn>& sortColumns) {
        std::vector<TSortColumn> groups, sorts;
        const auto named = [&](TNoticeField f) {
            const auto same = [f](const TSortColumn& c) { return c.Field == f; };
            return std::any_of(groups.begin(), groups.end(), same) ||
                   std::any_of(sorts.begin(), sorts.end(), same);
        };
        for (const TSortColumn& c : groupColumns)
            if (!named(c.Field)) groups.push_back(c);
        for (const TSortColumn& c : sortColumns)
            if (!named(c.Field)) sorts.push_back(c);
        if (groups == Groups && sorts == Sorts) return false;
        Groups = std::move(groups);
        Sorts = std::move(sorts);
        Columns = Groups;
        Columns.insert(Columns.end(), Sorts.begin(), Sorts.end());
        return true;
    }
    void KeyTree(TTree& tree) {
        tree.SetOrderKey([this](int32_t slot) { return OrderKeyOf(Row(slot), Columns); });
    }
    const TNoticeRecord& Row(int32_t slot) const { return Store.RowBySlot(slot); }
    bool InStore(int32_t slot) const { return Member ? Store.SlotPasses(slot) : Store.SlotLive(slot); }
    bool Narrowed() const { return Narrowing && Narrowing->Narrows(); }
    bool IsMember(int32_t slot) const { return InStore(slot) && (!Narrowed() || Narrowing->Matches(slot)); }
    bool Before(int32_t a, int32_t b) const { return CompareNoticeRows(Row(a), Row(b), Columns) < 0; }

    void Insert(TTree& tree, int32_t slot) {
        tree.Insert(slot, [this, slot](int32_t other) { return Before(other, slot); });
    }
    void Insert(int32_t slot) { Insert(Tree, slot); }
    // Whether a present row still sits between its neighbours.
    bool InPlace(const TTree& tree, int32_t slot) const {
        const int32_t prev = tree.Neighbour(slot, -1), next = tree.Neighbour(slot, +1);
        return (prev < 0 || Before(prev, slot)) && (next < 0 || Before(slot, next));
    }
    static std::vector<int32_t> SlotsOf(const TTree& tree) {
        std::vector<int32_t> slots;
        slots.reserve(size_t(tree.Size()));
        tree.ForEachFrom(0, [&](int32_t slot) {
            slots.push_back(slot);
            return true;
        });
        return slots;
    }

    // Events are applied relative to Member; while the view is stale they are left to the rebuild. Change
    // says whether the view's rows changed. A failure (memory) makes the view stale rather than reaching
    // the store.
    template <class F> void Apply(F&& change) noexcept {
        if (Stale) return;
        if (Member && Member != Store.FilterObject()) Stale = true; // a filter changed unannounced
        try {
            // A narrowing set since the last read is applied first: an event is weighed against the rows the
            // narrowing has left, and the first narrowing takes the rows it is to keep aside (Full) from the
            // view as it stands, which must not already be missing rows the new condition turned away.
            if (!Stale && Narrowing && NarrowSeen != Narrowing->Generation()) Renarrow();
            if (Stale || change()) ++Revision;
        } catch (...) {
            Stale = true;
            ++Revision;
        }
    }
    bool Update(TTree& tree, int32_t slot, bool member) {
        const bool present = tree.Contains(slot);
        if (present && member && InPlace(tree, slot)) {
            tree.Refresh(slot); // its values, so perhaps its order key, changed
            return true;
        }
        if (present) tree.Erase(slot);
        if (member) Insert(tree, slot);
        return member || present;
    }
    void RowInserted(int32_t slot) override {
        Apply([&] {
            if (Full && InStore(slot)) Insert(*Full, slot);
            if (!IsMember(slot)) return false;
            Insert(slot);
            return true;
        });
    }
    void RowUpdated(int32_t slot) override {
        Apply([&] {
            if (Full) Update(*Full, slot, InStore(slot));
            return Update(Tree, slot, IsMember(slot));
        });
    }
    void RowDeleted(int32_t slot) override {
        Apply([&] {
            if (Full) Full->Erase(slot);
            const bool present = Tree.Contains(slot);
            Tree.Erase(slot);
            return present;
        });
    }
    void RowsReset() override {
        Stale = true;
        ++Revision;
    }
    // Rows kept their order and values; only their numbers changed.
    void SlotsRenumbered(std::span<const int32_t> NewSlotOf) override {
        Apply([&] {
            Tree.Renumber(NewSlotOf);
            if (Full) Full->Renumber(NewSlotOf);
            return false;
        });
    }

    void Sync() {
        if (Stale || Member != Store.ActiveFilter())
            Rebuild();
        else if (Narrowing && NarrowSeen != Narrowing->Generation())
            Renarrow();
    }
    // Serves Member's rows, given in order, through the narrowing; keeps them in Full while it narrows.
    void Serve(std::vector<int32_t> slots) {
        if (!Narrowed()) {
            Full.reset();
            Tree.Assign(slots.data(), static_cast<int32_t>(slots.size()));
            return;
        }
        if (!Full) {
            Full = std::make_unique<TTree>();
            KeyTree(*Full);
        }
        Full->Assign(slots.data(), static_cast<int32_t>(slots.size()));
        Narrowing->Narrow(slots);
        Tree.Assign(slots.data(), static_cast<int32_t>(slots.size()));
    }
    // The narrowing changed: drop rows from those served when it only narrows, else from all of Member's.
    void Renarrow() {
        Stale = true; // until it has finished
        const uint64_t generation = Narrowing->Generation();
        if (!Full && !Narrowed()) {
            // it narrowed nothing and still does: the rows stand
        } else if (Full && Narrowed() && Narrowing->Refines(NarrowSeen)) {
            std::vector<int32_t> slots = SlotsOf(Tree);
            Narrowing->Narrow(slots);
            Tree.Assign(slots.data(), static_cast<int32_t>(slots.size()));
        } else {
            Serve(SlotsOf(Full ? *Full : Tree));
        }
        NarrowSeen = generation;
        Stale = false;
        ++Revision;
    }
    // The sorted slots go straight into the tree's leaves, which it reuses: no list of every slot between.
    struct TTreeLoad final : INoticeSlotSink {
        explicit TTreeLoad(TTree& tree) : Tree(tree) {}
        TTree& Tree;
        void Begin(int32_t Count) override { Tree.BeginAssign(Count); }
        void Take(const int32_t* Slots, int32_t Count) override {
            for (int32_t i = 0; i < Count; ++i)
                Tree.Append(Slots[i]);
        }
    };
    void Rebuild() {
        Stale = true; // until it has finished: a failure leaves the rebuild to the next read
        Member = Store.ActiveFilter();
        NarrowSeen = Narrowing ? Narrowing->Generation() : 0;
        if (!Narrowed()) {
            // The common case: the sorted slots go straight into the tree.
            Full.reset();
            TTreeLoad load(Tree);
            SortNoticeRows(Store, Columns, Member != nullptr, load);
            Tree.EndAssign();
        } else {
            std::vector<int32_t> slots;
            const int32_t count = Store.SlotCount();
            slots.reserve(static_cast<size_t>(Member ? Store.RecordCount() : Store.TotalCount()));
            for (int32_t s = 0; s < count; ++s)
                if (InStore(s)) slots.push_back(s);
            SortNoticeSlots(Store, Columns, slots);
            Serve(std::move(slots));
        }
        Stale = false;
        ++Revision;
        ++Rebuilds;
    }

    // The end of the run that shares group columns 0..Level with the row at First.
    int32_t GroupEnd(int Level, int32_t First) const {
        const TNoticeRecord& row = Row(Tree.At(First));
        const TSortColumn* cols = Columns.data();
        return Tree.Partition(
            [&](int32_t s) { return CompareNoticeColumns(Row(s), row, cols, size_t(Level) + 1) <= 0; });
    }

    bool WalkGroups(int Level, int32_t Begin, int32_t End,
                    const std::function<bool(const TGridNode&)>& Visit) const {
        for (int32_t first = Begin; first < End;) {
            const int32_t end = GroupEnd(Level, first);
            TGridNode head;
            head.IsGroup = true;
            head.Level = Level;
            head.Field = Groups[size_t(Level)].Field;
            head.Row = &Row(Tree.At(first));
            head.Position = first;
            head.RowCount = end - first;
            if (!Visit(head)) return false;
            const bool more = size_t(Level) + 1 < Groups.size() ? WalkGroups(Level + 1, first, end, Visit)
                                                                : WalkRows(first, end, Visit);
            if (!more) return false;
            first = end;
        }
        return true;
    }
    bool WalkRows(int32_t Begin, int32_t End, const std::function<bool(const TGridNode&)>& Visit) const {
        TGridNode node;
        node.Level = static_cast<int>(Groups.size());
        node.RowCount = 1;
        node.Position = Begin;
        bool go = true;
        Tree.ForEachFrom(Begin, [&](int32_t slot) {
            if (node.Position >= End) return false;
            node.Row = &Row(slot);
            go = Visit(node);
            ++node.Position;
            return go;
        });
        return go;
    }
};

TNoticeGridView::TNoticeGridView(TNoticeStore& Store) : FStore(Store), FImpl(std::make_unique<TImpl>(Store)) {
    FStore.AddRowObserver(FImpl.get());
}

TNoticeGridView::TNoticeGridView(TNoticeStore& Store, const TNoticeGridView& OrderOf)
    : TNoticeGridView(Store, OrderOf, OrderOf.GroupColumns(), OrderOf.SortColumns()) {}

TNoticeGridView::TNoticeGridView(TNoticeStore& Store, const TNoticeGridView& RowsOf,
                                 std::vector<TSortColumn> GroupColumns, std::vector<TSortColumn> SortColumns)
    : TNoticeGridView(Store) {
    TImpl& v = *FImpl;
    TImpl& from = *RowsOf.FImpl;
    v.SetColumns(std::move(GroupColumns), std::move(SortColumns));
    if (v.Groups != from.Groups || v.Sorts != from.Sorts) return; // sorted at the first read
    from.Sync();
    // The same stamp means the same rows in the same slots, so the other view's order is this one's.
    if (!from.Stale && Store.ContentStamp() == RowsOf.Store().ContentStamp() &&
        from.Member == Store.ActiveFilter()) {
        v.Tree.CopyFrom(from.Tree);
        v.Member = from.Member;
        v.Stale = false;
    }
}

TNoticeGridView::~TNoticeGridView() {
    FStore.RemoveRowObserver(FImpl.get());
}

void TNoticeGridView::SetOrder(std::vector<TSortColumn> GroupColumns, std::vector<TSortColumn> SortColumns) {
    if (FImpl->SetColumns(std::move(GroupColumns), std::move(SortColumns))) FImpl->Rebuild();
}

void TNoticeGridView::SetNarrowing(IRowNarrowing* Narrowing) {
    if (FImpl->Narrowing == Narrowing) return;
    const bool narrowed = FImpl->Narrowed();
    FImpl->Narrowing = Narrowing;
    if (narrowed || FImpl->Narrowed()) {
        FImpl->Stale = true;
        ++FImpl->Revision;
    } else {
        // Neither narrows a row: the order stands (a view copied from another is not sorted again).
        FImpl->NarrowSeen = Narrowing ? Narrowing->Generation() : 0;
    }
}

IRowNarrowing* TNoticeGridView::Narrowing() const {
    return FImpl->Narrowing;
}

const std::vector<TSortColumn>& TNoticeGridView::GroupColumns() const {
    return FImpl->Groups;
}

const std::vector<TSortColumn>& TNoticeGridView::SortColumns() const {
    return FImpl->Sorts;
}

int32_t TNoticeGridView::RowCount() const {
    FImpl->Sync();
    return FImpl->Tree.Size();
}

const TNoticeRecord* TNoticeGridView::RowAt(int32_t Position) const {
    FImpl->Sync();
    const int32_t slot = FImpl->Tree.At(Position);
    return slot < 0 ? nullptr : &FStore.RowBySlot(slot);
}

int32_t TNoticeGridView::KeyAt(int32_t Position) const {
    const TNoticeRecord* row = RowAt(Position);
    return row ? row->AsInteger(nf_nb_internal_key) : 0;
}

int32_t TNoticeGridView::PositionOf(int32_t Key) const {
    FImpl->Sync();
    const int32_t slot = FStore.SlotOfKey(Key);
    return slot < 0 ? -1 : FImpl->Tree.PositionOf(slot);
}

void TNoticeGridView::GroupRange(int Level, int32_t Position, int32_t& First, int32_t& Count) const {
    TImpl& v = *FImpl;
    v.Sync();
    First = 0;
    Count = 0;
    if (Level < 0 || size_t(Level) >= v.Groups.size() || Position < 0 || Position >= v.Tree.Size()) return;
    const TNoticeRecord& row = v.Row(v.Tree.At(Position));
    const TSortColumn* cols = v.Columns.data();
    First = v.Tree.Partition(
        [&](int32_t s) { return CompareNoticeColumns(v.Row(s), row, cols, size_t(Level) + 1) < 0; });
    Count = v.GroupEnd(Level, Position) - First;
}

void TNoticeGridView::WalkNodes(const std::function<bool(const TGridNode&)>& Visit) const {
    TImpl& v = *FImpl;
    v.Sync();
    if (v.Groups.empty())
        v.WalkRows(0, v.Tree.Size(), Visit);
    else
        v.WalkGroups(0, 0, v.Tree.Size(), Visit);
}

uint64_t TNoticeGridView::Revision() const {
    FImpl->Sync();
    return FImpl->Revision;
}

uint64_t TNoticeGridView::RebuildCount() const {
    return FImpl->Rebuilds;
}
