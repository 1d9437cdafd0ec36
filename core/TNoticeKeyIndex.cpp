#include "core/TNoticeKeyIndex.h"

#include <algorithm>
#include <cstring>

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

int32_t TNoticeKeyIndex::FindIn(const TTable& table, std::string_view key, uint32_t hash) const {
    if (table.empty()) return -1;
    const size_t mask = table.size() - 1;
    for (size_t i = hash & mask;; i = (i + 1) & mask) {
        const TEntry e = table[i];
        if (e.SlotPlus1 == 0) return -1;
        if (e.SlotPlus1 != Removed && e.Hash == hash &&
            SameKey(FRows[static_cast<int32_t>(e.SlotPlus1 - 1)].AsString(nf_adpt_orig_key), key))
            return static_cast<int32_t>(e.SlotPlus1 - 1);
    }
}

int32_t TNoticeKeyIndex::Find(std::string_view key, uint32_t hash) const {
    const int32_t slot = FindIn(FTable, key, hash);
    return slot >= 0 || FOld.empty() ? slot : FindIn(FOld, key, hash);
}

void TNoticeKeyIndex::Place(uint32_t hash, uint32_t slotPlus1) {
    const size_t mask = FTable.size() - 1;
    size_t i = hash & mask;
    while (FTable[i].SlotPlus1 != 0)
        i = (i + 1) & mask;
    FTable.Write(i) = {hash, slotPlus1};
}

void TNoticeKeyIndex::Migrate(size_t buckets) {
    for (; buckets > 0 && FMigrated < FOld.size(); --buckets, ++FMigrated) {
        const TEntry e = FOld[FMigrated];
        if (e.SlotPlus1 != 0 && e.SlotPlus1 != Removed) Place(e.Hash, e.SlotPlus1);
    }
    if (FMigrated == FOld.size()) {
        FOld.clear();
        FMigrated = 0;
    }
}

void TNoticeKeyIndex::Grow() {
    Migrate(FOld.size()); // finish an earlier growth first (only when insertions outran the copying)
    FOld.swap(FTable);
    TTable bigger(FOld.empty() ? 64 : FOld.size() * 2);
    FTable.swap(bigger);
    FMigrated = 0;
    if (FOld.size() <= 1024) Migrate(FOld.size()); // small tables are copied at once
}

void TNoticeKeyIndex::Insert(int32_t slot, uint32_t hash) {
    if (static_cast<size_t>(FCount + 1) * 2 > FTable.size()) Grow();
    Place(hash, static_cast<uint32_t>(slot) + 1);
    ++FCount;
    if (!FOld.empty()) Migrate(MigrateStep);
}

size_t TNoticeKeyIndex::Locate(const TTable& table, uint32_t hash, uint32_t slotPlus1) {
    if (table.empty()) return SIZE_MAX;
    const size_t mask = table.size() - 1;
    for (size_t i = hash & mask;; i = (i + 1) & mask) {
        if (table[i].SlotPlus1 == slotPlus1) return i;
        if (table[i].SlotPlus1 == 0) return SIZE_MAX;
    }
}

void TNoticeKeyIndex::Erase(int32_t slot, std::string_view key) {
    const uint32_t hash = HashKey(key);
    const uint32_t slotPlus1 = static_cast<uint32_t>(slot) + 1;
    bool found = false;
    // The old table keeps its chains intact with a marker: it is read in bucket order while being copied.
    const size_t old = Locate(FOld, hash, slotPlus1);
    if (old != SIZE_MAX) {
        FOld.Write(old).SlotPlus1 = Removed;
        found = true;
    }
    size_t i = Locate(FTable, hash, slotPlus1);
    if (i != SIZE_MAX) {
        found = true;
        // Backward-shift deletion keeps every probe chain unbroken without markers.
        const size_t mask = FTable.size() - 1;
        FTable.Write(i) = {0, 0};
        for (size_t j = (i + 1) & mask; FTable[j].SlotPlus1 != 0; j = (j + 1) & mask) {
            const TEntry e = FTable[j];
            const size_t home = e.Hash & mask;
            // Move entry j into the hole when its home is not in the cyclic range (i, j].
            const bool inRange = i <= j ? (home > i && home <= j) : (home > i || home <= j);
            if (!inRange) {
                FTable.Write(i) = e;
                FTable.Write(j) = {0, 0};
                i = j;
            }
        }
    }
    if (found) --FCount;
}

void TNoticeKeyIndex::Clear() {
    FTable.clear();
    FOld.clear();
    FMigrated = 0;
    FCount = 0;
}

void TNoticeKeyIndex::Rebuild() {
    Clear();
    for (int32_t s = 0; s < FRows.Size(); ++s) {
        const TNoticeRecord& row = FRows[s];
        if (!row.IsNull(nf_nb_internal_key) && !row.IsNull(nf_adpt_orig_key)) Insert(s);
    }
}

void TNoticeKeyIndex::CopyFrom(const TNoticeKeyIndex& other) {
    if (&other == this) return;
    FTable = other.FTable;
    FOld = other.FOld;
    FMigrated = other.FMigrated;
    FCount = other.FCount;
}

void TNoticeKeyIndex::Renumber(std::span<const int32_t> NewSlotOf) {
    // Everything that may fail comes first and leaves the index as valid as it was.
    Migrate(FOld.size()); // one table to rewrite, without markers
    FTable.OwnAll();
    for (size_t i = 0; i < FTable.size(); ++i) {
        const TEntry e = FTable[i];
        if (e.SlotPlus1 == 0) continue;
        const uint32_t now = static_cast<uint32_t>(NewSlotOf[e.SlotPlus1 - 1]) + 1;
        if (now != e.SlotPlus1) FTable.Write(i).SlotPlus1 = now;
    }
}
