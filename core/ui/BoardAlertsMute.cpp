// The board's alerts: the mute menu and the tray's menu.
#include "core/ui/BoardAlerts.h"

#include <QAction>
#include <QActionGroup>
#include <QMenu>
#include <QTime>
#include <QTimer>

namespace {

constexpr int64_t MinuteMs = 60000;

QAction* AddAction(QMenu* Menu, const char* Name, const QString& Text) {
    QAction* action = Menu->addAction(Text);
    action->setObjectName(QLatin1String(Name));
    return action;
}

} // namespace

void TBoardAlerts::BuildMuteMenu() {
    FMuteMenu = std::make_unique<QMenu>(tr("&Mute alerts"));
    FMuteMenu->setObjectName(QStringLiteral("MuteMenu"));
    auto* group = new QActionGroup(FMuteMenu.get());
    FMute15 = AddAction(FMuteMenu.get(), "actMute15", tr("Mute for &15 minutes"));
    FMute60 = AddAction(FMuteMenu.get(), "actMute60", tr("Mute for 1 &hour"));
    FMuteRestart = AddAction(FMuteMenu.get(), "actMuteRestart", tr("Mute until &restart"));
    for (QAction* a : {FMute15, FMute60, FMuteRestart}) {
        a->setCheckable(true);
        group->addAction(a);
    }
    FMuteMenu->addSeparator();
    FUnmute = AddAction(FMuteMenu.get(), "actUnmute", tr("&Unmute"));

    const auto muteFor = [this](int64_t Ms) {
        FWatcher.MuteFor(Ms);
        FMuteTimer->start(static_cast<int>(Ms));
        UpdateMuteActions();
        UpdateTray();
    };
    connect(FMute15, &QAction::triggered, this, [muteFor] { muteFor(15 * MinuteMs); });
    connect(FMute60, &QAction::triggered, this, [muteFor] { muteFor(60 * MinuteMs); });
    connect(FMuteRestart, &QAction::triggered, this, [this] {
        FWatcher.MuteUntilRestart();
        FMuteTimer->stop();
        UpdateMuteActions();
        UpdateTray();
    });
    connect(FUnmute, &QAction::triggered, this, [this] {
        FWatcher.Unmute();
        FMuteTimer->stop();
        UpdateMuteActions();
        UpdateTray();
    });
    UpdateMuteActions();

    FTrayMenu = std::make_unique<QMenu>();
    FTrayMenu->setObjectName(QStringLiteral("TrayMenu"));
    QAction* show = AddAction(FTrayMenu.get(), "actShowBoard", tr("&Show Notice Board"));
    connect(show, &QAction::triggered, this, &TBoardAlerts::RaiseBoard);
    FTrayMenu->addSeparator();
    FTrayMenu->addActions({FMute15, FMute60, FMuteRestart});
    FTrayMenu->addSeparator();
    FTrayMenu->addAction(FUnmute);
}

// The checked action says how the alerts are muted now; a mute that ran out unchecks it.
void TBoardAlerts::UpdateMuteActions() {
    const bool muted = FWatcher.Muted();
    FUnmute->setEnabled(muted);
    if (!muted)
        for (QAction* a : {FMute15, FMute60, FMuteRestart})
            a->setChecked(false);
    FMuteMenu->setToolTip(MuteText());
}

QString TBoardAlerts::MuteText() const {
    if (FWatcher.MutedUntilRestart()) return tr("Alerts muted until the board closes");
    const int64_t left = FWatcher.MuteLeft();
    if (left <= 0) return QString();
    return tr("Alerts muted until %1")
        .arg(QTime::currentTime().addMSecs(static_cast<int>(left)).toString(QStringLiteral("HH:mm")));
}
