// The notice board window (TNoticeBdForm): the tool bar, the notice grid, the detail panel under a
// splitter and the status bar, over the board (store, protocol, busy flag) it owns. It is what the package
// shows: the adapters' status view, the engine's prompt and the board's listener all end here.
//
// Ownership: created by the package entry with the host's main window as its parent (a window of its own
// that the main window owns); it deletes itself when closed, and the main window deletes it if it goes
// first. It owns the board, the display, both file listers, the adapters (through TAdapterStartup) and the
// prompt. While it lives it is the notice callback's board; adapters on other threads are heard through a
// queued call on its thread.
// Threads: GUI thread only. Failures of user actions are logged (routine + " : Exception occurred : " +
// message); nothing escapes an event handler.
#pragma once

#include "adapters/TAdapterStartup.h"
#include "core/TNoticeBoard.h"
#include "core/Znb_noteactions.h"
#include "views/Displayu.h"
#include "views/Filelisteru.h"

#include <QMainWindow>

#include <atomic>
#include <memory>
#include <string>

class QTimer;
class TNoticeBdDetailPanel;
class TNoticeBdGrid;
class TNoticeBdStatusBar;
class TQtPrompt;
class TQuickSearchBox;
class TBoardAlerts;
class TFilterComboCounts;
class TSeverityBadges;
class IExportSource;
namespace Ui {
class TNoticeBdForm;
}

// The "details hidden" flag of Ctrl+H; one for the package, as the board window is one.
extern bool DetailsHidden;

class TNoticeBdForm : public QMainWindow, private INoticeBoardListener, private INoteActionCursor {
    Q_OBJECT
public:
    // Owner: the host's main window (may be null). Builds the window and shows it; showing loads the
    // adapters and arms Timer1. The global NBConfig must exist.
    explicit TNoticeBdForm(QWidget* Owner);
    ~TNoticeBdForm() override;

    TNoticeBoard& Board() { return FBoard; }
    TNoticeBdGrid& Grid() const { return *FGrid; }
    TAdapterStartup& Startup() { return *FStartup; }

    // The tool bar's buttons from the selection and the current notice (see the source for the rule).
    void UpdateButtons();
    void UpdateStatusBar();
    void ApplyFilter(const std::string& FilterName);
    // Kept as it stands although nothing calls it: it applies a filter of that name, not a display.
    void ApplyDisplay(const std::string& Name);
    void cmbFiltersClick();
    void cmbDisplaysClick();

    // The window's timer: the first tick starts the adapters, later ticks poll them.
    void Timer1Timer();

protected:
    void showEvent(QShowEvent* Event) override;
    void closeEvent(QCloseEvent* Event) override;

private:
    // Construction pieces (NoticeBdToolBar.cpp, NoticeBdActions.cpp).
    void SetupToolBar();
    void SetupActions();
    void SetupListers();
    // What the board adds for people who watch it all day (NoticeBdExtras.cpp): the quick search, the
    // severity badges and the filters' live counts.
    void SetupExtras();
    // The first status panel: the board's text, then the quick search's "(N match)" while it narrows.
    void ShowStatusText();
    // The configuration dialog may have changed the Notifications page.
    void ApplyNotificationSettings();
    // Deletes what SetupExtras made that reads the store.
    void TearDownExtras();

    void FormShow();
    void FormClose();
    void ReadSettings();
    void WriteSettings();
    void CenterInMainForm();

    // Button handlers and actions.
    void btnFiltersClick();
    void btnViewsClick();
    void btnConfigClick();
    void Act_PrintExecute();
    void btnExportClick();
    void Act_Hide_DetailsExecute();
    void Act_SelectAllExecute();
    void btnAckNoteClick();
    void btnDelNoteClick();
    void ShowSummary();
    void OpenConfigDialog();

    // INoticeBoardListener
    void SetHourglass(bool on) override;
    void ShowBusyImages(bool busy) override;
    void ReloadGrid() override;
    void SetStatusText(const std::string& Text) override;

    void ProcessQueuedNotices();
    void LogException(const char* Routine, const std::exception& Error) const;

    std::unique_ptr<Ui::TNoticeBdForm> ui;
    TNoticeBoard FBoard;
    TNoticeBdGrid* FGrid = nullptr;
    TNoticeBdDetailPanel* FDetailPanel = nullptr;
    std::unique_ptr<TNoticeBdStatusBar> FStatusBar;
    std::unique_ptr<TQtPrompt> FPrompt;
    std::unique_ptr<TAdapterStartup> FStartup;
    std::unique_ptr<TDisplay> FDisplay;
    std::unique_ptr<TFIleLister> FDisplayLister;
    std::unique_ptr<TFIleLister> FFilterLister;
    std::unique_ptr<IExportSource> FExportSource;
    TQuickSearchBox* FQuickSearch = nullptr;
    // Both listen to the store: deleted with the grid, before the board goes (NoticeBdExtras.cpp).
    TFilterComboCounts* FFilterCounts = nullptr;
    TSeverityBadges* FBadges = nullptr;
    std::string FStatusText;
    // Listens to the board's store, so it is declared after FBoard and goes before it.
    std::unique_ptr<TBoardAlerts> FAlerts;
    QTimer* Timer1 = nullptr;
    std::atomic<bool> FWakePending{false};
    int FHourglassDepth = 0;
    bool FShown = false;
    bool FClosed = false;
    bool FPlacementRestored = false;
    std::string FCurrentFilter;
    std::string FCurrentDisplay;
};
