// What the report, the spreadsheet export and the clipboard read of the notice grid: its columns as shown
// (group columns, then the visible columns in their order) and its rows in display order.
#include "core/ui/NoticeBdGridPrivate.h"

#include <QClipboard>
#include <QGuiApplication>

#include <algorithm>

namespace {

// Every row of the view, in its order.
class TViewExportRows final : public IExportRows {
public:
    explicit TViewExportRows(const TNoticeGridView& View) : FView(View) {}
    int32_t Count() const override { return FView.RowCount(); }
    const TNoticeRecord* Row(int32_t Index) const override { return FView.RowAt(Index); }

private:
    const TNoticeGridView& FView;
};

// Rows named by key.
class TKeyExportRows final : public IExportRows {
public:
    TKeyExportRows(const TNoticeStore& Store, std::vector<int32_t> Keys)
        : FStore(Store), FKeys(std::move(Keys)) {}
    int32_t Count() const override { return int32_t(FKeys.size()); }
    const TNoticeRecord* Row(int32_t Index) const override {
        const int32_t slot = FStore.SlotOfKey(FKeys[size_t(Index)]);
        return slot < 0 ? nullptr : &FStore.RowBySlot(slot);
    }

private:
    const TNoticeStore& FStore;
    std::vector<int32_t> FKeys;
};

// The visible columns that are not grouped, left to right.
std::vector<TNoticeField> ShownColumns(const TGridLayout& Layout) {
    std::vector<TNoticeField> fields;
    for (const TNoticeField f : Layout.FieldsInPositionOrder())
        if (Layout.Column(f).Visible && Layout.Column(f).GroupIndex < 0) fields.push_back(f);
    return fields;
}

} // namespace

std::vector<int32_t> TNoticeBdGrid::TPrivate::KeysInDisplayOrder(bool SelectedOnly) const {
    std::vector<int32_t> keys;
    if (SelectedOnly) {
        std::vector<std::pair<int32_t, int32_t>> placed; // position, key
        for (const int32_t key : Selection.Keys()) {
            const int32_t position = View.PositionOf(key);
            if (position >= 0) placed.emplace_back(position, key);
        }
        std::sort(placed.begin(), placed.end());
        keys.reserve(placed.size());
        for (const auto& p : placed)
            keys.push_back(p.second);
        return keys;
    }
    // The data rows shown: every row of the view, less those inside collapsed groups.
    keys.reserve(size_t(View.RowCount()));
    const TGridDisplayRows& rows = Model->Rows();
    std::vector<std::pair<int32_t, int32_t>> runs;
    if (rows.AnyCollapsed())
        rows.ForEachRun([&](int32_t first, int32_t count) { runs.emplace_back(first, count); });
    size_t run = 0;
    View.WalkNodes([&](const TGridNode& node) {
        if (node.IsGroup) return true;
        if (rows.AnyCollapsed()) {
            while (run < runs.size() && node.Position >= runs[run].first + runs[run].second)
                ++run;
            if (run == runs.size()) return false;
            if (node.Position < runs[run].first) return true;
        }
        keys.push_back(node.Row->AsInteger(nf_nb_internal_key));
        return true;
    });
    return keys;
}

QString TNoticeBdGrid::SelectionAsText() const {
    const std::vector<TNoticeField> columns = ShownColumns(d->Layout);
    QString text;
    for (size_t i = 0; i < columns.size(); ++i)
        text += (i ? QStringLiteral("\t") : QString()) + ColumnCaption(columns[i]);
    text += u'\n';
    for (const int32_t key : d->KeysInDisplayOrder(true)) {
        const int32_t slot = d->Store.SlotOfKey(key);
        if (slot < 0) continue;
        const TNoticeRecord& row = d->Store.RowBySlot(slot);
        for (size_t i = 0; i < columns.size(); ++i)
            text += (i ? QStringLiteral("\t") : QString()) + TNoticeGridModel::CellText(row, columns[i]);
        text += u'\n';
    }
    return text;
}

void TNoticeBdGrid::CopySelection() const {
    if (d->Selection.Empty()) return;
    QGuiApplication::clipboard()->setText(SelectionAsText());
}

std::vector<TExportColumn> TNoticeBdGrid::ExportColumns() const {
    std::vector<TExportColumn> columns;
    for (const TSortColumn& group : d->Layout.GroupColumns())
        columns.push_back({group.Field, ColumnCaption(group.Field).toStdString()});
    for (const TNoticeField f : ShownColumns(d->Layout))
        columns.push_back({f, ColumnCaption(f).toStdString()});
    return columns;
}

std::unique_ptr<IExportRows> TNoticeBdGrid::ExportRows(bool SelectedOnly) const {
    if (SelectedOnly) return std::make_unique<TKeyExportRows>(d->Store, d->KeysInDisplayOrder(true));
    return std::make_unique<TViewExportRows>(d->View);
}

int TNoticeBdGrid::GroupColumnCount() const {
    return int(d->Layout.GroupColumns().size());
}

TReportColumn TNoticeBdGrid::GroupColumn(int Index) const {
    const TNoticeField f = d->Layout.GroupColumns().at(size_t(Index)).Field;
    return {NoticeFieldName(f), ColumnCaption(f).toStdString(), NoticeFieldType(f)};
}

int TNoticeBdGrid::VisibleColumnCount() const {
    return int(ShownColumns(d->Layout).size());
}

TReportColumn TNoticeBdGrid::VisibleColumn(int Index) const {
    const TNoticeField f = ShownColumns(d->Layout).at(size_t(Index));
    return {NoticeFieldName(f), ColumnCaption(f).toStdString(), NoticeFieldType(f)};
}

TNoticeStore& TNoticeBdGrid::DataSet() {
    return d->Store;
}
