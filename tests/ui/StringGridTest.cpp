// The string grid under the summary window: cells kept outside the counts, and ordinary cells still
// painted after the header-like fixed ones.
#include "support/ui/StringGrid.h"

#include <QtTest>

class StringGridTest : public QObject {
    Q_OBJECT
private slots:
    void CellsOutsideTheCountsAreKeptUntilShown() {
        TStringGrid grid;
        grid.SetColCount(2);
        grid.SetRowCount(2);
        grid.SetCell(1, 1, "shown");
        grid.SetCell(3, 4, "kept");
        QCOMPARE(grid.model()->data(grid.model()->index(1, 1)).toString(), QStringLiteral("shown"));
        QCOMPARE(grid.Cell(3, 4), QStringLiteral("kept"));
        QCOMPARE(grid.model()->rowCount(), 2);
        grid.SetColCount(4);
        grid.SetRowCount(5);
        QCOMPARE(grid.model()->data(grid.model()->index(4, 3)).toString(), QStringLiteral("kept"));
        grid.SetRowCount(1); // shrinking hides, it does not forget
        grid.SetRowCount(5);
        QCOMPARE(grid.Cell(3, 4), QStringLiteral("kept"));
        QCOMPARE(grid.Cell(0, 0), QString());
    }

    // Regression: the header drawing of a fixed cell once left a clip behind that blanked every cell
    // painted after it.
    void OrdinaryCellsArePaintedAfterFixedOnes() {
        TStringGrid grid;
        grid.SetDefaultColWidth(60);
        grid.SetDefaultRowHeight(22);
        grid.SetColCount(3);
        grid.SetRowCount(3);
        grid.SetFixedCols(1);
        grid.SetFixedRows(1);
        grid.resize(200, 100);
        grid.SetCell(0, 1, "row");
        grid.SetCell(1, 1, "MMMM");
        const QImage shot = grid.grab().toImage();
        const QRect cell = grid.visualRect(grid.model()->index(1, 1)).translated(grid.viewport()->pos());
        const QRgb background = shot.pixel(cell.right() - 2, cell.center().y());
        int differing = 0;
        for (int x = cell.left() + 1; x < cell.right() - 3; ++x)
            for (int y = cell.top() + 1; y < cell.bottom(); ++y)
                if (shot.pixel(x, y) != background) ++differing;
        QVERIFY(differing > 10);
    }
};

QTEST_MAIN(StringGridTest)
#include "StringGridTest.moc"
