// A notice grid under test: a board (fed with real notice messages through Process_XML_Notice), a display
// bound to a TNoticeBdGrid with the default view and the column-table captions, shown on screen, and
// helpers to click and read it. GUI thread; the grid refreshes only when told to (RefreshNow) or when
// the event loop runs its timer.
#pragma once

#include "core/TNoticeBoard.h"
#include "core/ui/NoticeBdGrid.h"
#include "views/Displayu.h"

#include <QColor>
#include <QString>

#include <memory>
#include <string>
#include <vector>

// One notice of a test message; the XML carries every field that is not empty.
struct TTestNotice {
    std::string Key;
    int Severity = 1;
    std::string Summary = "Summary";
    std::string Node = "NODE1";
    std::string SourceId = "SRC";
    std::string Text;
    int Count = 1;
    std::string Raised = "2026-11-21T08:15:00";
};

// A notice with the fields tests vary most; the others as above.
TTestNotice Notice(const std::string& Key, int Severity, const std::string& Summary = "Summary",
                   const std::string& Node = "NODE1");

// The colour of a row as painted now, right of its summary's text.
QColor RowColour(TNoticeBdGrid& Grid, int Row);

std::string NoticeXml(const TTestNotice& Notice, const std::string& Command = "post");
std::string DeleteXml(const std::string& Key);
std::string MessageXml(const std::vector<std::string>& Notices);

class TNoticeGridBench {
public:
    // Shown at Width x Height with the default view (severity first, sorted ascending).
    explicit TNoticeGridBench(int Width = 700, int Height = 400);
    ~TNoticeGridBench();

    void Send(const std::vector<std::string>& Notices); // one message; no refresh
    void Post(const std::vector<TTestNotice>& Notices); // one message of posts, then RefreshNow
    int32_t KeyOf(const std::string& OrigKey);          // nb_internal_key of a notice, 0 when absent

    // Display rows: their keys (0 for a heading), and a cell's text as the model gives it.
    std::vector<int32_t> RowKeys() const;
    QString Cell(int Row, TNoticeField Field) const;
    int RowOf(int32_t Key) const; // -1 when not shown
    // A mouse click on the row (in its first visible column), with keyboard modifiers.
    void ClickRow(int Row, Qt::KeyboardModifiers Modifiers = Qt::NoModifier);
    void ClickHeader(TNoticeField Field, Qt::KeyboardModifiers Modifiers = Qt::NoModifier);

    TNoticeBoard Board;
    TDisplay Display;
    std::unique_ptr<TNoticeBdGrid> Grid;
};
