#include "ConsoleWindow.h"

#include "adapters/ZNB_Cfg.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>
#include <QVBoxLayout>

namespace {

// The notice board folder the board will use: NBFolder of zpnbd.ini beside the executable, created when
// missing, exactly as the board reads it.
std::string NoticeBoardFolder() {
    TNBConfig config;
    config.Get();
    return config.NBFolder;
}

} // namespace

TConsoleWindow::TConsoleWindow(TPackageLoader& Loader, QWidget* Parent)
    : QMainWindow(Parent), FLoader(Loader) {
    setObjectName("ConsoleMainForm");
    setWindowTitle(tr("Palvane Console"));
    resize(900, 600);

    QMenu* console = menuBar()->addMenu(tr("&Console"));
    QAction* board = console->addAction(tr("&Notice Board"), this, &TConsoleWindow::OpenBoard);
    board->setObjectName("actNoticeBoard");
    board->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_N));
    console->addSeparator();
    QAction* exitAction = console->addAction(tr("E&xit"), this, &QWidget::close);
    exitAction->setObjectName("actExit");
    exitAction->setShortcut(QKeySequence::Quit);
    QMenu* help = menuBar()->addMenu(tr("&Help"));
    help->addAction(tr("&About Palvane Console"), this, &TConsoleWindow::About)->setObjectName("actAbout");

    auto* central = new QWidget(this);
    auto* layout = new QVBoxLayout(central);
    auto* welcome = new QLabel(tr("<h2>Palvane Console</h2>"
                                  "<p>The notice board opens in its own window when the console starts.</p>"
                                  "<p>Open it again with <b>Console &gt; Notice Board</b> "
                                  "(Ctrl+Shift+N).</p>"),
                               central);
    welcome->setAlignment(Qt::AlignCenter);
    welcome->setWordWrap(true);
    layout->addWidget(welcome);
    setCentralWidget(central);

    FStatus = new QLabel(this);
    statusBar()->addWidget(FStatus, 1);
}

QWidget* TConsoleWindow::BoardWindow() const {
    return findChild<QWidget*>("NoticeBdForm", Qt::FindDirectChildrenOnly);
}

void TConsoleWindow::OpenBoard() {
    if (!FLoader.Loaded() && !FLoader.Load()) {
        FStatus->setText(QString::fromStdString(FLoader.ErrorText()));
        QMessageBox::critical(this, windowTitle(), QString::fromStdString(FLoader.ErrorText()));
        return;
    }
    const std::string folder = NoticeBoardFolder();
    FStatus->setText(tr("Notice board folder: %1").arg(QString::fromStdString(folder)));
    FLoader.ShowBoard(this, folder);
}

void TConsoleWindow::About() {
    const QString package = FLoader.Loaded() ? QString::fromStdString(FLoader.FileName()) : tr("not loaded");
    QMessageBox::about(this, tr("About Palvane Console"),
                       tr("<p><b>Palvane Console</b></p>"
                          "<p>A host console for the notice board: it loads the notice board package "
                          "at run time and opens the board in its own window.</p>"
                          "<p>Package: %1</p>")
                           .arg(package.toHtmlEscaped()));
}

void TConsoleWindow::closeEvent(QCloseEvent* Event) {
    if (QWidget* board = BoardWindow()) {
        if (!board->close()) {
            Event->ignore();
            return;
        }
    }
    Event->accept();
}
