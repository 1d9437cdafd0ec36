// The board without its window: the notice store cdsNoticeBd, the total count shown in the status bar,
// the busy flag, and the notice protocol that applies adapters' XML messages to the store and keeps the
// per-node counters (PVO_Node_Stats) in step.
//
// Ownership: the board window (or a tool) owns one TNoticeBoard for its own life. Constructing it creates
// PVO_Node_Stats (columns: the four severity texts); destroying it frees them again.
// Threads: the board's thread only; adapters on other threads reach it through the notice callback, which
// queues their messages (core/Znb_callback.h).
// Failures: every routine logs its own failures to NBLogFileName() and goes on, except that a malformed
// message (EXMLReadError, before anything changed) and a failed insertion (Exception "Notice Board append
// error") leave Process_XML_Notice. After a failed insertion the notices before it stay applied, the failed
// row is cancelled, and the filter, current row and views are restored as after any message.
#pragma once

#include "core/TNoticeStore.h"

#include <cstdint>
#include <string>
#include <string_view>

class TXMLNode;

// What the window shows of the board's work. Every call comes from the board's thread, inside
// Process_XML_Notice or UpdateStatusBar. The default does nothing, for tools and tests.
class INoticeBoardListener {
public:
    virtual ~INoticeBoardListener() = default;
    // While a message is applied: the hourglass cursor on (true) or back to the default (false).
    virtual void SetHourglass(bool /*on*/) {}
    // The tool bar's marks: busy hides Image1 and shows Image2; idle the reverse.
    virtual void ShowBusyImages(bool /*busy*/) {}
    // The grid is to reload all its rows from the store.
    virtual void ReloadGrid() {}
    // The status bar's first panel is to read Text.
    virtual void SetStatusText(const std::string& /*Text*/) {}
};

class TNoticeBoard {
public:
    TNoticeBoard();
    ~TNoticeBoard();
    TNoticeBoard(const TNoticeBoard&) = delete;
    TNoticeBoard& operator=(const TNoticeBoard&) = delete;

    TNoticeStore& cdsNoticeBd() { return FNoticeBd; }
    const TNoticeStore& cdsNoticeBd() const { return FNoticeBd; }

    // Not owned; null for none. Must outlive its installation.
    void SetListener(INoticeBoardListener* Listener) { FListener = Listener; }

    // Applies one notice message (the text need only last for the call). See the header comment for what
    // may escape.
    void Process_XML_Notice(std::string_view XMLText);
    // True when the notice's adpt_orig_key names a stored row, which is then the current row.
    bool CheckForDuplicateNote(const TXMLNode& Notice);
    // Inserts the notice; raises Exception "Notice Board append error" after cancelling the row.
    void AddNote(const TXMLNode& Notice);
    void UpdateNote(const TXMLNode& Notice);
    void DeleteNote(const TXMLNode& Notice);

    // Rows of the store without filter, as counted at the end of the last message with a NoticeList.
    int32_t TotalCount() const { return FTotalCount; }
    void SetTotalCount(int32_t Count) { FTotalCount = Count; }
    // Set while a message is applied (and by the window's button refresh while it runs).
    bool Busy() const { return FBusy; }
    void SetBusy(bool Busy) { FBusy = Busy; }

    // "Total notices: T (F in this filter)" when the filter hides rows, else "Total notices: T".
    std::string StatusBarText() const;
    // Hands StatusBarText() to the listener.
    void UpdateStatusBar();

private:
    void ApplyNotices(const TXMLNode& NoticeList);
    void FinishMessage() noexcept;

    TNoticeStore FNoticeBd;
    INoticeBoardListener* FListener = nullptr;
    int32_t FTotalCount = 0;
    bool FBusy = false;
};
