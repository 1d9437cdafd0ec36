// What the widget benchmarks share: showing a widget until its window is exposed (before that, repaint()
// paints nothing) and the heap in use. Header-only; GUI thread.
#pragma once

#include <QCoreApplication>
#include <QWidget>
#include <QWindow>

#include <malloc.h>

#include <cstddef>

inline void ShowExposed(QWidget& widget) {
    widget.show();
    for (int i = 0; i < 1000 && !(widget.windowHandle() && widget.windowHandle()->isExposed()); ++i)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    QCoreApplication::processEvents();
}

// The bytes in use (mallinfo2); with Release, the free memory is first given back to the system, so that
// what is measured next touches fresh pages, as a first use does.
inline size_t HeapInUse(bool Release = true) {
    if (Release) malloc_trim(0);
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}
