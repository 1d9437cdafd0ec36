// The notice grid's quick search: the grid's view carries the search as its narrowing for the grid's
// life; a text typed is applied at once, and the delegate marks the words in the cells.
#include "core/ui/NoticeBdGridPrivate.h"

#include <QRegularExpression>

void TNoticeBdGrid::TPrivate::SyncSearchFields() {
    std::vector<TNoticeField> fields;
    for (int f = 0; f < NoticeFieldCount; ++f) {
        const TGridColumnLayout& c = Layout.Column(TNoticeField(f));
        if (c.Visible || c.GroupIndex >= 0) fields.push_back(TNoticeField(f));
    }
    if (fields == Search.Fields()) return;
    Search.SetFields(std::move(fields));
    if (Search.Narrows()) Q.ScheduleRefresh();
}

void TNoticeBdGrid::SetQuickSearchText(const QString& Text) {
    if (Text == QuickSearchText()) return;
    d->SyncSearchFields();
    d->Search.SetText(Text.toStdString());
    d->Delegate->SetMarkedWords(Text.split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts));
    RefreshNow();
    viewport()->update();
    emit QuickSearchChanged(QuickSearchMatches());
}

QString TNoticeBdGrid::QuickSearchText() const {
    return QString::fromStdString(d->Search.Text());
}

int32_t TNoticeBdGrid::QuickSearchMatches() const {
    return d->Search.Narrows() ? d->View.RowCount() : -1;
}

QString TNoticeBdGrid::QuickSearchStatusText() const {
    const int32_t matches = QuickSearchMatches();
    return matches < 0 ? QString() : QString::fromStdString(QuickSearchMatchText(matches));
}

void TNoticeBdGrid::PrepareQuickSearch() {
    d->SyncSearchFields();
    d->Search.Prepare();
}
