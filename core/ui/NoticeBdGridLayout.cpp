// The notice grid's columns: a TGridLayout shown in the header (order, widths, visibility, sort arrows),
// changed by the user (moving, resizing, header clicks, the column menu) and applied to the view's order.
#include "core/ui/NoticeBdGridPrivate.h"

#include <QMenu>
#include <QResizeEvent>
#include <QScrollBar>

#include <algorithm>

TGridLayout TNoticeBdGrid::Layout() const {
    return d->Layout;
}

void TNoticeBdGrid::SetLayout(const TGridLayout& Layout) {
    d->Layout = Layout;
    d->Layout.Normalize();
    d->ApplyLayoutToHeader();
    d->ApplyOrder();
}

void TNoticeBdGrid::resizeEvent(QResizeEvent* Event) {
    QTableView::resizeEvent(Event);
    if (d->Options & goAutoWidth) d->ApplyAutoWidths();
}

void TNoticeBdGrid::TPrivate::ApplyLayoutToHeader() {
    ++ApplyingLayout;
    const std::vector<TNoticeField> order = Layout.FieldsInPositionOrder();
    for (int visual = 0; visual < NoticeFieldCount; ++visual) {
        const int from = Header->visualIndex(order[size_t(visual)]);
        if (from != visual) Header->moveSection(from, visual);
    }
    for (int f = 0; f < NoticeFieldCount; ++f) {
        const TGridColumnLayout& c = Layout.Column(TNoticeField(f));
        // A group column shows in the headings instead.
        Header->setSectionHidden(f, !c.Visible || c.GroupIndex >= 0);
        if (!(Options & goAutoWidth)) Header->resizeSection(f, c.Width);
    }
    if (Options & goAutoWidth) ApplyAutoWidths();
    Header->SetSortMarks(Layout);
    SyncSearchFields();
    --ApplyingLayout;
}

namespace {

// A shown column's part of the grid's width under goAutoWidth.
struct TShare {
    int Field = 0, Weight = 1, Minimum = 0, Width = 0;
    bool AtMinimum = false;
};

// The columns share Available pixels in proportion to their weights, none narrower than its minimum
// (those take the minimum and the others share what is left); rounding leftovers go to the last column.
void ShareWidth(std::vector<TShare>& Shares, int Available) {
    for (bool again = true; again;) {
        again = false;
        int64_t left = Available, weights = 0;
        for (const TShare& s : Shares) {
            if (s.AtMinimum)
                left -= s.Minimum;
            else
                weights += s.Weight;
        }
        for (TShare& s : Shares) {
            if (s.AtMinimum) {
                s.Width = s.Minimum;
                continue;
            }
            s.Width = weights > 0 ? int(std::max<int64_t>(0, left) * s.Weight / weights) : 0;
            if (s.Width < s.Minimum) again = s.AtMinimum = true;
        }
    }
    int used = 0;
    for (const TShare& s : Shares)
        used += s.Width;
    if (!Shares.empty() && used < Available) Shares.back().Width += Available - used;
}

} // namespace

static std::vector<TShare> SharesOf(const TGridLayout& Layout, const TNoticeGridHeader& Header) {
    std::vector<TShare> shares;
    for (int visual = 0; visual < NoticeFieldCount; ++visual) {
        const int f = Header.logicalIndex(visual);
        // No section while the header has no model (the grid taking its model away as it goes).
        if (f >= 0 && !Header.isSectionHidden(f))
            shares.push_back(
                {f, std::max(1, Layout.Column(TNoticeField(f)).Width), Header.MinimumSectionWidth(f)});
    }
    return shares;
}

// The visible columns share the viewport's width in proportion to their layout widths, none narrower than
// its caption.
void TNoticeBdGrid::TPrivate::ApplyAutoWidths() {
    std::vector<TShare> shares = SharesOf(Layout, *Header);
    const int available = Q.viewport()->width();
    if (shares.empty() || available <= 0) return;
    ShareWidth(shares, available);
    ++ApplyingLayout;
    for (const TShare& s : shares)
        Header->resizeSection(s.Field, std::max(1, s.Width));
    --ApplyingLayout;
}

void TNoticeBdGrid::TPrivate::ApplyOrder() {
    // Sorting moves every row: keep the current row where it was on screen.
    const QModelIndex current = Q.currentIndex();
    const int top = Q.rowAt(0);
    const bool onScreen = current.isValid() && top >= 0 && current.row() >= top &&
                          Q.rowViewportPosition(current.row()) < Q.viewport()->height();
    View.SetOrder(Layout.GroupColumns(), Layout.SortColumns());
    Reload(onScreen ? current.internalId() : 0, onScreen ? current.row() - top : 0);
    if (!onScreen) Q.verticalScrollBar()->setValue(0);
}

void TNoticeBdGrid::TPrivate::UserChangedLayout() {
    emit Q.LayoutChangedByUser();
}

void TNoticeBdGrid::TPrivate::HeaderMoved() {
    if (ApplyingLayout) return;
    for (int f = 0; f < NoticeFieldCount; ++f)
        Layout.Column(TNoticeField(f)).Position = Header->visualIndex(f);
    UserChangedLayout();
}

void TNoticeBdGrid::TPrivate::HeaderResized(int Field, int NewSize) {
    if (ApplyingLayout || Field < 0 || Field >= NoticeFieldCount) return;
    TGridColumnLayout& column = Layout.Column(TNoticeField(Field));
    if (Options & goAutoWidth) {
        // Weigh the column so that, sharing the width again, it keeps the size the user gave it and the
        // others share the rest as before. Which columns end at their minimum depends on the weight, so
        // the weight is worked out again until that settles.
        const int available = Q.viewport()->width();
        for (int round = 0; round < 4; ++round) {
            std::vector<TShare> shares = SharesOf(Layout, *Header);
            ShareWidth(shares, available);
            int64_t others = 0, left = available;
            for (const TShare& s : shares) {
                if (s.Field == Field) continue;
                if (s.AtMinimum)
                    left -= s.Minimum;
                else
                    others += s.Weight;
            }
            const int64_t size = std::clamp<int64_t>(NewSize, Header->MinimumSectionWidth(Field), left - 1);
            if (others == 0 || left <= size) break;
            const int32_t weight = int32_t(std::clamp<int64_t>(
                (size * others + (left - size) / 2) / (left - size), 1, TGridLayout::MaxWidth));
            if (weight == column.Width) break;
            column.Width = weight;
        }
        ApplyAutoWidths();
    } else {
        column.Width = std::min(NewSize, TGridLayout::MaxWidth);
    }
    UserChangedLayout();
}

void TNoticeBdGrid::TPrivate::HeaderClicked(int Field, Qt::KeyboardModifiers Modifiers) {
    if (Field < 0 || Field >= NoticeFieldCount) return;
    TGridColumnLayout& column = Layout.Column(TNoticeField(Field));
    if (column.GroupIndex >= 0) return;
    const auto flip = [](TSortDirection d) {
        return d == TSortDirection::sdAscending ? TSortDirection::sdDescending : TSortDirection::sdAscending;
    };
    if (Modifiers & Qt::ControlModifier) {
        column.Sort = TSortDirection::sdNone; // Ctrl+click takes the column out of the sort
        column.SortIndex = -1;
    } else if (Modifiers & Qt::ShiftModifier) {
        if (column.Sort != TSortDirection::sdNone) {
            column.Sort = flip(column.Sort);
        } else {
            int32_t last = -1;
            for (int f = 0; f < NoticeFieldCount; ++f)
                last = std::max(last, Layout.Column(TNoticeField(f)).SortIndex);
            column.Sort = TSortDirection::sdAscending;
            column.SortIndex = last + 1;
        }
    } else {
        const TSortDirection direction =
            column.Sort == TSortDirection::sdNone ? TSortDirection::sdAscending : flip(column.Sort);
        for (int f = 0; f < NoticeFieldCount; ++f) {
            TGridColumnLayout& c = Layout.Column(TNoticeField(f));
            if (c.GroupIndex >= 0) continue; // a group column's direction orders its groups
            c.Sort = TSortDirection::sdNone;
            c.SortIndex = -1;
        }
        column.Sort = direction;
        column.SortIndex = 0;
    }
    Layout.Normalize();
    Header->SetSortMarks(Layout);
    ApplyOrder();
    UserChangedLayout();
}

void TNoticeBdGrid::TPrivate::ShowColumnMenu(int Field, const QPoint& GlobalPos) {
    const std::unique_ptr<QMenu> menu = Header->ColumnMenu(Field, Layout);
    menu->exec(GlobalPos);
}

void TNoticeBdGrid::TPrivate::SetColumnVisible(int Field, bool Visible) {
    if (Field < 0 || Field >= NoticeFieldCount) return;
    TGridColumnLayout& column = Layout.Column(TNoticeField(Field));
    if (column.Visible == Visible) return;
    column.Visible = Visible;
    // A column shown for the first time gets its default width (or ten characters).
    if (Visible && column.Width < 2 * Q.WidthUnit()) {
        int units = 10;
        for (const NoticeBdColRec& entry : NoticeBdColumnArray)
            if (entry.Field == Field && entry.DefaultWidth > 0) units = entry.DefaultWidth;
        column.Width = std::min(units * Q.WidthUnit(), TGridLayout::MaxWidth);
    }
    ApplyLayoutToHeader();
    UserChangedLayout();
}

void TNoticeBdGrid::TPrivate::GroupBy(int Field) {
    if (Field < 0 || Field >= NoticeFieldCount) return;
    TGridColumnLayout& column = Layout.Column(TNoticeField(Field));
    if (column.GroupIndex >= 0) return;
    int32_t last = -1;
    for (int f = 0; f < NoticeFieldCount; ++f)
        last = std::max(last, Layout.Column(TNoticeField(f)).GroupIndex);
    column.GroupIndex = last + 1;
    if (column.Sort == TSortDirection::sdNone) column.Sort = TSortDirection::sdAscending;
    Layout.Normalize();
    ApplyLayoutToHeader();
    ApplyOrder();
    UserChangedLayout();
}

void TNoticeBdGrid::TPrivate::UngroupAll() {
    bool any = false;
    for (int f = 0; f < NoticeFieldCount; ++f) {
        TGridColumnLayout& c = Layout.Column(TNoticeField(f));
        any |= c.GroupIndex >= 0;
        c.GroupIndex = -1;
    }
    if (!any) return;
    Layout.Normalize();
    ApplyLayoutToHeader();
    ApplyOrder();
    UserChangedLayout();
}
