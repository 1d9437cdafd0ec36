// The board window under a steady stream of adapter messages: 1000 one-notice messages a second for ten
// seconds, sent from an adapter's own thread through the notice callback (queued for the board's thread,
// as real adapters are heard), on a board of 100 000 typical notices (NoticeSamples.h) shown in the grid
// sorted by severity, at 1200 x 800 on the offscreen platform. The stream cycles through a new notice,
// an update that changes a stored notice's severity (so its row moves), and the deletion of an earlier
// new notice, so the board keeps its size.
// Measured on the board's thread: the longest stall of its event loop (a 1 ms probe timer: the largest gap
// between two of its ticks, minus the interval), the CPU time per message, and whether it keeps up
// (messages still queued when the stream ends, and the most ever queued).
// Reference, in the same run: the same stream into a board without a window (the engine alone: the
// callback's queue drained on the same event loop), so the window's own share per message is the
// difference.
#include "BoardWindowBench.h"
#include "SampleBoard.h"

#include "adapters/TAdapterStartup.h"
#include "adapters/ZNB_Cfg.h"
#include "core/Nb_utils.h"
#include "core/TNoticeBoard.h"
#include "core/Znb_callback.h"
#include "core/ui/NoticeBdGrid.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <atomic>
#include <chrono>
#include <fstream>
#include <thread>

namespace {

constexpr int StoredNotices = 100000;
constexpr int MessagesPerSecond = 1000;
constexpr int Seconds = 10;

double ThreadCpuSeconds() {
    timespec ts{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return ts.tv_sec + ts.tv_nsec * 1e-9;
}

std::string Wrap(const std::string& notices) {
    return "<NoticeMessage><NoticeList>" + notices + "</NoticeList></NoticeMessage>";
}

// Message i of the stream (see the header comment).
std::string StreamMessage(int64_t i) {
    const int64_t step = i / 3;
    switch (i % 3) {
    case 0:
        return Wrap(SampleNoticeXML("live", step));
    case 1: {
        // A stored notice posted again with the next severity: an update whose row moves in the order.
        const int64_t n = (step * 7919) % StoredNotices;
        std::string xml = SampleNoticeXML("fill", n);
        const std::string from = "<note_severity>" + std::to_string(n % 4 + 1) + "</note_severity>";
        const size_t at = xml.find(from);
        xml.replace(at, from.size(),
                    "<note_severity>" + std::to_string((n + step) % 4 + 1) + "</note_severity>");
        return Wrap(xml);
    }
    default: {
        if (step < 50) return Wrap(SampleNoticeXML("live", step));
        return Wrap("<Notice><Command>delete</Command><adpt_orig_key>" + SampleNotice("live", step - 50).Key +
                    "</adpt_orig_key></Notice>");
    }
    }
}

void Fill() {
    FillBoard(StoredNotices);
}

struct TStreamResult {
    double StallMs = 0, CpuUsPerMessage = 0;
    int64_t Sent = 0, Applied = 0, LeftQueued = 0, MaxQueued = 0;
};

// Runs the stream on the event loop for Seconds and measures it.
TStreamResult RunStream() {
    TStreamResult result;
    std::vector<std::string> messages;
    messages.reserve(MessagesPerSecond * Seconds);
    for (int64_t i = 0; i < MessagesPerSecond * Seconds; ++i)
        messages.push_back(StreamMessage(i));

    std::atomic<bool> stop{false};
    std::atomic<int64_t> sent{0}, maxQueued{0};
    QElapsedTimer clock;
    qint64 last = 0, worst = 0;
    QTimer probe;
    probe.setTimerType(Qt::PreciseTimer);
    probe.setInterval(1);
    QObject::connect(&probe, &QTimer::timeout, [&] {
        const qint64 now = clock.nsecsElapsed();
        worst = std::max(worst, now - last);
        last = now;
    });
    QEventLoop loop;
    QTimer::singleShot(Seconds * 1000 + 200, &loop, &QEventLoop::quit);
    const double cpu0 = ThreadCpuSeconds();
    clock.start();
    probe.start();
    std::thread adapter([&] {
        auto next = std::chrono::steady_clock::now();
        for (const std::string& xml : messages) {
            if (stop) break;
            std::this_thread::sleep_until(next);
            next += std::chrono::microseconds(1000000 / MessagesPerSecond);
            const char* text = xml.c_str();
            NoticeCallback(0, &text, 0);
            ++sent;
            maxQueued = std::max<int64_t>(maxQueued, PendingNoticeCount());
        }
    });
    loop.exec();
    stop = true;
    adapter.join();
    probe.stop();
    result.LeftQueued = PendingNoticeCount();
    const double cpu = ThreadCpuSeconds() - cpu0;
    ProcessPendingNotices();
    result.Sent = sent;
    result.Applied = sent - result.LeftQueued;
    result.MaxQueued = maxQueued;
    result.StallMs = std::max<double>(0, worst / 1e6 - 1);
    result.CpuUsPerMessage = cpu / std::max<int64_t>(1, result.Applied) * 1e6;
    return result;
}

void Report(benchmark::State& state, const TStreamResult& r) {
    state.counters["stall_ms"] = r.StallMs;
    state.counters["cpu_us_per_msg"] = r.CpuUsPerMessage;
    state.counters["sent"] = double(r.Sent);
    state.counters["left_queued"] = double(r.LeftQueued);
    state.counters["max_queued"] = double(r.MaxQueued);
}

void BM_BoardWindow_Stream(benchmark::State& state) {
    for (auto _ : state) {
        auto* form = OpenBoardWindow();
        Fill();
        form->Grid().RefreshNow();
        QApplication::processEvents();
        const TStreamResult result = RunStream();
        state.SetIterationTime(Seconds);
        Report(state, result);
        form->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        NBConfig.reset();
    }
}

// The reference: the same stream into a board without a window.
void BM_BareBoard_Stream(benchmark::State& state) {
    for (auto _ : state) {
        TNoticeBoard board;
        SetNoticeBoard(&board);
        QObject receiver;
        SetNoticeWake([&receiver] {
            QMetaObject::invokeMethod(
                &receiver, [] { ProcessPendingNotices(); }, Qt::QueuedConnection);
        });
        Fill();
        const TStreamResult result = RunStream();
        state.SetIterationTime(Seconds);
        Report(state, result);
        SetNoticeWake({});
        SetNoticeBoard(nullptr);
    }
}

} // namespace

BENCHMARK(BM_BoardWindow_Stream)->Iterations(1)->UseManualTime()->Unit(benchmark::kSecond);
BENCHMARK(BM_BareBoard_Stream)->Iterations(1)->UseManualTime()->Unit(benchmark::kSecond);

int main(int argc, char** argv) {
    return RunOffscreenBenchmarks(argc, argv, UseBenchSettings);
}
