// The board window's actions, driven as a user and a host drive them (see NoticeBdFormTest): quick
// search, displays, the buttons that follow the current notice, acknowledge and delete reaching the
// adapter, the keyboard, the summary window and the demo adapter's answer.
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

class NoticeBdActionsTest : public TBoardWindowSuite {
    Q_OBJECT

private slots:

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
};

QTEST_MAIN(NoticeBdActionsTest)
#include "NoticeBdActionsTest.moc"
