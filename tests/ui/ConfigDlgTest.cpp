// The configuration dialog driven as a user drives it: what it shows, what OK and Cancel leave in
// zpnbd.ini, the folder checks on OK, and the two ways the board opens it.
#include "adapters/ZNB_Cfg.h"
#include "core/ui/NbColors.h"
#include "support/ConfigDlgBench.h"
#include "support/IniFiles.h"

#include <QTest>
#include <QtWidgets>

#include <csignal>
#include <sys/resource.h>

class ConfigDlgTest : public QObject {
    Q_OBJECT
private slots:
    void init() { B = std::make_unique<TConfigDlgBench>(); }
    void cleanup() { B.reset(); }
    void showsTheFormAsConfigured();
    void okSavesFolderAsTypedSelectionsAsTextsAndCheckMarks();
    void cancelSavesNothingButConfiguredAdaptersStayMarked();
    void browseShowsTheFolderAndTakesTheChosenOne();
    void okOffersToCreateAMissingFolderAndReportsAnUnwritableOne_data();
    void okOffersToCreateAMissingFolderAndReportsAnUnwritableOne();
    void failedSaveIsReportedAndTheIniFileKept();
    void boardOpenerFillsTheListsAndHandsAdaptersTheMainWindow();

private:
    std::unique_ptr<TConfigDlgBench> B;
};

void ConfigDlgTest::showsTheFormAsConfigured() {
    const std::string longFolder =
        B->Exe.Path() + "a_rather_long_folder_name/and_another_long_one/Noticeboard/";
    NBConfig->NBFolder = longFolder;
    B->Open();
    QCOMPARE(B->Dlg->windowTitle(), QString("Notice Board Configuration"));
    auto* pages = B->W<QTabWidget>("PageControl1");
    QCOMPARE(pages->tabText(0) + "|" + pages->tabText(1), QString("Notice Board|Adapters"));
    QCOMPARE(pages->currentIndex(), 0);

    // The folder edit has the focus, so it shows the whole folder; leaving it shortens it in the middle.
    auto* folder = B->W<QLineEdit>("EditNBFolder");
    QVERIFY(folder->hasFocus());
    QCOMPARE(folder->text().toStdString(), longFolder);
    auto* filters = B->W<QComboBox>("cbDefFilter");
    filters->setFocus(Qt::TabFocusReason);
    QVERIFY2(folder->text().contains("/.../") && folder->text().endsWith("/Noticeboard/"),
             qPrintable(folder->text()));
    QCOMPARE(Items(filters), QStringList{"<previous filter>"});
    QCOMPARE(filters->currentIndex(), -1); // "Errors" is not listed
    QCOMPARE(Items(B->W<QComboBox>("cbDefDisplay")), QStringList{"<previous display>"});
    QCOMPARE(B->W<QComboBox>("cbDefDisplay")->currentIndex(), -1); // compared exactly

    QVERIFY(B->W<QRadioButton>("rbOnNBShow")->isChecked());
    auto* delay = B->W<QSpinBox>("seDelaySecs");
    QCOMPARE(delay->value(), 20);
    QVERIFY(!delay->isEnabled());
    QCOMPARE(delay->palette().color(QPalette::Base), ToQColor(clBtnFace));
    B->W<QRadioButton>("rbOnPVOStartup")->setChecked(true);
    QVERIFY(delay->isEnabled());
    QCOMPARE(delay->palette().color(QPalette::Base), ToQColor(clWindow));

    auto* list = B->W<QListWidget>("clbSourceTypes");
    QString lines; // name, then "+" for enabled (selectable) and "x" for checked
    for (int i = 0; i < list->count(); ++i)
        lines += list->item(i)->text() + (list->item(i)->flags() & Qt::ItemIsEnabled ? "+" : "") +
                 (list->item(i)->checkState() == Qt::Checked ? "x" : "") + " ";
    QCOMPARE(
        lines,
        QString(
            "DuskMere R/Vista Recorder+x BadConfig+ Bare+ Garbage+ Overflow+ Throws+ Missing+ Unlisted+ "));
    // The greyed first line is selected, so there is nothing to configure yet.
    QCOMPARE(list->currentRow(), 0);
    QVERIFY(!B->W<QPushButton>("btnConfigSource")->isEnabled());
    QVERIFY(B->W<QPlainTextEdit>("M_Adapter_Status")->toPlainText().isEmpty());
    TConfigDlgBench::Select(B->Dlg.get(), "Recorder");
    QVERIFY(B->W<QPushButton>("btnConfigSource")->isEnabled());

    // No caption is cut short on either page.
    const QString shots = qEnvironmentVariable("NB_SCREENSHOT_DIR");
    for (int page = 0; page < 2; ++page) {
        pages->setCurrentIndex(page);
        for (QWidget* w : B->Dlg->findChildren<QWidget*>())
            if (w->isVisible() && (qobject_cast<QLabel*>(w) || qobject_cast<QAbstractButton*>(w)))
                QVERIFY2(w->width() >= w->sizeHint().width(), qPrintable(w->objectName()));
        if (!shots.isEmpty()) B->Dlg->grab().save(shots + QString("/configDlg-page%1.png").arg(page + 1));
    }
}

void ConfigDlgTest::okSavesFolderAsTypedSelectionsAsTextsAndCheckMarks() {
    B->Open();
    const std::string typed = B->Exe.Path() + "Typed";
    B->TypeFolder(QString::fromStdString(typed));
    B->W<QComboBox>("cbDefFilter")->setCurrentIndex(0);
    B->W<QRadioButton>("rbOnPVOStartup")->setChecked(true);
    B->W<QListWidget>("clbSourceTypes")->item(2)->setCheckState(Qt::Unchecked); // Recorder
    B->W<QListWidget>("clbSourceTypes")->item(3)->setCheckState(Qt::Checked);   // BadConfig
    QVERIFY(ClickButton(B->Dlg.get(), "btnOK")); // the focus leaves the folder edit only now

    QCOMPARE(B->Dlg->result(), int(QDialog::Accepted));
    QVERIFY(!B->Dlg->isVisible());
    TIniFile ini(B->Ini());
    QCOMPARE(ini.ReadString("Noticeboard", "NBFolder", ""), typed);
    QCOMPARE(ini.ReadInteger("Noticeboard", "WhenToConnect", -1), 0);
    QCOMPARE(ini.ReadInteger("Noticeboard", "ConnectDelay", -1), 20);
    QCOMPARE(ini.ReadString("Noticeboard", "DefaultFilter", ""), std::string("<previous filter>"));
    QCOMPARE(ini.ReadString("Noticeboard", "DefaultDisplay", "?"), std::string()); // nothing selected
    QVERIFY(!ini.ReadBool("Adapter_Recorder", "Enabled", true));
    QVERIFY(ini.ReadBool("Adapter_BadConfig", "Enabled", false));
    QCOMPARE(ini.ReadString("Kept", "ByHand", ""), std::string("yes"));
}

void ConfigDlgTest::cancelSavesNothingButConfiguredAdaptersStayMarked() {
    const std::string before = ReadTextFile(B->Ini());
    B->Open();
    B->TypeFolder("/elsewhere");
    B->W<QComboBox>("cbDefFilter")->setCurrentIndex(0);
    TConfigDlgBench::Select(B->Dlg.get(), "Recorder");
    B->W<QListWidget>("clbSourceTypes")->currentItem()->setCheckState(Qt::Unchecked);
    QVERIFY(ClickButton(B->Dlg.get(), "btnConfigSource"));
    QVERIFY(ClickButton(B->Dlg.get(), "btnCancel"));

    QCOMPARE(B->Dlg->result(), int(QDialog::Rejected));
    QCOMPARE(ReadTextFile(B->Ini()), before);
    QCOMPARE(NBConfig->NBFolder + "|" + NBConfig->DefaultFilter, B->Folder() + "|Errors");
    QVERIFY(NBConfig->IsAdapterEnabled("Recorder"));
    QVERIFY(NBConfig->IsAdapterConfigured("Recorder"));
}

void ConfigDlgTest::browseShowsTheFolderAndTakesTheChosenOne() {
    const QString chosen = QString::fromStdString(B->Exe.Path() + "Chosen");
    QVERIFY(QDir().mkpath(chosen));
    B->Open();
    QString shown;
    bool canMakeFolder = false;
    auto picked = WhenModal("FolderDialog", [&](QWidget* w) {
        auto* picker = qobject_cast<QFileDialog*>(w);
        shown = picker->directory().absolutePath() + "/";
        auto* newFolder = Child<QToolButton>(picker, "newFolderButton");
        canMakeFolder = newFolder && newFolder->isVisible() && newFolder->isEnabled();
        picker->setDirectory(chosen);
        static_cast<QDialog*>(picker)->accept(); // the picker's own accept takes its folder
    });
    QVERIFY(ClickButton(B->Dlg.get(), "btnBrowse"));
    QVERIFY(*picked);
    QCOMPARE(shown.toStdString(), B->Folder());
    QVERIFY(canMakeFolder);
    QVERIFY(ClickButton(B->Dlg.get(), "btnOK"));
    QCOMPARE(NBConfig->NBFolder, chosen.toStdString());
}

void ConfigDlgTest::okOffersToCreateAMissingFolderAndReportsAnUnwritableOne_data() {
    QTest::addColumn<QString>("folder"); // "~/" is the executable's folder
    QTest::addColumn<bool>("answerYes");
    QTest::addColumn<bool>("asked");
    QTest::addColumn<bool>("exists");
    QTest::addColumn<QString>("message");
    QTest::newRow("existing") << "~/Noticeboard/" << true << false << true << "";
    QTest::newRow("created") << "~/New/Board/" << true << true << true << "";
    QTest::newRow("declined") << "~/New/Board" << false << true << false << "";
    QTest::newRow("cannot be created")
        << "~/file/Board" << true << true << false
        << "Error - The notice board folder \"~/file/Board\" could not be created: Not a directory";
    QTest::newRow("cannot be written") << "/proc/" << true << false << true
                                       << "Error - The notice board folder \"/proc/\" cannot be written: ";
}

void ConfigDlgTest::okOffersToCreateAMissingFolderAndReportsAnUnwritableOne() {
    QFETCH(QString, folder);
    QFETCH(bool, answerYes);
    QFETCH(bool, asked);
    QFETCH(bool, exists);
    QFETCH(QString, message);
    folder.replace("~/", QString::fromStdString(B->Exe.Path()));
    message.replace("~/", QString::fromStdString(B->Exe.Path()));
    WriteTextFile(B->Exe.Path() + "file", "not a folder");
    B->Prompt.AnswerYes = answerYes;
    B->Open();
    B->TypeFolder(folder);
    QVERIFY(ClickButton(B->Dlg.get(), "btnOK"));

    const std::vector<std::string> question{"The notice board folder \"" + folder.toStdString() +
                                            "\" does not exist. Do you want to create it?"};
    QCOMPARE(B->Prompt.Questions, asked ? question : std::vector<std::string>());
    QCOMPARE(DirectoryExists(folder.toStdString()), exists);
    const QString shown = B->Prompt.Messages.empty() ? "" : QString::fromStdString(B->Prompt.Messages.back());
    QVERIFY2(B->Prompt.Messages.size() == (message.isEmpty() ? 0u : 1u) && shown.startsWith(message),
             qPrintable(shown));
    QCOMPARE(TIniFile(B->Ini()).ReadString("Noticeboard", "NBFolder", ""),
             folder.toStdString()); // saved all the same
}

void ConfigDlgTest::failedSaveIsReportedAndTheIniFileKept() {
    const std::string before = ReadTextFile(B->Ini());
    B->Open();
    B->W<QComboBox>("cbDefFilter")->setCurrentIndex(0);
    // A file-size limit below the ini file's size makes writing its new copy fail, as a full disk would.
    rlimit old{};
    QCOMPARE(::getrlimit(RLIMIT_FSIZE, &old), 0);
    const auto previousHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit small = old;
    small.rlim_cur = 64;
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const bool clicked = ClickButton(B->Dlg.get(), "btnOK");
    ::setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, previousHandler);

    QVERIFY(clicked);
    QCOMPARE(B->Prompt.Messages.size(), size_t(1));
    QVERIFY2(B->Prompt.Messages[0].rfind(
                 "Error - The configuration could not be saved: Cannot write ini file", 0) == 0,
             B->Prompt.Messages[0].c_str());
    QCOMPARE(ReadTextFile(B->Ini()), before);
    QVERIFY(!B->Dlg->isVisible());
    QCOMPARE(NBConfig->DefaultFilter, std::string("<previous filter>")); // in memory for the next save
}

void ConfigDlgTest::boardOpenerFillsTheListsAndHandsAdaptersTheMainWindow() {
    QMainWindow console;
    QWidget board(&console, Qt::Window);
    console.show();
    board.show();
    QStringList seen;
    auto ran = WhenModal("configDlg", [&](QWidget* w) {
        for (const char* name : {"cbDefFilter", "cbDefDisplay"})
            seen << Items(Child<QComboBox>(w, name)).join(",") << Child<QComboBox>(w, name)->currentText();
        TConfigDlgBench::Select(w, "Recorder");
        ClickButton(w, "btnConfigSource");
        ClickButton(w, "btnCancel");
    });
    ShowConfigDialog(&board, &B->Adapters, {"<No Filter>", "Errors"}, {"<Default>", "Compact"});

    QVERIFY(*ran);
    QCOMPARE(seen,
             (QStringList{"<previous filter>,<No Filter>,Errors,<Previous filter>", "Errors",
                          "<previous display>,<Default>,Compact,<Previous display>", "<Previous display>"}));
    // The adapter's own dialog belongs to the console's main window, not to the board.
    QVERIFY(B->RecorderCalls().find("Set_Config " + std::to_string(console.winId()) + " ") !=
            std::string::npos);
    QVERIFY(board.findChildren<TconfigDlg*>().isEmpty()); // freed
}

QTEST_MAIN(ConfigDlgTest)
#include "ConfigDlgTest.moc"
