// Acknowledge and delete: the user's two actions on the notices selected in the grid. Neither changes the
// store: each selected notice's codes are handed back to the adapter that owns the notice's product, and
// that adapter answers, when it sees fit, with an ordinary notice message ("update" with ack_date, or
// "delete") which alone changes the row.
// Board thread only. Adapter results are not examined.
#pragma once

#include "core/TNoticeStore.h"

#include <string>
#include <vector>

class TZNB_Adapter_List;

// The hourglass while the selection is read and the adapters are called. The window implements it;
// nullptr shows nothing.
class INoteActionCursor {
public:
    virtual ~INoteActionCursor() = default;
    virtual void SetHourglass(bool on) = 0;
};

// How far an action on many notices has got. The window shows a progress bar with a Cancel button when
// the action takes longer than half a second; nullptr reports nothing.
class INoteActionProgress {
public:
    virtual ~INoteActionProgress() = default;
    // Before the first adapter call: how many selected notices there are.
    virtual void Start(size_t Total) = 0;
    // After each notice handed over or skipped. False when the user cancelled: the notices not yet
    // handed over are not sent (those already sent stay sent; adapters cannot take a call back).
    virtual bool Step(size_t Done) = 0;
    // Always, last, also when the action ends by cancel or an exception.
    virtual void Finish() = 0;
};

// The adapter that owns a notice of this source type: "duskmere" -> "DuskMere", "r/vista" -> "R/Vista",
// any other type itself lower-cased (trimmed first, any letter case); empty for an empty type.
std::string AdapterNameForSourceType(const std::string& sourceType);

// btnAckNoteClick: for every bookmark of selection (the grid's selection, in selection order) calls the
// owning adapter's ZNA_Acknowledge_Note with the row's adpt_id and ack_code. Rows with an empty source
// type are skipped silently; rows whose adapter is not in adapters (or adapters is null) are logged
// ("Del Note Click : Could not find adapter " + name) and skipped. The store's current row ends on the
// last selected row. An exception from an adapter (EAdapterError) or from the store ends the action:
// the remaining rows are not sent, the views and the cursor are restored, and the exception is raised
// to the caller. An empty selection does nothing. Progress, when given, hears of every notice.
void btnAckNoteClick(TNoticeStore& store, const std::vector<TBookmark>& selection,
                     TZNB_Adapter_List* adapters, INoteActionCursor* cursor = nullptr,
                     INoteActionProgress* progress = nullptr);

// btnDelNoteClick: the same with ZNA_Delete_Note and del_code; the store's current row ends on its first
// row.
void btnDelNoteClick(TNoticeStore& store, const std::vector<TBookmark>& selection,
                     TZNB_Adapter_List* adapters, INoteActionCursor* cursor = nullptr,
                     INoteActionProgress* progress = nullptr);
