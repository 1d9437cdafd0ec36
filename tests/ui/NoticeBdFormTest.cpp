// The board window driven the way a host drives it: the package loaded through the platform loader,
// FilterFolder set, DoShowNoticeBoard called over a QMainWindow, controls found by their names. Notices
// come through the recording adapter's stored callback; Timer1 is ticked directly.
#include "core/Znb_const.h"
#include "noticeboard.h"
#include "support/ModalDriver.h"
#include "support/PackageHost.h"
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

namespace {

QTableView* GridOf(QWidget* board) {
    return Child<QTableView>(board, "NoticeBdGrid");
}

// The display row of the notice whose summary names Key; -1 when it is not shown.
int RowOfKey(QTableView* grid, const std::string& Key) {
    const QString summary = QString::fromStdString("Summary of " + Key);
    for (int r = 0; r < grid->model()->rowCount(); ++r)
        if (grid->model()->index(r, nf_note_summary).data().toString() == summary) return r;
    return -1;
}

void ClickRow(QTableView* grid, int Row, Qt::KeyboardModifiers Modifiers = Qt::NoModifier) {
    int column = 0;
    while (column < grid->model()->columnCount() && grid->isColumnHidden(column))
        ++column;
    const QRect cell = grid->visualRect(grid->model()->index(Row, column));
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, Modifiers, cell.center());
}

bool Enabled(QWidget* board, const char* Name) {
    auto* button = Child<QToolButton>(board, Name);
    return button && button->isEnabled();
}

// Window shortcuts need the board to be the active window (a closed dialog hands activation back late).
void PressKeys(QWidget* board, Qt::Key Key, Qt::KeyboardModifiers Modifiers) {
    board->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(board));
    QTest::keyClick(board, Key, Modifiers);
}

int Count(const std::string& Text, const std::string& Needle) {
    int n = 0;
    for (size_t at = Text.find(Needle); at != std::string::npos; at = Text.find(Needle, at + 1))
        ++n;
    return n;
}

} // namespace

class NoticeBdFormTest : public QObject {
    Q_OBJECT
    std::unique_ptr<TPackageHost> host;

    // A shown board with its adapters started and the notices posted, rows refreshed.
    QMainWindow* BoardWith(const std::vector<TBoardNotice>& Notices) {
        QMainWindow* board = host->ShowBoard();
        if (!board) return nullptr;
        host->Tick();
        if (!Notices.empty() && host->Send(BoardMessage(Notices)) != 0) return nullptr;
        const bool shown =
            QTest::qWaitFor([&] { return GridOf(board)->model()->rowCount() == int(Notices.size()); }, 5000);
        return shown ? board : nullptr;
    }

private slots:
    void init() {
        host = std::make_unique<TPackageHost>();
        QVERIFY2(host->Loaded(), qPrintable(host->ErrorText()));
        host->Owner.show();
    }
    void cleanup() {
        QVERIFY(host->CloseBoard());
        host.reset();
    }

    void ShowsTheDesignedWindowOverItsOwner() {
        QMainWindow* board = host->ShowBoard();
        QVERIFY(board);
        QVERIFY(board->isVisible());
        QVERIFY(board->isWindow());
        QCOMPARE(board->parentWidget(), &host->Owner);
        QCOMPARE(Child<QLineEdit>(board, "Edit1")->text(), QStringLiteral("No Adapters Loaded"));
        QVERIFY(Child<QLineEdit>(board, "Edit1")->isReadOnly());
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
        QCOMPARE(Child<QLabel>(board, "Panel0")->width(), 200);
        QVERIFY(Child<QLabel>(board, "Image1")->isVisible());
        QVERIFY(!Child<QLabel>(board, "Image2")->isVisible());
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

    // The quick search narrows the grid and counts its matches after the board's text, messages keep the
    // count current, Esc clears; the badges and the filter list count the board's notices.
    void QuickSearchBadgesAndFilterCounts() {
        host->WriteBoardFile("Critical only.nbf", "0(note_severity=4)\n");
        QMainWindow* board = BoardWith({{"A", 1}, {"B", 4}, {"C", 2}, {"D", 4}, {"E", 3}});
        QVERIFY(board);
        QTableView* grid = GridOf(board);
        auto* search = Child<QLineEdit>(board, "edtQuickSearch");
        QVERIFY(search);
        search->setText("CRITICAL");
        QTRY_COMPARE(grid->model()->rowCount(), 2);
        QCOMPARE(host->PanelText(0), QStringLiteral("Total notices: 5 (2 match)"));
        QCOMPARE(host->Send(BoardMessage({{"F", 4}})), 0);
        QCOMPARE(host->PanelText(0), QStringLiteral("Total notices: 6 (3 match)"));
        QTest::keyClick(search, Qt::Key_Escape);
        QVERIFY(search->text().isEmpty());
        QTRY_COMPARE(grid->model()->rowCount(), 6);
        QCOMPARE(host->PanelText(0), QStringLiteral("Total notices: 6"));

        auto* badges = Child<QWidget>(board, "SeverityBadges");
        QVERIFY(badges && badges->isVisible());
        // The package's classes are its own copies: the counts are read by name, as a script would.
        QObject* counts = board->findChild<QObject*>("FilterComboCounts");
        QVERIFY(counts);
        const auto decorated = [&](int index) {
            QString text;
            QMetaObject::invokeMethod(counts, "DecoratedText", Q_RETURN_ARG(QString, text),
                                      Q_ARG(int, index));
            return text;
        };
        auto* filters = Child<QComboBox>(board, "cmbFilters");
        const int critical = filters->findText("Critical only"); // the texts the board reads stay plain
        QVERIFY(critical > 0);
        QTRY_COMPARE(decorated(critical), QStringLiteral("Critical only (3)"));
    }

    // A display chosen in the list is applied to the grid, and the last filter and display are remembered.
    void DisplayComboAppliesTheDisplayAndIsRemembered() {
        std::ifstream sample(NB_SOURCE_DIR "/examples/displays/Triage.nbd", std::ios::binary);
        std::stringstream triage;
        triage << sample.rdbuf();
        host->WriteBoardFile("Triage.nbd", triage.str());
        QMainWindow* board = BoardWith({{"a", 1}, {"b", 2}});
        QVERIFY(board);
        QTableView* grid = GridOf(board);
        QVERIFY(grid->isColumnHidden(nf_note_pvo_node));
        auto* displays = Child<QComboBox>(board, "cmbDisplays");
        const int triageIndex = displays->findText("Triage");
        QVERIFY(triageIndex > 0);
        displays->setCurrentIndex(triageIndex);
        emit displays->activated(triageIndex);
        QVERIFY(!grid->isColumnHidden(nf_note_pvo_node));
        QVERIFY(host->CloseBoard());
        std::ifstream ini((host->Folder() + "/zpnbd.ini").toStdString());
        std::stringstream text;
        text << ini.rdbuf();
        QVERIFY2(text.str().find("PreviousDisplay=Triage") != std::string::npos, text.str().c_str());
        QVERIFY(text.str().find("PreviousFilter=<No Filter>") != std::string::npos);
    }

    // The acknowledge button reads the current notice only; delete follows the selection.
    void ButtonsFollowTheCurrentNotice() {
        QMainWindow* board = BoardWith({
            {"open", 1},
            {"acked", 1, "R/Vista", "2026-11-21T09:00:00", "2026-11-21T10:00:00", "2026-11-21T10:00:00"},
            {"raised-again", 1, "R/Vista", "2026-11-21T09:00:00", "2026-11-21T10:01:00",
             "2026-11-21T10:00:00"},
            {"other", 1, "DuskMere"},
            {"upper", 1, "  R/VISTA "},
        });
        QVERIFY(board);
        QTableView* grid = GridOf(board);
        QVERIFY(!Enabled(board, "btnDelNote"));
        QVERIFY(!Enabled(board, "btnAckNote"));

        const std::pair<const char*, bool> cases[] = {
            {"open", true}, {"acked", false}, {"raised-again", true}, {"other", false}, {"upper", true}};
        for (const auto& [key, acknowledgeable] : cases) {
            ClickRow(grid, RowOfKey(grid, key));
            QVERIFY2(Enabled(board, "btnDelNote"), key);
            QVERIFY2(Enabled(board, "btnAckNote") == acknowledgeable, key);
        }
        // Two rows selected, the current one acknowledged: the other's state does not count.
        ClickRow(grid, RowOfKey(grid, "open"));
        ClickRow(grid, RowOfKey(grid, "acked"), Qt::ControlModifier);
        QVERIFY(!Enabled(board, "btnAckNote"));
        ClickRow(grid, RowOfKey(grid, "acked"));
        ClickRow(grid, RowOfKey(grid, "open"), Qt::ControlModifier);
        QVERIFY(Enabled(board, "btnAckNote"));
        // Deselecting the last row disables delete and leaves acknowledge as it was.
        ClickRow(grid, RowOfKey(grid, "open"));
        ClickRow(grid, RowOfKey(grid, "open"), Qt::ControlModifier);
        QVERIFY(!Enabled(board, "btnDelNote"));
        QVERIFY(Enabled(board, "btnAckNote"));
    }

    void AcknowledgeAndDeleteGoToTheAdapter() {
        QMainWindow* board = BoardWith({{"one", 1}, {"two", 2}});
        QVERIFY(board);
        QTableView* grid = GridOf(board);
        ClickRow(grid, RowOfKey(grid, "one"));
        ClickRow(grid, RowOfKey(grid, "two"), Qt::ControlModifier);
        host->ResetCalls();
        QVERIFY(ClickButton(board, "btnAckNote"));
        QCOMPARE(host->Calls(),
                 std::string("Acknowledge_Note TEST/5 ACK-one/8\nAcknowledge_Note TEST/5 ACK-two/8\n"));
        host->ResetCalls();
        QVERIFY(ClickButton(board, "btnDelNote"));
        QCOMPARE(host->Calls(), std::string("Delete_Note TEST/5 DEL-one/8\nDelete_Note TEST/5 DEL-two/8\n"));
        // The board changes nothing itself: the rows stay until the adapter answers.
        QCOMPARE(grid->model()->rowCount(), 2);
    }

    void KeysRunTheirActions() {
        QMainWindow* board = BoardWith({{"a", 1}, {"b", 2}, {"c", 3}});
        QVERIFY(board);
        QVERIFY(QTest::qWaitForWindowActive(board));
        auto* panel = Child<QWidget>(board, "DetailPanel");
        QVERIFY(panel->isVisible());
        PressKeys(board, Qt::Key_H, Qt::ControlModifier);
        QVERIFY(!panel->isVisible());
        QVERIFY(Child<QToolButton>(board, "btnDetails")->isChecked());
        PressKeys(board, Qt::Key_H, Qt::ControlModifier);
        QVERIFY(panel->isVisible());
        QVERIFY(!Child<QToolButton>(board, "btnDetails")->isChecked());

        PressKeys(board, Qt::Key_A, Qt::ControlModifier);
        QVERIFY(Enabled(board, "btnDelNote"));

        const std::tuple<Qt::Key, Qt::KeyboardModifiers, const char*> dialogs[] = {
            {Qt::Key_F6, Qt::NoModifier, "frmNoticeBoardFilters"},
            {Qt::Key_C, Qt::ControlModifier | Qt::AltModifier, "configDlg"},
            {Qt::Key_P, Qt::ControlModifier, "frmNBPrint"},
            {Qt::Key_D, Qt::ControlModifier, "frmNoticeBoardViews"},
        };
        for (const auto& [key, modifiers, name] : dialogs) {
            auto seen = WhenModal(QString::fromLatin1(name), [](QWidget* dialog) { dialog->close(); });
            PressKeys(board, key, modifiers);
            QTRY_VERIFY2(*seen, name);
        }
    }

    void SummaryWindowShowsTheNodeCounters() {
        QMainWindow* board = BoardWith({{"a", 1, "R/Vista", "", "", "", "NODE1"},
                                        {"b", 4, "R/Vista", "", "", "", "NODE1"},
                                        {"c", 2, "R/Vista", "", "", "", "node2"}});
        QVERIFY(board);
        QVERIFY(QTest::qWaitForWindowActive(board));
        PressKeys(board, Qt::Key_S, Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier);
        QWidget* summary = nullptr;
        for (QWidget* w : QApplication::topLevelWidgets())
            if (w->objectName() == "FM_Summary" && w->isVisible()) summary = w;
        QVERIFY(summary);
        QVERIFY(!summary->parent());
        auto* cells = Child<QTableView>(summary, "StringGrid1");
        auto cell = [&](int c, int r) { return cells->model()->index(r, c).data().toString(); };
        QCOMPARE(cell(1, 0), QStringLiteral("Normal"));
        QCOMPARE(cell(4, 0), QStringLiteral("Critical"));
        QCOMPARE(cell(0, 1), QStringLiteral("node1"));
        QCOMPARE(cell(1, 1), QStringLiteral("1"));
        QCOMPARE(cell(4, 1), QStringLiteral("1"));
        QCOMPARE(cell(0, 2), QStringLiteral("node2"));
        QCOMPARE(cell(2, 2), QStringLiteral("1"));
        SaveShot(summary, "summary");
        summary->close();
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

    // What `make run` shows a newcomer: the demo adapter playing R/Vista; an acknowledgement comes back as
    // the notice's acknowledgement date.
    void DemoAdapterAnswersAnAcknowledgement() {
        qputenv("ZNBA_DEMO_SOURCE_TYPE", "R/Vista");
        qputenv("ZNBA_DEMO_INTERVAL_MS", "100");
        qputenv("ZNBA_DEMO_SEED", "7");
        host->WriteIni("ZNBA_Demo");
        QMainWindow* board = host->ShowBoard();
        QVERIFY(board);
        board->resize(1040, 560);
        host->Tick();
        QTableView* grid = GridOf(board);
        QTRY_VERIFY_WITH_TIMEOUT(grid->model()->rowCount() >= 6, 10000);
        auto ackDateOf = [&](const QString& key) {
            for (int r = 0; r < grid->model()->rowCount(); ++r)
                if (grid->model()->index(r, nf_nb_internal_key).data().toString() == key)
                    return grid->model()->index(r, nf_ack_date).data().toString();
            return QStringLiteral("(gone)");
        };
        QString key;
        for (int r = 0; r < grid->model()->rowCount() && key.isEmpty(); ++r) {
            if (!grid->model()->index(r, nf_ack_date).data().toString().isEmpty()) continue;
            const QString candidate = grid->model()->index(r, nf_nb_internal_key).data().toString();
            ClickRow(grid, r);
            if (Enabled(board, "btnAckNote") && Child<QLabel>(board, "txtNoteId")->toolTip() == candidate)
                key = candidate;
        }
        QVERIFY(!key.isEmpty());
        QVERIFY(ClickButton(board, "btnAckNote"));
        QTRY_VERIFY_WITH_TIMEOUT(!ackDateOf(key).isEmpty(), 10000);
        QVERIFY(ackDateOf(key) != QStringLiteral("(gone)"));
        SaveShot(board, "board");
        qunsetenv("ZNBA_DEMO_INTERVAL_MS");
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
