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
    explicit TNoticeBdGrid(TNoticeStore& Store, QWidget* Parent = nullptr);
    ~TNoticeBdGrid() override;

    TNoticeStore& Store() const;
    TNoticeGridView& View() const;

    // The display whose row colours the grid draws (AltRowColors, AltColor, GridColor); not owned, null for
    // none. Binding the display to the grid (TDisplay::SetGrid) is the owner's business.
    void SetDisplay(const TDisplay* Display);
    const TDisplay* Display() const;

    // Gives every column the caption of its column-table entry.
    void AssignColumnHeaders();
    QString ColumnCaption(TNoticeField Field) const;

    // The selection by key, in the order the user selected the rows.
    std::vector<int32_t> SelectedKeys() const;
    void SetSelectedKeys(const std::vector<int32_t>& Keys); // keys not in the view are left out
    int32_t CurrentKey() const;                             // 0 when there is no current row
    void SetCurrentKey(int32_t Key);                        // also moves the store's current row
    void selectAll() override;                              // every data row, in display order

    // The selected rows as tab-separated text with a header line of the visible captions (Ctrl+C).
    QString SelectionAsText() const;
    void CopySelection() const;

    // The store changed: repaint soon (at most every 100 ms; many calls make one repaint).
    void ScheduleRefresh();
    // Applies pending changes now (before reading the grid for a report, and in tests).
    void RefreshNow();
    // Diagnostics and test seams: refreshes applied so far, whether one is pending, and the clock the
    // 100 ms spacing is measured with (milliseconds; a steady clock unless a test installs its own).
    uint64_t RefreshCount() const;
    bool RefreshPending() const;
    void SetRefreshClock(std::function<int64_t()> NowMs);

    // Group headings: expanded by default; a collapsed group shows its heading only.
    void SetAllGroupsExpanded(bool Expanded);

    // The columns and rows of the spreadsheet export: group columns, then the visible columns in their
    // order; rows in display order without headings (all, or the selected ones in display order).
    std::vector<TExportColumn> ExportColumns() const;
    std::unique_ptr<IExportRows> ExportRows(bool SelectedOnly) const;

    // IDisplayGrid
    void SetGridColor(TColor Color) override;
    void SetGridLineColor(TColor Color) override;
    void SetShowGridLines(bool Show) override;
    void SetShowGroupPanel(bool Show) override;
    uint32_t Options() const override;
    void SetOptions(uint32_t Options) override;
    void RefreshGrid() override;
    TGridLayout Layout() const override;
    void SetLayout(const TGridLayout& Layout) override;
    int32_t WidthUnit() const override;

    // IReportGrid
    int GroupColumnCount() const override;
    TReportColumn GroupColumn(int Index) const override;
    int VisibleColumnCount() const override;
    TReportColumn VisibleColumn(int Index) const override;
    int SelectedCount() const override;
    TBookmark SelectedBookmark(int Index) const override;
    TNoticeStore& DataSet() override;
    void WalkNodes(const std::function<bool(const TGridNode&)>& Visit) const override;

signals:
    // The selection changed (its size or its members).
    void SelectionChanged();
    // The current row changed (0: none).
    void CurrentKeyChanged(int32_t Key);
    // A mouse button or a key was released over the grid (the board refreshes its buttons then).
    void MouseReleased();
    void KeyReleased();
    // The user changed the columns: moved, resized, showed, hid, sorted or grouped them.
    void LayoutChangedByUser();

protected:
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& Index,
                                                         const QEvent* Event = nullptr) const override;
    void setSelection(const QRect& Rect, QItemSelectionModel::SelectionFlags Command) override;
    void currentChanged(const QModelIndex& Current, const QModelIndex& Previous) override;
    QModelIndex moveCursor(CursorAction Action, Qt::KeyboardModifiers Modifiers) override;
    void updateGeometries() override;
    void keyPressEvent(QKeyEvent* Event) override;
    void keyReleaseEvent(QKeyEvent* Event) override;
    void mousePressEvent(QMouseEvent* Event) override;
    void mouseMoveEvent(QMouseEvent* Event) override;
    void mouseReleaseEvent(QMouseEvent* Event) override;
    void mouseDoubleClickEvent(QMouseEvent* Event) override;
    void paintEvent(QPaintEvent* Event) override;
    void resizeEvent(QResizeEvent* Event) override;

private:
    struct TPrivate;
    std::unique_ptr<TPrivate> d;
};
