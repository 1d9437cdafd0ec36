// The notice grid's headers. The column header (horizontal): movable, resizable sections; a click sorts
// (SectionClicked carries the keyboard modifiers, so Shift+click can add a sort column); every sorted
// column shows its arrow, with its priority when several are sorted; a context menu lists the 18
// captions to show or hide columns and offers grouping. The row header (vertical) is the row indicator:
// a narrow gutter marking the grid's current row.
//
// The header only reports what the user did; the grid changes its layout and tells the header what to
// show (SetSortMarks). Owned by the grid (Qt parent); board thread only.
#pragma once

#include "core/TGridLayout.h"

#include <QHeaderView>

#include <array>
#include <memory>

class QMenu;

class TNoticeGridHeader : public QHeaderView {
    Q_OBJECT
public:
    TNoticeGridHeader(Qt::Orientation Orientation, QWidget* Parent);

    // The narrowest a column gets when the columns share the grid's width: its caption and room for a
    // sort arrow (kept whether or not the column is sorted, so sorting never squeezes a caption).
    int MinimumSectionWidth(int LogicalIndex) const;

    // The sort arrows to draw: per field its direction and priority (SortIndex), as in the layout.
    void SetSortMarks(const TGridLayout& Layout);

    // The context menu of a column (logical index = TNoticeField): one checkable entry per field in
    // column-table order ("checked" = shown; group columns are shown in the headings and cannot be
    // toggled here), then "Group by This Column", "Ungroup All", "Expand All Groups" and "Collapse All
    // Groups". The caller owns it; choosing an entry emits the signals below.
    std::unique_ptr<QMenu> ColumnMenu(int LogicalIndex, const TGridLayout& Layout);

signals:
    // A section was clicked (released over the section it was pressed on, not dragged).
    void SectionClicked(int LogicalIndex, Qt::KeyboardModifiers Modifiers);
    void ColumnVisibilityChosen(int LogicalIndex, bool Visible);
    void GroupByChosen(int LogicalIndex);
    void UngroupAllChosen();
    void ExpandAllChosen(bool Expanded);
    // The menu is wanted at a point of the header (the grid supplies its layout and shows it).
    void MenuRequested(int LogicalIndex, const QPoint& GlobalPos);

protected:
    void mousePressEvent(QMouseEvent* Event) override;
    void contextMenuEvent(QContextMenuEvent* Event) override;
    void initStyleOptionForIndex(QStyleOptionHeader* Option, int LogicalIndex) const override;
    void paintSection(QPainter* Painter, const QRect& Rect, int LogicalIndex) const override;

private:
    struct TMark {
        TSortDirection Sort = TSortDirection::sdNone;
        int32_t Priority = -1;
    };
    std::array<TMark, NoticeFieldCount> FMarks{};
    int FSortedCount = 0;
    Qt::KeyboardModifiers FPressModifiers;
};
