// Counts over row slots that answer "how many marked slots up to here" and "which slot is the k-th marked
// one" in O(log n). The notice store keeps one per kind of visibility so that positions (RecNo, moving to the
// next visible row) never walk the table. Values are 0 or 1 per slot. Owned by its store; not thread-safe.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

class TFenwickTree {
public:
    int32_t Size() const { return static_cast<int32_t>(FTree.size()) - 1; }
    int32_t Total() const { return FTotal; }
    bool Get(int32_t slot) const { return FValues[slot] != 0; }

    // Appends one slot at the end with the given mark.
    void Append(bool marked) {
        const int32_t i = Size() + 1; // 1-based position of the new slot
        const int32_t low = i & -i;
        // The new node covers (i - low, i]: its own mark plus the slots before it in that range.
        FTree.push_back((marked ? 1 : 0) + Prefix(i - 2) - Prefix(i - low - 1));
        FValues.push_back(marked ? 1 : 0);
        FTotal += marked ? 1 : 0;
    }

    void Set(int32_t slot, bool marked) {
        const int8_t v = marked ? 1 : 0;
        if (FValues[slot] == v) return;
        const int32_t delta = v - FValues[slot];
        FValues[slot] = v;
        FTotal += delta;
        for (int32_t i = slot + 1; i < static_cast<int32_t>(FTree.size()); i += i & -i)
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
        FValues = marks;
        FTree.assign(marks.size() + 1, 0);
        FTotal = 0;
        for (std::size_t i = 1; i < FTree.size(); ++i) {
            FTree[i] += marks[i - 1];
            FTotal += marks[i - 1];
            const std::size_t parent = i + (i & (~i + 1));
            if (parent < FTree.size()) FTree[parent] += FTree[i];
        }
    }

    void Clear() {
        FTree.assign(1, 0);
        FValues.clear();
        FTotal = 0;
    }

private:
    std::vector<int32_t> FTree = std::vector<int32_t>(1, 0); // 1-based
    std::vector<int8_t> FValues;
    int32_t FTotal = 0;
};
