// The grid's row order: a live, sorted view of a notice store. It serves the rows the store's filter passes,
// ordered by the grid's group columns, then its sort columns, then nb_internal_key ascending; null values
// sort first, note_severity by its number, text case-insensitively first and then by case, dates and
// numbers by value. The store keeps its own key order, current row and cursor: the view never moves them.
//
// Costs (n = rows in the view): the row at a position and the position of a key are O(log n); a row that
// is inserted, deleted, or updated (whether or not a sort value changed) moves in O(log n); setting the
// order sorts once (O(n log n); O(n) by counting when the first column is a small integer domain such as the
// severity; with each row's sort values read once rather than parsed per comparison); a new filter text or an
// emptied store rebuilds. Memory: a few bytes per row beyond the store.
//
// The view keeps in step with every change of the store, including changes made while the store's views
// are detached (a notice message switches the filter off and on and detaches the views; the view follows
// the rows, not the switch, so a message costs O(changed rows * log n) however many rows there are).
//
// Ownership: the grid (or a report, a test) owns the view; the store must outlive it. Board thread only.
// Failures: a read that has to rebuild the view raises std::bad_alloc when memory runs out; the store is
// never affected and the view rebuilds at the next read.
#pragma once

#include "core/TGridLayout.h"
#include "core/TNoticeStore.h"
#include "core/TRowNarrowing.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

// One node of the walk over the grid in display order: a group heading or a data row.
struct TGridNode {
    bool IsGroup = false;
    int Level = 0;                           // group nodes: 0 = outermost; data rows: the group column count
    TNoticeField Field = nf_nb_internal_key; // group nodes: the group column
    const TNoticeRecord* Row = nullptr;      // the data row; for a group node its first row, which holds
                                             // the group's value
    int32_t Position = 0;                    // data rows: their position; group nodes: their first row's
    int32_t RowCount = 0;                    // group nodes: data rows in the group; data rows: 1
};

class TNoticeGridView {
public:
    // Starts observing Store, ordered by key. Store must outlive the view.
    explicit TNoticeGridView(TNoticeStore& Store);
    // Starts observing Store in OrderOf's order (its group and sort columns). When Store is a copy of
    // OrderOf's store (TNoticeStore::CopyFrom) and neither has changed since, the view takes OrderOf's row
    // order as it stands, a copy of about 9 bytes per row without comparing a row; otherwise it sorts at
    // its first read. So a dialog's preview opens in the grid's order without sorting again. OrderOf is
    // only read (it may catch up with its own store first) and stays independent.
    TNoticeGridView(TNoticeStore& Store, const TNoticeGridView& OrderOf);
    // The same in the order given (as SetOrder takes it): OrderOf's rows are taken over only when that is
    // OrderOf's order; otherwise nothing is copied and the view sorts at its first read, once. So a preview
    // that opens in another order than the grid's is sorted once, not copied and then sorted.
    TNoticeGridView(TNoticeStore& Store, const TNoticeGridView& RowsOf, std::vector<TSortColumn> GroupColumns,
                    std::vector<TSortColumn> SortColumns);
    ~TNoticeGridView();
    TNoticeGridView(const TNoticeGridView&) = delete;
    TNoticeGridView& operator=(const TNoticeGridView&) = delete;

    TNoticeStore& Store() const { return FStore; }

    // Orders the rows by GroupColumns (outermost first), then SortColumns, then key. A field named twice
    // counts at its first place.
    void SetOrder(std::vector<TSortColumn> GroupColumns, std::vector<TSortColumn> SortColumns);
    const std::vector<TSortColumn>& GroupColumns() const;
    const std::vector<TSortColumn>& SortColumns() const;

    // A narrowing on top of the store's filter (the quick search): the view then serves only the rows both
    // pass, positions and the node walk included, and keeps them as rows change. Not owned; null for none;
    // it must outlive its installation. A new condition (its generation) is applied at the next read by
    // dropping rows, never by sorting: one that only narrows drops them from the rows served, any other
    // from all the rows the store's filter passes, which the view keeps in order while a narrowing narrows
    // (another 9 bytes or so per row, and each changed row moves in both orders).
    void SetNarrowing(IRowNarrowing* Narrowing);
    IRowNarrowing* Narrowing() const;

    // Rows in the view: those the store's filter (and the narrowing) passes (every live row while no filter
    // is on).
    int32_t RowCount() const;
    // The row at a position (0-based), or null outside 0..RowCount()-1. The pointer is valid until the
    // store changes.
    const TNoticeRecord* RowAt(int32_t Position) const;
    // nb_internal_key of the row at a position, 0 outside.
    int32_t KeyAt(int32_t Position) const;
    // Position of the row with this key, -1 when it is not in the view (deleted, filtered out, unknown).
    int32_t PositionOf(int32_t Key) const;

    // Groups: the rows that share the values of group columns 0..Level with the row at Position form the
    // run [First, First + Count). Level must be below GroupColumns().size(). O(log n).
    void GroupRange(int Level, int32_t Position, int32_t& First, int32_t& Count) const;

    // Visits the nodes in display order from the top: for each group, its heading node and then what it
    // holds (nested headings, or data rows); without group columns, just the data rows. Visit returns
    // false to stop. O(groups * log n + rows visited).
    void WalkNodes(const std::function<bool(const TGridNode&)>& Visit) const;

    // Changes whenever the rows of the view, their values or their order change; a grid compares it to
    // decide whether to repaint.
    uint64_t Revision() const;

    // Diagnostic: how many times the view has read every row of the store again (setting the order, a new
    // filter in effect, an emptied or copied store). Rows changed one by one never add to it.
    uint64_t RebuildCount() const;

private:
    struct TImpl;
    TNoticeStore& FStore;
    std::unique_ptr<TImpl> FImpl;
};

// The order the view applies, for tests and tools: negative, zero or positive as A sorts before, with or
// after B under Group then Sort columns and then the key.
int CompareNoticeRows(const TNoticeRecord& A, const TNoticeRecord& B,
                      const std::vector<TSortColumn>& Columns);
