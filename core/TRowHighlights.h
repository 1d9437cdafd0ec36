// Which rows of a notice store changed lately, for the grid to show them emphasised: a row posted or
// updated is fully emphasised at that moment and fades out evenly over Duration. Hears the store's row
// feed; an emptied store forgets everything, a new filter text forgets nothing (the rows stay).
//
// Costs: four bytes per store slot (the second of the last change), O(1) per row change and per question.
// Owned by the window (or a test); registers with the store for its whole life, so the store must outlive
// it. The store's thread only. Clock: injected milliseconds of a steady clock. Never throws except
// std::bad_alloc.
#pragma once

#include "core/TNoticeStore.h"

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

class TRowHighlights final : INoticeRowObserver {
public:
    using TClock = std::function<int64_t()>;
    static constexpr int64_t DefaultDuration = 120000; // two minutes

    TRowHighlights(TNoticeStore& Store, TClock Clock, int64_t DurationMs = DefaultDuration);
    ~TRowHighlights() override;
    TRowHighlights(const TRowHighlights&) = delete;
    TRowHighlights& operator=(const TRowHighlights&) = delete;

    // 1 for a row changed just now, falling evenly to 0 at Duration after its last change; 0 for rows
    // not changed lately and for unknown keys.
    double Emphasis(int32_t Key) const;
    // Some row is still emphasised.
    bool Active() const;
    // Forgets every change (the rows go back to plain at once).
    void Clear();

private:
    void RowInserted(int32_t Slot) override { Touch(Slot); }
    void RowUpdated(int32_t Slot) override { Touch(Slot); }
    void RowDeleted(int32_t Slot) override;
    void RowsReset() override;
    // Compaction: the per-slot data moves with the rows; nothing is counted again.
    void SlotsRenumbered(std::span<const int32_t> NewSlotOf) override;
    void Touch(int32_t Slot);
    int64_t Now() const { return FClock(); }

    TNoticeStore& FStore;
    TClock FClock;
    int64_t FDuration;
    int64_t FEpoch = 0;             // clock reading at the first change remembered: second 1
    std::vector<uint32_t> FChanged; // per slot: second of the last change since FEpoch, plus 1; 0 never
    int64_t FLastChange = 0;        // clock reading of the newest change (valid while FAny)
    bool FAny = false;
};
