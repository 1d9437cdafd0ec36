#include "core/TNoticeKeyIndex.h"

namespace {

inline unsigned char Fold(unsigned char c) {
    return (c >= 'A' && c <= 'Z') ? c + ('a' - 'A') : c;
}

bool SameKey(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (Fold(static_cast<unsigned char>(a[i])) != Fold(static_cast<unsigned char>(b[i]))) return false;
    return true;
}

} // namespace

uint32_t TNoticeKeyIndex::HashKey(std::string_view key) {
    uint32_t h = 2166136261u;
    for (unsigned char c : key) {
        h ^= Fold(c);
        h *= 16777619u;
    }
    return h ^ (h >> 15);
}

int32_t TNoticeKeyIndex::Find(std::string_view key, uint32_t hash) const {
    if (key.empty() || FTable.empty()) return -1;
    const size_t mask = FTable.size() - 1;
    for (size_t i = hash & mask;; i = (i + 1) & mask) {
        const TEntry& e = FTable[i];
        if (e.SlotPlus1 == 0) return -1;
        if (e.Hash == hash && SameKey(FRows[e.SlotPlus1 - 1].AsString(nf_adpt_orig_key), key))
            return static_cast<int32_t>(e.SlotPlus1 - 1);
    }
}

void TNoticeKeyIndex::Place(uint32_t hash, uint32_t slotPlus1) {
    const size_t mask = FTable.size() - 1;
    size_t i = hash & mask;
    while (FTable[i].SlotPlus1 != 0)
        i = (i + 1) & mask;
    FTable[i] = {hash, slotPlus1};
}

void TNoticeKeyIndex::Grow() {
    std::vector<TEntry> old;
    old.swap(FTable);
    FTable.assign(old.empty() ? 64 : old.size() * 2, TEntry{0, 0});
    for (const TEntry& e : old)
        if (e.SlotPlus1) Place(e.Hash, e.SlotPlus1);
}

void TNoticeKeyIndex::Insert(int32_t slot, uint32_t hash) {
    if (static_cast<size_t>(FCount + 1) * 2 > FTable.size()) Grow();
    Place(hash, static_cast<uint32_t>(slot) + 1);
    ++FCount;
}

void TNoticeKeyIndex::Erase(int32_t slot, std::string_view key) {
    if (FTable.empty() || key.empty()) return;
    const size_t mask = FTable.size() - 1;
    size_t i = HashKey(key) & mask;
    while (FTable[i].SlotPlus1 != static_cast<uint32_t>(slot) + 1) {
        if (FTable[i].SlotPlus1 == 0) return; // was never entered
        i = (i + 1) & mask;
    }
    // Backward-shift deletion keeps every probe chain unbroken without tombstones.
    FTable[i] = {0, 0};
    --FCount;
    for (size_t j = (i + 1) & mask; FTable[j].SlotPlus1 != 0; j = (j + 1) & mask) {
        const size_t home = FTable[j].Hash & mask;
        // Move entry j into the hole when its home is not in the cyclic range (i, j].
        const bool inRange = i <= j ? (home > i && home <= j) : (home > i || home <= j);
        if (!inRange) {
            FTable[i] = FTable[j];
            FTable[j] = {0, 0};
            i = j;
        }
    }
}

void TNoticeKeyIndex::Clear() {
    FTable.clear();
    FCount = 0;
}

void TNoticeKeyIndex::Rebuild() {
    Clear();
    for (int32_t s = 0; s < FRows.Size(); ++s) {
        const TNoticeRecord& row = FRows[s];
        if (!row.IsNull(nf_nb_internal_key) && !row.AsString(nf_adpt_orig_key).empty()) Insert(s);
    }
}
