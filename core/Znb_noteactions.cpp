#include "core/Znb_noteactions.h"

#include "adapters/ZNBA_Interface.h"
#include "adapters/ZNB_Cfg.h"
#include "adapters/Znb_log.h"
#include "support/StrUtils.h"

namespace {

enum class TNoteAction { Acknowledge, Delete };

// One selected row's texts, read before any adapter is called.
struct TSelectedNote {
    std::string SourceType; // trimmed
    std::string AdapterId;  // as stored
    std::string Code;       // ack_code or del_code, as stored
};

// Restores the hourglass on every way out.
class THourglass {
public:
    explicit THourglass(INoteActionCursor* cursor) : FCursor(cursor) {
        if (FCursor) FCursor->SetHourglass(true);
    }
    ~THourglass() {
        if (FCursor) FCursor->SetHourglass(false);
    }
    THourglass(const THourglass&) = delete;
    THourglass& operator=(const THourglass&) = delete;

private:
    INoteActionCursor* FCursor;
};

// Re-attaches the store's views on every way out.
class TDetachedViews {
public:
    explicit TDetachedViews(TNoticeStore& store) : FStore(store) { FStore.DisableControls(); }
    ~TDetachedViews() { FStore.EnableControls(); }
    TDetachedViews(const TDetachedViews&) = delete;
    TDetachedViews& operator=(const TDetachedViews&) = delete;

private:
    TNoticeStore& FStore;
};

// Finishes the progress report on every way out.
class TProgressReport {
public:
    TProgressReport(INoteActionProgress* progress, size_t total) : FProgress(progress) {
        if (FProgress) FProgress->Start(total);
    }
    ~TProgressReport() {
        if (FProgress) FProgress->Finish();
    }
    bool Step(size_t done) { return !FProgress || FProgress->Step(done); }
    TProgressReport(const TProgressReport&) = delete;
    TProgressReport& operator=(const TProgressReport&) = delete;

private:
    INoteActionProgress* FProgress;
};

std::vector<TSelectedNote> ReadSelection(TNoticeStore& store, const std::vector<TBookmark>& selection,
                                         TNoticeField codeField) {
    std::vector<TSelectedNote> notes;
    TDetachedViews detached(store);
    for (TBookmark bookmark : selection) {
        store.GotoBookmark(bookmark);
        const TNoticeRecord& row = store.ActiveRecord();
        notes.push_back({Trim(row.AsString(nf_adpt_source_type)), std::string(row.AsString(nf_adpt_id)),
                         std::string(row.AsString(codeField))});
    }
    return notes;
}

// Hands one note to the adapter that owns it, or logs that there is none.
void SendNote(TNoteAction action, const TSelectedNote& note, TZNB_Adapter_List* adapters) {
    const std::string name = AdapterNameForSourceType(note.SourceType);
    if (name.empty()) return;
    TZNB_Adapter_Obj* adapter = adapters ? adapters->Get_Adapter(name) : nullptr;
    if (!adapter) {
        // Both actions log under the delete handler's name; operators' log searches rely on it.
        ZS_Log(NBLogFileName(), "Del Note Click : Could not find adapter " + name);
        return;
    }
    int32_t idSize = 0;
    int32_t codeSize = 0;
    const char* id = adapter->Keep_Text(note.AdapterId, idSize);
    const char* code = adapter->Keep_Text(note.Code, codeSize);
    if (action == TNoteAction::Acknowledge)
        adapter->Call_Acknowledge_Note(id, idSize, code, codeSize);
    else
        adapter->Call_Delete_Note(id, idSize, code, codeSize);
}

void SendNotes(TNoteAction action, TNoticeStore& store, const std::vector<TBookmark>& selection,
               TZNB_Adapter_List* adapters, INoteActionCursor* cursor, INoteActionProgress* progress) {
    if (selection.empty()) return;
    THourglass hourglass(cursor);
    const bool acknowledge = action == TNoteAction::Acknowledge;
    const std::vector<TSelectedNote> notes =
        ReadSelection(store, selection, acknowledge ? nf_ack_code : nf_del_code);
    if (!acknowledge) store.First();
    TProgressReport report(progress, notes.size());
    for (size_t i = 0; i < notes.size(); ++i) {
        SendNote(action, notes[i], adapters);
        if (!report.Step(i + 1)) break;
    }
}

} // namespace

std::string AdapterNameForSourceType(const std::string& sourceType) {
    const std::string type = LowerCase(Trim(sourceType));
    if (type == "duskmere") return "DuskMere";
    if (type == "r/vista") return "R/Vista";
    return type;
}

void btnAckNoteClick(TNoticeStore& store, const std::vector<TBookmark>& selection,
                     TZNB_Adapter_List* adapters, INoteActionCursor* cursor, INoteActionProgress* progress) {
    SendNotes(TNoteAction::Acknowledge, store, selection, adapters, cursor, progress);
}

void btnDelNoteClick(TNoticeStore& store, const std::vector<TBookmark>& selection,
                     TZNB_Adapter_List* adapters, INoteActionCursor* cursor, INoteActionProgress* progress) {
    SendNotes(TNoteAction::Delete, store, selection, adapters, cursor, progress);
}
