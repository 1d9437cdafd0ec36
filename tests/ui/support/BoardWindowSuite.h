// The head of a board window suite: a host for each test function, loaded, its owner window shown; and
// gone again with the board closed.
#pragma once

#include "support/BoardWindowDriver.h"

#include <QObject>

#include <memory>
#include <vector>

class TBoardWindowSuite : public QObject {
    Q_OBJECT
protected:
    QMainWindow* BoardWith(const std::vector<TBoardNotice>& Notices) { return ShowBoardWith(*host, Notices); }
    std::unique_ptr<TPackageHost> host;

private slots:
    void init();
    void cleanup();
};
