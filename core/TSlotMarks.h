// A mark (one bit) per row slot that answers "how many marked slots up to here" and "which slot is the k-th
// marked one" in O(log n): the bits in groups of 4096 slots, with a counting (Fenwick) tree over the
// groups' counts, so a count reads O(log groups) integers and at most 64 words of one group. The notice
// store keeps one per kind of visibility (live rows, rows its filter passes) so that positions (RecNo,
// moving to the next visible row) never walk the table. A bit per slot plus 4 bytes per 4096 slots.
// A copy shares the groups' bits with its original until either side changes a group (copy on write, 512
// bytes at a time); the count tree is small and copied at once.
// Owned by its store; not thread-safe. Failures: changes raise std::bad_alloc and leave the marks as they
// were, except Assign, which leaves them empty.
#pragma once

#include "core/TBlockVector.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

class TSlotMarks {
public:
    static constexpr int32_t GroupBits = 12; // 4096 slots, 64 words, one block of the bit vector

    int32_t Size() const { return FSize; }
    int32_t Total() const { return FTotal; }
    bool Get(int32_t slot) const { return ((FWords[slot >> 6] >> (slot & 63)) & 1u) != 0; }

    // Appends one slot at the end with the given mark.
    void Append(bool marked) {
        if ((FSize & 63) == 0) FWords.PushBack(0);
        if ((FSize & GroupMask) == 0) AppendGroup();
        ++FSize;
        if (marked) Set(FSize - 1, true);
    }

    void Set(int32_t slot, bool marked) {
        if (Get(slot) == marked) return;
        uint64_t& word = FWords.Write(slot >> 6);
        word ^= uint64_t(1) << (slot & 63);
        const int32_t delta = marked ? 1 : -1;
        FTotal += delta;
        for (size_t i = size_t(slot >> GroupBits) + 1; i < FGroups.size(); i += i & (~i + 1))
            FGroups[i] += delta;
    }

    // Number of marked slots in [0, slot]; 0 for slot < 0.
    int32_t Prefix(int32_t slot) const {
        if (slot < 0) return 0;
        const int32_t group = slot >> GroupBits;
        int32_t sum = 0;
        for (size_t i = size_t(group); i > 0; i -= i & (~i + 1))
            sum += FGroups[i];
        const int32_t last = slot >> 6;
        for (int32_t w = group << (GroupBits - 6); w < last; ++w)
            sum += std::popcount(FWords[w]);
        const int bit = slot & 63;
        const uint64_t upTo = bit == 63 ? ~uint64_t(0) : (uint64_t(2) << bit) - 1;
        return sum + std::popcount(FWords[last] & upTo);
    }

    // The slot of the k-th marked slot (k from 1), or -1 when there are fewer than k.
    int32_t FindKth(int32_t k) const {
        if (k < 1 || k > FTotal) return -1;
        const size_t groups = FGroups.size() - 1;
        size_t pos = 0;
        size_t step = std::bit_floor(groups);
        for (; step > 0; step /= 2) {
            if (pos + step <= groups && FGroups[pos + step] < k) {
                pos += step;
                k -= FGroups[pos];
            }
        }
        for (int32_t w = int32_t(pos) << (GroupBits - 6);; ++w) { // the k-th mark is in group pos
            uint64_t word = FWords[w];
            const int count = std::popcount(word);
            if (count < k) {
                k -= count;
                continue;
            }
            for (; k > 1; --k)
                word &= word - 1;
            return (w << 6) + std::countr_zero(word);
        }
    }

    // Replaces the marks by Count slots marked as MarkOf(slot) says, in O(Count).
    template <class F> void Assign(int32_t Count, F&& MarkOf) {
        Clear();
        for (int32_t w = 0; w * 64 < Count; ++w) {
            uint64_t word = 0;
            const int32_t end = std::min(Count - w * 64, 64);
            for (int32_t b = 0; b < end; ++b)
                if (MarkOf(w * 64 + b)) word |= uint64_t(1) << b;
            FWords.PushBack(uint64_t(word));
            if ((w & (GroupMask >> 6)) == 0) FGroups.push_back(0);
            FGroups.back() += std::popcount(word);
            FTotal += std::popcount(word);
        }
        FSize = Count;
        for (size_t i = 1; i < FGroups.size(); ++i) { // counts to tree, in place
            const size_t parent = i + (i & (~i + 1));
            if (parent < FGroups.size()) FGroups[parent] += FGroups[i];
        }
    }

    void Clear() {
        FWords.Clear();
        FGroups.assign(1, 0);
        FSize = 0;
        FTotal = 0;
    }

    // Heap bytes these marks hold alone (bits shared with a copy are not counted).
    size_t OwnBytes() const { return FWords.OwnBytes() + FGroups.capacity() * sizeof(int32_t); }

private:
    static constexpr int32_t GroupMask = (1 << GroupBits) - 1;

    // A new, empty group at the end: its tree node covers (i - low, i], the groups i - 1, i - 2, i - 4, ...,
    // i - low / 2 cover (i - low, i - 1] exactly, and they are the last few nodes.
    void AppendGroup() {
        const size_t i = FGroups.size();
        const size_t low = i & (~i + 1);
        int32_t sum = 0;
        for (size_t step = 1; step < low; step *= 2)
            sum += FGroups[i - step];
        FGroups.push_back(sum);
    }

    TBlockVector<uint64_t, GroupBits - 6> FWords; // bits past Size() are 0
    std::vector<int32_t> FGroups = {0};           // the count tree, 1-based over the groups
    int32_t FSize = 0;
    int32_t FTotal = 0;
};
