// Counts over row slots that answer "how many marked slots up to here" and "which slot is the k-th marked
// one" in O(log n). The notice store keeps one per kind of visibility so that positions (RecNo, moving to the
// next visible row) never walk the table. Values are 0 or 1 per slot. Owned by its store; not thread-safe.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/TBlockVector.h"

class TFenwickTree {
public:
    int32_t Size() const { return FTree.Size() - 1; }
    int32_t Total() const { return FTotal; }
    bool Get(int32_t slot) const { return FValues[slot] != 0; }

    // Appends one slot at the end with the given mark.
    void Append(bool marked) {
        const int32_t i = Size() + 1; // 1-based position of the new slot
        const int32_t low = i & -i;
        // The new node covers (i - low, i]: its own mark plus (i - low, i - 1], which the nodes i - 1, i - 2,
        // i - 4, ..., i - low / 2 cover exactly. They are the last few nodes, so this is O(1) on average
        // and reads memory that is still in cache, where two prefix sums would walk the whole tree.
        int32_t sum = marked ? 1 : 0;
        for (int32_t step = 1; step < low; step *= 2)
            sum += FTree[i - step];
        FTree.PushBack(int32_t(sum));
        FValues.PushBack(marked ? 1 : 0);
        FTotal += marked ? 1 : 0;
    }

    void Set(int32_t slot, bool marked) {
        const int8_t v = marked ? 1 : 0;
        if (FValues[slot] == v) return;
        const int32_t delta = v - FValues[slot];
        FValues[slot] = v;
        FTotal += delta;
        for (int32_t i = slot + 1; i < FTree.Size(); i += i & -i)
            FTree[i] += delta;
    }

    // Number of marked slots in [0, slot]; 0 for slot < 0.
    int32_t Prefix(int32_t slot) const {
        int32_t sum = 0;
        for (int32_t i = slot + 1; i > 0; i -= i & -i)
            sum += FTree[i];
        return sum;
    }

    // The slot of the k-th marked slot (k from 1), or -1 when there are fewer than k.
    int32_t FindKth(int32_t k) const {
        if (k < 1 || k > FTotal) return -1;
        int32_t pos = 0;
        int32_t step = 1;
        while (step * 2 <= Size())
            step *= 2;
        for (; step > 0; step /= 2) {
            if (pos + step <= Size() && FTree[pos + step] < k) {
                pos += step;
                k -= FTree[pos];
            }
        }
        return pos; // 1-based pos + 1 is the answer, as a 0-based slot that is pos
    }

    // Rebuilds from a mark per slot in O(n).
    void Assign(const std::vector<int8_t>& marks) {
        Clear();
        const int32_t n = static_cast<int32_t>(marks.size());
        for (int32_t i = 0; i < n; ++i) {
            FValues.PushBack(int8_t(marks[i]));
            FTree.PushBack(int32_t(marks[i]));
            FTotal += marks[i];
        }
        for (int32_t i = 1; i <= n; ++i) {
            const int32_t parent = i + (i & -i);
            if (parent <= n) FTree[parent] += FTree[i];
        }
    }

    void Clear() {
        FTree.Clear();
        FTree.PushBack(0);
        FValues.Clear();
        FTotal = 0;
    }

private:
    TBlockVector<int32_t> FTree = [] {
        TBlockVector<int32_t> t;
        t.PushBack(0); // position 0 is unused: the tree is 1-based
        return t;
    }();
    TBlockVector<int8_t> FValues;
    int32_t FTotal = 0;
};
