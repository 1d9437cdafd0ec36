// The notice grid's painting: the colours the cells take (the board's custom-draw rule, from the bound
// display, with the display's optional severity colours), the cells themselves (TNoticeGridDelegate), then
// the grid lines and the group headings over them, each drawn once per paint.
#include "core/ui/NoticeBdGridPrivate.h"

#include "core/ui/NbColors.h"
#include "views/Displayu.h"

#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <climits>

TNoticeGridDelegate::TColors TNoticeBdGrid::TPrivate::PaintColors() const {
    TNoticeGridDelegate::TColors c;
    c.Background = ToQColor(Display ? Display->GridColor : GridColor);
    c.AltRows = Display && Display->AltRowColors && !Model->Rows().Grouped();
    c.AltBackground = Display ? ToQColor(Display->AltColor) : c.Background;
    c.SeverityRows = Display && Display->SeverityRowColors;
    if (Display)
        for (size_t i = 0; i < c.SeverityBackground.size(); ++i)
            c.SeverityBackground[i] = ToQColor(Display->SeverityColors[i]);
    c.Mark = QColor(255, 214, 64); // a marker pen's yellow, readable under the text and the selection's
    c.Line = ToQColor(GridLineColor);
    c.Lines = ShowGridLines;
    c.FocusRect = (Options & goFocusRect) != 0;
    // Selected rows keep the grid's own colours, focused or not.
    const QPalette& p = Q.palette();
    c.Text = p.color(QPalette::Active, QPalette::Text);
    c.Highlight = p.color(QPalette::Active, QPalette::Highlight);
    c.HighlightedText = p.color(QPalette::Active, QPalette::HighlightedText);
    c.Heading = p.color(QPalette::Active, QPalette::Button);
    return c;
}

void TNoticeBdGrid::paintEvent(QPaintEvent* Event) {
    d->Delegate->Prepare(d->PaintColors());
    if (Event->rect().top() <= 0) d->NoteTopRows();
    QTableView::paintEvent(Event);
    if (!d->ShowGridLines && !d->Model->Rows().Grouped()) return;
    QPainter painter(viewport());
    if (d->ShowGridLines) d->PaintGridLines(painter, Event->rect());
    if (d->Model->Rows().Grouped()) d->PaintHeadings(painter, Event->rect());
}

// The lines under every row and right of every column, drawn once per paint rather than per cell.
void TNoticeBdGrid::TPrivate::PaintGridLines(QPainter& Painter, const QRect& Exposed) {
    const int rows = Model->rowCount();
    const int first = Q.rowAt(Exposed.top());
    if (rows == 0 || first < 0 || first >= rows) return;
    int last = Q.rowAt(Exposed.bottom());
    if (last < 0 || last >= rows) last = rows - 1;
    const int top = Q.rowViewportPosition(first);
    const int bottom = Q.rowViewportPosition(last) + Q.rowHeight(last);
    const QColor line = ToQColor(GridLineColor);
    int left = INT_MAX, right = INT_MIN;
    for (int visual = 0; visual < NoticeFieldCount; ++visual) {
        const int column = Header->logicalIndex(visual);
        if (Header->isSectionHidden(column)) continue;
        const int x = Q.columnViewportPosition(column);
        const int edge = x + Q.columnWidth(column) - 1;
        left = std::min(left, x);
        right = std::max(right, edge);
        Painter.fillRect(QRect(edge, top, 1, bottom - top), line);
    }
    if (left > right) return;
    for (int row = first; row <= last; ++row)
        Painter.fillRect(QRect(left, Q.rowViewportPosition(row) + Q.rowHeight(row) - 1, right - left + 1, 1),
                         line);
}
