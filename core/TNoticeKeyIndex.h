// The store's unique, case-insensitive index of adpt_orig_key: an open-addressing hash table of row slots,
// hashed on the key folded to lower case (ASCII). The keys themselves are not copied; the table reads them
// from the rows, so it costs 8 bytes per entry at most twice over. Null and empty keys are never entered.
// Owned by its store, which keeps it in step with its rows; not thread-safe.
#pragma once

#include "core/TNoticeRows.h"

#include <cstdint>
#include <string_view>
#include <vector>

class TNoticeKeyIndex {
public:
    explicit TNoticeKeyIndex(const TNoticeRows& rows) : FRows(rows) {}

    static uint32_t HashKey(std::string_view key);

    // The slot of the row whose key equals key ignoring ASCII case, or -1. Hash: HashKey(key).
    int32_t Find(std::string_view key) const { return Find(key, HashKey(key)); }
    int32_t Find(std::string_view key, uint32_t hash) const;
    // Enters the slot under its row's current key (which must be non-empty and not present).
    void Insert(int32_t slot) { Insert(slot, HashKey(FRows[slot].AsString(nf_adpt_orig_key))); }
    void Insert(int32_t slot, uint32_t hash);
    // Removes the slot, entered under key (the key it was inserted with).
    void Erase(int32_t slot, std::string_view key);
    void Clear();
    // Rebuilds from every live row with a non-empty key.
    void Rebuild();
    int32_t Count() const { return FCount; }

private:
    struct TEntry {
        uint32_t Hash;
        uint32_t SlotPlus1; // 0: empty
    };
    void Grow();
    void Place(uint32_t hash, uint32_t slotPlus1);

    const TNoticeRows& FRows;
    std::vector<TEntry> FTable; // size a power of two, or empty
    int32_t FCount = 0;
};
