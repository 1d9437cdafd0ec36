// The board's finding and seeing aids, driven on a real grid: the quick-search box (narrowing, marks in
// the cells, the status note, Esc, Ctrl+F), severity row colours, the status bar's severity badges, the
// counts beside the filter combo and the summary window's chart. (Grouping from the header menu is in
// NoticeBdGridDisplayTest.)
#include "support/NoticeGridBench.h"
#include "support/WidgetShots.h"

#include "core/Znb_data.h"
#include "core/ui/NbColors.h"
#include "core/ui/QuickSearchBox.h"
#include "core/ui/SeverityBadges.h"
#include "support/ui/NodeSeverityChart.h"
#include "support/ui/Znb_summary.h"
#include "views/FilterApply.h"
#include "views/ui/FilterComboCounts.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <QtTest>

namespace {

std::vector<TTestNotice> Estate() {
    return {Notice("a", 1, "Disk full on /var", "DBPROD01"),
            Notice("b", 4, "Listener down", "DBPROD01"),
            Notice("c", 3, "Tablespace USERS full", "DBPROD02"),
            Notice("d", 2, "Slow disk reads", "DBTEST01"),
            Notice("e", 4, "Archiver stuck: disk FULL", "DBPROD02"),
            Notice("f", 1, "Backup done", "DBTEST01")};
}

// Pixels of a region close to a colour.
int PixelsNear(const QImage& Image, const QRect& Region, const QColor& Colour) {
    int n = 0;
    for (int y = Region.top(); y <= Region.bottom(); ++y)
        for (int x = Region.left(); x <= Region.right(); ++x) {
            const QColor c = Image.pixelColor(x, y);
            n += std::abs(c.red() - Colour.red()) + std::abs(c.green() - Colour.green()) +
                     std::abs(c.blue() - Colour.blue()) <
                 24;
        }
    return n;
}

std::vector<std::string> Summaries(TNoticeGridBench& b) {
    std::vector<std::string> out;
    for (int row = 0; row < int(b.RowKeys().size()); ++row)
        if (b.RowKeys()[size_t(row)]) out.push_back(b.Cell(row, nf_note_summary).toStdString());
    std::sort(out.begin(), out.end());
    return out;
}

} // namespace

class NoticeBoardExtrasTest : public QObject {
    Q_OBJECT
private slots:
    void QuickSearchNarrowsMarksAndClears() {
        TNoticeGridBench b;
        b.Post(Estate());
        TQuickSearchBox box;
        box.Attach(b.Grid.get());
        QSignalSpy status(&box, &TQuickSearchBox::StatusTextChanged);
        const QImage before = b.Grid->viewport()->grab().toImage();

        QTest::keyClicks(&box, "FULL disk");
        QCOMPARE(Summaries(b), (std::vector<std::string>{"Archiver stuck: disk FULL", "Disk full on /var"}));
        QCOMPARE(status.last().at(0).toString(), QStringLiteral("(2 match)"));
        QCOMPARE(b.Grid->QuickSearchStatusText(), QStringLiteral("(2 match)"));

        // The words are marked in the cells, nowhere before the search.
        const QRect cell = b.Grid->visualRect(b.Grid->model()->index(0, nf_note_summary));
        const QColor mark(255, 214, 64);
        QVERIFY(PixelsNear(b.Grid->viewport()->grab().toImage(), cell, mark) > 20);
        QCOMPARE(PixelsNear(before, before.rect(), mark), 0);

        // On top of the chosen filter, and kept as messages arrive.
        ApplyFilterText("note_severity >= 2", b.Board.cdsNoticeBd());
        b.Grid->RefreshNow();
        QCOMPARE(Summaries(b), (std::vector<std::string>{"Archiver stuck: disk FULL"}));
        b.Post({Notice("g", 3, "disk full again", "DBTEST01"), Notice("h", 3, "all quiet", "DBTEST01")});
        QCOMPARE(Summaries(b), (std::vector<std::string>{"Archiver stuck: disk FULL", "disk full again"}));
        QCOMPARE(b.Grid->QuickSearchStatusText(), QStringLiteral("(2 match)"));

        // Esc clears: every row the filter passes is back, and the note is gone.
        QTest::keyClick(&box, Qt::Key_Escape);
        QVERIFY(box.text().isEmpty());
        QCOMPARE(int(Summaries(b).size()), b.Board.cdsNoticeBd().RecordCount());
        QCOMPARE(status.last().at(0).toString(), QString());
        QCOMPARE(b.Grid->QuickSearchMatches(), -1);
    }

    void CtrlFFocusesTheBox() {
        TNoticeGridBench b;
        QWidget window;
        auto* layout = new QVBoxLayout(&window);
        auto* box = new TQuickSearchBox(&window);
        layout->addWidget(box);
        b.Grid->setParent(&window);
        struct TGiveBack { // the bench owns the grid, whatever the outcome
            TNoticeGridBench& B;
            ~TGiveBack() { B.Grid->setParent(nullptr); }
        } giveBack{b};
        layout->addWidget(b.Grid.get());
        box->Attach(b.Grid.get());
        box->setText("kept");
        box->InstallShortcut(&window);
        window.show();
        QApplication::setActiveWindow(&window);
        if (!QTest::qWaitForWindowActive(&window))
            QSKIP("no window can be made active here (no window manager)");
        b.Grid->setFocus();
        QTest::keyClick(b.Grid.get(), Qt::Key_F, Qt::ControlModifier);
        QVERIFY(box->hasFocus());
        QCOMPARE(box->selectedText(), QStringLiteral("kept"));
    }

    void SeverityColoursAreOffUntilTheDisplaySaysSo() {
        TNoticeGridBench b;
        b.Post(Estate());
        const auto severityOf = [&](int row) {
            return b.Board.cdsNoticeBd()
                .RowBySlot(b.Board.cdsNoticeBd().SlotOfKey(b.RowKeys()[size_t(row)]))
                .AsInteger(nf_note_severity);
        };
        QVERIFY(!b.Display.SeverityRowColors);
        QCOMPARE(RowColour(*b.Grid, 1), ToQColor(b.Display.AltColor)); // striping as before
        b.Display.SeverityRowColors = true;
        b.Grid->viewport()->update();
        for (int row = 0; row < 6; ++row)
            QCOMPARE(RowColour(*b.Grid, row),
                     ToQColor(b.Display.SeverityColors[size_t(severityOf(row) - 1)]));
        b.ClickRow(2);
        QCOMPARE(RowColour(*b.Grid, 2), b.Grid->palette().color(QPalette::Active, QPalette::Highlight));
    }

    void BadgesCountEverySeverityWhateverTheFilter() {
        TNoticeGridBench b;
        b.Post(Estate());
        ApplyFilterText("note_severity = 1", b.Board.cdsNoticeBd());
        TSeverityBadges badges(b.Board.cdsNoticeBd());
        QCOMPARE(badges.BadgeTexts(), (QStringList{"Critical 2", "Fatal 1", "Warning 1", "Normal 2"}));
        b.Send({NoticeXml(Notice("z", 4, "More", "N")), DeleteXml("a"),
                NoticeXml(Notice("c", 4, "Now critical", "N"))});
        QCOMPARE(badges.BadgeTexts(), (QStringList{"Critical 4", "Fatal 0", "Warning 1", "Normal 1"}));
        badges.resize(badges.sizeHint());
        const QImage shot = badges.grab().toImage();
        QVERIFY(PixelsNear(shot, shot.rect(), SeverityColor(4)) > 20);
        QVERIFY(SaveShot(&badges, "extras-badges"));
    }

    void FilterComboShowsCountsButKeepsItsTexts() {
        TNoticeGridBench b;
        b.Post(Estate());
        QComboBox combo;
        combo.addItems({QString::fromLatin1(NoFilterName), "severity-range", "no-such-filter"});
        combo.setCurrentIndex(1);
        TFilterComboCounts counts(&combo, b.Board.cdsNoticeBd(), NB_SOURCE_DIR "/examples/filters/");
        QTRY_VERIFY(counts.Counts().Done()); // counted in slices from the event loop
        QCOMPARE(counts.DecoratedText(0), QStringLiteral("<No Filter> (6)"));
        QCOMPARE(counts.DecoratedText(1), QStringLiteral("severity-range (2)"));
        QCOMPARE(counts.DecoratedText(2), QStringLiteral("no-such-filter (6)")); // a missing file passes all
        QCOMPARE(combo.currentText(), QStringLiteral("severity-range"));
        QCOMPARE(combo.itemText(0), QString::fromLatin1(NoFilterName));

        b.Post({Notice("x", 2, "New warning", "N"), Notice("y", 4, "New critical", "N")});
        QCOMPARE(counts.DecoratedText(0), QStringLiteral("<No Filter> (8)"));
        QCOMPARE(counts.DecoratedText(1), QStringLiteral("severity-range (3)"));

        combo.addItem("unacknowledged"); // refilled: counted again
        counts.Reload();
        counts.CountNow();
        QCOMPARE(counts.DecoratedText(3), QStringLiteral("unacknowledged (8)"));
        combo.resize(240, combo.sizeHint().height());
        QVERIFY(SaveShot(&combo, "extras-filtercombo"));
    }

    void SummaryChartOpensHiddenAndFollowsTheTable() {
        TNoticeGridBench b;
        b.Post(Estate());
        TFM_Summary form;
        form.show();
        QVERIFY(QTest::qWaitForWindowExposed(&form));
        QVERIFY(form.Chart()->isHidden());
        QPushButton* chart = form.findChild<QPushButton*>("BB_Chart");
        QVERIFY(chart && chart->isCheckable());
        chart->click();
        QVERIFY(form.Chart()->isVisible());
        QVERIFY(form.width() > 460);
        QCOMPARE(form.Chart()->Nodes(), (QStringList{"dbprod01", "dbprod02", "dbtest01"}));
        QCOMPARE(form.Chart()->Total(1), 2);
        b.Post({Notice("n", 4, "More on 2", "DBPROD02")});
        form.findChild<QPushButton*>("BB_Update")->click();
        QCOMPARE(form.Chart()->Total(1), 3);
        QVERIFY(SaveShot(&form, "extras-summary-chart"));
        chart->click();
        QCOMPARE(form.size(), QSize(460, 406)); // as it always opened
    }
};

QTEST_MAIN(NoticeBoardExtrasTest)
#include "NoticeBoardExtrasTest.moc"
