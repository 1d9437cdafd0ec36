// The notice grid's headers. The column header (horizontal): movable, resizable sections; a click sorts
// (SectionClicked carries the keyboard modifiers, so Shift+click can add a sort column); every sorted
// column shows its arrow, with its priority when several are sorted; a context menu lists the 18
// captions to show or hide columns and offers grouping. The row header (vertical) is the row indicator:
// a narrow gutter marking the grid's current row.
//
// The header only reports what the user did; the grid changes its layout and tells the header what to
// show (SetSortMarks). Owned by the grid (Qt parent); board thread only.
//
// The row header does not count the grid's rows itself: a QHeaderView keeps an item per row and does O(n)
// work whenever the count changes in a layout change (on a million rows, milliseconds per refresh). It
// counts the rows of a TRowHeaderModel instead, whose count runs ahead of the grid's and changes only when
// the rows outgrow it (it then doubles) or fall to a quarter of it; the grid limits its scroll range to
// its real rows and paints nothing below them.
#pragma once

#include "core/TGridLayout.h"

#include <QAbstractListModel>
#include <QHeaderView>

#include <array>
#include <memory>

class QMenu;

class TRowHeaderModel : public QAbstractListModel {
    Q_OBJECT
public:
    using QAbstractListModel::QAbstractListModel;
    int rowCount(const QModelIndex& Parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& Index, int Role = Qt::DisplayRole) const override;
    QVariant headerData(int Section, Qt::Orientation Orientation, int Role = Qt::DisplayRole) const override;
    // The grid has Rows rows: the capacity doubles when Rows exceed it and halves (or less) when Rows fall
    // to a quarter of it, so a refresh seldom changes it (O(n) when it does).
    void Fit(int Rows);
    int Rows() const { return FRows; }

private:
    int FRows = 0;
    int FCapacity = 0;
};

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
    // toggled here), then "Group by this column", "Ungroup" (every group column), "Expand All Groups" and
    // "Collapse All Groups". The caller owns it; choosing an entry emits the signals below.
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
