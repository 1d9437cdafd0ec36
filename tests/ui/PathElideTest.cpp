// Shortening paths in the middle. (The edit box that shows the whole path only while it is in use is
// driven through the configuration dialog's folder edit.)
#include "core/ui/PathElide.h"

#include <QFontMetrics>
#include <QTest>

class PathElideTest : public QObject {
    Q_OBJECT
private slots:
    void elidesWholeMiddleComponents_data();
    void elidesWholeMiddleComponents();
    void nothingFitsStillStaysWithinTheWidth();
};

void PathElideTest::elidesWholeMiddleComponents_data() {
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("widthOf"); // the width allowed is this text's ...
    QTest::addColumn<int>("less");        // ... less this many pixels
    QTest::addColumn<QString>("expected");
    const QString board = "/home/user/projects/noticeboard/Noticeboard/";
    const QString endKept = "/home/.../noticeboard/Noticeboard/";
    QTest::newRow("fits") << board << board << 0 << board;
    QTest::newRow("as much of the end as fits") << board << endKept << 0 << endKept;
    QTest::newRow("just short of a longer end")
        << board << "/home/.../projects/noticeboard/Noticeboard/" << 1 << endKept;
    QTest::newRow("first and last kept")
        << board << "/home/.../Noticeboard/" << 0 << "/home/.../Noticeboard/";
    QTest::newRow("last only") << board << ".../Noticeboard/" << 0 << ".../Noticeboard/";
    QTest::newRow("file name kept") << "/var/lib/zarvo/palvane/report.xls"
                                    << "/var/.../report.xls" << 0 << "/var/.../report.xls";
    QTest::newRow("windows drive") << "C:\\Users\\me\\AppData\\Noticeboard\\"
                                   << "C:\\...\\Noticeboard\\" << 0 << "C:\\...\\Noticeboard\\";
    QTest::newRow("windows share") << "\\\\server\\share\\boards\\Noticeboard"
                                   << "\\\\server\\...\\Noticeboard" << 0 << "\\\\server\\...\\Noticeboard";
    QTest::newRow("relative") << "a/bbbbbbbb/cccccccc/d"
                              << "a/.../d" << 0 << "a/.../d";
}

void PathElideTest::elidesWholeMiddleComponents() {
    QFETCH(QString, path);
    QFETCH(QString, widthOf);
    QFETCH(int, less);
    QFETCH(QString, expected);
    const QFontMetrics fm(QFont(QStringLiteral("DejaVu Sans"), 9));
    QCOMPARE(ElidePath(path, fm, fm.horizontalAdvance(widthOf) - less), expected);
}

void PathElideTest::nothingFitsStillStaysWithinTheWidth() {
    const QFontMetrics fm(QFont(QStringLiteral("DejaVu Sans"), 9));
    for (const QString& path : {QStringLiteral("/home/user/AVeryLongFolderNameIndeed/"),
                                QStringLiteral("AVeryLongFileNameWithoutFolders.txt"), QString()}) {
        const QString shown = ElidePath(path, fm, 40);
        QVERIFY2(fm.horizontalAdvance(shown) <= 40, qPrintable(shown));
    }
}

QTEST_MAIN(PathElideTest)
#include "PathElideTest.moc"
