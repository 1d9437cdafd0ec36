// The store's slots: finding a key's slot, reclaiming the slots of deleted rows, copying, memory use.
#include "core/TNoticeStore.h"

#include <algorithm>
#include <atomic>
#include <new>
#include <vector>

uint64_t TNoticeStore::NewContentStamp() {
    // Stores on any thread draw from one counter, so two stores share a stamp only through CopyFrom.
    static std::atomic<uint64_t> next{1};
    return next.fetch_add(1, std::memory_order_relaxed);
}

void TNoticeStore::CopyFrom(const TNoticeStore& other) {
    if (&other == this) return;
    // Every member below shares the other store's blocks; nothing is copied until one side writes.
    FRows = other.FRows;
    FSlotKeys = other.FSlotKeys;
    FAlive = other.FAlive;
    FPassing = other.FPassing;
    FKeyIndex.CopyFrom(other.FKeyIndex);
    FNextKey = other.FNextKey;
    FTailSlot = other.FTailSlot;
    FTailKey = other.FTailKey;
    FDead = other.FDead;
    FStamp = other.FStamp;
    FCur = other.FCur;
    FBof = other.FBof;
    FEof = other.FEof;
    FState = TDataSetState::dsBrowse;
    FBuffer = TNoticeRecord();
    FOrigKeyIndex = false;
    FCompiler = other.FCompiler;
    FFilterText = other.FFilterText;
    FFilter = other.FFilter;
    FFiltered = other.FFiltered;
    ++FRowsGeneration;
    TellObservers([](INoticeRowObserver& o) { o.RowsReset(); });
    NotifyDataSet();
}

int32_t TNoticeStore::SlotOfKey(int32_t key) const {
    if (key < 1 || key >= FNextKey) return -1;
    int32_t slot;
    if (key >= FTailKey) {
        // Since the last compaction (or jump of the counter) every insertion took the next slot and key.
        slot = FTailSlot + static_cast<int32_t>(key - FTailKey);
    } else {
        // Older keys: the slots before the tail hold them in increasing order, with gaps.
        int32_t lo = 0, hi = FTailSlot;
        while (lo < hi) {
            const int32_t mid = lo + (hi - lo) / 2;
            if (FSlotKeys[mid] < key)
                lo = mid + 1;
            else
                hi = mid;
        }
        if (lo == FTailSlot || FSlotKeys[lo] != key) return -1;
        slot = lo;
    }
    return FAlive.Get(slot) ? slot : -1;
}

void TNoticeStore::SetNextKey(int32_t Key) {
    if (Key < FNextKey) throw EDatabaseError("The next key must be above every key issued");
    FNextKey = Key;
    FTailSlot = FRows.Size();
    FTailKey = Key;
}

void TNoticeStore::MaybeCompact() noexcept {
    if (FDead < FCompactionFloor || int64_t(FDead) * 4 < int64_t(FRows.Size())) return;
    try {
        Compact();
    } catch (...) {
        // memory ran short before anything moved; a later delete tries again
    }
}

void TNoticeStore::Compact() {
    CheckBrowse();
    if (FDead == 0) return;
    const int32_t size = FRows.Size();
    int32_t first = 0; // the first empty slot: the rows before it stay where they are
    while (FAlive.Get(first))
        ++first;

    // Everything that allocates comes first, so that a failure leaves the store as it was.
    std::vector<int32_t> newSlotOf(static_cast<size_t>(size));
    int32_t live = 0;
    for (int32_t s = 0; s < size; ++s)
        newSlotOf[size_t(s)] = FAlive.Get(s) ? live++ : -1;
    TSlotMarks alive, passing;
    alive.Assign(live, [](int32_t) { return true; });
    if (FFilter) {
        std::vector<int32_t> oldSlotOf(static_cast<size_t>(live));
        for (int32_t s = 0; s < size; ++s)
            if (newSlotOf[size_t(s)] >= 0) oldSlotOf[size_t(newSlotOf[size_t(s)])] = s;
        passing.Assign(live, [&](int32_t s) { return FPassing.Get(oldSlotOf[size_t(s)]); });
    }
    FRows.OwnFrom(first);
    FSlotKeys.OwnFrom(first);
    FKeyIndex.Renumber(newSlotOf); // raises before changing anything; from here on nothing allocates

    for (int32_t s = first; s < size; ++s) {
        const int32_t to = newSlotOf[size_t(s)];
        if (to < 0) continue;
        FRows.Write(to) = std::move(FRows.Write(s));
        FSlotKeys.Write(to) = FSlotKeys[s];
    }
    FRows.Truncate(live);
    FSlotKeys.Truncate(live);
    FAlive = std::move(alive);
    FPassing = std::move(passing);
    FCur = FCur < 0 ? -1 : newSlotOf[size_t(FCur)];
    FDead = 0;
    FTailSlot = live;
    FTailKey = FNextKey;
    Touch();
    TellObservers([&](INoticeRowObserver& o) { o.SlotsRenumbered(newSlotOf); });
}

size_t TNoticeStore::OwnBytes() const {
    size_t bytes = FRows.OwnBytes() + FSlotKeys.OwnBytes() + FAlive.OwnBytes() + FPassing.OwnBytes() +
                   FKeyIndex.OwnBytes();
    for (int32_t s = 0; s < FRows.Size(); ++s) {
        const TNoticeRecord& row = FRows[s];
        if (!FRows.Shared(s) && row.TextData() && !row.TextShared()) bytes += 4 + row.TextBytes();
    }
    return bytes;
}
