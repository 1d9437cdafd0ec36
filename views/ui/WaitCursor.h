// The hourglass while a dialog works through all the notices at once (a syntax check recounts them, an
// editor copies them): set on construction, always restored on destruction, so an exception cannot leave
// it behind. Nests. GUI thread only.
#pragma once

#include <QApplication>

class TWaitCursor {
public:
    TWaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~TWaitCursor() { QApplication::restoreOverrideCursor(); }
    TWaitCursor(const TWaitCursor&) = delete;
    TWaitCursor& operator=(const TWaitCursor&) = delete;
};
