// The board's icons: every one is a valid SVG that draws something at tool bar size, and the severity and
// adapter status look-ups pick the right image.
#include "core/ui/NbIcons.h"

#include <QSet>
#include <QSvgRenderer>
#include <QtTest>

namespace {

// Share of pixels with some opacity.
double Coverage(const QImage& image) {
    int inked = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(image.pixel(x, y)) > 32) ++inked;
    return double(inked) / (image.width() * image.height());
}

QImage Render(const QIcon& icon, int side) {
    return icon.pixmap(side, side).toImage().convertToFormat(QImage::Format_ARGB32);
}

} // namespace

class NbIconsTest : public QObject {
    Q_OBJECT
private slots:
    void EveryIconIsItsOwnDrawableSvg() {
        QSet<QString> paths;
        for (int i = 0; i < NbIconCount; ++i) {
            const TNbIcon icon = TNbIcon(i);
            const QString path = NbIconPath(icon);
            QVERIFY2(!paths.contains(path), qPrintable(path));
            paths.insert(path);
            QVERIFY2(QSvgRenderer(path).isValid(), qPrintable(path));
            const QImage small = Render(NbIcon(icon), 16);
            QCOMPARE(small.size(), QSize(16, 16));
            // Something visible, and not a filled square: the shapes keep a transparent margin.
            QVERIFY2(Coverage(small) > 0.08, qPrintable(path));
            QVERIFY2(Coverage(small) < 0.95, qPrintable(path));
        }
    }

    void LookUpsPickTheMatchingImage() {
        const struct {
            QIcon got;
            TNbIcon want;
        } cases[] = {
            {NbSeverityIcon(1), TNbIcon::SeverityNormal},
            {NbSeverityIcon(2), TNbIcon::SeverityWarning},
            {NbSeverityIcon(3), TNbIcon::SeverityFatal},
            {NbSeverityIcon(4), TNbIcon::SeverityCritical},
            {NbAdapterStatusIcon(0), TNbIcon::AdapterFailed},
            {NbAdapterStatusIcon(1), TNbIcon::AdapterFailing},
            {NbAdapterStatusIcon(2), TNbIcon::AdapterOK},
        };
        for (const auto& c : cases)
            QCOMPARE(Render(c.got, 24), Render(NbIcon(c.want), 24));
        QVERIFY(NbSeverityIcon(0).isNull());
        QVERIFY(NbSeverityIcon(5).isNull());
        QVERIFY(NbAdapterStatusIcon(-1).isNull());
        QVERIFY(NbAdapterStatusIcon(3).isNull());
    }
};

QTEST_MAIN(NbIconsTest)
#include "NbIconsTest.moc"
