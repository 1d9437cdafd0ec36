#include "core/TNoticeBoard.h"

#include "core/FilterExpression.h"
#include "core/Znb_data.h"
#include "core/Znb_noticetext.h"

#include <cstdio>
#include <memory>

TNoticeBoard::TNoticeBoard() {
    const std::vector<std::string> columns(SeverityStrings.begin(), SeverityStrings.end());
    PVO_Node_Stats = std::make_unique<TStats_Obj>(nullptr, &columns);
    FNoticeBd.SetFilterCompiler(CompileFilterExpression);
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

void TNoticeBoard::Process_XML_Notice(std::string_view XMLText) {
    // A malformed text raises here, before anything on screen changes.
    auto tree = std::make_unique<TXMLNode>(XMLText);

    FBusy = true;
    struct TFinally {
        TNoticeBoard& Board;
        std::unique_ptr<TXMLNode>& Tree;
        ~TFinally() {
            Tree.reset(); // the tree goes first, then the window is told the board is idle
            Board.FinishMessage();
        }
    } finally{*this, tree};
    if (FListener) {
        try {
            FListener->SetHourglass(true);
            FListener->ShowBusyImages(true);
        } catch (...) {
            // the window's cursor and marks are cosmetic; the message is applied regardless
        }
    }

    const TXMLNode* list = tree->getChildNodeByName("NoticeList");
    if (!list) {
        NoticeLog("Can not find NOTICELIST node " + std::string(XMLText));
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
        NoticeLog("Notice Board Post  : Error occured in Dataset : " + ExceptionText(e));
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
            NoticeLog("Process_XML_Notice : No XML command in document.");
            continue;
        }
        std::string scratch;
        const std::string cmd = LowerCase(TrimView(ElementText(*command, scratch)));
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
            NoticeLog("Process_XML_Notice : Invalid XML command  " + cmd);
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
        const std::string key = NoticeLookupKey(*keyNode);
        if (!key.empty()) {
            FNoticeBd.SetIndexName(TNoticeStore::OrigKeyIndexName);
            result = FNoticeBd.FindKey(key);
        }
    } catch (const std::exception& e) {
        NoticeLog("CheckForDuplicateNote : Exception occurred : " + ExceptionText(e));
        result = false;
    }
    return result;
}
