// The board's icons: every one is a valid SVG that draws something at tool bar size, the severity and
// adapter status look-ups pick the right image, and (with NB_SCREENSHOT_DIR set) a contact sheet of all
// of them at 16, 24 and 48 pixels on a light and a dark background.
#include "core/ui/NbIcons.h"
#include "support/WidgetShots.h"

#include <QPainter>
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

    // Each icon at 16, 24 and 48 pixels, then its 16-pixel image enlarged three times so single pixels
    // can be judged, on a light and a dark background.
    void ContactSheet() {
        if (ShotDir().isEmpty()) QSKIP("NB_SCREENSHOT_DIR not set");
        const int sides[] = {16, 24, 48, 16};
        const QColor backgrounds[] = {QColor(0xf6, 0xf6, 0xf6), QColor(0x1f, 0x20, 0x23)};
        const int cell = 60, label = 130, columns = 4;
        QImage sheet(label + cell * columns * 2, cell * NbIconCount, QImage::Format_ARGB32);
        sheet.fill(Qt::white);
        QPainter p(&sheet);
        for (int b = 0; b < 2; ++b)
            p.fillRect(label + b * cell * columns, 0, cell * columns, sheet.height(), backgrounds[b]);
        for (int i = 0; i < NbIconCount; ++i) {
            const QIcon icon = NbIcon(TNbIcon(i));
            p.setPen(Qt::black);
            p.drawText(QRect(4, i * cell, label - 8, cell), Qt::AlignVCenter,
                       NbIconPath(TNbIcon(i)).section('/', -1));
            for (int b = 0; b < 2; ++b)
                for (int s = 0; s < columns; ++s) {
                    QPixmap image = icon.pixmap(sides[s], sides[s]);
                    if (s == 3) image = image.scaled(48, 48, Qt::IgnoreAspectRatio, Qt::FastTransformation);
                    const int x = label + (b * columns + s) * cell + (cell - image.width()) / 2;
                    p.drawPixmap(x, i * cell + (cell - image.height()) / 2, image);
                }
        }
        p.end();
        // In pages of seven rows, small enough to look at without scaling.
        for (int first = 0, page = 1; first < NbIconCount; first += 7, ++page)
            QVERIFY(SaveShot(sheet.copy(0, first * cell, sheet.width(), 7 * cell),
                             QStringLiteral("icons-%1").arg(page)));
    }
};

QTEST_MAIN(NbIconsTest)
#include "NbIconsTest.moc"
