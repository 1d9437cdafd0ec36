// The configuration dialog's "Notifications" page: what it shows, what OK and Cancel leave in the
// configuration and in zpnbd.ini, the one sound-file edit serving four severities, and "Play" / "Test"
// going to the open board's outputs.
#include "adapters/ZNB_Cfg.h"
#include "core/ui/AlertOutputs.h"
#include "core/ui/AlertSound.h"
#include "support/ConfigDlgBench.h"
#include "support/IniFiles.h"
#include "support/WidgetShots.h"

#include <QTest>
#include <QtWidgets>

namespace {

class TRecorder : public INoticeNotifier, public ISoundPlayer {
public:
    void Notify(const QString& Title, const QString& Text, int Severity) override {
        Shown << QStringLiteral("%1|%2|%3").arg(Title, Text).arg(Severity);
    }
    void Play(const QString& File) override { Played << File; }
    QStringList Shown, Played;
};

TNotificationSettings Configured() {
    TNotificationSettings s;
    s.Desktop = true;
    s.MinSeverity = 4;
    s.RepeatMinutes = 25;
    s.Highlight = true;
    s.SoundFiles = {"/snd/normal.wav", "", "", "/snd/critical.wav"};
    return s;
}

} // namespace

class ConfigDlgNotificationsTest : public QObject {
    Q_OBJECT
private slots:
    void init() {
        B = std::make_unique<TConfigDlgBench>();
        NBConfig->Notifications = Configured();
    }
    void cleanup() {
        SetBoardAlertOutputs({});
        B.reset();
    }

    void thePageShowsTheConfiguredSettings() {
        B->Open();
        auto* pages = B->W<QTabWidget>("PageControl1");
        QCOMPARE(pages->tabText(2), QStringLiteral("Notifications"));
        pages->setCurrentIndex(2);
        QVERIFY(B->W<QCheckBox>("cbDesktopNotify")->isChecked());
        QVERIFY(!B->W<QCheckBox>("cbPlaySound")->isChecked());
        QCOMPARE(B->W<QComboBox>("cmbMinSeverity")->currentText(), QStringLiteral("Critical"));
        QCOMPARE(B->W<QSpinBox>("seRepeatMinutes")->value(), 25);
        QVERIFY(!B->W<QCheckBox>("cbTrayIcon")->isChecked());
        QVERIFY(B->W<QCheckBox>("cbHighlightRows")->isChecked());
        // The sound edit starts on the lowest severity announced.
        QCOMPARE(B->W<QComboBox>("cmbSoundSeverity")->currentText(), QStringLiteral("Critical"));
        QCOMPARE(B->W<QLineEdit>("edtSoundFile")->text(), QStringLiteral("/snd/critical.wav"));
        QCOMPARE(B->W<QLineEdit>("edtSoundFile")->placeholderText(), QStringLiteral("Built-in sound"));
        B->W<QSpinBox>("seRepeatMinutes")->setValue(0);
        QCOMPARE(B->W<QSpinBox>("seRepeatMinutes")->text(), QStringLiteral("never"));
        B->W<QSpinBox>("seRepeatMinutes")->setValue(25);
        SaveShot(B->Dlg.get(), QStringLiteral("configdlg-notifications"));
    }

    void okSavesThePageToItsOwnSection() {
        B->Open();
        B->W<QTabWidget>("PageControl1")->setCurrentIndex(2);
        B->W<QCheckBox>("cbPlaySound")->setChecked(true);
        B->W<QCheckBox>("cbTrayIcon")->setChecked(true);
        B->W<QComboBox>("cmbMinSeverity")->setCurrentIndex(1);
        B->W<QSpinBox>("seRepeatMinutes")->setValue(5);
        // One edit, four files: each severity keeps what was typed for it.
        auto* severity = B->W<QComboBox>("cmbSoundSeverity");
        auto* file = B->W<QLineEdit>("edtSoundFile");
        severity->setCurrentIndex(1);
        QCOMPARE(file->text(), QString());
        QTest::keyClicks(file, "/snd/warning.wav");
        severity->setCurrentIndex(3);
        file->selectAll();
        QTest::keyClick(file, Qt::Key_Delete); // Critical back to the built-in sound
        severity->setCurrentIndex(1);
        QCOMPARE(file->text(), QStringLiteral("/snd/warning.wav"));
        QVERIFY(ClickButton(B->Dlg.get(), "btnOK"));

        TNotificationSettings expected = Configured();
        expected.Sound = expected.TrayIcon = true;
        expected.MinSeverity = 2;
        expected.RepeatMinutes = 5;
        expected.SoundFiles = {"/snd/normal.wav", "/snd/warning.wav", "", ""};
        QVERIFY(NBConfig->Notifications == expected);
        TIniFile ini(B->Ini());
        TNotificationSettings saved;
        saved.Load(ini);
        QVERIFY(saved == expected); // the section's keys are the settings' own suite's
    }

    void cancelKeepsNothing() {
        const std::string before = ReadTextFile(B->Ini());
        B->Open();
        B->W<QCheckBox>("cbDesktopNotify")->setChecked(false);
        B->W<QCheckBox>("cbHighlightRows")->setChecked(false);
        QTest::keyClicks(B->W<QLineEdit>("edtSoundFile"), "x");
        QVERIFY(ClickButton(B->Dlg.get(), "btnCancel"));
        QCOMPARE(ReadTextFile(B->Ini()), before);
        QVERIFY(NBConfig->Notifications == Configured());
    }

    void playAndTestGoToTheOpenBoard() {
        TRecorder board;
        SetBoardAlertOutputs({&board, &board});
        B->Open();
        B->W<QTabWidget>("PageControl1")->setCurrentIndex(2);
        auto* severity = B->W<QComboBox>("cmbSoundSeverity");
        severity->setCurrentIndex(2); // Fatal: no file of its own
        QVERIFY(ClickButton(B->Dlg.get(), "btnPlaySound"));
        QCOMPARE(board.Played, QStringList{DefaultSoundFile(3)});
        QVERIFY(board.Shown.isEmpty());

        // "Test" announces the lowest severity chosen on the page, saved or not.
        B->W<QComboBox>("cmbMinSeverity")->setCurrentIndex(1);
        QVERIFY(ClickButton(B->Dlg.get(), "btnTestNotify"));
        QCOMPARE(board.Shown,
                 QStringList{QStringLiteral("Warning notice|This is how the board tells of new trouble.|2")});
        QCOMPARE(board.Played.last(), DefaultSoundFile(2));
        QVERIFY(NBConfig->Notifications == Configured());
    }

private:
    std::unique_ptr<TConfigDlgBench> B;
};

QTEST_MAIN(ConfigDlgNotificationsTest)
#include "ConfigDlgNotificationsTest.moc"
