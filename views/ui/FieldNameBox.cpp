#include "views/ui/FieldNameBox.h"

#include "core/Znb_const.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QListView>
#include <QPainter>
#include <QScrollBar>
#include <QStandardItemModel>

#include <algorithm>

namespace {

constexpr int CaptionGap = 24; // pixels between a name and its caption

} // namespace

void TFieldCaptionDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                  const QModelIndex& index) const {
    QStyleOptionViewItem opt = option;
    initStyleOption(&opt, index);
    // A completer's list marks its current row the way the combo box marks the hovered one.
    if (auto* view = qobject_cast<const QAbstractItemView*>(option.widget);
        view && view->currentIndex() == index)
        opt.state |= QStyle::State_Selected;
    const QWidget* widget = option.widget;
    QStyle* style = widget ? widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &opt, painter, widget);

    const QString caption = index.data(FieldCaptionRole).toString();
    if (caption.isEmpty()) return;
    const QRect text = style->subElementRect(QStyle::SE_ItemViewItemText, &opt, widget);
    const int nameWidth = opt.fontMetrics.horizontalAdvance(opt.text) + CaptionGap;
    const QRect room = text.adjusted(nameWidth, 0, -4, 0);
    if (room.width() <= 0) return;
    const bool selected = opt.state & QStyle::State_Selected;
    QColor colour = opt.palette.color(selected ? QPalette::HighlightedText : QPalette::PlaceholderText);
    if (selected) colour.setAlphaF(0.75f);
    painter->save();
    painter->setPen(colour);
    painter->setFont(opt.font);
    painter->drawText(room, Qt::AlignRight | Qt::AlignVCenter,
                      opt.fontMetrics.elidedText(caption, Qt::ElideRight, room.width()));
    painter->restore();
}

QSize TFieldCaptionDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    const QString caption = index.data(FieldCaptionRole).toString();
    if (!caption.isEmpty()) size.rwidth() += option.fontMetrics.horizontalAdvance(caption) + CaptionGap + 4;
    return size;
}

QString TFieldNameCompleter::pathFromIndex(const QModelIndex& index) const {
    return index.data(Qt::DisplayRole).toString();
}

void SetupFieldNameBox(QComboBox* Box) {
    Box->setEditable(true);
    Box->setInsertPolicy(QComboBox::NoInsert);
    auto* model = new QStandardItemModel(Box);
    for (const NoticeBdColRec& column : NoticeBdColumnArray) {
        auto* item = new QStandardItem(QString::fromLatin1(column.FieldName));
        const QString caption = QString::fromLatin1(column.Caption);
        item->setData(caption, FieldCaptionRole);
        item->setData(caption, Qt::ToolTipRole);
        item->setData(item->text() + QLatin1Char(' ') + caption, FieldSearchRole);
        model->appendRow(item);
    }
    Box->setModel(model);
    Box->setCurrentIndex(-1);

    auto* delegate = new TFieldCaptionDelegate(Box);
    Box->view()->setItemDelegate(delegate);
    // The list is wider than the box, so that every caption shows whole.
    QStyleOptionViewItem option;
    option.initFrom(Box->view());
    int widest = 0;
    for (int row = 0; row < model->rowCount(); ++row)
        widest = std::max(widest, delegate->sizeHint(option, model->index(row, 0)).width());
    Box->view()->setMinimumWidth(widest + Box->view()->verticalScrollBar()->sizeHint().width());

    auto* completer = new TFieldNameCompleter(model, Box);
    completer->setCompletionRole(FieldSearchRole);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    completer->setFilterMode(Qt::MatchContains);
    completer->setCompletionMode(QCompleter::PopupCompletion);
    completer->setMaxVisibleItems(12);
    auto* popup = new QListView;
    completer->setPopup(popup); // the completer takes the popup, and gives it its own delegate
    popup->setItemDelegate(new TFieldCaptionDelegate(popup));
    popup->setMinimumWidth(widest);
    Box->setCompleter(completer);
}
