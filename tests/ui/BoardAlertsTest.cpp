// The board's alerts on a real grid: what is shown and played for new trouble and reminders, muting,
// the tray icon's state, the banner where the desktop has no notification service, and the fading row
// highlight. Notifications and sounds go to recorders; the clock is the test's.
#include "support/NoticeGridBench.h"
#include "support/WidgetShots.h"

#include "core/TSeverityCounts.h"
#include "core/ui/AlertBanner.h"
#include "core/ui/AlertSound.h"
#include "core/ui/AlertTray.h"
#include "core/ui/BoardAlerts.h"
#include "core/ui/NbColors.h"

#include <QAction>
#include <QMenu>
#include <QPainter>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>
#include <QtTest>

namespace {

constexpr int64_t Minute = 60000;

struct TShown {
    QString Title, Text;
    int Severity;
};

class TNotifyRecorder : public INoticeNotifier {
public:
    void Notify(const QString& Title, const QString& Text, int Severity) override {
        Shown.push_back({Title, Text, Severity});
    }
    std::vector<TShown> Shown;
};

class TSoundRecorder : public ISoundPlayer {
public:
    void Play(const QString& File) override { Played.push_back(File); }
    QStringList Played;
};

// An update that acknowledges the notice after it was last raised.
std::string AckXml(const std::string& Key) {
    return "<Notice><Command>update</Command><adpt_orig_key>" + Key +
           "</adpt_orig_key><ack_date>2026-11-21T09:00:00</ack_date></Notice>";
}

TNotificationSettings On(bool Desktop, bool Sound) {
    TNotificationSettings s;
    s.Desktop = Desktop;
    s.Sound = Sound;
    return s;
}

// A row's colour without any highlight: the display's colour of its place (alternate rows are on).
QColor PlainColour(const TNoticeGridBench& Bench, int Row) {
    return ToQColor(Row % 2 ? Bench.Display.AltColor : Bench.Display.GridColor);
}

} // namespace

class BoardAlertsTest : public QObject {
    Q_OBJECT

    struct TRig {
        explicit TRig(const TNotificationSettings& S)
            : Counts(Bench.Board.cdsNoticeBd()),
              Alerts(&Board, Bench.Board.cdsNoticeBd(), Counts, Bench.Grid.get(), S) {
            Alerts.SetClock([this] { return Now; });
            Alerts.SetNotifier(&Shown);
            Alerts.SetSoundPlayer(&Sounds);
        }
        void Post(const std::vector<TTestNotice>& Notices) {
            Bench.Post(Notices);
            QCoreApplication::processEvents(); // the queued flush
        }
        void Send(const std::string& Xml) {
            Bench.Send({Xml});
            QCoreApplication::processEvents();
        }
        template <typename T> T* Find(const char* Name) {
            if (auto* o = Alerts.findChild<T*>(QLatin1String(Name))) return o;
            if (auto* o = Alerts.MuteMenu()->findChild<T*>(QLatin1String(Name))) return o;
            return Board.findChild<T*>(QLatin1String(Name));
        }
        int64_t Now = 1000;
        TNoticeGridBench Bench;
        QWidget Board;
        TSeverityCounts Counts;
        TBoardAlerts Alerts;
        TNotifyRecorder Shown;
        TSoundRecorder Sounds;
    };

private slots:
    void newTroubleIsShownAndPlayedOncePerMessage() {
        QTemporaryDir dir;
        const QString mine = dir.filePath(QStringLiteral("critical.wav"));
        QFile(mine).open(QIODevice::WriteOnly);
        TNotificationSettings s = On(true, true);
        s.SoundFiles[3] = mine.toStdString();                                     // Critical: the user's file
        s.SoundFiles[2] = dir.filePath(QStringLiteral("gone.wav")).toStdString(); // Fatal: missing

        TRig rig(s);
        rig.Post({Notice("a", 1), Notice("b", 3), Notice("c", 4, "Disk full"), Notice("d", 4)});
        QCOMPARE(rig.Shown.Shown.size(), size_t(1));
        QCOMPARE(rig.Shown.Shown[0].Title, QStringLiteral("3 new notices, the worst Critical"));
        QCOMPARE(rig.Shown.Shown[0].Text, QStringLiteral("Critical: Disk full"));
        QCOMPARE(rig.Shown.Shown[0].Severity, 4);
        QCOMPARE(rig.Sounds.Played, QStringList{mine});

        rig.Post({Notice("e", 3, "Log full")});
        QCOMPARE(rig.Shown.Shown.back().Title, QStringLiteral("Fatal notice"));
        QCOMPARE(rig.Shown.Shown.back().Text, QStringLiteral("Log full"));
        QCOMPARE(rig.Sounds.Played.back(), DefaultSoundFile(3)); // the user's file is gone

        // Only what is switched on goes out.
        s.Desktop = false;
        rig.Alerts.ApplySettings(s);
        rig.Post({Notice("f", 4)});
        QCOMPARE(rig.Shown.Shown.size(), size_t(2));
        QCOMPARE(rig.Sounds.Played.size(), 3);
        s.Sound = false;
        rig.Alerts.ApplySettings(s);
        rig.Post({Notice("g", 4)});
        QCOMPARE(rig.Sounds.Played.size(), 3);
    }

    void remindersComeWhileTroubleStaysUnacknowledged() {
        TNotificationSettings s = On(true, false);
        s.RepeatMinutes = 10;
        TRig rig(s);
        rig.Post({Notice("a", 3), Notice("b", 4, "Newest")});
        QTimer* timer = rig.Find<QTimer>("AlertTimer");
        QVERIFY(timer->isActive());
        QCOMPARE(timer->interval(), int(10 * Minute));

        rig.Now += 10 * Minute;
        rig.Alerts.Remind();
        QCOMPARE(rig.Shown.Shown.size(), size_t(2));
        QCOMPARE(rig.Shown.Shown[1].Title, QStringLiteral("Still unacknowledged: 2 notices"));
        QCOMPARE(rig.Shown.Shown[1].Text, QStringLiteral("Critical: Newest"));
        QCOMPARE(timer->interval(), int(10 * Minute));

        rig.Send(AckXml("a"));
        rig.Send(AckXml("b"));
        QVERIFY(!timer->isActive());
    }

    void theMuteMenuSilencesForAWhileOrUntilRestart() {
        TNotificationSettings s = On(true, true);
        s.TrayIcon = true;
        TRig rig(s);
        QAction* unmute = rig.Find<QAction>("actUnmute");
        QVERIFY(!unmute->isEnabled());

        rig.Find<QAction>("actMute15")->trigger();
        QVERIFY(unmute->isEnabled());
        QCOMPARE(rig.Find<QTimer>("MuteTimer")->interval(), int(15 * Minute));
        QVERIFY(rig.Alerts.Tray()->ToolTip().contains(QStringLiteral("Alerts muted until")));
        rig.Post({Notice("a", 4)});
        QVERIFY(rig.Shown.Shown.empty() && rig.Sounds.Played.isEmpty());

        rig.Find<QAction>("actMuteRestart")->trigger();
        QVERIFY(rig.Find<QAction>("actMuteRestart")->isChecked());
        QVERIFY(rig.Alerts.Tray()->ToolTip().endsWith(QStringLiteral("Alerts muted until the board closes")));
        rig.Now += 600 * Minute;
        rig.Post({Notice("c", 4)});
        QVERIFY(rig.Shown.Shown.empty());

        unmute->trigger();
        QVERIFY(!unmute->isEnabled() && !rig.Find<QAction>("actMuteRestart")->isChecked());
        rig.Post({Notice("d", 4)});
        QCOMPARE(rig.Shown.Shown.size(), size_t(1));
        // The tray's menu offers the same actions after its own.
        const QList<QAction*> tray = rig.Alerts.TrayMenu()->actions();
        QCOMPARE(tray.first()->objectName(), QStringLiteral("actShowBoard"));
        QVERIFY(tray.contains(unmute));
    }

    void theTrayShowsTheWorstLiveSeverityAndRaisesTheBoard() {
        TNotificationSettings s;
        s.TrayIcon = true;
        TRig rig(s);
        TAlertTray* tray = rig.Alerts.Tray();
        QVERIFY(tray);
        QCOMPARE(tray->ToolTip(), QStringLiteral("Notice Board\nNo notices"));
        QCOMPARE(tray->IconSeverity(), 0);

        rig.Post({Notice("a", 2), Notice("b", 4), Notice("c", 3)});
        QCOMPARE(tray->IconSeverity(), 4);
        QImage marks(48 * 5, 48, QImage::Format_ARGB32);
        marks.fill(Qt::white);
        QPainter painter(&marks);
        for (int severity = 0; severity <= 4; ++severity)
            painter.drawPixmap(48 * severity, 0, AlertTrayIcon(severity).pixmap(48, 48));
        painter.end();
        SaveShot(marks, QStringLiteral("alerts-tray-icons"));
        QCOMPARE(tray->ToolTip(),
                 QStringLiteral(
                     "Notice Board\n3 notices, the worst Critical\n2 unacknowledged at Fatal or above"));
        rig.Send(DeleteXml("b"));
        QCOMPARE(tray->IconSeverity(), 3);
        rig.Send(AckXml("c"));
        QCOMPARE(tray->ToolTip(), QStringLiteral("Notice Board\n2 notices, the worst Fatal"));

        rig.Board.showMinimized();
        QSignalSpy raised(&rig.Alerts, &TBoardAlerts::BoardRaised);
        emit tray->Activated();
        QCOMPARE(raised.count(), 1);
        QVERIFY(!(rig.Board.windowState() & Qt::WindowMinimized));

        s.TrayIcon = false;
        rig.Alerts.ApplySettings(s);
        QVERIFY(!rig.Alerts.Tray());
    }

    void withoutANotificationServiceTheBannerShowsTheAlert() {
        TRig rig(On(true, false));
        rig.Alerts.SetNotifier(nullptr); // the board's own choice: no tray on the offscreen desktop
        QCOMPARE(&rig.Alerts.Notifier(), static_cast<INoticeNotifier*>(rig.Alerts.Banner()));
        rig.Board.resize(500, 80);
        auto* layout = new QVBoxLayout(&rig.Board);
        layout->addWidget(rig.Alerts.Banner());
        layout->addStretch();
        rig.Board.show();
        rig.Post({Notice("a", 1), Notice("b", 4, "Replication stopped")});
        TAlertBanner* banner = rig.Alerts.Banner();
        QVERIFY(banner->isVisible());
        QCOMPARE(banner->Title(), QStringLiteral("Critical notice"));
        QCOMPARE(banner->Severity(), 4);
        QVERIFY(rig.Find<QTimer>("BannerTimer")->isActive());
        SaveShot(&rig.Board, QStringLiteral("alerts-banner"));

        // A click on the alert goes to its notice.
        rig.Bench.Grid->SetCurrentKey(rig.Bench.KeyOf("a"));
        QTest::mouseClick(banner, Qt::LeftButton, {}, banner->rect().center());
        QCOMPARE(rig.Bench.Grid->CurrentKey(), rig.Bench.KeyOf("b"));
        QTest::mouseClick(banner->findChild<QToolButton*>(QStringLiteral("btnAlertClose")), Qt::LeftButton);
        QVERIFY(!banner->isVisible());
    }

    void changedRowsAreHighlightedAndFadeOverTwoMinutes() {
        TNotificationSettings s;
        s.Highlight = true;
        TRig rig(s);
        TNoticeBdGrid& grid = *rig.Bench.Grid;
        grid.resize(720, 200);
        rig.Post({Notice("old1", 1, "Changed long ago"), Notice("old2", 2, "Changed long ago")});
        rig.Now += 3 * Minute;
        QTimer* fade = rig.Find<QTimer>("HighlightTimer");
        QVERIFY(fade->isActive());
        QMetaObject::invokeMethod(fade, "timeout", Qt::DirectConnection);
        QVERIFY(!fade->isActive()); // nothing is lit any more

        rig.Post({Notice("n40", 4, "Changed 40 s ago")});
        rig.Now += 40000;
        rig.Post({Notice("now", 4, "Changed just now"), Notice("old2", 3, "Updated just now")});
        grid.viewport()->repaint();
        QVERIFY(fade->isActive());
        const auto row = [&](const char* key) { return rig.Bench.RowOf(rig.Bench.KeyOf(key)); };
        const auto colour = [&](const char* key) { return RowColour(grid, row(key)); };
        const auto plainOf = [&](const char* key) { return PlainColour(rig.Bench, row(key)); };
        // The tint fades: the newer the change, the further from the row's plain colour.
        const auto distance = [&](const char* key) {
            const QColor c = colour(key), plain = plainOf(key);
            return std::abs(c.red() - plain.red()) + std::abs(c.green() - plain.green()) +
                   std::abs(c.blue() - plain.blue());
        };
        QCOMPARE(colour("old1"), plainOf("old1"));
        QVERIFY(distance("now") > distance("n40"));
        QVERIFY(distance("n40") > 0);
        QVERIFY(distance("old2") > distance("n40")); // an update lights the row again
        SaveShot(&grid, QStringLiteral("alerts-grid-highlight"));

        rig.Now += 2 * Minute;
        grid.viewport()->repaint();
        QCOMPARE(colour("now"), plainOf("now"));

        // Switched off, nothing is lit even right after a change.
        rig.Now += Minute;
        rig.Post({Notice("late", 4)});
        s.Highlight = false;
        rig.Alerts.ApplySettings(s);
        QVERIFY(!rig.Find<QTimer>("HighlightTimer")->isActive());
        grid.viewport()->repaint();
        QCOMPARE(colour("late"), plainOf("late"));
    }

    void theBoardsOwnSoundsAreCompiledIn() {
        // The window layer is a static library: its resources exist only when registered.
        for (int severity = 0; severity <= 5; ++severity) {
            QFile wav(DefaultSoundFile(severity));
            QVERIFY2(wav.open(QIODevice::ReadOnly), qPrintable(wav.fileName()));
            const QByteArray head = wav.read(12);
            QVERIFY(head.startsWith("RIFF") && head.endsWith("WAVE"));
        }
        QCOMPARE(DefaultSoundFile(9), DefaultSoundFile(1));
        QCOMPARE(SoundFileFor("  ", 4), DefaultSoundFile(4));
        // The real player takes both kinds of file without complaint (the offscreen test has no device).
        TQtSoundPlayer player;
        player.Play(DefaultSoundFile(4));
        player.Play(QStringLiteral("/nowhere/missing.wav"));
    }

    void theOpenBoardLendsItsOutputsToTheConfiguration() {
        {
            TRig rig{TNotificationSettings()};
            QCOMPARE(BoardAlertOutputs().Player, static_cast<ISoundPlayer*>(&rig.Sounds));
            QCOMPARE(BoardAlertOutputs().Notifier, static_cast<INoticeNotifier*>(&rig.Shown));
        }
        QVERIFY(!BoardAlertOutputs().Notifier && !BoardAlertOutputs().Player);
    }
};

QTEST_MAIN(BoardAlertsTest)
#include "BoardAlertsTest.moc"
