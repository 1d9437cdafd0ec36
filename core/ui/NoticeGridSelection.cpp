#include "core/ui/NoticeGridSelection.h"

#include <algorithm>
#include <cstddef>

void TKeySelection::Set(int32_t Key, bool On) {
    const size_t word = size_t(Key) >> 6;
    if (word >= FBits.size()) FBits.resize(std::max(word + 1, FBits.size() * 2), 0);
    const uint64_t bit = uint64_t{1} << (Key & 63);
    if (On)
        FBits[word] |= bit;
    else
        FBits[word] &= ~bit;
}

bool TKeySelection::Add(int32_t Key) {
    if (Key <= 0 || Contains(Key)) return false;
    Set(Key, true);
    FOrder.push_back(Key);
    ++FCount;
    if (FRecording) FAdded.push_back(Key);
    // Removed keys stay in FOrder until a read; bound what they cost.
    if (FOrder.size() > 2 * size_t(FCount) + 4096) Compact();
    return true;
}

bool TKeySelection::Remove(int32_t Key) {
    if (!Contains(Key)) return false;
    Set(Key, false);
    --FCount;
    if (FRecording) FRemoved.push_back(Key);
    return true;
}

bool TKeySelection::Clear() {
    if (FRecording) {
        const std::vector<int32_t>& keys = Keys();
        FRemoved.insert(FRemoved.end(), keys.begin(), keys.end());
    }
    const bool changed = FCount > 0;
    FOrder.clear();
    FBits.clear();
    FCount = 0;
    return changed;
}

void TKeySelection::Assign(std::vector<int32_t> Keys) {
    Clear();
    FAdded.clear();
    FRemoved.clear();
    int32_t top = 0;
    for (const int32_t k : Keys)
        top = std::max(top, k);
    FBits.assign(size_t(top) / 64 + 1, 0);
    FOrder = std::move(Keys);
    size_t out = 0;
    for (const int32_t k : FOrder)
        if (k > 0 && !Contains(k)) {
            Set(k, true);
            FOrder[out++] = k;
        }
    FOrder.resize(out);
    FCount = int32_t(out);
}

bool TKeySelection::RemoveIf(const std::function<bool(int32_t)>& Gone) {
    const int32_t before = FCount;
    for (const int32_t k : Keys())
        if (Gone(k)) {
            Set(k, false);
            --FCount;
        }
    if (FCount != before) {
        // The pending range refers to keys that may be gone: keep what is left as it is.
        Commit();
        Compact();
    }
    return FCount != before;
}

const std::vector<int32_t>& TKeySelection::Keys() const {
    if (FOrder.size() != size_t(FCount)) Compact();
    return FOrder;
}

// Keeps each selected key once, at its latest selection: FOrder is walked from the end.
void TKeySelection::Compact() const {
    std::vector<uint64_t> seen(FBits.size(), 0);
    size_t out = FOrder.size();
    for (size_t i = FOrder.size(); i-- > 0;) {
        const int32_t k = FOrder[i];
        if (!Contains(k)) continue;
        uint64_t& word = seen[size_t(k) >> 6];
        const uint64_t bit = uint64_t{1} << (k & 63);
        if (word & bit) continue;
        word |= bit;
        FOrder[--out] = k;
    }
    FOrder.erase(FOrder.begin(), FOrder.begin() + std::ptrdiff_t(out));
}

bool TKeySelection::Revert() {
    const bool recording = FRecording;
    FRecording = false;
    bool changed = false;
    for (const int32_t k : FAdded)
        changed |= Remove(k);
    for (const int32_t k : FRemoved)
        changed |= Add(k);
    FAdded.clear();
    FRemoved.clear();
    FRecording = recording;
    return changed;
}

void TKeySelection::Commit() {
    FAdded.clear();
    FRemoved.clear();
}
