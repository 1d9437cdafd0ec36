// The grid's bulk sort: puts row slots of a store in the order of CompareNoticeRows. It reads each row's
// values as order-preserving 64-bit digits (a number, or seven bytes of folded text with a length mark) and
// sorts by them with a stable radix sort, refining only the runs whose digits tie with the next digit of
// the same text or the next column; small runs are finished with the plain comparison. So a million rows
// sort in a few passes over 24-byte items instead of twenty million comparisons that each fold two texts.
// Non-ASCII text is folded once per row into temporary memory; everything else is read in place.
// Any thread that may read the store; allocates 32 bytes per slot while it runs
// (48 with a text column), and a copy of each non-ASCII text it folds.
#pragma once

#include "core/TGridLayout.h"

#include <cstdint>
#include <vector>

class TNoticeStore;

// Sorts Slots (live slots of Store, each once, in ascending order, which is key order) by Columns, then
// nb_internal_key ascending.
void SortNoticeSlots(const TNoticeStore& Store, const std::vector<TSortColumn>& Columns,
                     std::vector<int32_t>& Slots);

// Takes the slots a sort hands over: Begin once with their number, then Take with consecutive pieces of
// them in order. Owned by the caller of SortNoticeRows.
class INoticeSlotSink {
public:
    virtual void Begin(int32_t Count) = 0;
    virtual void Take(const int32_t* Slots, int32_t Count) = 0;

protected:
    ~INoticeSlotSink() = default;
};

// Sorts the rows of Store that are live (Filtered false) or pass its filter (SlotPasses, Filtered true) by
// Columns, then nb_internal_key ascending, and hands their slots to Sink in that order. When the first
// column is an integer column with a few distinct values among those rows (note_severity), the rows are
// ordered by counting: one pass that reads the column into a byte per slot, then one pass over those bytes
// per value, in slot order, which is key order; the columns after it sort each value's rows on their own.
// That needs a byte per slot and no scratch per row, and no row is compared. Otherwise, and without
// columns, as SortNoticeSlots (or simply in key order). Any thread that may read the store. Raises
// std::bad_alloc when memory runs out, perhaps after Sink.Begin (the caller then drops what Sink took);
// Sink's own failures pass through.
void SortNoticeRows(const TNoticeStore& Store, const std::vector<TSortColumn>& Columns, bool Filtered,
                    INoticeSlotSink& Sink);
