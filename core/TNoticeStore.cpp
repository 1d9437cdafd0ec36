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
    ++FRowsGeneration;
    TellObservers([](INoticeRowObserver& o) { o.RowsReset(); });
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
    ++FRowsGeneration;
    TellObservers([](INoticeRowObserver& o) { o.RowsReset(); });
    NotifyDataSet();
}

void TNoticeStore::SetIndexName(std::string_view name) {
    // The board switches indexes twice per notice, always with the exact names: those need no case folding.
    if (name == OrigKeyIndexName) {
        FOrigKeyIndex = true;
        return;
    }
    if (name.empty() || name == PrimaryIndexName || SameText(name, PrimaryIndexName))
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
    // A null key is outside the index: it meets no other row's key.
    const bool keyed = !FBuffer.IsNull(nf_adpt_orig_key);
    const std::string_view key = FBuffer.AsString(nf_adpt_orig_key);
    const uint32_t hash = TNoticeKeyIndex::HashKey(key);
    const int32_t existing = keyed ? FKeyIndex.Find(key, hash) : -1;
    if (FState == TDataSetState::dsInsert) {
        if (existing >= 0 || FNextKey == INT32_MAX) throw EDatabaseError("Key violation.");
        FBuffer.SetInteger(nf_nb_internal_key, FNextKey++);
        const int32_t slot = FRows.Size();
        AppendSlot(std::move(FBuffer)); // key's text moves with the row; only the hash is used below
        FBuffer = TNoticeRecord();
        if (keyed) FKeyIndex.Insert(slot, hash);
        FState = TDataSetState::dsBrowse;
        TellObservers([slot](INoticeRowObserver& o) { o.RowInserted(slot); });
        if (SlotVisible(slot)) SetCurrent(slot);
        NotifyDataSet();
        return;
    }
    // Edit: the auto-increment key stays that of the row.
    const int32_t slot = FCur;
    if (existing >= 0 && existing != slot) throw EDatabaseError("Key violation.");
    FBuffer.SetInteger(nf_nb_internal_key, slot + 1);
    const bool wasVisible = SlotVisible(slot);
    FKeyIndex.Erase(slot, FRows[slot].AsString(nf_adpt_orig_key));
    FRows[slot] = std::move(FBuffer);
    FBuffer = TNoticeRecord();
    if (keyed) FKeyIndex.Insert(slot);
    if (FFilter) FPassing.Set(slot, Passes(FRows[slot]));
    FState = TDataSetState::dsBrowse;
    TellObservers([slot](INoticeRowObserver& o) { o.RowUpdated(slot); });
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
    TellObservers([slot](INoticeRowObserver& o) { o.RowDeleted(slot); });
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
