#include "core/ui/NoticeGridModel.h"

#include "core/Znb_fieldtext.h"

TNoticeGridModel::TNoticeGridModel(TNoticeGridView& View, QObject* Parent)
    : QAbstractTableModel(Parent), FView(View) {
    // Until AssignColumnHeaders, a column is captioned with its field name, as a data-aware grid's is.
    for (int f = 0; f < NoticeFieldCount; ++f)
        FCaptions[size_t(f)] = QString::fromLatin1(NoticeFieldName(TNoticeField(f)));
    // No rows until the first Refresh: a table hands its model to its row header too, which would lay
    // out an item per row before the grid gives that header a model of its own.
}

int TNoticeGridModel::rowCount(const QModelIndex& Parent) const {
    return Parent.isValid() ? 0 : FRows.Count();
}

int TNoticeGridModel::columnCount(const QModelIndex& Parent) const {
    return Parent.isValid() ? 0 : NoticeFieldCount;
}

QModelIndex TNoticeGridModel::index(int Row, int Column, const QModelIndex& Parent) const {
    if (Parent.isValid() || Row < 0 || Row >= FRows.Count() || Column < 0 || Column >= NoticeFieldCount)
        return QModelIndex();
    return createIndex(Row, Column, IdOf(Row));
}

TGridRowInfo TNoticeGridModel::Info(int Row) const {
    return Row >= 0 && Row < FRows.Count() ? FRows.At(Row) : TGridRowInfo{};
}

const TNoticeRecord* TNoticeGridModel::Record(int Row) const {
    const TGridRowInfo info = Info(Row);
    return info.Heading || info.Position < 0 ? nullptr : FView.RowAt(info.Position);
}

int32_t TNoticeGridModel::KeyOf(int Row) const {
    const TNoticeRecord* record = Record(Row);
    return record ? record->AsInteger(nf_nb_internal_key) : 0;
}

quintptr TNoticeGridModel::IdOf(int Row) const {
    const uint64_t revision = FView.Revision();
    if (Row == FIdRow && revision == FIdRevision) return FIdOfRow;
    const TGridRowInfo info = Info(Row);
    quintptr id = 0;
    if (info.Heading)
        id = quintptr(info.Id);
    else if (info.Position >= 0)
        id = quintptr(uint32_t(FView.KeyAt(info.Position)));
    FIdRow = Row;
    FIdOfRow = id;
    FIdRevision = revision;
    return id;
}

int TNoticeGridModel::RowOfKey(int32_t Key) const {
    const int32_t position = Key > 0 ? FView.PositionOf(Key) : -1;
    return position < 0 ? -1 : FRows.RowOfPosition(position);
}

int TNoticeGridModel::RowOfId(quintptr Id) const {
    if (Id >= TGridDisplayRows::HeadingIdBase) return FRows.RowOfHeading(uint64_t(Id));
    return RowOfKey(int32_t(Id));
}

int TNoticeGridModel::RowShowingId(quintptr Id) const {
    if (Id >= TGridDisplayRows::HeadingIdBase) return FRows.RowOfHeading(uint64_t(Id));
    const int32_t position = Id > 0 ? FView.PositionOf(int32_t(Id)) : -1;
    return position < 0 ? -1 : FRows.RowShowing(position);
}

QString TNoticeGridModel::CellText(const TNoticeRecord& Row, TNoticeField Field) {
    QString text = QString::fromStdString(FieldDisplayText(Row, Field));
    // One line per row: line breaks and tabs (a memo's, or a stray one in a text field) read as blanks.
    for (QChar& c : text)
        if (c == u'\n' || c == u'\r' || c == u'\t') c = u' ';
    return text;
}

QString TNoticeGridModel::HeadingText(int Row) const {
    const TGridRowInfo info = Info(Row);
    if (!info.Heading) return QString();
    const TNoticeRecord* first = FView.RowAt(info.Position);
    const QString value = first ? CellText(*first, info.Field) : QString();
    return QStringLiteral("%1: %2 (%3)").arg(Caption(info.Field), value).arg(info.Count);
}

QVariant TNoticeGridModel::data(const QModelIndex& Index, int Role) const {
    if (!Index.isValid() || Index.model() != this) return QVariant();
    const TNoticeField field = TNoticeField(Index.column());
    switch (Role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole: {
        if (Info(Index.row()).Heading) return HeadingText(Index.row());
        const TNoticeRecord* row = Record(Index.row());
        if (!row) return QString();
        // The tool tip shows a memo in full, line breaks included.
        if (Role == Qt::ToolTipRole)
            return field == nf_note_text ? QVariant(QString::fromStdString(FieldDisplayText(*row, field)))
                                         : QVariant();
        return CellText(*row, field);
    }
    case Qt::TextAlignmentRole:
        return int((field == nf_note_count || field == nf_nb_internal_key ? Qt::AlignRight : Qt::AlignLeft) |
                   Qt::AlignVCenter);
    default:
        return QVariant();
    }
}

QVariant TNoticeGridModel::headerData(int Section, Qt::Orientation Orientation, int Role) const {
    if (Orientation != Qt::Horizontal || Section < 0 || Section >= NoticeFieldCount) return QVariant();
    if (Role == Qt::DisplayRole || Role == Qt::ToolTipRole) return FCaptions[size_t(Section)];
    return QVariant();
}

Qt::ItemFlags TNoticeGridModel::flags(const QModelIndex& Index) const {
    if (!Index.isValid()) return Qt::NoItemFlags;
    // Headings take the current row but are never selected.
    if (Index.internalId() >= TGridDisplayRows::HeadingIdBase)
        return Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
}

void TNoticeGridModel::Refresh() {
    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList from = persistentIndexList();
    FRows.Rebuild(FView);
    FIdRow = -1; // the same revision may map rows differently now (collapsing)
    QModelIndexList to;
    to.reserve(from.size());
    for (const QModelIndex& index : from) {
        const int row = RowShowingId(index.internalId());
        to.append(row < 0 ? QModelIndex() : createIndex(row, index.column(), IdOf(row)));
    }
    changePersistentIndexList(from, to);
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

void TNoticeGridModel::SetCaption(TNoticeField Field, const QString& Caption) {
    if (FCaptions[size_t(Field)] == Caption) return;
    FCaptions[size_t(Field)] = Caption;
    emit headerDataChanged(Qt::Horizontal, Field, Field);
}
