#include "HeadlessRun.h"

#include "ConsoleWindow.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QPixmap>
#include <QTimer>

#include <cstdio>

THeadlessRun::THeadlessRun(TConsoleWindow& Console, THeadlessOptions Options, QObject* Parent)
    : QObject(Parent), FConsole(Console), FOptions(std::move(Options)) {}

void THeadlessRun::Start() {
    if (!FOptions.ScreenshotFile.isEmpty()) {
        FPoll = new QTimer(this);
        FPoll->setInterval(250);
        connect(FPoll, &QTimer::timeout, this, &THeadlessRun::Poll);
        FPoll->start();
    }
    if (FOptions.QuitAfter >= 0)
        QTimer::singleShot(static_cast<int>(FOptions.QuitAfter * 1000), this, &THeadlessRun::Quit);
}

bool THeadlessRun::BoardShowsNotices() const {
    const QWidget* board = FConsole.BoardWindow();
    const auto* grid = board ? board->findChild<QAbstractItemView*>("NoticeBdGrid") : nullptr;
    return grid && grid->model() && grid->model()->rowCount() > 0;
}

void THeadlessRun::Poll() {
    if (FShotTaken || FShotPending || !BoardShowsNotices()) return;
    FShotPending = true;
    QTimer::singleShot(static_cast<int>(FOptions.SettleSeconds * 1000), this, &THeadlessRun::SaveScreenshot);
}

void THeadlessRun::SaveScreenshot() {
    if (FShotTaken) return;
    FShotTaken = true;
    if (FPoll) FPoll->stop();
    QWidget* board = FConsole.BoardWindow();
    const QPixmap shot = board ? board->grab() : FConsole.grab();
    if (shot.save(FOptions.ScreenshotFile))
        std::fprintf(stderr, "pvconsole: screenshot saved to %s\n", qPrintable(FOptions.ScreenshotFile));
    else
        std::fprintf(stderr, "pvconsole: cannot save the screenshot to %s\n",
                     qPrintable(FOptions.ScreenshotFile));
}

void THeadlessRun::Quit() {
    // A board that never showed notices is still photographed, so the run always leaves its picture.
    if (!FOptions.ScreenshotFile.isEmpty()) SaveScreenshot();
    FConsole.close();
    QTimer::singleShot(0, qApp, &QApplication::quit);
}
