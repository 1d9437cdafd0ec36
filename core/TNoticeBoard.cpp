#include "core/TNoticeBoard.h"

#include "adapters/ZNB_Cfg.h"
#include "adapters/Znb_log.h"
#include "core/Znb_data.h"
#include "core/Znb_xml.h"
#include "support/StrUtils.h"
#include "support/Zs_datetime.h"
#include "xml/djlpXML.h"

#include <cstdio>
#include <memory>

namespace {

void Log(const std::string& Message) {
    ZS_Log(NBLogFileName(), Message);
}

std::string ElementText(const TXMLNode& Node) {
    return Node.GetContents().JoinedText();
}

std::string ErrorText(const std::exception& e) {
    const auto* own = dynamic_cast<const Exception*>(&e);
    return own ? own->Message() : std::string(e.what());
}

// Keys are looked up with apostrophes doubled, but stored as sent: a key holding an apostrophe is never
// found again. Senders' duplicate handling relies on this staying as it is.
std::string LookupKey(std::string Key) {
    if (Key.find('\'') != std::string::npos) Key = ReplaceAll(Key, "'", "''");
    return Key;
}

std::string CutToSize(std::string Value, int32_t Size) {
    if (static_cast<int64_t>(Value.size()) > Size) {
        Value.resize(static_cast<size_t>(Size > 3 ? Size - 3 : 0));
        Value += "...";
    }
    return Value;
}

// Puts the index back to "primaryIdx" however the lookup ended.
struct TPrimaryIndexGuard {
    TNoticeStore& Store;
    ~TPrimaryIndexGuard() { Store.SetIndexName(TNoticeStore::PrimaryIndexName); }
};

} // namespace

TNoticeBoard::TNoticeBoard() {
    const std::vector<std::string> columns(SeverityStrings.begin(), SeverityStrings.end());
    PVO_Node_Stats = std::make_unique<TStats_Obj>(nullptr, &columns);
}

TNoticeBoard::~TNoticeBoard() {
    PVO_Node_Stats.reset();
}

std::string TNoticeBoard::StatusBarText() const {
    const int32_t total = FTotalCount;
    const int32_t inFilter = FNoticeBd.RecordCount();
    char text[96];
    if (total - inFilter > 0)
        std::snprintf(text, sizeof text, "Total notices: %d (%d in this filter)", total, inFilter);
    else
        std::snprintf(text, sizeof text, "Total notices: %d", total);
    return text;
}

void TNoticeBoard::UpdateStatusBar() {
    if (FListener) FListener->SetStatusText(StatusBarText());
}

void TNoticeBoard::Process_XML_Notice(const std::string& XMLText) {
    // A malformed text raises here, before anything on screen changes.
    const auto tree = std::make_unique<TXMLNode>(std::string_view(XMLText));

    FBusy = true;
    if (FListener) {
        FListener->SetHourglass(true);
        FListener->ShowBusyImages(true);
    }
    struct TFinally {
        TNoticeBoard& Board;
        ~TFinally() { Board.FinishMessage(); }
    } finally{*this};

    const TXMLNode* list = tree->getChildNodeByName("NoticeList");
    if (!list) {
        Log("Can not find NOTICELIST node " + XMLText);
        return;
    }
    TBookmark bookmark = 0;
    bool wasFiltered = false;
    try {
        bookmark = FNoticeBd.GetBookmark();
        FNoticeBd.DisableControls();
        wasFiltered = FNoticeBd.Filtered();
        FNoticeBd.SetFiltered(false);
    } catch (const std::exception& e) {
        Log("Notice Board Post  : Error occured in Dataset : " + ErrorText(e));
        return;
    }
    struct TRestore {
        TNoticeBoard& Board;
        TBookmark Bookmark;
        bool WasFiltered;
        ~TRestore() {
            TNoticeStore& store = Board.FNoticeBd;
            try {
                Board.FTotalCount = store.RecordCount();
                store.SetFiltered(WasFiltered);
            } catch (...) {
            }
            try {
                store.GotoBookmark(Bookmark);
            } catch (...) {
                // the row may be gone or filtered out; the store keeps the row it is on
            }
            store.FreeBookmark(Bookmark);
            try {
                store.EnableControls();
                if (Board.FListener) Board.FListener->ReloadGrid();
            } catch (...) {
            }
        }
    } restore{*this, bookmark, wasFiltered};
    ApplyNotices(*list);
}

void TNoticeBoard::ApplyNotices(const TXMLNode& NoticeList) {
    const int32_t count = NoticeList.GetChildCount();
    for (int32_t i = 0; i < count; ++i) {
        const TXMLNode& notice = *NoticeList.GetChild(i);
        if (notice.GetName() != "Notice") continue;
        const TXMLNode* command = notice.getChildNodeByName("Command");
        if (!command) {
            Log("Process_XML_Notice : No XML command in document.");
            continue;
        }
        const std::string cmd = LowerCase(Trim(ElementText(*command)));
        if (cmd == "post") {
            if (CheckForDuplicateNote(notice))
                UpdateNote(notice);
            else
                AddNote(notice);
        } else if (cmd == "new") {
            AddNote(notice);
        } else if (cmd == "update") {
            UpdateNote(notice);
        } else if (cmd == "delete") {
            DeleteNote(notice);
        } else {
            Log("Process_XML_Notice : Invalid XML command  " + cmd);
        }
    }
}

void TNoticeBoard::FinishMessage() noexcept {
    try {
        if (FListener) FListener->SetHourglass(false);
        FBusy = false;
        UpdateStatusBar();
        if (FListener) FListener->ShowBusyImages(false);
    } catch (...) {
        FBusy = false; // a failing window must not leave the board busy
    }
}

bool TNoticeBoard::CheckForDuplicateNote(const TXMLNode& Notice) {
    bool result = false;
    const TXMLNode* keyNode = Notice.getChildNodeByName("adpt_orig_key");
    if (!keyNode) return false;
    TPrimaryIndexGuard guard{FNoticeBd};
    try {
        const std::string key = LookupKey(XML_Decode(Trim(ElementText(*keyNode))));
        if (!key.empty()) {
            FNoticeBd.SetIndexName(TNoticeStore::OrigKeyIndexName);
            result = FNoticeBd.FindKey(key);
        }
    } catch (const std::exception& e) {
        Log("CheckForDuplicateNote : Exception occurred : " + ErrorText(e));
        result = false;
    }
    return result;
}

void TNoticeBoard::AddNote(const TXMLNode& Notice) {
    try {
        std::string node;
        std::string severity;
        FNoticeBd.Append();
        TNoticeRecord& row = FNoticeBd.Buffer();
        for (const NoticeBdColRec& col : NoticeBdColumnArray) {
            const TXMLNode* element = Notice.getChildNodeByName(col.FieldName);
            if (!element) continue;
            const std::string text = Trim(ElementText(*element));
            if (col.Field == nf_note_pvo_node) node = XML_Decode(text);
            if (col.Field == nf_note_severity_str) severity = XML_Decode(text);
            switch (col.DataType) {
            case TFieldType::ftString:
                row.SetString(col.Field, CutToSize(XML_Decode(text), col.Size));
                break;
            case TFieldType::ftMemo:
                row.SetString(col.Field, XML_Decode(text));
                break;
            case TFieldType::ftInteger:
            case TFieldType::ftAutoInc: // Post assigns the key whatever the notice carried
                if (!text.empty()) row.SetInteger(col.Field, StrToIntDef(text, 0));
                break;
            case TFieldType::ftDateTime:
                if (!text.empty()) row.SetDateTime(col.Field, ISO8601ToDate(text));
                break;
            }
        }
        if (FNoticeBd.State() != TDataSetState::dsBrowse) FNoticeBd.Post();
        if (PVO_Node_Stats) PVO_Node_Stats->Inc(node, severity);
    } catch (...) {
        FNoticeBd.Cancel();
        throw Exception("Notice Board append error");
    }
}

void TNoticeBoard::UpdateNote(const TXMLNode& Notice) {
    const TXMLNode* keyNode = Notice.getChildNodeByName("adpt_orig_key");
    if (!keyNode) return;
    TPrimaryIndexGuard guard{FNoticeBd};
    try {
        const std::string key = LookupKey(XML_Decode(Trim(ElementText(*keyNode))));
        if (key.empty()) return;
        FNoticeBd.SetIndexName(TNoticeStore::OrigKeyIndexName);
        if (!FNoticeBd.FindKey(key)) return; // an update never creates a notice
        // Fields assigned before a failing one are still posted.
        struct TPostAnyway {
            TNoticeStore& Store;
            ~TPostAnyway() {
                if (Store.State() == TDataSetState::dsBrowse) return;
                try {
                    Store.Post();
                } catch (...) {
                    Store.Cancel();
                }
            }
        } postAnyway{FNoticeBd};
        FNoticeBd.Edit();
        TNoticeRecord& row = FNoticeBd.Buffer();
        for (const NoticeBdColRec& col : NoticeBdColumnArray) {
            if (col.DataType == TFieldType::ftAutoInc) continue;
            const TXMLNode* element = Notice.getChildNodeByName(col.FieldName);
            if (!element) continue;
            const std::string value = XML_Decode(Trim(ElementText(*element)));
            switch (col.DataType) {
            case TFieldType::ftString:
                row.SetString(col.Field, CutToSize(value, col.Size));
                break;
            case TFieldType::ftMemo:
                row.SetString(col.Field, value);
                break;
            case TFieldType::ftInteger:
            case TFieldType::ftAutoInc:
                row.SetInteger(col.Field, StrToIntDef(value, 0));
                break;
            case TFieldType::ftDateTime:
                // The first-raised date of a notice never changes after insertion.
                if (!value.empty() && col.Field != nf_note_raised_date)
                    row.SetDateTime(col.Field, ISO8601ToDate(value));
                break;
            }
        }
    } catch (const std::exception& e) {
        Log("UpdateNote : Exception occurred : " + ErrorText(e));
    }
}

void TNoticeBoard::DeleteNote(const TXMLNode& Notice) {
    const TXMLNode* keyNode = Notice.getChildNodeByName("adpt_orig_key");
    if (!keyNode) return;
    TPrimaryIndexGuard guard{FNoticeBd};
    try {
        const std::string key = LookupKey(Trim(XML_Decode(ElementText(*keyNode))));
        FNoticeBd.SetIndexName(TNoticeStore::OrigKeyIndexName);
        if (!FNoticeBd.FindKey(key)) return;
        const TNoticeRecord& row = FNoticeBd.ActiveRecord();
        const std::string node(row.AsString(nf_note_pvo_node));
        const std::string severity(row.AsString(nf_note_severity_str));
        FNoticeBd.Delete();
        if (PVO_Node_Stats) PVO_Node_Stats->Dec(node, severity);
    } catch (const std::exception& e) {
        Log("DeleteNote : Exception occurred : " + ErrorText(e));
    }
}
