// The notice store (the board's cdsNoticeBd): the in-memory table of notices with its auto-increment key,
// the index "primaryIdx" on nb_internal_key and the unique, case-insensitive index "Orig_Key_Index" on
// adpt_orig_key, a current row, browse/insert/edit states with a record buffer, bookmarks, an optional row
// filter and a count of attached views that may be detached while a batch of changes is applied.
//
// Every operation the notice protocol uses is O(1) or O(log n), amortised: rows sit in slots in key order,
// positions come from counted marks over the slots, and keys are found through a hash index. Only setting
// a new filter text walks the table; switching the filter off and on (as every notice message does) does
// not, because the marks of the rows a filter passes are kept up to date while a filter is set.
//
// Keys (nb_internal_key) are issued in increasing order and never reused. A deleted row leaves an empty
// slot until the store compacts: once the empty slots pass a quarter of all slots (and a floor), the live
// rows move down over them, still in key order, and the row observers hear the renumbering. So a board
// that runs for weeks keeps memory in proportion to its live notices, each delete costs O(1) amortised, and
// positions, navigation, bookmarks (keys) and the grid's order are unaffected. When every key up to
// INT32_MAX has been issued, insertions are refused (EKeysExhausted); updates and deletes go on.
//
// CopyFrom makes a copy that shares everything with its original (rows, their text, marks, key index) and
// copies only what either side changes afterwards, a block at a time: a copy of a million rows costs about
// half a megabyte and a few milliseconds, and both stores stay independent.
//
// A null originator key (a notice sent without one) is not entered in "Orig_Key_Index": it never collides
// with another row and a seek never finds it, so any number of rows may be without a key. An empty key is
// stored as an empty string and is a key like any other: one row at most may hold it, and a seek for ""
// finds that row (a delete of the empty key removes it).
//
// Owned by the board (or by a dialog for a test copy); lives until its owner frees it. Not thread-safe: the
// owner's thread only (a copy's storage may be shared with a store on the same thread only). Failures raise
// EDatabaseError and leave the store as it was before the call (a failed Post keeps the insert or edit
// state, so the caller can Cancel); running out of memory raises std::bad_alloc.
#pragma once

#include "core/TNoticeKeyIndex.h"
#include "core/TNoticeRecord.h"
#include "core/TNoticeRows.h"
#include "core/TRowFilter.h"
#include "core/TSlotMarks.h"
#include "support/Exception.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

class EDatabaseError : public Exception {
public:
    using Exception::Exception;
    const char* ClassName() const noexcept override { return "EDatabaseError"; }
};

// An insertion refused because every nb_internal_key has been issued.
class EKeysExhausted : public EDatabaseError {
public:
    using EDatabaseError::EDatabaseError;
    const char* ClassName() const noexcept override { return "EKeysExhausted"; }
};

enum class TDataSetState { dsBrowse, dsInsert, dsEdit };

// What attached views (the grid's model) hear from the store. Called on the store's thread, from inside
// the store's operations; a listener must not change the store from these calls.
class INoticeStoreListener {
public:
    virtual ~INoticeStoreListener() = default;
    // Rows were added or removed, or the filter changed: reload everything. Heard at once while controls are
    // enabled, and once from the EnableControls that re-attaches the views after changes made while detached.
    virtual void DataSetChanged() = 0;
    // The values of the row with this key changed (an edit was posted) while controls were enabled.
    virtual void RecordChanged(int32_t /*key*/) {}
    // The current row moved while controls were enabled.
    virtual void CurrentChanged() {}
};

// What an ordered view of the rows (the grid's row order) hears: every change of the rows, whether or not
// the attached views are detached, at once and before the store tells its listeners or moves its current
// row, so that a listener that reads such a view finds it up to date. Rows are named by slot (read them
// with TNoticeStore::RowBySlot); a row keeps its slot until the store compacts, which SlotsRenumbered
// announces. Called on the store's thread from inside the store's operations: an observer must not change
// the store from these calls and must not throw.
class INoticeRowObserver {
public:
    virtual ~INoticeRowObserver() = default;
    // A new row was posted at Slot (its filter mark is already set).
    virtual void RowInserted(int32_t Slot) = 0;
    // An edit of the row at Slot was posted: its new values are in place, its old ones are gone.
    virtual void RowUpdated(int32_t Slot) = 0;
    // The row at Slot was deleted; the slot is no longer live.
    virtual void RowDeleted(int32_t Slot) = 0;
    // Anything may have changed: the rows and their slots (emptied, copied) or the compiled filter.
    virtual void RowsReset() = 0;
    // The store compacted: every live row moved from slot s to NewSlotOf[s] (-1 for the slots of deleted
    // rows, which are gone). Rows keep their order, values and filter marks; slots at or past
    // NewSlotOf.size() did not exist. The default treats it as RowsReset.
    virtual void SlotsRenumbered(std::span<const int32_t> /*NewSlotOf*/) { RowsReset(); }
};

using TBookmark = int32_t; // the row's nb_internal_key; 0 = none

class TNoticeStore {
public:
    static constexpr const char* PrimaryIndexName = "primaryIdx";
    static constexpr const char* OrigKeyIndexName = "Orig_Key_Index";

    TNoticeStore();
    TNoticeStore(const TNoticeStore&) = delete;
    TNoticeStore& operator=(const TNoticeStore&) = delete;

    // Copies the other store's rows, key counter, filter (text, compiled filter, on/off) and current row;
    // the copy is in browse state. Listeners and the disable count are not copied. The copy shares its
    // storage with the other store until either changes it (a block of rows, marks or index at a time), so
    // it costs O(n / 64) time and memory; both stores stay free to change. The compiled filter object is
    // shared (it is immutable). The slots of the copy are those of the other store, so a view of the other
    // store can be copied onto it (TNoticeGridView's copying constructor).
    void CopyFrom(const TNoticeStore& other);
    // Removes every row; the key counter starts again from 1. Browse state.
    void EmptyDataSet();

    // Indexes: "primaryIdx" (FindKey takes a decimal nb_internal_key) or "Orig_Key_Index". Any other name
    // raises EDatabaseError "Index 'x' not found".
    void SetIndexName(std::string_view name);
    std::string IndexName() const { return FOrigKeyIndex ? OrigKeyIndexName : PrimaryIndexName; }
    // Exact seek on the current index among the rows the filter passes; the found row becomes current.
    bool FindKey(const std::string& value);

    // States and the record buffer.
    TDataSetState State() const { return FState; }
    void Append(); // posts a pending edit first; buffer = a row with every field null
    void Edit();   // buffer = copy of the current row; EDatabaseError on an empty store
    // Stores the buffer; an inserted row gets the next nb_internal_key whatever the buffer held, an edited
    // row keeps its own. EDatabaseError "Key violation." when the key exists already (any letter case);
    // EKeysExhausted for an insertion once every key up to INT32_MAX has been issued.
    void Post();
    void Cancel();
    // Deletes the current row (cancels a pending insert instead); may compact the store afterwards.
    void Delete();
    // The row being inserted or edited; EDatabaseError "Dataset not in edit or insert mode" in browse state.
    TNoticeRecord& Buffer();
    // The buffer while inserting or editing, else the current row (an all-null row when there is none).
    const TNoticeRecord& ActiveRecord() const;

    // Navigation over the rows the filter passes, in key order.
    void First();
    void Last();
    void Next();
    void Prior();
    bool Eof() const { return FEof; }
    bool Bof() const { return FBof; }
    bool IsEmpty() const { return RecordCount() == 0; }
    int32_t RecNo() const; // 1-based position of the current row, -1 when there is none
    void SetRecNo(int32_t recNo);
    int32_t RecordCount() const; // rows passing the filter (all rows when unfiltered)
    int32_t TotalCount() const { return FAlive.Total(); }
    // The row at a 1-based position among the passing rows, or null; does not move the current row.
    const TNoticeRecord* RowAt(int32_t recNo) const;

    // Bookmarks: the current row's key. Valid while the row exists and passes the filter.
    TBookmark GetBookmark() const;
    bool BookmarkValid(TBookmark bookmark) const;
    void GotoBookmark(TBookmark bookmark); // EDatabaseError "Record not found" when not valid
    void FreeBookmark(TBookmark) {}

    // Attached views. The counter nests; while it is above zero listeners hear nothing.
    void DisableControls() { ++FDisableCount; }
    void EnableControls();
    bool ControlsDisabled() const { return FDisableCount > 0; }
    void AddListener(INoticeStoreListener* listener); // not owned; must outlive its registration
    void RemoveListener(INoticeStoreListener* listener);

    // Row filter. The compiler turns texts into filters; SetFilterText compiles once (an empty text clears
    // the filter; a text that does not compile raises the compiler's exception and keeps the old filter).
    void SetFilterCompiler(TRowFilterCompiler compiler) { FCompiler = std::move(compiler); }
    void SetFilterText(const std::string& text);
    const std::string& FilterText() const { return FFilterText; }
    void SetFiltered(bool filtered);
    bool Filtered() const { return FFiltered; }

    // Visits the rows the filter passes, in key order, without moving the current row.
    void ForEachRow(const std::function<void(const TNoticeRecord&)>& visit) const;

    // Rows by slot, for ordered views that keep their own order of the rows. Slots run from 0 to
    // SlotCount() - 1 in key order; a deleted row leaves a slot that is not live (and reads as an all-null
    // row) until the store compacts and renumbers the slots (INoticeRowObserver::SlotsRenumbered).
    int32_t SlotCount() const { return FRows.Size(); }
    bool SlotLive(int32_t slot) const { return FAlive.Get(slot); }
    const TNoticeRecord& RowBySlot(int32_t slot) const { return FRows[slot]; }
    // The slot of the live row with this nb_internal_key, or -1. O(1) for keys issued since the last
    // compaction, O(log n) for older ones.
    int32_t SlotOfKey(int32_t key) const;
    // Changes whenever the rows, their slots or the filter marks change; a copy made by CopyFrom has its
    // original's stamp until either changes. Equal stamps mean equal rows in equal slots.
    uint64_t ContentStamp() const { return FStamp; }
    // The compiled filter of the filter text (null without one), whether or not filtering is on, and
    // whether a live slot's row passes it (every live row passes when there is none). The marks are kept
    // while filtering is switched off, so a view can follow the filter's rows across a notice message.
    const IRowFilter* FilterObject() const { return FFilter.get(); }
    bool SlotPasses(int32_t slot) const { return FFilter ? FPassing.Get(slot) : FAlive.Get(slot); }
    // The filter in effect: FilterObject() while Filtered(), else null.
    const IRowFilter* ActiveFilter() const { return FilterActive() ? FFilter.get() : nullptr; }
    // Changes whenever the rows are replaced wholesale (EmptyDataSet, CopyFrom), never for rows changed one
    // by one, a compaction or a new filter: an observer's RowsReset tells them apart with it. An observer
    // that keeps data per slot renumbers it in SlotsRenumbered (core/SlotRenumber.h).
    uint64_t RowsGeneration() const { return FRowsGeneration; }
    // Row observers (not owned; each must outlive its registration). Not copied by CopyFrom.
    void AddRowObserver(INoticeRowObserver* observer);
    void RemoveRowObserver(INoticeRowObserver* observer);

    // Slot reclaiming. A delete compacts the store once the dead slots reach a quarter of all slots and at
    // least the floor (default 4096; tests lower it to compact small stores). Compact() reclaims them now
    // (browse state only). Compaction is O(slots), about a tenth of a second for a million rows, once per
    // third as many deletes as there are live rows; it never fails: when memory runs short it is skipped
    // and tried again at a later delete.
    static constexpr int32_t DefaultCompactionFloor = 4096;
    void SetCompactionFloor(int32_t DeadSlots) { FCompactionFloor = DeadSlots < 1 ? 1 : DeadSlots; }
    void Compact();
    int32_t DeadSlotCount() const { return FDead; }

    // The key counter. SetNextKey is a seam for tests of a long-running board: the next insertion gets Key,
    // which must be above every key issued so far (EDatabaseError otherwise). KeysExhausted() is true once
    // INT32_MAX has been issued.
    int64_t NextKey() const { return FNextKey; }
    void SetNextKey(int32_t Key);
    bool KeysExhausted() const { return FNextKey > INT32_MAX; }

    // Heap bytes this store alone keeps alive: rows, their text, marks, keys and index, not counting what
    // it shares with a copy. For tests and benchmarks; O(n).
    size_t OwnBytes() const;

private:
    bool FilterActive() const { return FFiltered && FFilter != nullptr; }
    const TSlotMarks& Visible() const { return FilterActive() ? FPassing : FAlive; }
    bool SlotVisible(int32_t slot) const { return slot >= 0 && Visible().Get(slot); }
    bool Passes(const TNoticeRecord& row) const { return FFilter == nullptr || FFilter->Accept(row); }
    void AppendSlot(TNoticeRecord&& row, int32_t key);
    void MaybeCompact() noexcept;
    void Touch(); // a new content stamp
    static uint64_t NewContentStamp();
    void SettleAfterLoss(int32_t slot); // current row became invisible: move to the next, else the prior
    void RecomputePassing();
    void SetCurrent(int32_t slot);
    void CheckBrowse() const;
    void NotifyDataSet();
    void NotifyRecord(int32_t key);
    void NotifyCurrent();
    template <class F> void TellObservers(F&& tell) {
        for (INoticeRowObserver* o : FObservers)
            tell(*o);
    }

    TNoticeRows FRows;               // in key order; a deleted row is all null until compaction
    TBlockVector<int32_t> FSlotKeys; // nb_internal_key per slot, kept for deleted rows
    TSlotMarks FAlive;               // every live row
    TSlotMarks FPassing;             // every live row the filter passes (kept while a filter is set)
    TNoticeKeyIndex FKeyIndex;
    int64_t FNextKey = 1;  // INT32_MAX + 1 once every key has been issued
    int32_t FTailSlot = 0; // slots from here on hold the keys from FTailKey on, one by one
    int64_t FTailKey = 1;
    int32_t FDead = 0; // slots of deleted rows
    int32_t FCompactionFloor = DefaultCompactionFloor;
    uint64_t FStamp;
    int32_t FCur = -1; // current slot, -1 when none
    bool FBof = true;
    bool FEof = true;
    TDataSetState FState = TDataSetState::dsBrowse;
    TNoticeRecord FBuffer;
    bool FOrigKeyIndex = false; // the current index is "Orig_Key_Index"
    int32_t FDisableCount = 0;
    bool FChangedWhileDisabled = false;
    std::vector<INoticeStoreListener*> FListeners;
    std::vector<INoticeRowObserver*> FObservers;
    TRowFilterCompiler FCompiler;
    std::string FFilterText;
    std::shared_ptr<const IRowFilter> FFilter;
    bool FFiltered = false;
    uint64_t FRowsGeneration = 1;
};
