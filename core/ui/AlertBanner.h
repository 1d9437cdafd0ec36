// The board's own notification (AlertBanner): a strip that shows an alert's severity mark, title and
// text inside the board window, for desktops without a notification service. It hides itself after a
// while (BannerTimer) or when closed; a new alert replaces the one shown. Clicking its text asks to go to
// the notice. The window places it (typically above the grid); it starts hidden.
// Owned by its Qt parent; GUI thread only.
#pragma once

#include "core/ui/AlertOutputs.h"

#include <QFrame>

class QLabel;
class QMenu;
class QTimer;
class QToolButton;

class TAlertBanner : public QFrame, public INoticeNotifier {
    Q_OBJECT
public:
    static constexpr int ShowMs = 30000; // how long an alert stays up

    explicit TAlertBanner(QWidget* Parent = nullptr);

    // Shows the alert (and the banner) and starts BannerTimer again.
    void Notify(const QString& Title, const QString& Text, int Severity) override;
    // The menu of the banner's mute button (btnAlertMute); not owned; null hides the button.
    void SetMuteMenu(QMenu* Menu);

    QString Title() const;
    QString Text() const;
    int Severity() const { return FSeverity; }

signals:
    void Activated(); // the user clicked the alert's text

protected:
    void mouseReleaseEvent(QMouseEvent* Event) override;

private:
    QLabel* FIcon;
    QLabel* FTitle;
    QLabel* FText;
    QToolButton* FMute;
    QTimer* FTimer;
    int FSeverity = 0;
};
