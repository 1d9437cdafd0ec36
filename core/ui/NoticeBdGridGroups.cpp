// The notice grid's group headings: "PVO Node: DBPROD01 (12)" rows written across the whole row, with an
// arrow that collapses and expands the group (a click on the arrow, a double-click, Enter, Left/Right or
// -/+ on the heading).
#include "core/ui/NoticeBdGridPrivate.h"

#include <QPainter>
#include <QPolygonF>

namespace {

constexpr int LevelIndent = 16; // pixels per group level
constexpr int ArrowSize = 9;

} // namespace

void TNoticeBdGrid::SetAllGroupsExpanded(bool Expanded) {
    d->Model->Rows().SetAllExpanded(Expanded);
    const QModelIndex current = currentIndex();
    const int top = rowAt(0);
    d->Reload(current.isValid() ? current.internalId() : 0,
              current.isValid() && top >= 0 ? std::max(0, current.row() - top) : 0);
}

QRect TNoticeBdGrid::TPrivate::ArrowRect(int Row) const {
    const TGridRowInfo info = Model->Info(Row);
    const int h = Q.rowHeight(Row);
    return QRect(4 + info.Level * LevelIndent, Q.rowViewportPosition(Row) + (h - ArrowSize) / 2, ArrowSize,
                 ArrowSize);
}

void TNoticeBdGrid::TPrivate::ToggleHeading(int Row) {
    const TGridRowInfo info = Model->Info(Row);
    if (info.Heading) SetHeadingExpanded(Row, !info.Expanded);
}

void TNoticeBdGrid::TPrivate::SetHeadingExpanded(int Row, bool Expanded) {
    const TGridRowInfo info = Model->Info(Row);
    if (!info.Heading || info.Expanded == Expanded) return;
    Model->Rows().SetExpanded(info.Id, Expanded);
    // The heading stays where it is on screen; what it held opens or closes below it.
    const int top = Q.rowAt(0);
    Reload(quintptr(info.Id), top >= 0 ? std::max(0, Row - top) : 0);
}

void TNoticeBdGrid::TPrivate::PaintHeadings(QPainter& Painter, const QRect& Exposed) {
    const int count = Model->rowCount();
    int first = Q.rowAt(Exposed.top());
    if (first < 0) return;
    int last = Q.rowAt(Exposed.bottom());
    if (last < 0) last = count - 1;
    const TNoticeGridDelegate::TColors& colors = Delegate->Colors();
    const int width = Q.viewport()->width();
    const int current = Q.currentIndex().row();
    QFont bold = Q.font();
    bold.setBold(true);
    const QFontMetrics fm(bold);
    Painter.setFont(bold);
    for (int row = first; row <= last; ++row) {
        const TGridRowInfo info = Model->Info(row);
        if (!info.Heading) continue;
        const QRect rect(0, Q.rowViewportPosition(row), width, Q.rowHeight(row));
        const bool isCurrent = row == current;
        Painter.fillRect(rect, isCurrent ? colors.Highlight : colors.Heading);
        const QColor ink = isCurrent ? colors.HighlightedText : colors.Text;

        const QRect arrow = ArrowRect(row);
        QPolygonF shape;
        if (info.Expanded)
            shape << arrow.topLeft() << arrow.topRight() << QPointF(arrow.center().x() + 0.5, arrow.bottom());
        else
            shape << arrow.topLeft() << QPointF(arrow.right(), arrow.center().y() + 0.5)
                  << arrow.bottomLeft();
        Painter.save();
        Painter.setRenderHint(QPainter::Antialiasing);
        Painter.setPen(Qt::NoPen);
        Painter.setBrush(ink);
        Painter.drawPolygon(shape);
        Painter.restore();

        const int x = arrow.right() + 7;
        const QString text =
            fm.elidedText(Model->HeadingText(row), Qt::ElideRight, std::max(0, width - x - 4));
        Painter.setPen(ink);
        Painter.drawText(x, rect.top() + (rect.height() - fm.height()) / 2 + fm.ascent(), text);
        if (colors.Lines) {
            Painter.setPen(colors.Line);
            Painter.drawLine(rect.left(), rect.bottom(), rect.right(), rect.bottom());
        }
    }
}

void TNoticeBdGrid::WalkNodes(const std::function<bool(const TGridNode&)>& Visit) const {
    d->View.WalkNodes(Visit);
}
