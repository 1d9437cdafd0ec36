// The board in the system tray (TrayIcon): the board's icon with the mark of the worst live severity in
// its corner, the counts in its tool tip, a click that asks to raise the board, and desktop notifications
// through the notification service the tray reaches. GUI thread; owned by its Qt parent.
#pragma once

#include "core/ui/AlertOutputs.h"

#include <QIcon>
#include <QObject>
#include <QString>

class QMenu;
class QSystemTrayIcon;

// The tray's tool tip: the notice count, the worst live severity, the trouble that stays unacknowledged
// and, when not empty, MuteText on a line of its own.
QString AlertTrayToolTip(int Live, int WorstSeverity, int Trouble, int Threshold, const QString& MuteText);
// The board's icon marked with a severity's mark (no mark for a severity out of 1..4).
QIcon AlertTrayIcon(int WorstSeverity);

class TAlertTray : public QObject, public INoticeNotifier {
    Q_OBJECT
public:
    static constexpr int MessageMs = 10000;

    explicit TAlertTray(QObject* Parent = nullptr);
    ~TAlertTray() override;

    // The desktop has a tray that can show messages (else the board's banner stands in).
    static bool CanNotify();

    void SetVisible(bool Visible);
    bool IsVisible() const;
    // Icon and tool tip from the counts (see AlertTrayToolTip); the icon is only redrawn when the worst
    // severity changes.
    void SetState(int Live, int WorstSeverity, int Trouble, int Threshold, const QString& MuteText);
    void SetMenu(QMenu* Menu); // the tray's context menu; not owned
    QString ToolTip() const;
    int IconSeverity() const { return FIconSeverity; }
    QSystemTrayIcon* Icon() const { return FTray; }

    void Notify(const QString& Title, const QString& Text, int Severity) override;

signals:
    void Activated();      // the icon was clicked or double-clicked
    void MessageClicked(); // the last notification was clicked

private:
    QSystemTrayIcon* FTray;
    int FIconSeverity = -1;
};
