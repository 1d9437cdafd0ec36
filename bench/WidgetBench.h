// What the widget benchmarks share: their main (the benchmarks on the offscreen platform), showing a widget
// until its window is exposed (before that, repaint() paints nothing) and the heap in use. Header-only;
// GUI thread.
#pragma once

#include <QApplication>
#include <QWidget>
#include <QWindow>

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstddef>
#include <functional>

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

// A benchmark program's main: the application on the offscreen platform, Before once it exists, the
// benchmarks named on the command line, then After while it still exists (widgets go before it).
inline int RunOffscreenBenchmarks(int argc, char** argv, const std::function<void()>& Before = {},
                                  const std::function<void()>& After = {}) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    if (Before) Before();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    if (After) After();
    return 0;
}
