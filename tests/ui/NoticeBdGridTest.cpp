// The notice grid on screen (offscreen platform), fed by real notice messages: its rows and their order,
// header clicks, selection and the current row under incoming messages, and the coalesced refresh.
#include "support/NoticeGridBench.h"

#include <QAbstractItemModelTester>
#include <QScrollBar>
#include <QSignalSpy>
#include <QtTest>

namespace {

std::vector<TTestNotice> Numbered(int count, int firstSeverity = 1) {
    std::vector<TTestNotice> notices;
    for (int i = 0; i < count; ++i)
        notices.push_back(
            Notice("K" + std::to_string(i), (firstSeverity - 1 + i) % 4 + 1, "S" + std::to_string(1000 + i)));
    return notices;
}

} // namespace

class NoticeBdGridTest : public QObject {
    Q_OBJECT
private slots:
    void CellsReadAsTheBoardShowsThem() {
        TNoticeGridBench b;
        TTestNotice memo = Notice("M1", 4, "Disk full");
        memo.Text = "line one\nline two\tend";
        memo.SourceId.clear();
        b.Post({memo});
        QCOMPARE(b.Grid->model()->headerData(nf_note_pvo_node, Qt::Horizontal).toString(),
                 QString("PVO Node"));
        QCOMPARE(b.Cell(0, nf_note_severity), QString("Critical"));
        QCOMPARE(b.Cell(0, nf_adpt_source_id), QString()); // null
        QCOMPARE(b.Cell(0, nf_note_text), QString("line one line two end"));
        QCOMPARE(b.Grid->model()->index(0, nf_note_text).data(Qt::ToolTipRole).toString(),
                 QString("line one\nline two\tend"));
        QVERIFY(b.Cell(0, nf_note_raised_date).contains("08:15:00"));
    }

    void RowsAppearSortedAndHeaderClicksSort() {
        TNoticeGridBench b;
        b.Post({Notice("a", 3, "beta"), Notice("b", 1, "delta"), Notice("c", 4, "alpha"),
                Notice("d", 1, "gamma"), Notice("e", 2, "Alpha")});
        const auto keys = [&](std::initializer_list<const char*> ks) {
            std::vector<int32_t> out;
            for (const char* k : ks)
                out.push_back(b.KeyOf(k));
            return out;
        };
        // Severity ascending by number (Normal, Warning, Fatal, Critical), ties by arrival.
        QCOMPARE(b.RowKeys(), keys({"b", "d", "e", "a", "c"}));
        QSignalSpy user(b.Grid.get(), &TNoticeBdGrid::LayoutChangedByUser);
        b.ClickHeader(nf_note_summary);
        QCOMPARE(b.RowKeys(), keys({"e", "c", "a", "b", "d"})); // case-insensitive, then by case
        b.ClickHeader(nf_note_summary);
        QCOMPARE(b.RowKeys(), keys({"d", "b", "a", "c", "e"}));
        QCOMPARE(user.count(), 2);
        // Shift+click adds a second sort column; a plain click replaces the sort again.
        b.ClickHeader(nf_note_severity);
        b.ClickHeader(nf_note_summary, Qt::ShiftModifier);
        QCOMPARE(b.RowKeys(), keys({"b", "d", "e", "a", "c"}));
        b.ClickHeader(nf_note_summary, Qt::ShiftModifier); // toggles the added column
        QCOMPARE(b.RowKeys(), keys({"d", "b", "e", "a", "c"}));
        const TGridLayout layout = b.Grid->Layout();
        QCOMPARE(layout.Column(nf_note_severity).SortIndex, 0);
        QCOMPARE(layout.Column(nf_note_summary).SortIndex, 1);
        QCOMPARE(layout.Column(nf_note_summary).Sort, TSortDirection::sdDescending);
        QCOMPARE(b.Grid->View().SortColumns().size(), size_t(2));
        b.ClickHeader(nf_note_summary, Qt::ControlModifier); // out of the sort
        QCOMPARE(b.Grid->View().SortColumns(), (std::vector<TSortColumn>{{nf_note_severity, false}}));
    }

    void SelectionFollowsExtendedRulesInTheOrderMade() {
        TNoticeGridBench b;
        b.Post(Numbered(20, 1)); // severities 1,2,3,4,1,...: rows sort by severity, then key
        b.Grid->setFocus();
        const std::vector<int32_t> rows = b.RowKeys();
        b.ClickRow(3);
        QCOMPARE(b.Grid->SelectedKeys(), std::vector<int32_t>{rows[3]});
        QCOMPARE(b.Grid->CurrentKey(), rows[3]);
        b.ClickRow(7, Qt::ControlModifier);
        b.ClickRow(1, Qt::ControlModifier);
        QCOMPARE(b.Grid->SelectedKeys(), (std::vector<int32_t>{rows[3], rows[7], rows[1]}));
        b.ClickRow(7, Qt::ControlModifier); // toggles off
        QCOMPARE(b.Grid->SelectedKeys(), (std::vector<int32_t>{rows[3], rows[1]}));
        // Shift extends from the anchor (the last plain or Ctrl click), upwards in sweep order.
        b.ClickRow(5);
        b.ClickRow(2, Qt::ShiftModifier);
        QCOMPARE(b.Grid->SelectedKeys(), (std::vector<int32_t>{rows[5], rows[4], rows[3], rows[2]}));
        b.ClickRow(6, Qt::ShiftModifier); // the sweep is redone from the same anchor
        QCOMPARE(b.Grid->SelectedKeys(), (std::vector<int32_t>{rows[5], rows[6]}));
        QTest::keyClick(b.Grid.get(), Qt::Key_Down, Qt::ShiftModifier);
        QCOMPARE(b.Grid->SelectedKeys(), (std::vector<int32_t>{rows[5], rows[6], rows[7]}));
        QTest::keyClick(b.Grid.get(), Qt::Key_Down);
        QCOMPARE(b.Grid->SelectedKeys(), std::vector<int32_t>{rows[8]});
        QTest::keyClick(b.Grid.get(), Qt::Key_Down, Qt::ControlModifier); // moves the current row only
        QTest::keyClick(b.Grid.get(), Qt::Key_Space, Qt::ControlModifier);
        QCOMPARE(b.Grid->SelectedKeys(), (std::vector<int32_t>{rows[8], rows[9]}));
        QCOMPARE(b.Grid->CurrentKey(), rows[9]);
        QTest::keyClick(b.Grid.get(), Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(b.Grid->SelectedKeys(), rows); // display order
        QCOMPARE(b.Grid->SelectedCount(), 20);
        QCOMPARE(b.Grid->SelectedBookmark(2), rows[2]);
        // Qt's own selection model is never used.
        QVERIFY(!b.Grid->selectionModel()->hasSelection());
    }

    void CurrentRowIsTheStoresBothWays() {
        TNoticeGridBench b;
        b.Post(Numbered(10));
        TNoticeStore& store = b.Board.cdsNoticeBd();
        const std::vector<int32_t> rows = b.RowKeys();
        b.ClickRow(6);
        QCOMPARE(store.GetBookmark(), rows[6]);
        QSignalSpy current(b.Grid.get(), &TNoticeBdGrid::CurrentKeyChanged);
        store.GotoBookmark(rows[2]); // the store moves: the grid follows, the selection stays
        QCOMPARE(b.Grid->CurrentKey(), rows[2]);
        QCOMPARE(current.count(), 1);
        QCOMPARE(current.at(0).at(0).toInt(), rows[2]);
        QCOMPARE(b.Grid->SelectedKeys(), std::vector<int32_t>{rows[6]});
        b.Grid->SetCurrentKey(rows[9]);
        QCOMPARE(store.GetBookmark(), rows[9]);
        QCOMPARE(b.Grid->SelectedKeys(), std::vector<int32_t>{rows[6]});
    }

    void SelectionCurrentRowAndTopRowSurviveMessages() {
        TNoticeGridBench b(700, 300);
        std::vector<TTestNotice> notices = Numbered(200, 2); // no severity 1 yet
        for (TTestNotice& n : notices)
            n.Severity = n.Severity == 1 ? 2 : n.Severity;
        b.Post(notices);
        b.Grid->verticalScrollBar()->setValue(60);
        b.Grid->viewport()->repaint(); // what the user sees
        const int top = b.Grid->rowAt(0);
        QCOMPARE(top, 60);
        const int32_t topKey = b.RowKeys()[size_t(top)];
        const std::vector<int32_t> rows = b.RowKeys();
        b.ClickRow(65);
        b.ClickRow(63, Qt::ControlModifier);
        b.ClickRow(64, Qt::ControlModifier);
        const int32_t current = b.Grid->CurrentKey();
        QCOMPARE(current, rows[64]);

        // New notices that sort above everything, an update that moves a row, and the deletion of one
        // selected row, in two messages, applied in one refresh.
        const auto origKey = [&](int32_t key) {
            for (const TTestNotice& n : notices)
                if (b.KeyOf(n.Key) == key) return n.Key;
            return std::string();
        };
        std::vector<std::string> first;
        for (int i = 0; i < 5; ++i)
            first.push_back(NoticeXml(Notice("new" + std::to_string(i), 1)));
        TTestNotice moved = notices[10];
        moved.Severity = 4;
        first.push_back(NoticeXml(moved));
        b.Send(first);
        b.Send({DeleteXml(origKey(rows[63]))});
        QVERIFY(b.Grid->RefreshPending());
        b.Grid->RefreshNow();

        QCOMPARE(b.Grid->SelectedKeys(), (std::vector<int32_t>{rows[65], rows[64]}));
        QCOMPARE(b.Grid->CurrentKey(), current);
        QCOMPARE(b.Board.cdsNoticeBd().GetBookmark(), current);
        QCOMPARE(b.RowKeys()[size_t(b.Grid->rowAt(0))], topKey);
        QCOMPARE(b.Grid->model()->rowCount(), 204);

        // The current row deleted: the grid follows the store to the row it settled on.
        b.Send({DeleteXml(origKey(current))});
        b.Grid->RefreshNow();
        QVERIFY(b.Grid->CurrentKey() != current);
        QCOMPARE(b.Grid->CurrentKey(), b.Board.cdsNoticeBd().GetBookmark());
        QCOMPARE(b.Grid->SelectedKeys(), std::vector<int32_t>{rows[65]});

        // A filter that hides the selected row takes it out of the selection at the next refresh.
        QSignalSpy changed(b.Grid.get(), &TNoticeBdGrid::SelectionChanged);
        TNoticeStore& store = b.Board.cdsNoticeBd();
        const auto severity = [&](int32_t key) {
            return store.RowBySlot(store.SlotOfKey(key)).AsInteger(nf_note_severity);
        };
        const int hidden = severity(rows[65]);
        const int32_t other = *std::find_if(rows.begin(), rows.end(), [&](int32_t k) {
            return store.SlotOfKey(k) >= 0 && severity(k) != hidden;
        });
        b.ClickRow(b.RowOf(other), Qt::ControlModifier);
        store.SetFilterText("note_severity <> " + std::to_string(hidden));
        store.SetFiltered(true);
        b.Grid->RefreshNow();
        QCOMPARE(b.Grid->SelectedKeys(), std::vector<int32_t>{other});
        QCOMPARE(changed.count(), 2);
    }

    void ModelStaysConsistentThroughMessages() {
        TNoticeGridBench b;
        QAbstractItemModelTester tester(b.Grid->model(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        std::vector<TTestNotice> notices = Numbered(60);
        for (size_t i = 0; i < notices.size(); ++i)
            notices[i].Node = "NODE" + std::to_string(i % 3);
        b.Post(notices);
        b.ClickRow(10);
        TGridLayout grouped = b.Grid->Layout();
        grouped.Column(nf_note_pvo_node).GroupIndex = 0;
        for (int round = 0; round < 6; ++round) {
            if (round == 2) b.Grid->SetLayout(grouped);
            if (round == 4) b.Grid->SetAllGroupsExpanded(false);
            std::vector<std::string> message;
            for (int i = 0; i < 5; ++i) {
                TTestNotice n = notices[size_t((round * 7 + i * 11) % 60)];
                n.Severity = (n.Severity + round) % 4 + 1;
                n.Node = "NODE" + std::to_string((round + i) % 4);
                message.push_back(NoticeXml(n, "update"));
            }
            message.push_back(DeleteXml(notices[size_t(round * 3)].Key));
            message.push_back(NoticeXml(Notice("r" + std::to_string(round), round % 4 + 1)));
            b.Send(message);
            b.Grid->RefreshNow();
            if (QTest::currentTestFailed()) return;
        }
        b.Grid->SetAllGroupsExpanded(true);
        QCOMPARE(b.Grid->model()->rowCount(), 60 - 6 + 6 + 4); // four node headings
    }

    void ScrollingAndPagingStopAtTheLastRow() {
        TNoticeGridBench b(700, 300);
        b.Post(Numbered(100));
        b.Grid->setFocus();
        const int perPage = b.Grid->viewport()->height() / b.Grid->rowHeight(0);
        QCOMPARE(b.Grid->verticalScrollBar()->maximum(), 100 - perPage);
        QTest::keyClick(b.Grid.get(), Qt::Key_End);
        QCOMPARE(b.Grid->CurrentKey(), b.RowKeys().back());
        QTest::keyClick(b.Grid.get(), Qt::Key_Home);
        for (int i = 0; i < 30; ++i)
            QTest::keyClick(b.Grid.get(), Qt::Key_PageDown);
        QCOMPARE(b.Grid->CurrentKey(), b.RowKeys().back());
        QCOMPARE(b.Grid->SelectedKeys(), std::vector<int32_t>{b.RowKeys().back()});
        // Below the last row there is nothing to click.
        TNoticeGridBench few(700, 300);
        few.Post(Numbered(3));
        few.ClickRow(1);
        QTest::mouseClick(few.Grid->viewport(), Qt::LeftButton, {},
                          QPoint(50, few.Grid->viewport()->height() - 5));
        QCOMPARE(few.Grid->SelectedCount(), 1);
        QCOMPARE(few.Grid->verticalScrollBar()->maximum(), 0);
    }

    void RefreshStormIsCoalesced() {
        TNoticeGridBench b;
        int64_t now = 1000;
        b.Grid->SetRefreshClock([&] { return now; });
        b.Post(Numbered(10));
        const uint64_t start = b.Grid->RefreshCount();
        auto* timer = b.Grid->findChild<QTimer*>("RefreshTimer");
        QVERIFY(timer);
        // A quiet grid shows the first change at the next turn of the event loop.
        now += 500;
        b.Send({NoticeXml(Notice("x0", 1))});
        QVERIFY(b.Grid->RefreshPending());
        QTRY_COMPARE(b.Grid->RefreshCount(), start + 1);
        // Fifty messages within the next 100 ms make one more refresh, not fifty: a timer that fires
        // early (here forced) waits for the rest of the 100 ms.
        for (int i = 1; i <= 50; ++i) {
            now += 1;
            b.Send({NoticeXml(Notice("x" + std::to_string(i), 2))});
            QCoreApplication::processEvents();
        }
        QVERIFY(b.Grid->RefreshPending() && timer->isActive());
        timer->start(0);
        QCoreApplication::processEvents();
        QCOMPARE(b.Grid->RefreshCount(), start + 1);
        QCOMPARE(b.Grid->model()->rowCount(), 11);
        now += 100;
        timer->start(0);
        QTRY_COMPARE(b.Grid->RefreshCount(), start + 2);
        QVERIFY(!b.Grid->RefreshPending());
        QCOMPARE(b.Grid->model()->rowCount(), 61);
    }
};

QTEST_MAIN(NoticeBdGridTest)
#include "NoticeBdGridTest.moc"
