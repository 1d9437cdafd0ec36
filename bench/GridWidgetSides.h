// The two sides of the grid widget benchmark (grid_widget.cpp): ours, TNoticeBdGrid over the board's store,
// and the reference, QStandardItemModel + QSortFilterProxyModel + QTableView holding the same rows, with
// the lookups both need. Header-only; GUI thread.
#pragma once

#include "SampleBoard.h"
#include "WidgetBench.h"

#include "core/TNoticeBoard.h"
#include "core/Znb_fieldtext.h"
#include "core/ui/NoticeBdGrid.h"
#include "views/Displayu.h"

#include <QHash>
#include <QHeaderView>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QTableView>

#include <string>

constexpr int Width = 1200, Height = 800;

// ---- Ours ----

struct TOurs {
    explicit TOurs(TNoticeStore& store) : Grid(store) {
        Display.SetGrid(&Grid);
        Grid.SetDisplay(&Display);
        Grid.AssignColumnHeaders();
        CreateDefaultView(Display); // severity first, sorted ascending
        Grid.resize(Width, Height);
        ShowExposed(Grid);
        Grid.viewport()->repaint();
    }
    void SortBy(TNoticeField field, bool descending) {
        TGridLayout layout = Grid.Layout();
        for (int f = 0; f < NoticeFieldCount; ++f) {
            layout.Column(TNoticeField(f)).Sort = TSortDirection::sdNone;
            layout.Column(TNoticeField(f)).SortIndex = -1;
        }
        layout.Column(field).Sort = descending ? TSortDirection::sdDescending : TSortDirection::sdAscending;
        layout.Column(field).SortIndex = 0;
        Grid.SetLayout(layout);
    }
    TNoticeBdGrid Grid;
    TDisplay Display;
};

// ---- The reference ----

constexpr int SeverityRole = Qt::UserRole + 1;

struct TReference {
    explicit TReference(TNoticeStore& store) : Store(store) {
        Items.setColumnCount(NoticeFieldCount);
        Items.setRowCount(store.RecordCount());
        int row = 0;
        store.ForEachRow([&](const TNoticeRecord& r) { SetRow(row++, r); });
        Proxy.setSortRole(SeverityRole);
        Proxy.setDynamicSortFilter(true);
        Proxy.setSourceModel(&Items);
        Proxy.sort(nf_note_severity, Qt::AscendingOrder);
        // Rows as high as the grid's, so that a page holds as many rows in both (set before the rows).
        View.verticalHeader()->setMinimumSectionSize(1);
        View.verticalHeader()->setDefaultSectionSize(View.fontMetrics().height() + 4);
        View.verticalHeader()->hide();
        View.setModel(&Proxy);
        View.setSelectionBehavior(QAbstractItemView::SelectRows);
        for (int f = 0; f < NoticeFieldCount; ++f)
            View.setColumnHidden(f, f != nf_note_severity && f != nf_adpt_source_id && f != nf_note_summary &&
                                        f != nf_note_raised_date && f != nf_note_count);
        View.resize(Width, Height);
        ShowExposed(View);
        View.viewport()->repaint();
    }
    void SetRow(int row, const TNoticeRecord& r) {
        for (int f = 0; f < NoticeFieldCount; ++f) {
            auto* item = new QStandardItem(QString::fromStdString(FieldDisplayText(r, TNoticeField(f))));
            // The sort role: the severity's number, every other column its text.
            item->setData(f == nf_note_severity ? QVariant(r.AsInteger(nf_note_severity)) : item->text(),
                          SeverityRole);
            Items.setItem(row, f, item);
        }
        ByKey[r.AsInteger(nf_nb_internal_key)] = Items.item(row, nf_note_severity);
    }
    void Add(const TNoticeRecord& r) {
        QList<QStandardItem*> items;
        for (int f = 0; f < NoticeFieldCount; ++f) {
            auto* item = new QStandardItem(QString::fromStdString(FieldDisplayText(r, TNoticeField(f))));
            item->setData(f == nf_note_severity ? QVariant(r.AsInteger(nf_note_severity)) : item->text(),
                          SeverityRole);
            items.append(item);
        }
        Items.appendRow(items);
        ByKey[r.AsInteger(nf_nb_internal_key)] = items[nf_note_severity];
    }
    // An update message carries the whole notice: every cell of its row is written again.
    void Update(const TNoticeRecord& r) {
        const int row = ByKey.value(r.AsInteger(nf_nb_internal_key))->row();
        for (int f = 0; f < NoticeFieldCount; ++f) {
            QStandardItem* item = Items.item(row, f);
            item->setText(QString::fromStdString(FieldDisplayText(r, TNoticeField(f))));
            item->setData(f == nf_note_severity ? QVariant(r.AsInteger(nf_note_severity)) : item->text(),
                          SeverityRole);
        }
    }
    void Remove(int32_t key) {
        QStandardItem* item = ByKey.take(key);
        if (item) Items.removeRow(item->row());
    }
    TNoticeStore& Store;
    QStandardItemModel Items;
    QSortFilterProxyModel Proxy;
    QTableView View;
    QHash<int32_t, QStandardItem*> ByKey;
};

inline int32_t KeyOfOrig(TNoticeStore& store, const std::string& origKey) {
    store.SetIndexName(TNoticeStore::OrigKeyIndexName);
    const bool found = store.FindKey(origKey);
    store.SetIndexName(TNoticeStore::PrimaryIndexName);
    return found ? store.GetBookmark() : 0;
}

inline const TNoticeRecord& RowOfKey(TNoticeStore& store, int32_t key) {
    return store.RowBySlot(store.SlotOfKey(key));
}
