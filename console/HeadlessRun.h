// What the console does without a person in front of it: save a screenshot of the board once it shows
// notices (or when time is up), and quit after a number of seconds, closing the board cleanly first.
// Used by `make run` without a display and by tests. GUI thread only.
#pragma once

#include <QObject>
#include <QString>

class TConsoleWindow;
class QTimer;

struct THeadlessOptions {
    QString ScreenshotFile;   // empty: no screenshot
    double QuitAfter = -1;    // seconds; negative: run until the user quits
    double SettleSeconds = 2; // after the first notice shows, wait this long for more before the shot
};

class THeadlessRun : public QObject {
    Q_OBJECT
public:
    THeadlessRun(TConsoleWindow& Console, THeadlessOptions Options, QObject* Parent = nullptr);

    // Starts watching; does nothing when neither a screenshot nor a quit time was asked for.
    void Start();

private:
    void Poll();
    bool BoardShowsNotices() const;
    void SaveScreenshot();
    void Quit();

    TConsoleWindow& FConsole;
    THeadlessOptions FOptions;
    QTimer* FPoll = nullptr;
    bool FShotTaken = false;
    bool FShotPending = false;
};
