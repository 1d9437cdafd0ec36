// The progress bar of a bulk acknowledge or delete: invisible for a quick action, modal to the board, and
// Cancel reaching the action's loop.
#include "core/ui/NoteActionProgress.h"

#include <QMainWindow>
#include <QProgressDialog>
#include <QtTest>

class NoteActionProgressTest : public QObject {
    Q_OBJECT
private slots:
    void QuickActionShowsNothing() {
        QMainWindow board;
        board.show();
        {
            TNoteActionProgress progress(&board, "Acknowledging notices...");
            progress.Start(300);
            QVERIFY(progress.Dialog());
            for (size_t i = 1; i <= 300; ++i)
                QVERIFY(progress.Step(i));
            QVERIFY(!progress.Dialog()->isVisible()); // well under half a second
            progress.Finish();
            QVERIFY(!progress.Dialog());
        }
        // The bar belongs to the board, so it is modal to the board only.
        TNoteActionProgress progress(&board, "Deleting notices...");
        progress.Start(3);
        QCOMPARE(progress.Dialog()->parentWidget(), &board);
        QCOMPARE(progress.Dialog()->windowModality(), Qt::WindowModal);
        QCOMPARE(progress.Dialog()->labelText(), QString("Deleting notices..."));
        QVERIFY(progress.Step(1));
        QCOMPARE(progress.Dialog()->value(), 1);
        progress.Finish();
    }

    void CancelStopsTheLoop() {
        QMainWindow board;
        TNoteActionProgress progress(&board, "Acknowledging notices...");
        progress.Start(1000);
        QVERIFY(progress.Step(1));
        progress.Dialog()->cancel();
        QVERIFY(!progress.Step(2));
        progress.Finish();
    }

    // More notices than an int counts still end at a full bar.
    void HugeSelectionScales() {
        TNoteActionProgress progress(nullptr, "x");
        const size_t total = size_t(3) * INT_MAX;
        progress.Start(total);
        QVERIFY(progress.Step(total / 2));
        QVERIFY(progress.Dialog()->value() > INT_MAX / 2 - 2);
        QVERIFY(progress.Step(total));
        QCOMPARE(progress.Dialog()->value(), progress.Dialog()->maximum());
        progress.Finish();
    }
};

QTEST_MAIN(NoteActionProgressTest)
#include "NoteActionProgressTest.moc"
