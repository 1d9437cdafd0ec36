// The grid's selection, kept by nb_internal_key rather than by row: it survives rows moving, arriving and
// leaving. Keys are kept in the order they were selected (what acknowledge, delete and the report read)
// with a bit per key for membership, so a million selected rows cost about 4 MB plus a bit per key, and
// selecting or testing a row is O(1).
//
// A range the user is still sweeping (Shift+click, Shift+arrows, dragging) is a pending change: the next
// step of the sweep undoes it and applies the new range, and anything else commits it.
// Owned by the grid; board thread only. Never throws except on memory exhaustion.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

class TKeySelection {
public:
    bool Contains(int32_t Key) const {
        return Key > 0 && size_t(Key) < FBits.size() * 64 && (FBits[size_t(Key) >> 6] >> (Key & 63) & 1);
    }
    int32_t Count() const { return FCount; }
    bool Empty() const { return FCount == 0; }
    // The keys in the order they were selected (a key selected again counts from its latest selection).
    const std::vector<int32_t>& Keys() const;

    // Each returns whether the selection changed. Keys of 0 or below are ignored.
    bool Add(int32_t Key);
    bool Remove(int32_t Key);
    bool Clear();
    // Replaces the selection by Keys, in that order (duplicates count once).
    void Assign(std::vector<int32_t> Keys);
    // Removes every key for which Gone(key) is true; O(selected keys).
    bool RemoveIf(const std::function<bool(int32_t)>& Gone);

    // The pending range: Revert undoes what was done since the last Commit, Commit keeps it.
    void RecordChanges(bool On) { FRecording = On; }
    bool Revert();
    void Commit();

private:
    void Set(int32_t Key, bool On);
    void Compact() const;

    mutable std::vector<int32_t> FOrder; // may hold keys removed since, and repeats, until compacted
    mutable size_t FStale = 0;           // entries of FOrder that no longer count
    std::vector<uint64_t> FBits;
    int32_t FCount = 0;
    bool FRecording = false;
    std::vector<int32_t> FAdded, FRemoved; // changes since the last Commit, while recording
};
