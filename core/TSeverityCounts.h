// Live counts of a store's notices per severity (1 Normal to 4 Critical; any other value or null counts
// as "other"), whatever filter is on: what the status bar's severity badges and the tray icon show. Kept by
// the store's row feed, O(1) per changed row; only rows replaced wholesale (emptied, copied) are counted
// again. Owned by the window (or a test); the store must outlive it. The store's thread only. Nothing throws
// but std::bad_alloc (on construction and while the store grows).
#pragma once

#include "core/TNoticeStore.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

class TSeverityCounts final : private INoticeRowObserver {
public:
    // Counts Store's rows now and follows it from then on.
    explicit TSeverityCounts(TNoticeStore& Store);
    ~TSeverityCounts() override;
    TSeverityCounts(const TSeverityCounts&) = delete;
    TSeverityCounts& operator=(const TSeverityCounts&) = delete;

    // Live notices of severity 1 to 4; Count(0) those with another value or none.
    int32_t Count(int Severity) const {
        return Severity >= 1 && Severity <= 4 ? FCounts[size_t(Severity)] : FCounts[0];
    }
    int32_t Total() const;
    // The worst severity (1 to 4) any live notice has; 0 when none has one.
    int32_t Worst() const;
    // Changes whenever a count changes, so a window repaints only then.
    uint64_t Revision() const { return FRevision; }

private:
    void RowInserted(int32_t Slot) override;
    void RowUpdated(int32_t Slot) override;
    void RowDeleted(int32_t Slot) override;
    void RowsReset() override;
    // Compaction: the per-slot data moves with the rows; nothing is counted again.
    void SlotsRenumbered(std::span<const int32_t> NewSlotOf) override;
    void Recount();
    void Take(int32_t Slot);  // counts the live row at Slot
    void Leave(int32_t Slot); // uncounts what Slot was counted as

    TNoticeStore& FStore;
    std::vector<uint8_t> FCounted; // per slot: the bucket it is counted in + 1, 0 = not counted
    std::array<int32_t, 5> FCounts{};
    uint64_t FRows = 0;
    uint64_t FRevision = 1;
};
