// The notice grid (NoticeBdGrid): a table view over a live, sorted view of a notice store. Rows are read on
// demand from the engine's TNoticeGridView; nothing is copied into Qt items. Selection and the current row
// are kept by key, so they survive incoming messages; changes are coalesced into at most one repaint every
// 100 ms. It is what displays (IDisplayGrid), the report (IReportGrid) and the spreadsheet export read.
//
// The grid's current row is the store's current row, both ways, as a data-aware grid's is: moving in the
// grid moves the store, and a store that moves (a message restoring its bookmark, the delete action going
// to the first row) moves the grid's current row, leaving the selection as it is.
//
// Owned by its parent widget; the store must outlive it. GUI (board) thread only.
//
// More precisely:
// - Threads: every member, on the thread that owns the store (the board's GUI thread); every signal is
//   emitted synchronously on that thread.
// - The grid listens to the store (INoticeStoreListener and its row feed) from construction to
//   destruction. A store change only schedules a refresh; the refresh (a timer of the grid, "RefreshTimer")
//   runs from the event loop: at the next turn after a quiet spell, then at most every 100 ms. Until it
//   runs, the grid shows the rows it had, with their values read live.
// - A refresh is one layout change of the model: rows are read again in the view's order, the rows at the
//   top of the screen stay at the top (or the first of them still there), the current row and the selection
//   follow their keys, and rows that left the view (deleted, filtered out) leave the selection. An emptied
//   store empties the selection at once (its keys start again at 1).
// - Errors: reading the view may raise std::bad_alloc; a store that refuses to move (the row went) is
//   ignored, and the next refresh puts the grid on the store's row. Nothing else throws.
#pragma once

#include "core/TNoticeGridView.h"
#include "reports/GridExport.h"
#include "reports/Ugridtoxml.h"
#include "views/Displayu.h"

#include <QTableView>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

class TNoticeGridModel;
class TDisplay;

class TNoticeBdGrid : public QTableView, public IDisplayGrid, public IReportGrid {
    Q_OBJECT
public:
    // Starts with the column table's defaults (nothing sorted or grouped), captions that are the field
    // names until AssignColumnHeaders, grid lines on, the row indicator and focus rectangle on (as a new
    // grid component's), and the store's current row as its current row. objectName "NoticeBdGrid".
    explicit TNoticeBdGrid(TNoticeStore& Store, QWidget* Parent = nullptr);
    // A grid over a copy of ViewOf's store (TNoticeStore::CopyFrom) that starts with ViewOf's columns
    // (its Layout) and rows in ViewOf's order; while neither store has changed since the copy the order is
    // taken over without sorting (a display editor's preview). ViewOf is only read, now.
    TNoticeBdGrid(TNoticeStore& Store, const TNoticeBdGrid& ViewOf, QWidget* Parent = nullptr);
    // The same starting with Layout's columns and order instead: ViewOf's rows are taken over only when
    // Layout orders them as ViewOf does, else the grid sorts once (a new display's preview).
    TNoticeBdGrid(TNoticeStore& Store, const TNoticeBdGrid& ViewOf, const TGridLayout& Layout,
                  QWidget* Parent = nullptr);
    ~TNoticeBdGrid() override;

    TNoticeStore& Store() const;
    // The grid's own view of the store (owned by the grid, lives as long as it).
    TNoticeGridView& View() const;

    // The display whose row colours the grid draws (AltRowColors, AltColor, GridColor, and SeverityColors
    // when SeverityRowColors is on); not owned, null for
    // none. Binding the display to the grid (TDisplay::SetGrid) is the owner's business. The display is
    // read at every paint, so it must outlive the binding (or be unbound with SetDisplay(nullptr)).
    void SetDisplay(const TDisplay* Display);
    const TDisplay* Display() const;

    // Gives every column the caption of its column-table entry.
    void AssignColumnHeaders();
    QString ColumnCaption(TNoticeField Field) const;

    // The selection by key, in the order the user selected the rows (a Shift or drag range in the order it
    // was swept, from its anchor). Group headings are never selected; rows inside a collapsed group stay
    // selected. Only the key set counts: Qt's selection model stays empty.
    std::vector<int32_t> SelectedKeys() const;
    void SetSelectedKeys(const std::vector<int32_t>& Keys); // keys not in the view are left out
    // The key of the current row; 0 when there is none or the current row is a group heading (the store
    // then stays on the row it was on).
    int32_t CurrentKey() const;
    // Makes the row current (opening collapsed groups that hide it) and scrolls to it; also moves the
    // store's current row. The selection stays. Unknown keys are ignored.
    void SetCurrentKey(int32_t Key);
    // Selects every data row shown (not those inside collapsed groups), in display order. O(rows).
    void selectAll() override;

    // The selected rows in display order as tab-separated text, one line each ending in "\n", after a
    // header line of the visible captions; line breaks and tabs inside values read as blanks (Ctrl+C).
    QString SelectionAsText() const;
    // Puts SelectionAsText on the clipboard; nothing when no row is selected.
    void CopySelection() const;

    // The store changed: repaint soon (at most every 100 ms; many calls make one repaint). The grid calls
    // it itself when the store tells it of a change; others need not.
    void ScheduleRefresh();
    // Applies pending changes now (before reading the grid for a report, and in tests).
    void RefreshNow();
    // Diagnostics and test seams: refreshes applied so far, whether one is pending, and the clock the
    // 100 ms spacing is measured with (milliseconds; a steady clock unless a test installs its own).
    uint64_t RefreshCount() const;
    bool RefreshPending() const;
    void SetRefreshClock(std::function<int64_t()> NowMs);

    // Quick search (core/TQuickSearch.h): narrows the rows, on top of the store's filter, to those whose
    // shown texts (the columns shown and grouped) contain every word of Text, any order, any letter case,
    // and marks the words in the cells. An empty text narrows nothing. Applied at once (a refresh); then
    // QuickSearchChanged. Later messages keep the narrowing (rows come and go as they match).
    void SetQuickSearchText(const QString& Text);
    QString QuickSearchText() const;
    // Rows found: the rows of the view while a search narrows, -1 while none does.
    int32_t QuickSearchMatches() const;
    // The status bar's note: "(N match)" while a search narrows, else empty.
    QString QuickSearchStatusText() const;
    // Folds every row's shown texts now, so the first letter typed answers quickly (the search box calls
    // it when it gets the focus).
    void PrepareQuickSearch();

    // Group headings: expanded by default; a collapsed group shows its heading only. Reaches every level
    // and the groups that appear later; the state of a group is kept while it is shown or empty.
    void SetAllGroupsExpanded(bool Expanded);

    // The columns and rows of the spreadsheet export: group columns, then the visible columns in their
    // order; rows in display order without headings (all, or the selected ones in display order), rows
    // inside collapsed groups included. The rows object is the caller's; it reads the store and the grid's
    // view, so it is valid while both live and the store does not change.
    std::vector<TExportColumn> ExportColumns() const;
    std::unique_ptr<IExportRows> ExportRows(bool SelectedOnly) const;

    // IDisplayGrid. Colours are the stored form (support/TColor.h). The group panel is kept as a setting
    // only: the board never shows one, so none is drawn.
    void SetGridColor(TColor Color) override;
    void SetGridLineColor(TColor Color) override;
    void SetShowGridLines(bool Show) override;
    void SetShowGroupPanel(bool Show) override;
    uint32_t Options() const override;
    void SetOptions(uint32_t Options) override;
    void RefreshGrid() override;
    // The layout as the user left it. Under goAutoWidth a column's Width is its share of the grid's width
    // (the columns are drawn in proportion to their Widths, none narrower than its caption).
    TGridLayout Layout() const override;
    // Shows a layout (normalised first): re-sorts and regroups at once (O(n log n) when the order
    // changes); the current row stays where it was on screen. Does not emit LayoutChangedByUser.
    void SetLayout(const TGridLayout& Layout) override;
    int32_t WidthUnit() const override;

    // IReportGrid. Group columns come from the layout; visible columns are those shown, left to right (a
    // grouped column shows in the headings, not among them). SelectedBookmark is the Index-th selected key.
    int GroupColumnCount() const override;
    TReportColumn GroupColumn(int Index) const override;
    int VisibleColumnCount() const override;
    TReportColumn VisibleColumn(int Index) const override;
    int SelectedCount() const override;
    TBookmark SelectedBookmark(int Index) const override;
    TNoticeStore& DataSet() override;
    // Every row of the view with its group headings (collapsed groups included).
    void WalkNodes(const std::function<bool(const TGridNode&)>& Visit) const override;

signals:
    // The selection changed (its size or its members): at once for the user's clicks and keys and for
    // SetSelectedKeys and selectAll; from a refresh when selected rows left the view or the store was
    // emptied.
    void SelectionChanged();
    // The current row changed (0: none, or a group heading): for the user's moves and SetCurrentKey, from a
    // refresh when the current row left, and from inside the store's operation when the store moved on its
    // own (a receiver must not change the store then).
    void CurrentKeyChanged(int32_t Key);
    // A mouse button or a key was released over the grid (the board refreshes its buttons then); emitted
    // after the grid has handled the release, so the selection and the current row are up to date. Not for
    // the column header.
    void MouseReleased();
    void KeyReleased();
    // The user changed the columns: moved, resized (every step of a drag), showed, hid, sorted or grouped
    // them, through the header or its context menu. Never for SetLayout.
    void LayoutChangedByUser();
    // The quick search text changed and the rows were narrowed again; Matches as QuickSearchMatches().
    void QuickSearchChanged(int32_t Matches);

protected:
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& Index,
                                                         const QEvent* Event = nullptr) const override;
    void setSelection(const QRect& Rect, QItemSelectionModel::SelectionFlags Command) override;
    void currentChanged(const QModelIndex& Current, const QModelIndex& Previous) override;
    QModelIndex moveCursor(CursorAction Action, Qt::KeyboardModifiers Modifiers) override;
    void updateGeometries() override;
    // Typing does not search the rows (Qt's search reads every row's text: seconds on a large board).
    void keyboardSearch(const QString& Search) override;
    void keyPressEvent(QKeyEvent* Event) override;
    void keyReleaseEvent(QKeyEvent* Event) override;
    void mousePressEvent(QMouseEvent* Event) override;
    void mouseMoveEvent(QMouseEvent* Event) override;
    void mouseReleaseEvent(QMouseEvent* Event) override;
    void mouseDoubleClickEvent(QMouseEvent* Event) override;
    void paintEvent(QPaintEvent* Event) override;
    void resizeEvent(QResizeEvent* Event) override;

private:
    void Init(const TGridLayout& Layout);

    struct TPrivate;
    std::unique_ptr<TPrivate> d;
};
