#include "support/ui/StringGrid.h"

#include <QAbstractTableModel>
#include <QHeaderView>
#include <QPainter>
#include <QStyledItemDelegate>

#include <algorithm>

// The cells and counts; the view shows rows 0..RowCount-1 and columns 0..ColCount-1 of the store.
class TStringGridModel final : public QAbstractTableModel {
public:
    using QAbstractTableModel::QAbstractTableModel;

    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : Rows; }
    int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : Cols; }

    QVariant data(const QModelIndex& index, int role) const override {
        if (!index.isValid()) return {};
        // The tool tip shows a value too long for its column in full.
        if (role == Qt::DisplayRole || role == Qt::ToolTipRole)
            return Cells.value(QPoint(index.column(), index.row()));
        if (role == Qt::TextAlignmentRole) return int(Qt::AlignLeft | Qt::AlignVCenter);
        return {};
    }

    Qt::ItemFlags flags(const QModelIndex& index) const override {
        if (!index.isValid()) return Qt::NoItemFlags;
        if (IsFixed(index)) return Qt::ItemIsEnabled;
        return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    }

    bool IsFixed(const QModelIndex& index) const {
        return index.row() < FixedRows || index.column() < FixedCols;
    }

    void SetCount(int& count, int value, bool columns) {
        value = std::max(0, value);
        if (value == count) return;
        if (columns) {
            if (value > count) {
                beginInsertColumns({}, count, value - 1);
                count = value;
                endInsertColumns();
            } else {
                beginRemoveColumns({}, value, count - 1);
                count = value;
                endRemoveColumns();
            }
        } else if (value > count) {
            beginInsertRows({}, count, value - 1);
            count = value;
            endInsertRows();
        } else {
            beginRemoveRows({}, value, count - 1);
            count = value;
            endRemoveRows();
        }
    }

    void SetCell(int col, int row, const QString& text) {
        if (text.isEmpty())
            Cells.remove(QPoint(col, row));
        else
            Cells.insert(QPoint(col, row), text);
        if (col < Cols && row < Rows) emit dataChanged(index(row, col), index(row, col), {Qt::DisplayRole});
    }

    // Not a model reset: that would also reset the view's column widths.
    void Clear() {
        Cells.clear();
        ChangedAll();
    }

    void ChangedAll() {
        if (Rows > 0 && Cols > 0) emit dataChanged(index(0, 0), index(Rows - 1, Cols - 1));
    }

    QHash<QPoint, QString> Cells;
    int Rows = 0, Cols = 0, FixedRows = 0, FixedCols = 0;
};

namespace {

// Fixed cells look like the header sections of the current style; the others are ordinary cells.
class TFixedCellDelegate final : public QStyledItemDelegate {
public:
    TFixedCellDelegate(TStringGridModel* model, QObject* parent)
        : QStyledItemDelegate(parent), FModel(model) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        if (!FModel->IsFixed(index)) {
            QStyledItemDelegate::paint(painter, option, index);
            return;
        }
        QStyleOptionHeader header;
        header.rect = option.rect;
        header.palette = option.palette;
        header.fontMetrics = option.fontMetrics;
        header.state = QStyle::State_Enabled | QStyle::State_Raised;
        header.textAlignment = Qt::AlignLeft | Qt::AlignVCenter;
        header.position = QStyleOptionHeader::Middle;
        header.orientation = index.row() < FModel->FixedRows ? Qt::Horizontal : Qt::Vertical;
        const QWidget* widget = option.widget;
        QStyle* style = widget ? widget->style() : nullptr;
        if (!style) return;
        const int margin = style->pixelMetric(QStyle::PM_HeaderMargin, &header, widget);
        header.text = option.fontMetrics.elidedText(index.data().toString(), Qt::ElideRight,
                                                    option.rect.width() - 2 * margin);
        // The style's header drawing leaves its own clip on the painter; the cells after this one need
        // theirs.
        painter->save();
        style->drawControl(QStyle::CE_Header, &header, painter, widget);
        painter->restore();
    }

private:
    TStringGridModel* FModel;
};

} // namespace

TStringGrid::TStringGrid(QWidget* parent) : QTableView(parent), FModel(new TStringGridModel(this)) {
    setModel(FModel);
    setItemDelegate(new TFixedCellDelegate(FModel, this));
    horizontalHeader()->hide();
    verticalHeader()->hide();
    horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setMinimumSectionSize(1);
    verticalHeader()->setMinimumSectionSize(1);
    setEditTriggers(NoEditTriggers);
    setSelectionMode(SingleSelection);
    setSelectionBehavior(SelectItems);
    setWordWrap(false);
    SetDefaultColWidth(FDefaultColWidth);
    SetDefaultRowHeight(FDefaultRowHeight);
}

TStringGrid::~TStringGrid() = default;

int TStringGrid::ColCount() const {
    return FModel->Cols;
}
int TStringGrid::RowCount() const {
    return FModel->Rows;
}
int TStringGrid::FixedCols() const {
    return FModel->FixedCols;
}
int TStringGrid::FixedRows() const {
    return FModel->FixedRows;
}

void TStringGrid::SetColCount(int Count) {
    const int old = FModel->Cols;
    FModel->SetCount(FModel->Cols, Count, true);
    for (int c = old; c < FModel->Cols; ++c)
        setColumnWidth(c, FDefaultColWidth);
}

void TStringGrid::SetRowCount(int Count) {
    FModel->SetCount(FModel->Rows, Count, false);
}

void TStringGrid::SetFixedCols(int Count) {
    FModel->FixedCols = std::max(0, Count);
    FModel->ChangedAll();
}

void TStringGrid::SetFixedRows(int Count) {
    FModel->FixedRows = std::max(0, Count);
    FModel->ChangedAll();
}

void TStringGrid::SetDefaultColWidth(int Width) {
    FDefaultColWidth = std::max(0, Width);
    horizontalHeader()->setDefaultSectionSize(FDefaultColWidth);
    for (int c = 0; c < ColCount(); ++c)
        setColumnWidth(c, FDefaultColWidth);
}

void TStringGrid::SetDefaultRowHeight(int Height) {
    FDefaultRowHeight = std::max(0, Height);
    verticalHeader()->setDefaultSectionSize(FDefaultRowHeight);
    for (int r = 0; r < RowCount(); ++r)
        setRowHeight(r, FDefaultRowHeight);
}

int TStringGrid::ColWidth(int Col) const {
    return columnWidth(Col);
}

void TStringGrid::SetColWidth(int Col, int Width) {
    setColumnWidth(Col, std::max(0, Width));
}

QString TStringGrid::ColWidthsText() const {
    QStringList widths;
    for (int c = 0; c < ColCount(); ++c)
        widths << QString::number(columnWidth(c));
    return widths.join(QLatin1Char(','));
}

void TStringGrid::SetColWidthsText(const QString& Widths) {
    const QStringList parts = Widths.split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (int c = 0; c < parts.size() && c < ColCount(); ++c)
        SetColWidth(c, parts[c].trimmed().toInt());
}

QString TStringGrid::Cell(int Col, int Row) const {
    return FModel->Cells.value(QPoint(Col, Row));
}

void TStringGrid::SetCell(int Col, int Row, const QString& Text) {
    FModel->SetCell(Col, Row, Text);
}

void TStringGrid::ClearCells() {
    FModel->Clear();
}
