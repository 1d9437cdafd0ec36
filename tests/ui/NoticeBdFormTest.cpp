// The board window driven the way a host drives it: the package loaded through the platform loader,
// FilterFolder set, DoShowNoticeBoard called over a QMainWindow, controls found by their names. Notices
// come through the recording adapter's stored callback; Timer1 is ticked directly. This suite: the window,
// the package's interface, start-up, placement and closing; the actions are in NoticeBdActionsTest.
#include "core/Znb_const.h"
#include "noticeboard.h"
#include "support/BoardWindowSuite.h"
#include "support/WidgetShots.h"

#include <QAction>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QSettings>
#include <QStatusBar>
#include <QTableView>
#include <QTimer>
#include <QToolButton>

#include <QtTest>

#include <fstream>
#include <sstream>

class NoticeBdFormTest : public TBoardWindowSuite {
    Q_OBJECT

private slots:

    void ShowsTheDesignedWindowOverItsOwner() {
        QMainWindow* board = host->ShowBoard();
        QVERIFY(board);
        QCOMPARE(board->parentWidget(), &host->Owner);
        QCOMPARE(Child<QLineEdit>(board, "Edit1")->text(), QStringLiteral("No Adapters Loaded"));
        const std::pair<const char*, const char*> hints[] = {
            {"cmbFilters", "Select and maintain filters"},
            {"cmbDisplays", "Select and maintain displays"},
            {"Img_Adapter_Status", "Adapter Status Indicator"},
            {"btnPrint", "Print or Export Notice"},
            {"btnConfig", "Configure Adapter"},
            {"btnDetails", "Hide or Show Notice Detail"},
            {"btnAckNote", "Stops any R/Vista notifications for this event"},
            {"btnDelNote", "Permanently delete this noticeboard entry"}};
        for (const auto& [name, hint] : hints) {
            auto* w = Child<QWidget>(board, name);
            QVERIFY2(w, name);
            QCOMPARE(w->toolTip(), QString::fromLatin1(hint));
        }
        QCOMPARE(Child<QToolButton>(board, "btnAckNote")->text(), QStringLiteral("Ac&knowledge"));
        QCOMPARE(Child<QToolButton>(board, "btnDelNote")->text(), QStringLiteral("&Delete"));
        QCOMPARE(Child<QComboBox>(board, "cmbFilters")->currentText(), QStringLiteral("<No Filter>"));
        QCOMPARE(Child<QComboBox>(board, "cmbDisplays")->currentText(), QStringLiteral("<Default>"));
        // No placement saved: centred on the host's main window.
        QVERIFY((board->frameGeometry().center() - host->Owner.frameGeometry().center()).manhattanLength() <
                40);
        // A second call raises the open board instead of making another.
        host->ShowBoard();
        QCOMPARE(host->Owner.findChildren<QMainWindow*>("NoticeBdForm").size(), 1);
        SaveShot(board, "board-empty");
    }

    // Every name of the binary interface leaves the package under its plain name, and nothing of the
    // engine does (a host may carry an engine of its own).
    void ExportsOnlyTheBinaryInterface() {
        for (const char* name :
             {"DoShowNoticeBoard", "Initialize", "Finalize", "GetPackageInfoTable", "FilterFolder",
              "FindDuskmere", "LaunchDuskmere", "Get_ZNB_Error_Message", "ISO8601ToDate", "DateToISO8601",
              "DateToISO8601Time", "DateTimeToUnix", "UnixStrToDateTime", "DecodeMonth", "ConvertDate",
              "rvStrToDateTime", "rvTimeUnitToSeconds", "rvSecondsToTimeUnit", "Get_Time_Zone_Bias"})
            QVERIFY2(host->Symbol(name), name);
        QVERIFY(!host->Symbol("NoticeCallback"));
        QVERIFY(!host->Symbol("_Z6ZS_LogRKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEES6_"));

        const auto table =
            reinterpret_cast<noticeboard::GetPackageInfoTable_Fn>(host->Symbol("GetPackageInfoTable"))();
        QVERIFY(table && table->UnitCount > 0);
        QCOMPARE(QString(table->Units[table->UnitCount - 1].Name), QStringLiteral("Znb_main"));

        using IsoFn = double (*)(const std::string&);
        const auto iso = reinterpret_cast<IsoFn>(host->Symbol("ISO8601ToDate"));
        QCOMPARE(iso("2004-02-29"), 38046.0);
        bool raised = false;
        try {
            iso("2004-13-01");
        } catch (const std::exception& e) {
            raised = QString(e.what()).startsWith("Error converting Date. Invalid DateTime string : ");
        }
        QVERIFY(raised);
        using MessageFn = std::string (*)(int32_t);
        QCOMPARE(reinterpret_cast<MessageFn>(host->Symbol("Get_ZNB_Error_Message"))(0),
                 std::string("Operation OK"));
    }

    void FirstTickStartsTheAdaptersAndLaterTicksOnlyPoll() {
        QMainWindow* board = host->ShowBoard();
        QVERIFY(board);
        auto* timer = Child<QTimer>(board, "Timer1");
        QVERIFY(timer);
        QVERIFY(timer->isActive());
        QCOMPARE(timer->interval(), 2000);
        QCOMPARE(timer->property("tag").toInt(), 0);
        QCOMPARE(Count(host->Calls(), "Connect "), 0);
        host->Tick();
        QCOMPARE(Count(host->Calls(), "Connect "), 1);
        QCOMPARE(timer->property("tag").toInt(), 1);
        QCOMPARE(timer->interval(), 30000);
        QVERIFY(timer->isActive());
        QCOMPARE(Child<QLineEdit>(board, "Edit1")->text(), QStringLiteral("All Adapters OK"));
        QCOMPARE(Child<QLabel>(board, "Img_Adapter_Status")->property("imageIndex").toInt(), 2);
        const int polls = Count(host->Calls(), "Status");
        host->Tick();
        host->Tick();
        QCOMPARE(Count(host->Calls(), "Connect "), 1);
        QCOMPARE(Count(host->Calls(), "Status"), polls + 2);
    }

    void NoticesThroughTheCallbackFillGridAndStatusBar() {
        host->WriteBoardFile("Critical only.nbf", "0(note_severity=4)\n");
        QMainWindow* board = BoardWith({{"A", 1}, {"B", 4}, {"C", 2}, {"D", 4}, {"E", 3}});
        QVERIFY(board);
        QCOMPARE(host->PanelText(0), QStringLiteral("Total notices: 5"));
        QTableView* grid = GridOf(board);
        QVERIFY(RowOfKey(grid, "E") >= 0);

        auto* filters = Child<QComboBox>(board, "cmbFilters");
        const int critical = filters->findText("Critical only");
        QVERIFY(critical > 0);
        filters->setCurrentIndex(critical);
        emit filters->activated(critical);
        QCOMPARE(host->PanelText(0), QStringLiteral("Total notices: 5 (2 in this filter)"));
        QTRY_COMPARE(grid->model()->rowCount(), 2);
        // Counting goes on under the filter; a deletion through the protocol lowers the total.
        QCOMPARE(host->Send(BoardMessage({{"F", 1}})), 0);
        QCOMPARE(host->PanelText(0), QStringLiteral("Total notices: 6 (2 in this filter)"));
        filters->setCurrentIndex(0);
        emit filters->activated(0);
        QCOMPARE(host->PanelText(0), QStringLiteral("Total notices: 6"));
        QCOMPARE(host->Send(BoardMessage({{"A"}}, "delete")), 0);
        QCOMPARE(host->PanelText(0), QStringLiteral("Total notices: 5"));
        QTRY_COMPARE(grid->model()->rowCount(), 5);
    }

    void PlacementIsSavedAndRestored() {
        QMainWindow* board = host->ShowBoard();
        QVERIFY(board);
        board->resize(1000, 520);
        board->move(120, 90);
        QVERIFY(host->CloseBoard());
        QSettings settings(QSettings::NativeFormat, QSettings::UserScope, "Zarvo Software", "Palvane");
        settings.beginGroup("NoticeBoard/Settings");
        QCOMPARE(settings.value("WindowState").toString(), QStringLiteral("Normal"));
        QCOMPARE(settings.value("Width").toInt(), 1000);
        QCOMPARE(settings.value("Height").toInt(), 520);
        QCOMPARE(settings.value("Left").toInt(), 120);
        QCOMPARE(settings.value("Top").toInt(), 90);

        board = host->ShowBoard();
        QVERIFY(board);
        QCOMPARE(board->size(), QSize(1000, 520));
        QCOMPARE(board->pos(), QPoint(120, 90));
        QVERIFY(host->CloseBoard());

        settings.setValue("WindowState", "Maximized");
        settings.sync();
        board = host->ShowBoard();
        QVERIFY(board);
        QVERIFY(board->isMaximized());
    }

    void ClosingDisconnectsAndUnloadsTheAdapters() {
        QMainWindow* board = BoardWith({{"a", 1}});
        QVERIFY(board);
        QVERIFY(host->CloseBoard());
        const std::string calls = host->Calls();
        // Disconnected, then unloaded (which disconnects once more), while the start-up mutex was still open.
        QVERIFY2(calls.find("Disconnect mutex 1\nDisconnect\n") != std::string::npos, calls.c_str());
        QVERIFY(host->LogText().find("Error : ") == std::string::npos);
    }

    // The start-up question about an installed but unconfigured product; No leaves it unconfigured.
    void AsksAboutAnUnconfiguredProduct() {
        host->WriteRawIni("[AdapterConfig]\nAlwaysPrompt=1\n[Adapters]\nCount=2\nAdapter_0=DuskMere\n"
                          "Adapter_1=R/Vista\n[Adapter_DuskMere]\nLoadable=0\n[Adapter_R/Vista]\n"
                          "DLL_Name=ZNBA_TestRecorder\nConfigured=0\nLoadable=1\nEnabled=1\n");
        QString question;
        auto seen = WhenModal("DisplayDialog", [&](QWidget* form) {
            for (QLabel* label : form->findChildren<QLabel*>())
                if (label->text().contains("installed")) question = label->text();
            SaveShot(form, "confirmation");
            form->close();
        });
        QVERIFY(host->ShowBoard());
        QVERIFY(*seen);
        QCOMPARE(question,
                 QStringLiteral("R/Vista is installed but not configured - Do you wish to configure it?"));
    }

    // Bad input: the board opens and stays usable, and the log says what went wrong.
    void OpensWithoutUsableConfigurationOrAdapters() {
        host->WriteIni("ZNBA_NoSuchAdapter");
        QMainWindow* board = host->ShowBoard();
        QVERIFY(board);
        host->Tick();
        QCOMPARE(Child<QLineEdit>(board, "Edit1")->text(), QStringLiteral("All Adapters disabled"));
        QVERIFY(host->LogText().find("Adapter : R/Vista failed to load") != std::string::npos);
        QVERIFY(host->CloseBoard());

        host->WriteRawIni("\x01\x02 this is [not an ini file\n===\n");
        board = host->ShowBoard("");
        QVERIFY(board);
        host->Tick();
        QVERIFY(Child<QComboBox>(board, "cmbFilters")->count() >= 1);
        PressKeys(board, Qt::Key_H, Qt::ControlModifier);
        QVERIFY(host->CloseBoard());

        host->WriteIni("ZNBA_TestRecorder");
        host->WriteBoardFile("Broken.nbf", "0(note_severity = = )\n");
        board = host->ShowBoard();
        QVERIFY(board);
        auto* filters = Child<QComboBox>(board, "cmbFilters");
        filters->setCurrentIndex(filters->findText("Broken"));
        emit filters->activated(filters->currentIndex());
        QVERIFY(host->LogText().find("cmbFiltersClick : Exception occurred : ") != std::string::npos);
    }
};

QTEST_MAIN(NoticeBdFormTest)
#include "NoticeBdFormTest.moc"
