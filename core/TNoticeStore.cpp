#include "core/TNoticeStore.h"

#include "support/StrUtils.h"

#include <algorithm>
#include <string>

namespace {
const TNoticeRecord EmptyRow;
}

TNoticeStore::TNoticeStore() : FKeyIndex(FRows), FStamp(NewContentStamp()) {}

void TNoticeStore::Touch() {
    FStamp = NewContentStamp();
}

void TNoticeStore::EmptyDataSet() {
    FRows.Clear();
    FSlotKeys.Clear();
    FAlive.Clear();
    FPassing.Clear();
    FKeyIndex.Clear();
    FNextKey = 1;
    FTailSlot = 0;
    FTailKey = 1;
    FDead = 0;
    FCur = -1;
    FBof = FEof = true;
    FState = TDataSetState::dsBrowse;
    FBuffer = TNoticeRecord();
    Touch();
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
        if (TryStrToInt(value, key)) slot = SlotOfKey(key);
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

void TNoticeStore::AppendSlot(TNoticeRecord&& row, int32_t key) {
    const bool passes = FFilter != nullptr && Passes(row);
    FRows.PushBack(std::move(row));
    FSlotKeys.PushBack(int32_t(key));
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
        if (KeysExhausted())
            throw EKeysExhausted("Every nb_internal_key has been issued (the last was " +
                                 std::to_string(INT32_MAX) + ")");
        if (existing >= 0) throw EDatabaseError("Key violation.");
        const int32_t newKey = static_cast<int32_t>(FNextKey++);
        FBuffer.SetInteger(nf_nb_internal_key, newKey);
        const int32_t slot = FRows.Size();
        AppendSlot(std::move(FBuffer), newKey); // key's text moves with the row; only the hash is used below
        FBuffer = TNoticeRecord();
        Touch();
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
    const int32_t rowKey = FSlotKeys[slot];
    FBuffer.SetInteger(nf_nb_internal_key, rowKey);
    const bool wasVisible = SlotVisible(slot);
    TNoticeRecord& row = FRows.Write(slot); // copies a block shared with a copied store
    // A key that folds to the row's own (the usual update) keeps its entry: same hash, same slot.
    const bool sameKey = keyed && existing == slot;
    if (!sameKey) FKeyIndex.Erase(slot, row.AsString(nf_adpt_orig_key));
    row = std::move(FBuffer);
    FBuffer = TNoticeRecord();
    Touch();
    if (keyed && !sameKey) FKeyIndex.Insert(slot);
    if (FFilter) FPassing.Set(slot, Passes(FRows[slot]));
    FState = TDataSetState::dsBrowse;
    TellObservers([slot](INoticeRowObserver& o) { o.RowUpdated(slot); });
    if (SlotVisible(slot) != wasVisible) {
        if (!SlotVisible(slot)) SettleAfterLoss(slot);
        NotifyDataSet();
    } else {
        NotifyRecord(rowKey);
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
    TNoticeRecord& row = FRows.Write(slot); // copies a block shared with a copied store
    FKeyIndex.Erase(slot, row.AsString(nf_adpt_orig_key));
    row = TNoticeRecord(); // frees the text; the slot stays empty until the store compacts
    FAlive.Set(slot, false);
    if (FFilter) FPassing.Set(slot, false);
    ++FDead;
    Touch();
    TellObservers([slot](INoticeRowObserver& o) { o.RowDeleted(slot); });
    SettleAfterLoss(slot);
    MaybeCompact();
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
