#include "core/TNoticeStore.h"

#include "support/StrUtils.h"

#include <algorithm>

namespace {
const TNoticeRecord EmptyRow;
}

TNoticeStore::TNoticeStore() : FKeyIndex(FRows) {}

void TNoticeStore::CopyFrom(const TNoticeStore& other) {
    if (&other == this) return;
    FRows = other.FRows;
    FAlive = other.FAlive;
    FPassing = other.FPassing;
    FKeyIndex.Rebuild();
    FNextKey = other.FNextKey;
    FCur = other.FCur;
    FBof = other.FBof;
    FEof = other.FEof;
    FState = TDataSetState::dsBrowse;
    FBuffer = TNoticeRecord();
    FOrigKeyIndex = false;
    FCompiler = other.FCompiler;
    FFilterText = other.FFilterText;
    FFilter = other.FFilter;
    FFiltered = other.FFiltered;
    NotifyDataSet();
}

void TNoticeStore::EmptyDataSet() {
    FRows.Clear();
    FAlive.Clear();
    FPassing.Clear();
    FKeyIndex.Clear();
    FNextKey = 1;
    FCur = -1;
    FBof = FEof = true;
    FState = TDataSetState::dsBrowse;
    FBuffer = TNoticeRecord();
    NotifyDataSet();
}

void TNoticeStore::SetIndexName(std::string_view name) {
    if (name.empty() || SameText(name, PrimaryIndexName))
        FOrigKeyIndex = false;
    else if (SameText(name, OrigKeyIndexName))
        FOrigKeyIndex = true;
    else
        throw EDatabaseError("Index '" + std::string(name) + "' not found");
}

bool TNoticeStore::FindKey(const std::string& value) {
    CheckBrowse();
    int32_t slot = -1;
    if (FOrigKeyIndex) {
        slot = FKeyIndex.Find(value);
    } else {
        int32_t key = 0;
        if (TryStrToInt(value, key) && key >= 1 && key < FNextKey) slot = key - 1;
    }
    if (!SlotVisible(slot)) return false;
    SetCurrent(slot);
    return true;
}

void TNoticeStore::CheckBrowse() const {
    if (FState != TDataSetState::dsBrowse) throw EDatabaseError("Dataset not in browse mode");
}

void TNoticeStore::Append() {
    if (FState != TDataSetState::dsBrowse) Post();
    FBuffer = TNoticeRecord();
    FState = TDataSetState::dsInsert;
}

void TNoticeStore::Edit() {
    if (FState != TDataSetState::dsBrowse) return;
    if (!SlotVisible(FCur)) throw EDatabaseError("Cannot perform this operation on an empty dataset");
    FBuffer = FRows[FCur];
    FState = TDataSetState::dsEdit;
}

void TNoticeStore::AppendSlot(TNoticeRecord&& row) {
    const bool passes = FFilter != nullptr && Passes(row);
    FRows.PushBack(std::move(row));
    FAlive.Append(true);
    if (FFilter) FPassing.Append(passes); // without a filter the passing marks are not kept
}

void TNoticeStore::Post() {
    if (FState == TDataSetState::dsBrowse) return;
    const std::string_view key = FBuffer.AsString(nf_adpt_orig_key);
    const uint32_t hash = TNoticeKeyIndex::HashKey(key);
    const int32_t existing = FKeyIndex.Find(key, hash);
    if (FState == TDataSetState::dsInsert) {
        if (existing >= 0) throw EDatabaseError("Key violation.");
        if (FNextKey == INT32_MAX) throw EDatabaseError("Key violation.");
        FBuffer.SetInteger(nf_nb_internal_key, FNextKey++);
        const int32_t slot = FRows.Size();
        const bool keyed = !key.empty();
        AppendSlot(std::move(FBuffer)); // key's text moves with the row; only the hash is used below
        FBuffer = TNoticeRecord();
        if (keyed) FKeyIndex.Insert(slot, hash);
        FState = TDataSetState::dsBrowse;
        if (SlotVisible(slot)) SetCurrent(slot);
        NotifyDataSet();
        return;
    }
    // Edit: the auto-increment key stays that of the row.
    const int32_t slot = FCur;
    if (existing >= 0 && existing != slot) throw EDatabaseError("Key violation.");
    FBuffer.SetInteger(nf_nb_internal_key, slot + 1);
    const bool wasVisible = SlotVisible(slot);
    const std::string oldKey(FRows[slot].AsString(nf_adpt_orig_key));
    FKeyIndex.Erase(slot, oldKey);
    FRows[slot] = std::move(FBuffer);
    FBuffer = TNoticeRecord();
    if (!FRows[slot].AsString(nf_adpt_orig_key).empty()) FKeyIndex.Insert(slot);
    if (FFilter) FPassing.Set(slot, Passes(FRows[slot]));
    FState = TDataSetState::dsBrowse;
    if (SlotVisible(slot) != wasVisible) {
        if (!SlotVisible(slot)) SettleAfterLoss(slot);
        NotifyDataSet();
    } else {
        NotifyRecord(slot + 1);
    }
}

void TNoticeStore::Cancel() {
    FState = TDataSetState::dsBrowse;
    FBuffer = TNoticeRecord();
}

void TNoticeStore::Delete() {
    if (FState == TDataSetState::dsInsert) {
        Cancel();
        return;
    }
    Cancel();
    if (!SlotVisible(FCur)) throw EDatabaseError("Cannot perform this operation on an empty dataset");
    const int32_t slot = FCur;
    FKeyIndex.Erase(slot, FRows[slot].AsString(nf_adpt_orig_key));
    FRows[slot] = TNoticeRecord(); // a tombstone: frees the text, the key is never reused
    FAlive.Set(slot, false);
    if (FFilter) FPassing.Set(slot, false);
    SettleAfterLoss(slot);
    NotifyDataSet();
}

TNoticeRecord& TNoticeStore::Buffer() {
    if (FState == TDataSetState::dsBrowse) throw EDatabaseError("Dataset not in edit or insert mode");
    return FBuffer;
}

const TNoticeRecord& TNoticeStore::ActiveRecord() const {
    if (FState != TDataSetState::dsBrowse) return FBuffer;
    return SlotVisible(FCur) ? FRows[FCur] : EmptyRow;
}

void TNoticeStore::SetCurrent(int32_t slot) {
    FCur = slot;
    FBof = FEof = slot < 0;
    NotifyCurrent();
}

void TNoticeStore::SettleAfterLoss(int32_t slot) {
    if (slot != FCur) return;
    const TFenwickTree& v = Visible();
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
    return SlotVisible(FCur) ? FCur + 1 : 0;
}

bool TNoticeStore::BookmarkValid(TBookmark bookmark) const {
    return bookmark >= 1 && bookmark < FNextKey && SlotVisible(bookmark - 1);
}

void TNoticeStore::GotoBookmark(TBookmark bookmark) {
    CheckBrowse();
    if (!BookmarkValid(bookmark)) throw EDatabaseError("Record not found");
    SetCurrent(bookmark - 1);
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
    std::vector<int8_t> marks(static_cast<size_t>(FRows.Size()), 0);
    for (int32_t s = 0; s < FRows.Size(); ++s)
        marks[s] = (FAlive.Get(s) && Passes(FRows[s])) ? 1 : 0;
    FPassing.Assign(marks);
}

void TNoticeStore::SetFilterText(const std::string& text) {
    std::shared_ptr<const IRowFilter> filter;
    if (!text.empty()) {
        if (!FCompiler) throw EDatabaseError("No filter language installed");
        filter = FCompiler(text); // a bad text raises here and leaves the old filter in place
    }
    FFilterText = text;
    FFilter = std::move(filter);
    RecomputePassing();
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
    const TFenwickTree& v = Visible();
    for (int32_t s = 0; s < v.Size(); ++s)
        if (v.Get(s)) visit(FRows[s]);
}
