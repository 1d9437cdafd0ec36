// The report's Arial measurer: 11-pixel Arial (Liberation Sans here), whole-pixel advances summed.
#include "core/Znb_const.h"
#include "reports/ui/TArialTextMeasurer.h"

#include <QtTest>

#include <cstdlib>

class ArialTextMeasurerTest : public QObject {
    Q_OBJECT

private slots:
    void WidthsAreThoseOfElevenPixelArial() {
        TArialTextMeasurer measurer;
        // Fixed points of the font's metrics: a different font or size moves them.
        QCOMPARE(measurer.TextWidth("   "), 9);
        QCOMPARE(measurer.TextWidth("Severity   "), 49);
        QCOMPARE(measurer.TextWidth("0123456789"), 60);
        // Summed advances stay within a rounding of Qt's own layout of the whole text.
        std::vector<std::string> texts = {"Tablespace TS_17 on dbserver3 is 91% full   ",
                                          "21/11/2026 08:15:00   ", "Disk <C:> & \"D:\" 'full' {x}|~   ",
                                          "Caf\xc3\xa9 \xe2\x82\xac 5   "};
        for (const NoticeBdColRec& column : NoticeBdColumnArray)
            texts.push_back(std::string(column.Caption) + "   ");
        for (const std::string& text : texts) {
            const int slack = 1 + int(text.size()) / 10;
            QVERIFY2(std::abs(measurer.TextWidth(text) - measurer.LaidOutWidth(text)) <= slack, text.c_str());
        }
        QVERIFY(measurer.TextWidth("Caf\xc3\xa9") > measurer.TextWidth("Caf"));
        QCOMPARE(measurer.TextWidth("Caf\xc3\xa9"), measurer.TextWidth("Caf\xc3\xa9")); // from its table now
    }
};

QTEST_MAIN(ArialTextMeasurerTest)
#include "ArialTextMeasurerTest.moc"
