// The console's main window: a menu to open the notice board, leave, and read about the console, and the
// owner of the board window. It opens the board once the event loop runs. GUI thread only.
#pragma once

#include "PackageLoader.h"

#include <QMainWindow>

class QLabel;

class TConsoleWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit TConsoleWindow(TPackageLoader& Loader, QWidget* Parent = nullptr);

    // The board's window (a child of this window), or null while it is not open.
    QWidget* BoardWindow() const;

public slots:
    // Loads the package when needed, hands it the notice board folder of zpnbd.ini and shows the board.
    // A package that cannot be loaded is reported in a message box and in the status bar.
    void OpenBoard();
    void About();

protected:
    // The board closes first, through its own close handling, so that its adapters are disconnected and
    // its placement saved before the console goes.
    void closeEvent(QCloseEvent* Event) override;

private:
    TPackageLoader& FLoader;
    QLabel* FStatus = nullptr;
};
