// The board's alerts, tied together for the window: desktop notifications (through the tray icon, or the
// board's banner where the desktop has no notification service), sounds per severity, reminders while
// trouble stays unacknowledged, a mute menu (15 minutes, an hour, until the board closes), the tray icon
// with the worst live severity and the counts, and the highlight of new and changed rows in the grid.
// What is announced and when is the engine's TAlertWatcher; the highlight is TRowHighlights.
//
// The window makes one TBoardAlerts after its grid, places Banner() in its layout (above the grid) and
// offers MuteMenu() (a tool button), and hands it the settings again after the configuration dialog
// closes (ApplySettings). Everything is off until the settings switch it on.
//
// Owned by the board window (Qt parent), but it listens to the store: delete it before the store goes
// (a std::unique_ptr member declared after the board's TNoticeBoard does, as for the grid). The grid may
// go first. GUI thread only. Store changes only schedule work for the next event-loop turn; nothing here
// throws into the store.
#pragma once

#include "adapters/ZNB_NotifyCfg.h"
#include "core/TAlertWatcher.h"
#include "core/TRowHighlights.h"
#include "core/ui/AlertOutputs.h"
#include "core/ui/NoticeRowEmphasis.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>

class QAction;
class QMenu;
class QTimer;
class QWidget;
class TAlertBanner;
class TAlertTray;
class TNoticeBdGrid;
class TNoticeStore;
class TSeverityCounts;
class TQtSoundPlayer;

class TBoardAlerts : public QObject, private INoticeRowEmphasis {
    Q_OBJECT
public:
    static constexpr int HighlightStepMs = 2000; // the fade's repaint step

    // Board: the board window (parent, not null; raised from the tray). Counts: the live counts per
    // severity of Store (the badges' own; the tray shows them too), kept for this object's life. Grid: the
    // board's grid, whose delegate asks for the rows' emphasis; null for none. The settings are copied.
    TBoardAlerts(QWidget* Board, TNoticeStore& Store, const TSeverityCounts& Counts, TNoticeBdGrid* Grid,
                 const TNotificationSettings& Settings);
    ~TBoardAlerts() override;

    // New settings (after the configuration dialog): threshold, reminders, tray, highlight take effect now.
    void ApplySettings(const TNotificationSettings& Settings);
    const TNotificationSettings& Settings() const { return FSettings; }

    // The in-window banner (AlertBanner, hidden until it shows an alert), a child of the board window for
    // the window to put in its layout.
    TAlertBanner* Banner() const { return FBanner; }
    // The mute menu (MuteMenu: actMute15, actMute60, actMuteRestart, actUnmute); owned here.
    QMenu* MuteMenu() const { return FMuteMenu.get(); }
    // The tray's context menu (TrayMenu: actShowBoard, then the mute actions); owned here.
    QMenu* TrayMenu() const { return FTrayMenu.get(); }
    // The tray icon; null while the settings want none.
    TAlertTray* Tray() const { return FTray; }

    // Seams for tests (not owned; null restores the board's own): where notifications and sounds go, and
    // the clock (milliseconds, steady).
    void SetNotifier(INoticeNotifier* Notifier);
    void SetSoundPlayer(ISoundPlayer* Player);
    void SetClock(std::function<int64_t()> NowMs);

    // Takes what the store's changes gathered: announces it, updates the tray, arms the timers. Runs by
    // itself at the next event-loop turn after a change; tests call it at once.
    void Flush();
    // A reminder when one is due (AlertTimer calls it).
    void Remind();

    TAlertWatcher& Watcher() { return FWatcher; }
    TRowHighlights& Highlights() { return FHighlights; }
    // The notifier in use: the test's, else the tray's where it can notify, else the banner.
    INoticeNotifier& Notifier() const;

signals:
    // The board was raised from the tray or a notification (the window may want to do more).
    void BoardRaised();

private:
    double RowEmphasis(int32_t Key) const override;
    void StoreChanged();
    void Announce(const TAlertAnnouncement& A, const TNotificationSettings& S);
    void UpdateTray();
    void ArmReminder();
    void HighlightStep();
    void RaiseBoard();
    void GoToAnnounced();
    void BuildMuteMenu();
    void RegisterOutputs();
    void UpdateMuteActions();
    QString MuteText() const;
    ISoundPlayer& Player();
    int64_t Now() const { return FClock(); }

    QPointer<QWidget> FBoard;
    const TSeverityCounts& FCounts;
    QPointer<TNoticeBdGrid> FGrid; // a child of the board may go first

    TNotificationSettings FSettings;
    std::function<int64_t()> FClock;
    TAlertWatcher FWatcher;
    TRowHighlights FHighlights;
    TAlertBanner* FBanner;       // child of the board
    TAlertTray* FTray = nullptr; // child of this object while wanted
    TQtSoundPlayer* FOwnPlayer = nullptr;
    INoticeNotifier* FTestNotifier = nullptr;
    ISoundPlayer* FTestPlayer = nullptr;
    std::unique_ptr<QMenu> FMuteMenu;
    std::unique_ptr<QMenu> FTrayMenu; // "Show Notice Board", then the mute actions
    QAction* FMute15 = nullptr;
    QAction* FMute60 = nullptr;
    QAction* FMuteRestart = nullptr;
    QAction* FUnmute = nullptr;
    QTimer* FReminderTimer;    // "AlertTimer": single shot at the next reminder
    QTimer* FHighlightTimer;   // "HighlightTimer": repaints the grid while rows fade
    QTimer* FMuteTimer;        // "MuteTimer": the mute's end, for the menu and the tool tip
    TAlertOutputs FRegistered; // what this object lent to the configuration dialog
    bool FFlushQueued = false;
    int32_t FAnnouncedKey = 0; // the notice the last announcement named
};
