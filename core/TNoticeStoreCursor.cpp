// The store's current row, positions, bookmarks, attached views and row filter.
#include "core/TNoticeStore.h"

#include <algorithm>

void TNoticeStore::SetCurrent(int32_t slot) {
    FCur = slot;
    FBof = FEof = slot < 0;
    NotifyCurrent();
}

void TNoticeStore::SettleAfterLoss(int32_t slot) {
    if (slot != FCur) return;
    const TSlotMarks& v = Visible();
    const int32_t before = v.Prefix(slot); // visible rows before the lost one
    int32_t next = v.FindKth(before + 1);
    if (next < 0) next = v.FindKth(before);
    SetCurrent(next);
}

void TNoticeStore::First() {
    CheckBrowse();
    SetCurrent(Visible().FindKth(1));
    FBof = true;
}

void TNoticeStore::Last() {
    CheckBrowse();
    SetCurrent(Visible().FindKth(Visible().Total()));
    FEof = true;
}

void TNoticeStore::Next() {
    CheckBrowse();
    const int32_t next = FCur < 0 ? -1 : Visible().FindKth(Visible().Prefix(FCur) + 1);
    if (next < 0) {
        FEof = true;
        return;
    }
    SetCurrent(next);
}

void TNoticeStore::Prior() {
    CheckBrowse();
    int32_t prior = -1;
    if (FCur >= 0) prior = Visible().FindKth(Visible().Prefix(FCur) - (SlotVisible(FCur) ? 1 : 0));
    if (prior < 0) {
        FBof = true;
        return;
    }
    SetCurrent(prior);
}

int32_t TNoticeStore::RecNo() const {
    return SlotVisible(FCur) ? Visible().Prefix(FCur) : -1;
}

void TNoticeStore::SetRecNo(int32_t recNo) {
    CheckBrowse();
    const int32_t slot = Visible().FindKth(recNo);
    if (slot >= 0) SetCurrent(slot);
}

int32_t TNoticeStore::RecordCount() const {
    return Visible().Total();
}

const TNoticeRecord* TNoticeStore::RowAt(int32_t recNo) const {
    const int32_t slot = Visible().FindKth(recNo);
    return slot < 0 ? nullptr : &FRows[slot];
}

TBookmark TNoticeStore::GetBookmark() const {
    return SlotVisible(FCur) ? FSlotKeys[FCur] : 0;
}

bool TNoticeStore::BookmarkValid(TBookmark bookmark) const {
    return SlotVisible(SlotOfKey(bookmark));
}

void TNoticeStore::GotoBookmark(TBookmark bookmark) {
    CheckBrowse();
    const int32_t slot = SlotOfKey(bookmark);
    if (!SlotVisible(slot)) throw EDatabaseError("Record not found");
    SetCurrent(slot);
}

void TNoticeStore::EnableControls() {
    if (FDisableCount == 0) return;
    if (--FDisableCount == 0 && FChangedWhileDisabled) {
        FChangedWhileDisabled = false;
        NotifyDataSet();
    }
}

void TNoticeStore::AddListener(INoticeStoreListener* listener) {
    if (listener && std::find(FListeners.begin(), FListeners.end(), listener) == FListeners.end())
        FListeners.push_back(listener);
}

void TNoticeStore::RemoveListener(INoticeStoreListener* listener) {
    FListeners.erase(std::remove(FListeners.begin(), FListeners.end(), listener), FListeners.end());
}

void TNoticeStore::AddRowObserver(INoticeRowObserver* observer) {
    if (observer && std::find(FObservers.begin(), FObservers.end(), observer) == FObservers.end())
        FObservers.push_back(observer);
}

void TNoticeStore::RemoveRowObserver(INoticeRowObserver* observer) {
    FObservers.erase(std::remove(FObservers.begin(), FObservers.end(), observer), FObservers.end());
}

void TNoticeStore::NotifyDataSet() {
    if (FDisableCount > 0) {
        FChangedWhileDisabled = true;
        return;
    }
    for (INoticeStoreListener* l : FListeners)
        l->DataSetChanged();
}

void TNoticeStore::NotifyRecord(int32_t key) {
    if (FDisableCount > 0) {
        FChangedWhileDisabled = true;
        return;
    }
    for (INoticeStoreListener* l : FListeners)
        l->RecordChanged(key);
}

void TNoticeStore::NotifyCurrent() {
    // A move while detached is not a change of data; the views reposition when they reload.
    if (FDisableCount > 0) return;
    for (INoticeStoreListener* l : FListeners)
        l->CurrentChanged();
}

void TNoticeStore::RecomputePassing() {
    if (!FFilter) {
        FPassing.Clear();
        return;
    }
    const int32_t size = FRows.Size();
    // Each row's text lives in its own heap block: a filter on text is bound by memory latency unless the
    // blocks of the next rows are already on their way. The rows are only read, so a store that shares
    // them with a copy keeps sharing them.
    constexpr int32_t Ahead = 8;
    const bool prefetch = FFilter->ReadsText();
    const TNoticeRows& rows = FRows;
    TSlotMarks passing;
    passing.Assign(size, [&](int32_t s) {
        if (prefetch && s + Ahead < size) __builtin_prefetch(rows[s + Ahead].TextData());
        return FAlive.Get(s) && Passes(rows[s]);
    });
    FPassing = std::move(passing);
}

void TNoticeStore::SetFilterText(const std::string& text) {
    std::shared_ptr<const IRowFilter> filter;
    if (!text.empty()) {
        if (!FCompiler) throw EDatabaseError("No filter language installed");
        filter = FCompiler(text); // a bad text raises here and leaves the old filter in place
    }
    std::swap(FFilter, filter);
    try {
        RecomputePassing();
    } catch (...) {
        std::swap(FFilter, filter); // memory ran out: the old filter and its marks stay
        throw;
    }
    FFilterText = text;
    Touch();
    TellObservers([](INoticeRowObserver& o) { o.RowsReset(); });
    if (FFiltered && FState == TDataSetState::dsBrowse) First();
    NotifyDataSet();
}

void TNoticeStore::SetFiltered(bool filtered) {
    if (filtered == FFiltered) return;
    FFiltered = filtered;
    if (FFilter == nullptr) return; // nothing changes what is visible
    if (FState == TDataSetState::dsBrowse) First();
    NotifyDataSet();
}

void TNoticeStore::ForEachRow(const std::function<void(const TNoticeRecord&)>& visit) const {
    const TSlotMarks& v = Visible();
    for (int32_t s = 0; s < v.Size(); ++s)
        if (v.Get(s)) visit(FRows[s]);
}
