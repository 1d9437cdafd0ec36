// The per-node summary window over the board's counters: its captions, what show and "&Update" copy
// into the table (rows past the visible four included), an absent counter object, and that closing it
// frees it.
#include "core/Znb_const.h"
#include "core/Znb_data.h"
#include "support/WidgetShots.h"
#include "support/ui/StringGrid.h"
#include "support/ui/Znb_summary.h"

#include <QPointer>
#include <QPushButton>
#include <QtTest>

namespace {

void NewCounters() {
    const std::vector<std::string> severities(SeverityStrings.begin(), SeverityStrings.end());
    PVO_Node_Stats = std::make_unique<TStats_Obj>(nullptr, &severities);
}

// Row r of the table as "cell|cell|...", over the grid's current columns.
QString RowText(const TStringGrid* grid, int row) {
    QStringList cells;
    for (int c = 0; c < grid->ColCount(); ++c)
        cells << grid->Cell(c, row);
    return cells.join('|');
}

} // namespace

class SummaryWindowTest : public QObject {
    Q_OBJECT
    QPointer<TFM_Summary> form;

private slots:
    void init() {
        NewCounters();
        form = new TFM_Summary();
    }
    void cleanup() {
        delete form.data();
        PVO_Node_Stats.reset();
    }

    void FormShowsItsTitleAndButtons() {
        form->show();
        QVERIFY(QTest::qWaitForWindowExposed(form));
        QCOMPARE(form->windowTitle(), QStringLiteral("PVO Node Summary"));
        const std::pair<const char*, const char*> buttons[] = {{"BB_Update", "&Update"},
                                                               {"BB_Close", "&Close"}};
        for (const auto& [name, text] : buttons) {
            QPushButton* button = form->findChild<QPushButton*>(name);
            QVERIFY2(button, name);
            QCOMPARE(button->text(), QString::fromLatin1(text));
            QVERIFY(button->width() >= button->sizeHint().width());
        }
    }

    void ShowAndUpdateCopyTheCounters() {
        PVO_Node_Stats->Inc("Alpha", "Normal");
        PVO_Node_Stats->Inc(" alpha ", "normal");
        PVO_Node_Stats->Inc("beta", "Warning");
        PVO_Node_Stats->Dec("gamma", "Critical");
        PVO_Node_Stats->Inc("", "Fatal");
        form->show();
        TStringGrid* grid = form->Grid();
        QCOMPARE(grid->ColCount(), 5);
        QCOMPARE(RowText(grid, 0), QStringLiteral("|Normal|Warning|Fatal|Critical"));
        QCOMPARE(RowText(grid, 1), QStringLiteral("alpha|2|0|0|0"));
        QCOMPARE(RowText(grid, 2), QStringLiteral("beta|0|1|0|0"));
        QCOMPARE(RowText(grid, 3), QStringLiteral("gamma|0|0|0|-1"));
        QCOMPARE(RowText(grid, 4), QStringLiteral("not set|0|0|1|0"));

        // Counters move on; the table follows only when asked.
        PVO_Node_Stats->Inc("alpha", "Normal");
        QCOMPARE(grid->Cell(1, 1), QStringLiteral("2"));
        QTest::mouseClick(form->findChild<QPushButton*>("BB_Update"), Qt::LeftButton);
        QCOMPARE(grid->Cell(1, 1), QStringLiteral("3"));

        // A look-up of an unknown node creates its row: the fifth node row is filled, but the table keeps
        // its five rows, so it is not on screen.
        QCOMPARE(PVO_Node_Stats->Get_Count("delta", "Normal"), 0);
        // A blank severity makes a column of its own, which gets the default width.
        PVO_Node_Stats->Inc("beta", " ");
        QTest::mouseClick(form->findChild<QPushButton*>("BB_Update"), Qt::LeftButton);
        QCOMPARE(grid->ColCount(), 6);
        QCOMPARE(grid->ColWidth(5), 100);
        QCOMPARE(grid->Cell(5, 0), QString());
        QCOMPARE(grid->Cell(5, 2), QStringLiteral("1"));
        QCOMPARE(RowText(grid, 5), QStringLiteral("delta|0|0|0|0|0"));
        QCOMPARE(grid->RowCount(), 5);
        QCOMPARE(grid->model()->rowCount(), 5);
    }

    void WithoutCountersTheTableIsEmpty() {
        PVO_Node_Stats->Inc("alpha", "Normal");
        form->show();
        QCOMPARE(form->Grid()->Cell(0, 1), QStringLiteral("alpha"));
        PVO_Node_Stats.reset(); // the board has gone; the window is still open
        QTest::mouseClick(form->findChild<QPushButton*>("BB_Update"), Qt::LeftButton);
        for (int r = 0; r < 5; ++r)
            QCOMPARE(RowText(form->Grid(), r), QStringLiteral("||||"));
        QCOMPARE(form->Grid()->ColWidthsText(), QStringLiteral("100,57,55,52,52")); // emptied, not reset
    }

    void ClosingFreesTheWindow() {
        const struct {
            const char* how;
            std::function<void(TFM_Summary*)> close;
        } cases[] = {
            {"Close button",
             [](TFM_Summary* f) {
                 QTest::mouseClick(f->findChild<QPushButton*>("BB_Close"), Qt::LeftButton);
             }},
            {"Escape", [](TFM_Summary* f) { QTest::keyClick(f, Qt::Key_Escape); }},
            {"title bar", [](TFM_Summary* f) { f->close(); }},
        };
        for (const auto& c : cases) {
            if (!form) form = new TFM_Summary();
            form->show();
            QVERIFY(QTest::qWaitForWindowExposed(form));
            c.close(form);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QVERIFY2(form.isNull(), c.how);
        }
    }
};

QTEST_MAIN(SummaryWindowTest)
#include "SummaryWindowTest.moc"
