#include "core/ui/BoardAlerts.h"

#include "core/Nb_utils.h"
#include "core/TSeverityCounts.h"
#include "core/ui/AlertBanner.h"
#include "core/ui/AlertSound.h"
#include "core/ui/AlertTray.h"
#include "core/ui/NoticeBdGrid.h"
#include "core/ui/NoticeGridDelegate.h"

#include <QMenu>
#include <QTimer>
#include <QWidget>

#include <chrono>

namespace {

QString SeverityText(int Severity) {
    return Severity >= 1 && Severity <= 4 ? QString::fromStdString(Get_Severity_String(Severity))
                                          : QObject::tr("Unknown");
}

QString Plural(int Count) {
    return Count == 1 ? QObject::tr("1 notice") : QObject::tr("%1 notices").arg(Count);
}

QString AlertTitle(const TAlertAnnouncement& A) {
    if (A.Kind == TAlertKind::Reminder) return QObject::tr("Still unacknowledged: %1").arg(Plural(A.Notices));
    if (A.Notices == 1) return QObject::tr("%1 notice").arg(SeverityText(A.Severity));
    return QObject::tr("%1 new notices, the worst %2").arg(A.Notices).arg(SeverityText(A.Severity));
}

QString AlertText(const TAlertAnnouncement& A) {
    QString text = QString::fromStdString(A.Summary);
    if (A.Kind == TAlertKind::Reminder || A.Notices > 1)
        text = QObject::tr("%1: %2").arg(SeverityText(A.Severity), text);
    if (!A.Server.empty())
        text += QLatin1Char('\n') + QObject::tr("Server: %1").arg(QString::fromStdString(A.Server));
    return text;
}

int64_t SteadyMs() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

QTimer* NamedTimer(QObject* Parent, const char* Name, bool SingleShot) {
    auto* timer = new QTimer(Parent);
    timer->setObjectName(QLatin1String(Name));
    timer->setSingleShot(SingleShot);
    return timer;
}

} // namespace

TBoardAlerts::TBoardAlerts(QWidget* Board, TNoticeStore& Store, const TSeverityCounts& Counts,
                           TNoticeBdGrid* Grid, const TNotificationSettings& Settings)
    : QObject(Board), FBoard(Board), FCounts(Counts), FGrid(Grid), FClock(SteadyMs),
      FWatcher(Store, [this] { return Now(); }), FHighlights(Store, [this] { return Now(); }) {
    setObjectName(QStringLiteral("BoardAlerts"));
    FBanner = new TAlertBanner(Board);
    connect(FBanner, &TAlertBanner::Activated, this, &TBoardAlerts::GoToAnnounced);
    FReminderTimer = NamedTimer(this, "AlertTimer", true);
    connect(FReminderTimer, &QTimer::timeout, this, &TBoardAlerts::Remind);
    FHighlightTimer = NamedTimer(this, "HighlightTimer", false);
    FHighlightTimer->setInterval(HighlightStepMs);
    connect(FHighlightTimer, &QTimer::timeout, this, &TBoardAlerts::HighlightStep);
    FMuteTimer = NamedTimer(this, "MuteTimer", true);
    connect(FMuteTimer, &QTimer::timeout, this, [this] {
        UpdateMuteActions();
        UpdateTray();
    });
    BuildMuteMenu();
    FBanner->SetMuteMenu(FMuteMenu.get());
    FWatcher.SetOnChange([this] { StoreChanged(); });
    if (FGrid)
        if (auto* delegate = qobject_cast<TNoticeGridDelegate*>(FGrid->itemDelegate()))
            delegate->SetEmphasis(this);
    ApplySettings(Settings);
}

TBoardAlerts::~TBoardAlerts() {
    const TAlertOutputs outputs = BoardAlertOutputs();
    if (outputs.Notifier == FRegistered.Notifier && outputs.Player == FRegistered.Player)
        SetBoardAlertOutputs({});
    if (FGrid)
        if (auto* delegate = qobject_cast<TNoticeGridDelegate*>(FGrid->itemDelegate()))
            delegate->SetEmphasis(nullptr);
}

void TBoardAlerts::ApplySettings(const TNotificationSettings& Settings) {
    const bool highlightWas = FSettings.Highlight;
    FSettings = Settings;
    FWatcher.SetThreshold(Settings.MinSeverity);
    FWatcher.SetRepeatMinutes(Settings.RepeatMinutes);
    if (Settings.WantsTray() && !FTray) {
        FTray = new TAlertTray(this);
        FTray->SetMenu(FTrayMenu.get());
        connect(FTray, &TAlertTray::Activated, this, &TBoardAlerts::RaiseBoard);
        connect(FTray, &TAlertTray::MessageClicked, this, &TBoardAlerts::GoToAnnounced);
        FTray->SetVisible(true);
    } else if (!Settings.WantsTray() && FTray) {
        delete FTray;
        FTray = nullptr;
    }
    UpdateTray();
    ArmReminder();
    if (Settings.Highlight && FHighlights.Active()) FHighlightTimer->start();
    if (!Settings.Highlight) FHighlightTimer->stop();
    if (highlightWas != Settings.Highlight && FGrid) FGrid->viewport()->update();
    RegisterOutputs(); // the notifier may have changed with the tray
}

// The open board's outputs, for the configuration's "Test".
void TBoardAlerts::RegisterOutputs() {
    FRegistered = {&Notifier(), &Player()};
    SetBoardAlertOutputs(FRegistered);
}

void TBoardAlerts::SetNotifier(INoticeNotifier* Notifier) {
    FTestNotifier = Notifier;
    RegisterOutputs();
}

void TBoardAlerts::SetSoundPlayer(ISoundPlayer* Player) {
    FTestPlayer = Player;
    RegisterOutputs();
}

void TBoardAlerts::SetClock(std::function<int64_t()> NowMs) {
    FClock = NowMs ? std::move(NowMs) : std::function<int64_t()>(SteadyMs);
}

INoticeNotifier& TBoardAlerts::Notifier() const {
    if (FTestNotifier) return *FTestNotifier;
    if (FTray && FTray->IsVisible() && TAlertTray::CanNotify()) return *FTray;
    return *FBanner;
}

ISoundPlayer& TBoardAlerts::Player() {
    if (FTestPlayer) return *FTestPlayer;
    if (!FOwnPlayer) FOwnPlayer = new TQtSoundPlayer(this);
    return *FOwnPlayer;
}

// Inside the store's operation: only note that work is waiting for the next event-loop turn.
void TBoardAlerts::StoreChanged() {
    if (FSettings.Highlight && !FHighlightTimer->isActive()) FHighlightTimer->start();
    if (FFlushQueued) return;
    FFlushQueued = true;
    QMetaObject::invokeMethod(this, &TBoardAlerts::Flush, Qt::QueuedConnection);
}

void TBoardAlerts::Flush() {
    FFlushQueued = false;
    const std::optional<TAlertAnnouncement> a = FWatcher.TakeAnnouncement();
    if (a) Announce(*a, FSettings);
    UpdateTray();
    ArmReminder();
}

void TBoardAlerts::Remind() {
    const std::optional<TAlertAnnouncement> a = FWatcher.TakeReminder();
    if (a) Announce(*a, FSettings);
    ArmReminder();
}

void TBoardAlerts::Announce(const TAlertAnnouncement& A, const TNotificationSettings& S) {
    if (!S.Desktop && !S.Sound) return;
    FAnnouncedKey = A.Key;
    if (S.Desktop) Notifier().Notify(AlertTitle(A), AlertText(A), A.Severity);
    if (S.Sound) Player().Play(SoundFileFor(S.SoundFile(A.Severity), A.Severity));
}

void TBoardAlerts::ArmReminder() {
    const std::optional<int64_t> next = FWatcher.NextReminderIn();
    if ((FSettings.Desktop || FSettings.Sound) && next)
        FReminderTimer->start(static_cast<int>(std::min<int64_t>(*next, INT32_MAX)));
    else
        FReminderTimer->stop();
}

void TBoardAlerts::UpdateTray() {
    if (!FTray) return;
    FTray->SetState(FCounts.Total(), FCounts.Worst(), FWatcher.TroubleCount(), FWatcher.Threshold(),
                    MuteText());
}

double TBoardAlerts::RowEmphasis(int32_t Key) const {
    return FSettings.Highlight ? FHighlights.Emphasis(Key) : 0;
}

void TBoardAlerts::HighlightStep() {
    if (FGrid) FGrid->viewport()->update();
    if (!FHighlights.Active()) FHighlightTimer->stop();
}

void TBoardAlerts::RaiseBoard() {
    if (!FBoard) return;
    QWidget* window = FBoard->window();
    window->setWindowState((window->windowState() & ~Qt::WindowMinimized) | Qt::WindowActive);
    window->show();
    window->raise();
    window->activateWindow();
    emit BoardRaised();
}

void TBoardAlerts::GoToAnnounced() {
    RaiseBoard();
    if (FGrid && FAnnouncedKey != 0) FGrid->SetCurrentKey(FAnnouncedKey);
}
