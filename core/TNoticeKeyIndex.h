// The store's unique, case-insensitive index of adpt_orig_key: an open-addressing hash table of row slots,
// hashed on the key folded to lower case (ASCII). The keys themselves are not copied; the table reads them
// from the rows, so it costs 8 bytes per entry at most twice over. Rows whose key is null are never
// entered; an empty key is a key like any other.
// Growing is spread over the following insertions (the old table is copied a few buckets at a time and
// searched until then), so no single insertion pauses to rehash a million keys.
// The buckets sit in chunks of 2 KB that are allocated when first written; an index copied from another
// shares the chunks with it until either side writes to one (copy on write).
// Owned by its store, which keeps it in step with its rows; not thread-safe. Failures: changes raise
// std::bad_alloc (an insertion leaves the slot out of the index, a renumbering leaves the index to be
// rebuilt).
#pragma once

#include "core/TNoticeRows.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

class TNoticeKeyIndex {
public:
    explicit TNoticeKeyIndex(const TNoticeRows& rows) : FRows(rows) {}

    static uint32_t HashKey(std::string_view key);

    // The slot of the row whose key equals key ignoring ASCII case, or -1. Hash: HashKey(key).
    int32_t Find(std::string_view key) const { return Find(key, HashKey(key)); }
    int32_t Find(std::string_view key, uint32_t hash) const;
    // Enters the slot under its row's current key (which must not be null and not present).
    void Insert(int32_t slot) { Insert(slot, HashKey(FRows[slot].AsString(nf_adpt_orig_key))); }
    void Insert(int32_t slot, uint32_t hash);
    // Removes the slot, entered under key (the key it was inserted with); nothing when it was not entered.
    void Erase(int32_t slot, std::string_view key);
    void Clear();
    // Rebuilds from every live row whose key is not null.
    void Rebuild();
    // Takes the other index's entries (sharing its chunks); the rows stay this index's own.
    void CopyFrom(const TNoticeKeyIndex& other);
    // The store moved its rows: NewSlotOf[old slot] is the new slot of every entered row. O(buckets).
    // A failure (memory) raises before any entry changed.
    void Renumber(std::span<const int32_t> NewSlotOf);
    int32_t Count() const { return FCount; }
    // Heap bytes the index holds alone (chunks shared with a copy are not counted).
    size_t OwnBytes() const { return FTable.OwnBytes() + FOld.OwnBytes(); }

private:
    struct TEntry {
        uint32_t Hash;
        uint32_t SlotPlus1; // 0: empty; Removed: erased from the old table while it is being copied
    };
    static constexpr uint32_t Removed = UINT32_MAX;
    static constexpr size_t MigrateStep = 8; // old buckets copied per insertion while growing

    // A bucket array in chunks of 256 buckets (2 KB), each allocated when first written and shared with
    // copies until written again. A freshly grown table costs no pass over its memory.
    class TTable {
    public:
        TTable() = default;
        explicit TTable(size_t size) { FChunks.GrowZeroed(static_cast<int32_t>(size)); }
        size_t size() const { return size_t(FChunks.Size()); }
        bool empty() const { return FChunks.Size() == 0; }
        TEntry operator[](size_t i) const { return FChunks[static_cast<int32_t>(i)]; }
        TEntry& Write(size_t i) { return FChunks.Write(static_cast<int32_t>(i)); }
        // Copies every chunk shared with another table, so that writes no longer allocate.
        void OwnAll() { FChunks.OwnFrom(0); }
        void swap(TTable& other) noexcept { std::swap(FChunks, other.FChunks); }
        void clear() { FChunks.Clear(); }
        size_t OwnBytes() const { return FChunks.OwnBytes(); }

    private:
        TBlockVector<TEntry, 8> FChunks;
    };

    static size_t Locate(const TTable& table, uint32_t hash, uint32_t slotPlus1);
    int32_t FindIn(const TTable& table, std::string_view key, uint32_t hash) const;
    void Grow();
    void Migrate(size_t buckets);
    void Place(uint32_t hash, uint32_t slotPlus1);

    const TNoticeRows& FRows;
    TTable FTable;        // size a power of two, or empty
    TTable FOld;          // the table before the last growth, until it is copied; else empty
    size_t FMigrated = 0; // old buckets copied so far
    int32_t FCount = 0;
};
