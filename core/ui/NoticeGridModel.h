// The notice grid's item model: a table whose columns are the 18 notice fields (section = TNoticeField
// value) and whose rows are the grid's display rows (TGridDisplayRows: group headings and the data rows
// of expanded groups) over the live view. Cells are read from the store on demand; nothing is copied.
//
// The row count is a snapshot taken at each Refresh (none before the first), so the model stays consistent
// for Qt between two refreshes while the store changes underneath (cells are read live; a row beyond the view
// reads empty). A Refresh is one layout change: persistent indexes follow their row by key (headings by their
// id), an index whose row went into a collapsed group moves to the group's heading, and an index whose row
// left the grid becomes invalid. Indexes carry the row's key (or the heading's id) as internalId.
//
// Owned by the grid (Qt parent); the view must outlive it. Board thread only.
#pragma once

#include "core/ui/NoticeGridRows.h"

#include <QAbstractTableModel>
#include <QString>

#include <array>

class TNoticeGridModel : public QAbstractTableModel {
    Q_OBJECT
public:
    TNoticeGridModel(TNoticeGridView& View, QObject* Parent);

    int rowCount(const QModelIndex& Parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& Parent = QModelIndex()) const override;
    QModelIndex index(int Row, int Column, const QModelIndex& Parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& Index, int Role = Qt::DisplayRole) const override;
    QVariant headerData(int Section, Qt::Orientation Orientation, int Role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& Index) const override;

    TNoticeGridView& View() const { return FView; }
    const TGridDisplayRows& Rows() const { return FRows; }
    TGridDisplayRows& Rows() { return FRows; }

    // A display row: the data row's record (null for a heading or outside the view), its key (0 for a
    // heading), its id (key, or heading id), and the display row of a key or id (-1 when not shown).
    TGridRowInfo Info(int Row) const;
    const TNoticeRecord* Record(int Row) const;
    int32_t KeyOf(int Row) const;
    quintptr IdOf(int Row) const;
    int RowOfKey(int32_t Key) const;
    int RowOfId(quintptr Id) const;
    // The row of an id, or for a data row inside collapsed groups the heading that hides it.
    int RowShowingId(quintptr Id) const;
    // "PVO Node: DBPROD01 (12)": the caption of the group column, the group's value and its row count.
    QString HeadingText(int Row) const;

    // Reads the view again in one layout change (see the header comment).
    void Refresh();

    QString Caption(TNoticeField Field) const { return FCaptions[size_t(Field)]; }
    void SetCaption(TNoticeField Field, const QString& Caption);

    // A cell as the grid shows it: FieldDisplayText, a memo on one line.
    static QString CellText(const TNoticeRecord& Row, TNoticeField Field);

private:
    TNoticeGridView& FView;
    TGridDisplayRows FRows;
    std::array<QString, NoticeFieldCount> FCaptions;
    // The last row whose id was asked for: a table asks for every cell of a row in turn.
    mutable int FIdRow = -1;
    mutable quintptr FIdOfRow = 0;
    mutable uint64_t FIdRevision = 0;
};
