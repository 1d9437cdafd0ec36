#include "core/ui/NoticeGridHeader.h"

#include <QAbstractItemView>
#include <QContextMenuEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPolygonF>
#include <QStyleOptionHeader>

#include <algorithm>
#include <limits>

int TRowHeaderModel::rowCount(const QModelIndex& Parent) const {
    return Parent.isValid() ? 0 : FCapacity;
}

QVariant TRowHeaderModel::data(const QModelIndex&, int) const {
    return QVariant();
}

QVariant TRowHeaderModel::headerData(int, Qt::Orientation, int) const {
    return QVariant();
}

// A QHeaderView keeps 8 bytes per section in a list that Qt allocates in powers of two, so the capacity is
// the most sections such a block holds (less a margin for the block's header): the spare rows cost nothing
// that the rows themselves would not.
static int SectionsFor(int Rows) {
    int64_t block = 4096;
    while ((block - 64) / 8 < int64_t(Rows) + 64)
        block *= 2;
    return int(std::min<int64_t>((block - 64) / 8, std::numeric_limits<int>::max()));
}

void TRowHeaderModel::Fit(int Rows) {
    FRows = Rows;
    if (Rows > FCapacity) {
        const int target = SectionsFor(Rows);
        beginInsertRows(QModelIndex(), FCapacity, target - 1);
        FCapacity = target;
        endInsertRows();
    } else if (Rows < FCapacity / 4 && SectionsFor(Rows) < FCapacity) {
        const int target = SectionsFor(Rows);
        beginRemoveRows(QModelIndex(), target, FCapacity - 1);
        FCapacity = target;
        endRemoveRows();
    }
}

TNoticeGridHeader::TNoticeGridHeader(Qt::Orientation Orientation, QWidget* Parent)
    : QHeaderView(Orientation, Parent) {
    if (Orientation == Qt::Horizontal) {
        setSectionsMovable(true);
        setSectionsClickable(true);
        setHighlightSections(false);
        setStretchLastSection(false);
        setSortIndicatorShown(false); // the arrows are ours, one per sorted column
        setSectionResizeMode(QHeaderView::Interactive);
        setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        // The base class tells a click from a drag or a resize; the modifiers come from the press.
        connect(this, &QHeaderView::sectionClicked, this,
                [this](int section) { emit SectionClicked(section, FPressModifiers); });
    } else {
        setSectionResizeMode(QHeaderView::Fixed);
        setSectionsClickable(false);
        setHighlightSections(false);
    }
}

void TNoticeGridHeader::SetSortMarks(const TGridLayout& Layout) {
    FSortedCount = 0;
    for (int f = 0; f < NoticeFieldCount; ++f) {
        const TGridColumnLayout& c = Layout.Column(TNoticeField(f));
        FMarks[size_t(f)] = TMark{c.GroupIndex < 0 ? c.Sort : TSortDirection::sdNone, c.SortIndex};
        if (FMarks[size_t(f)].Sort != TSortDirection::sdNone) ++FSortedCount;
    }
    viewport()->update();
}

int TNoticeGridHeader::MinimumSectionWidth(int LogicalIndex) const {
    QStyleOptionHeader option;
    initStyleOption(&option);
    initStyleOptionForIndex(&option, LogicalIndex);
    const int margin = style()->pixelMetric(QStyle::PM_HeaderMargin, &option, this);
    const int arrow = style()->pixelMetric(QStyle::PM_HeaderMarkSize, &option, this);
    return fontMetrics().horizontalAdvance(option.text) + 3 * margin + arrow + 2;
}

void TNoticeGridHeader::mousePressEvent(QMouseEvent* Event) {
    FPressModifiers = Event->modifiers();
    QHeaderView::mousePressEvent(Event);
}

void TNoticeGridHeader::contextMenuEvent(QContextMenuEvent* Event) {
    if (orientation() != Qt::Horizontal) return;
    emit MenuRequested(logicalIndexAt(Event->pos()), Event->globalPos());
}

std::unique_ptr<QMenu> TNoticeGridHeader::ColumnMenu(int LogicalIndex, const TGridLayout& Layout) {
    auto menu = std::make_unique<QMenu>();
    menu->setObjectName(QStringLiteral("ColumnMenu"));
    const QAbstractItemModel* m = model();
    for (const NoticeBdColRec& entry : NoticeBdColumnArray) {
        const TGridColumnLayout& c = Layout.Column(entry.Field);
        const QString caption = m ? m->headerData(entry.Field, Qt::Horizontal).toString() : QString();
        QAction* action = menu->addAction(caption);
        action->setObjectName(QString::fromLatin1(entry.FieldName));
        action->setCheckable(true);
        action->setChecked(c.Visible);
        action->setEnabled(c.GroupIndex < 0);
        const int field = entry.Field;
        connect(action, &QAction::toggled, this,
                [this, field](bool on) { emit ColumnVisibilityChosen(field, on); });
    }
    menu->addSeparator();
    bool grouped = false;
    for (int f = 0; f < NoticeFieldCount; ++f)
        grouped |= Layout.Column(TNoticeField(f)).GroupIndex >= 0;
    QAction* group = menu->addAction(tr("&Group by this column"));
    group->setObjectName(QStringLiteral("GroupByColumn"));
    group->setEnabled(LogicalIndex >= 0 && LogicalIndex < NoticeFieldCount);
    connect(group, &QAction::triggered, this, [this, LogicalIndex] { emit GroupByChosen(LogicalIndex); });
    QAction* ungroup = menu->addAction(tr("&Ungroup"));
    ungroup->setObjectName(QStringLiteral("UngroupAll"));
    ungroup->setEnabled(grouped);
    connect(ungroup, &QAction::triggered, this, &TNoticeGridHeader::UngroupAllChosen);
    QAction* expand = menu->addAction(tr("&Expand All Groups"));
    expand->setObjectName(QStringLiteral("ExpandAllGroups"));
    expand->setEnabled(grouped);
    connect(expand, &QAction::triggered, this, [this] { emit ExpandAllChosen(true); });
    QAction* collapse = menu->addAction(tr("&Collapse All Groups"));
    collapse->setObjectName(QStringLiteral("CollapseAllGroups"));
    collapse->setEnabled(grouped);
    connect(collapse, &QAction::triggered, this, [this] { emit ExpandAllChosen(false); });
    return menu;
}

void TNoticeGridHeader::initStyleOptionForIndex(QStyleOptionHeader* Option, int LogicalIndex) const {
    QHeaderView::initStyleOptionForIndex(Option, LogicalIndex);
    if (orientation() != Qt::Horizontal || LogicalIndex < 0 || LogicalIndex >= NoticeFieldCount) return;
    const TMark& mark = FMarks[size_t(LogicalIndex)];
    if (mark.Sort == TSortDirection::sdNone) return;
    // Qt's own header draws ascending as SortDown; keep its convention so the arrows read as usual.
    Option->sortIndicator =
        mark.Sort == TSortDirection::sdAscending ? QStyleOptionHeader::SortDown : QStyleOptionHeader::SortUp;
    if (FSortedCount > 1 && mark.Priority >= 0)
        Option->text += QStringLiteral(" (%1)").arg(mark.Priority + 1);
}

void TNoticeGridHeader::paintSection(QPainter* Painter, const QRect& Rect, int LogicalIndex) const {
    const auto* rows = qobject_cast<const TRowHeaderModel*>(model());
    if (rows && LogicalIndex >= rows->Rows()) return; // room kept for rows to come
    QHeaderView::paintSection(Painter, Rect, LogicalIndex);
    if (orientation() != Qt::Vertical) return;
    const auto* view = qobject_cast<const QAbstractItemView*>(parentWidget());
    if (!view || view->currentIndex().row() != LogicalIndex) return;
    // The row indicator: a small solid triangle pointing at the current row.
    const int h = std::min(Rect.height() - 6, Rect.width() - 6) / 2 * 2;
    if (h < 4) return;
    const QPointF c = QRectF(Rect).center();
    const QPointF tip(c.x() + h / 4.0, c.y());
    const QPolygonF arrow(
        {QPointF(tip.x() - h / 2.0, c.y() - h / 2.0), tip, QPointF(tip.x() - h / 2.0, c.y() + h / 2.0)});
    Painter->save();
    Painter->setRenderHint(QPainter::Antialiasing);
    Painter->setPen(Qt::NoPen);
    Painter->setBrush(palette().color(QPalette::WindowText));
    Painter->drawPolygon(arrow);
    Painter->restore();
}
