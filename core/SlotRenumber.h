// Moves per-slot data of a row observer along with a compaction of the store (see
// INoticeRowObserver::SlotsRenumbered): the value of every live slot s goes to NewSlotOf[s], the values of
// deleted slots are dropped, and the vector ends at the last live slot's value. A compaction keeps the
// rows' order, so every value moves down or stays and one forward pass does it in place.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

// Stride: values per slot (a slot's values are PerSlot[s * Stride .. s * Stride + Stride - 1]).
template <class T>
void RenumberSlots(std::vector<T>& PerSlot, std::span<const int32_t> NewSlotOf, size_t Stride = 1) {
    if (Stride == 0) return;
    const size_t slots = PerSlot.size() / Stride;
    size_t end = 0;
    for (size_t s = 0; s < slots && s < NewSlotOf.size(); ++s) {
        const int32_t to = NewSlotOf[s];
        if (to < 0) continue;
        for (size_t i = 0; i < Stride; ++i)
            PerSlot[size_t(to) * Stride + i] = PerSlot[s * Stride + i];
        end = size_t(to) + 1;
    }
    PerSlot.resize(end * Stride);
}
