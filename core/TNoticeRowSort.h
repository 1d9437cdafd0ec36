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
