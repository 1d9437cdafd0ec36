// What the board window's suites share: the grid and buttons found by name, a row found by the key its
// summary names, clicks and window shortcuts as a user gives them, and a shown board holding notices.
// Header-only; GUI thread.
#pragma once

#include "core/Znb_const.h"
#include "support/ModalDriver.h"
#include "support/PackageHost.h"

#include <QMainWindow>
#include <QTableView>
#include <QToolButton>

#include <QtTest>

#include <memory>
#include <string>
#include <vector>

inline QTableView* GridOf(QWidget* board) {
    return Child<QTableView>(board, "NoticeBdGrid");
}

// The display row of the notice whose summary names Key; -1 when it is not shown.
inline int RowOfKey(QTableView* grid, const std::string& Key) {
    const QString summary = QString::fromStdString("Summary of " + Key);
    for (int r = 0; r < grid->model()->rowCount(); ++r)
        if (grid->model()->index(r, nf_note_summary).data().toString() == summary) return r;
    return -1;
}

inline void ClickRow(QTableView* grid, int Row, Qt::KeyboardModifiers Modifiers = Qt::NoModifier) {
    int column = 0;
    while (column < grid->model()->columnCount() && grid->isColumnHidden(column))
        ++column;
    const QRect cell = grid->visualRect(grid->model()->index(Row, column));
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, Modifiers, cell.center());
}

inline bool Enabled(QWidget* board, const char* Name) {
    auto* button = Child<QToolButton>(board, Name);
    return button && button->isEnabled();
}

// Window shortcuts need the board to be the active window (a closed dialog hands activation back late).
inline void PressKeys(QWidget* board, Qt::Key Key, Qt::KeyboardModifiers Modifiers) {
    board->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(board));
    QTest::keyClick(board, Key, Modifiers);
}

inline int Count(const std::string& Text, const std::string& Needle) {
    int n = 0;
    for (size_t at = Text.find(Needle); at != std::string::npos; at = Text.find(Needle, at + 1))
        ++n;
    return n;
}

// A shown board with its adapters started and the notices posted, rows refreshed; null when any of it
// failed.
inline QMainWindow* ShowBoardWith(TPackageHost& Host, const std::vector<TBoardNotice>& Notices) {
    QMainWindow* board = Host.ShowBoard();
    if (!board) return nullptr;
    Host.Tick();
    if (!Notices.empty() && Host.Send(BoardMessage(Notices)) != 0) return nullptr;
    const bool shown =
        QTest::qWaitFor([&] { return GridOf(board)->model()->rowCount() == int(Notices.size()); }, 5000);
    return shown ? board : nullptr;
}
