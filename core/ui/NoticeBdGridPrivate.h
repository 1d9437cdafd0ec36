// The notice grid's state, shared by the files that implement TNoticeBdGrid (construction and current row,
// refresh, selection, layout, group headings, export). Not for other users of the grid.
#pragma once

#include "core/TQuickSearch.h"
#include "core/ui/NoticeBdGrid.h"
#include "core/ui/NoticeGridDelegate.h"
#include "core/ui/NoticeGridHeader.h"
#include "core/ui/NoticeGridModel.h"
#include "core/ui/NoticeGridSelection.h"

#include <QItemSelectionModel>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <limits>

struct TNoticeBdGrid::TPrivate final : INoticeStoreListener, INoticeRowObserver {
    TPrivate(TNoticeBdGrid& Grid, TNoticeStore& AStore);
    TPrivate(TNoticeBdGrid& Grid, TNoticeStore& AStore, const TNoticeGridView& RowsOf,
             const TGridLayout& Normalized);
    ~TPrivate() override;
    void Init();

    TNoticeBdGrid& Q;
    TNoticeStore& Store;
    TQuickSearch Search; // before View: installed in it for the grid's life
    TNoticeGridView View;
    TNoticeGridModel* Model = nullptr; // children of the grid
    TNoticeGridDelegate* Delegate = nullptr;
    TNoticeGridHeader* Header = nullptr;
    TNoticeGridHeader* RowHeader = nullptr;
    TRowHeaderModel* RowHeaderModel = nullptr;

    // Presentation.
    const TDisplay* Display = nullptr;
    TGridLayout Layout;
    uint32_t Options = 0;
    TColor GridColor = clWindow;
    TColor GridLineColor = clSilver;
    bool ShowGridLines = true;
    bool ShowGroupPanel = false; // kept for the display; no group panel is drawn
    int ApplyingLayout = 0;      // header changes made by the grid itself, not by the user

    // Selection (by key) and the row Shift extends from.
    TKeySelection Selection;
    quintptr AnchorId = 0;
    QItemSelectionModel::SelectionFlags CtrlDragFlag = QItemSelectionModel::NoUpdate;
    int MouseY = 0;              // where the last mouse press or move happened (viewport)
    bool SelectionDirty = false; // changed where the signal could not be sent yet

    // Coalesced refresh.
    QTimer* Timer = nullptr; // child of the grid, "RefreshTimer"
    bool Pending = false;
    int64_t LastRefresh = std::numeric_limits<int64_t>::min() / 2;
    std::function<int64_t()> Clock;
    uint64_t Refreshes = 0;
    uint64_t SeenRevision = 0;
    bool StoreMoved = false;  // the store's current row moved while a refresh was pending
    TBookmark StoreKey = 0;   // the store's row when the grid last moved it or followed it
    bool MovingStore = false; // the grid is moving the store: its CurrentChanged is our own echo
    bool FollowingStore = false;
    int32_t LastCurrentKey = 0; // what CurrentKeyChanged last said

    // INoticeStoreListener: only schedule or note; the store is inside an operation.
    void DataSetChanged() override;
    void RecordChanged(int32_t Key) override;
    void CurrentChanged() override;
    // INoticeRowObserver: an emptied store starts its keys again at 1, so the keys selected are void.
    void RowInserted(int32_t) override {}
    void RowUpdated(int32_t) override {}
    void RowDeleted(int32_t) override {}
    void RowsReset() override;

    int64_t Now() const { return Clock(); }
    // Reads the view again in one layout change; the current row follows its key. The row at the top of
    // the screen stays at the top (or the first row below it that is still there), unless a pinned row
    // (PinId) is to stay PinRow rows below the top.
    void Reload(quintptr PinId = 0, int PinRow = 0);
    // Notes the ids of the first rows on screen. Called when the top of the viewport is painted: what the
    // user last saw, even when the store has changed since and the refresh is still to come.
    void NoteTopRows();
    void UpdateScrollRange();
    std::vector<quintptr> TopIds;
    // The store's current row as the grid's current row (selection untouched, no scrolling).
    void FollowStore();
    // The grid's current row as the store's.
    void MoveStoreTo(int32_t Key);
    void NoteCurrentKey();
    // Keys that left the view leave the selection.
    void PruneSelection();
    void EmitSelectionChanged();

    // Quick search: the fields it reads follow the columns shown (and grouped).
    void SyncSearchFields();

    // Layout.
    void ApplyLayoutToHeader();
    void ApplyAutoWidths();
    void ApplyOrder(); // the view's order from the layout, then a refresh
    void HeaderMoved();
    void HeaderResized(int Field, int NewSize);
    void HeaderClicked(int Field, Qt::KeyboardModifiers Modifiers);
    void ShowColumnMenu(int Field, const QPoint& GlobalPos);
    void SetColumnVisible(int Field, bool Visible);
    void GroupBy(int Field);
    void UngroupAll();
    void UserChangedLayout();

    // Selection helpers.
    int RowAtY(int Y) const; // the display row at a viewport height, clamped to the rows
    bool ApplyRange(int From, int To, QItemSelectionModel::SelectionFlags Command);
    void MoveCurrent(const QModelIndex& Index, Qt::KeyboardModifiers Modifiers);
    std::vector<int32_t> KeysInDisplayOrder(bool SelectedOnly) const;

    // Group headings.
    void ToggleHeading(int Row);
    void SetHeadingExpanded(int Row, bool Expanded);
    void PaintHeadings(QPainter& Painter, const QRect& Exposed);
    void PaintGridLines(QPainter& Painter, const QRect& Exposed);
    QRect ArrowRect(int Row) const; // the expand arrow of a heading row (viewport)

    TNoticeGridDelegate::TColors PaintColors() const;
    int FirstShownColumn() const; // the leftmost column shown (for a current index without one)
};
