// How many of the board's notices each saved filter passes, kept current as notices arrive: what the
// filter combo shows beside each name ("Name (N)"). The first count of a filter runs a slice at a time
// (Step), so a window counts a million rows between its events; after that every inserted, updated or
// deleted row is evaluated against each compiled filter once (O(filters) per changed row, no recount).
// Only rows replaced wholesale (the store emptied or copied) start the counts again.
//
// Owned by the window (or a test); the store must outlive it. The store's thread only. Failures: a filter
// whose text does not compile has no count (-1); std::bad_alloc may escape SetFilters and Step.
#pragma once

#include "core/TNoticeStore.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

class TFilterCounts final : private INoticeRowObserver {
public:
    explicit TFilterCounts(TNoticeStore& Store);
    ~TFilterCounts() override;
    TFilterCounts(const TFilterCounts&) = delete;
    TFilterCounts& operator=(const TFilterCounts&) = delete;

    // The filters to count, by name and filter text (an empty text passes every row, as "<No Filter>"
    // does). Counting starts again from the first slot.
    void SetFilters(const std::vector<std::string>& Names, const std::vector<std::string>& Texts);
    // The filters of a lister's entries: each name's file in Folder (FilterTextForName: "<No Filter>" and
    // a missing file pass every row).
    void SetFilterNames(const std::vector<std::string>& Names, const std::string& Folder);

    // Counts up to Rows more slots; true when every count is complete.
    bool Step(int32_t Rows);
    // Steps until done.
    void CountAll();
    bool Done() const;

    size_t Size() const { return FNames.size(); }
    const std::string& Name(size_t Index) const { return FNames[Index]; }
    // The count of a filter; -1 while its first count runs or when its text did not compile. By name:
    // the first filter of that name (letter case ignored), -1 for none.
    int32_t Count(size_t Index) const;
    int32_t Count(const std::string& Name) const;
    // Changes whenever a count changes or a first count completes.
    uint64_t Revision() const { return FRevision; }

private:
    void RowInserted(int32_t Slot) override;
    void RowUpdated(int32_t Slot) override;
    void RowDeleted(int32_t Slot) override;
    void RowsReset() override;
    // Compaction: the per-slot data moves with the rows; nothing is counted again.
    void SlotsRenumbered(std::span<const int32_t> NewSlotOf) override;
    void Restart();
    void Take(int32_t Slot);
    void Leave(int32_t Slot);

    struct TFilter;
    TNoticeStore& FStore;
    std::vector<std::string> FNames;
    std::vector<std::shared_ptr<TFilter>> FFilters; // null: did not compile
    size_t FWords = 1;                              // 64-bit words of pass marks per slot
    std::vector<uint64_t> FMarks;  // per slot: FWords words, bit i = filter i passed; counted slots only
    std::vector<uint8_t> FCounted; // per slot: 1 when its marks are in the counts
    std::vector<int32_t> FCounts;
    int32_t FNext = 0; // slots from here on are still to be counted for the first time
    uint64_t FRows = 0;
    uint64_t FRevision = 1;
};
