// pvconsole: the host console of the notice board. It shows its main window, loads the notice board
// package and opens the board at start-up.
//
//   pvconsole [--screenshot FILE] [--quit-after SECONDS]
//     --screenshot FILE     save a picture of the board once it shows notices (or when --quit-after ends)
//     --quit-after SECONDS  close the board and the console after that many seconds
#include "ConsoleWindow.h"
#include "HeadlessRun.h"
#include "PackageLoader.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTimer>

#include <cstdio>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName("Palvane Console");
    QApplication::setOrganizationName("Zarvo Software");

    QCommandLineParser parser;
    parser.setApplicationDescription("The host console of the notice board.");
    parser.addHelpOption();
    const QCommandLineOption screenshot("screenshot",
                                        "Save a picture of the board to FILE once it shows notices.", "FILE");
    const QCommandLineOption quitAfter("quit-after", "Close the board and the console after SECONDS.",
                                       "SECONDS");
    parser.addOption(screenshot);
    parser.addOption(quitAfter);
    parser.process(app);

    THeadlessOptions options;
    options.ScreenshotFile = parser.value(screenshot);
    if (parser.isSet(quitAfter)) {
        bool ok = false;
        options.QuitAfter = parser.value(quitAfter).toDouble(&ok);
        if (!ok || options.QuitAfter < 0) {
            std::fprintf(stderr, "pvconsole: --quit-after needs a number of seconds\n");
            return 2;
        }
    }

    int result = 0;
    TPackageLoader loader;
    {
        TConsoleWindow console(loader);
        console.show();
        THeadlessRun headless(console, options);
        headless.Start();
        QTimer::singleShot(0, &console, &TConsoleWindow::OpenBoard);
        result = app.exec();
    }
    // The board window went with the console's window; only now may the package go.
    loader.Unload();
    return result;
}
