// Soak: a board of 100 000 live notices churned for a long time by an adapter thread that posts new
// notices, updates live ones and deletes the oldest (3 + 4 + 3 per 10-notice message, so the board keeps
// its size), with a filter and a two-column sort set and the whole board window (TNoticeBdForm: grid,
// detail panel, status bar, severity badges, its timer) shown offscreen at 1200 x 800, the adapter's
// messages heard the window's way (queued, drained on its thread). Measured:
//   - resident memory, sampled every second: the growth of the highest sample after the first minute over
//     the sample at the first minute (goal: under 5 %);
//   - messages and notices applied per second, and the adapter queue's highest length (the grid keeps up
//     when the queue stays short: the adapter thread waits while 64 messages are queued);
//   - the longest event-loop stall: the longest gap between turns of a 5 ms timer, minus its interval, and
//     the most CPU time the GUI thread spent between two turns (on a shared machine a gap also holds time
//     the thread waited for a core; the CPU time is the board's own work).
// The reference, run first for a tenth of the time, applies the same churn to a board of the same size on
// its own thread, without the grid or the queue: the rate the store alone reaches.
//
// Duration: NB_SOAK_SECONDS or --soak_seconds=N (default 600); "the first minute" is a tenth of a shorter
// run. A line per minute (per tenth) goes to stderr while it runs, and one for every new longest busy
// spell of the event loop above 100 ms.
#include "BoardWindowBench.h"
#include "SampleBoard.h"

#include "adapters/ZNB_Cfg.h"
#include "core/Nb_utils.h"
#include "core/TNoticeBoard.h"
#include "core/Znb_callback.h"
#include "core/ui/NoticeBdGrid.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>
#include <QWindow>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <random>
#include <thread>
#include <unistd.h>

namespace {

constexpr int64_t LiveNotices = 100000;
constexpr int MaxQueued = 64;
double SoakSeconds = 600;

int64_t ThreadCpuNs() {
    timespec ts;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return int64_t(ts.tv_sec) * 1000000000 + ts.tv_nsec;
}

size_t ResidentBytes() {
    std::ifstream statm("/proc/self/statm");
    size_t pages = 0, resident = 0;
    statm >> pages >> resident;
    return resident * static_cast<size_t>(::sysconf(_SC_PAGESIZE));
}

// The churn: live keys are the numbers [Oldest, Next); each message posts three new ones, updates four
// live ones (severity, count, last raised date and summary change) and deletes the three oldest.
class TChurn {
public:
    explicit TChurn(unsigned seed) : FRandom(seed) {}

    std::string NextMessage() {
        std::string xml = "<NoticeMessage><NoticeList>";
        for (int i = 0; i < 3; ++i)
            xml += SampleNoticeXML("live", FNext++);
        for (int i = 0; i < 4; ++i)
            xml += Update(FOldest + int64_t(FRandom() % uint64_t(FNext - FOldest)));
        for (int i = 0; i < 3; ++i)
            xml += "<Notice><Command>delete</Command><adpt_orig_key>" + SampleNotice("live", FOldest++).Key +
                   "</adpt_orig_key></Notice>";
        ++FSerial;
        return xml + "</NoticeList></NoticeMessage>";
    }

private:
    std::string Update(int64_t n) {
        const int severity = int(FRandom() % 4) + 1;
        const int second = int(FSerial % 60), minute = int(FSerial / 60 % 60);
        char date[32];
        std::snprintf(date, sizeof date, "2026-11-22T10:%02d:%02dZ", minute, second);
        return "<Notice><Command>update</Command><adpt_orig_key>" + SampleNotice("live", n).Key +
               "</adpt_orig_key><note_severity>" + std::to_string(severity) + "</note_severity><note_count>" +
               std::to_string(FSerial % 1000 + 2) + "</note_count><note_last_raised_date>" + date +
               "</note_last_raised_date><note_summary>Tablespace TS_" + std::to_string(n) + " is " +
               std::to_string(90 + FSerial % 10) + "% full</note_summary></Notice>";
    }

    std::mt19937_64 FRandom;
    int64_t FOldest = 0, FNext = LiveNotices;
    int64_t FSerial = 0;
};

// Fills the board the callback serves (SetNoticeBoard) and sets the filter.
void Fill(TNoticeStore& store) {
    FillBoard(LiveNotices, "live");
    store.SetFilterText("note_severity > 1"); // three notices in four pass
    store.SetFiltered(true);
}

std::unique_ptr<TNoticeBoard> FilledBoard() {
    auto board = std::make_unique<TNoticeBoard>();
    SetNoticeBoard(board.get());
    Fill(board->cdsNoticeBd());
    return board;
}

// ---- The reference: the store alone ----

void BM_Soak_StoreOnly(benchmark::State& state) {
    const auto board = FilledBoard();
    TChurn churn(7);
    int64_t messages = 0;
    const size_t rssStart = ResidentBytes();
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        const auto until = start + std::chrono::duration<double>(SoakSeconds / 10);
        while (std::chrono::steady_clock::now() < until) {
            for (int i = 0; i < 100; ++i)
                SendToBoard(churn.NextMessage());
            messages += 100;
        }
        state.SetIterationTime(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    state.counters["messages/s"] = benchmark::Counter(double(messages), benchmark::Counter::kIsRate);
    state.counters["live"] = double(board->cdsNoticeBd().TotalCount());
    state.counters["rss_growth_pct"] =
        100.0 * (double(ResidentBytes()) - double(rssStart)) / double(rssStart);
    SetNoticeBoard(nullptr);
}

// ---- The board with its grid ----

void SortBy(TNoticeBdGrid& grid) {
    TGridLayout layout = grid.Layout();
    layout.Column(nf_note_severity).Sort = TSortDirection::sdDescending;
    layout.Column(nf_note_severity).SortIndex = 0;
    layout.Column(nf_note_last_raised_date).Sort = TSortDirection::sdDescending;
    layout.Column(nf_note_last_raised_date).SortIndex = 1;
    grid.SetLayout(layout);
}

void BM_Soak_Window(benchmark::State& state) {
    // The window makes its own board and hears the callback's queue itself (its wake).
    auto* form = OpenBoardWindow();
    TNoticeBdGrid& grid = form->Grid();
    Fill(form->Board().cdsNoticeBd());
    SortBy(grid);
    ShowExposed(*form);

    for (auto _ : state) {
        std::atomic<bool> stop{false};
        std::atomic<int> maxQueued{0};
        std::atomic<int64_t> sent{0};
        std::thread adapter([&] {
            TChurn churn(11);
            while (!stop) {
                const int queued = PendingNoticeCount();
                maxQueued = std::max(maxQueued.load(), queued);
                if (queued >= MaxQueued) {
                    std::this_thread::sleep_for(std::chrono::microseconds(200));
                    continue;
                }
                SendToBoard(churn.NextMessage());
                ++sent;
            }
        });
        const auto applied = [&] { return static_cast<long long>(sent - PendingNoticeCount()); };

        const double firstMinute = std::min(60.0, SoakSeconds / 10);
        QElapsedTimer clock;
        clock.start();
        size_t rssAtFirstMinute = 0, rssMaxAfter = 0, rssStart = ResidentBytes();
        int64_t lastTickNs = clock.nsecsElapsed(), longestGapNs = 0, nextSample = 1, nextLine = 1;
        int64_t lastTickCpuNs = ThreadCpuNs(), longestBusyNs = 0;
        const uint64_t refreshesBefore = grid.RefreshCount();
        QEventLoop loop;
        QTimer tick;
        tick.setTimerType(Qt::PreciseTimer);
        tick.setInterval(5);
        QObject::connect(&tick, &QTimer::timeout, [&] {
            const int64_t now = clock.nsecsElapsed();
            const int64_t cpu = ThreadCpuNs();
            longestGapNs = std::max(longestGapNs, now - lastTickNs);
            if (cpu - lastTickCpuNs > std::max<int64_t>(longestBusyNs, 100000000))
                std::fprintf(stderr,
                             "soak %6.1f s: the event loop was busy for %.0f ms (%lld messages applied)\n",
                             double(now) * 1e-9, double(cpu - lastTickCpuNs) * 1e-6, applied());
            longestBusyNs = std::max(longestBusyNs, cpu - lastTickCpuNs);
            lastTickNs = now;
            lastTickCpuNs = cpu;
            const double seconds = double(now) * 1e-9;
            if (seconds >= double(nextSample)) {
                ++nextSample;
                const size_t rss = ResidentBytes();
                if (rssAtFirstMinute == 0 && seconds >= firstMinute)
                    rssAtFirstMinute = rss;
                else if (rssAtFirstMinute != 0)
                    rssMaxAfter = std::max(rssMaxAfter, rss);
                if (seconds >= double(nextLine) * firstMinute) {
                    ++nextLine;
                    std::fprintf(stderr, "soak %6.0f s: RSS %7.1f MB, %lld messages applied, %d queued\n",
                                 seconds, double(rss) / 1048576.0, applied(), PendingNoticeCount());
                }
            }
            if (seconds >= SoakSeconds) loop.quit();
        });
        tick.start();
        loop.exec();
        tick.stop();
        stop = true;
        adapter.join();
        ProcessPendingNotices();
        const double seconds = double(clock.nsecsElapsed()) * 1e-9;
        state.SetIterationTime(seconds);

        rssMaxAfter = std::max(rssMaxAfter, rssAtFirstMinute);
        state.counters["messages/s"] = double(sent) / seconds;
        state.counters["notices/s"] = double(sent) * 10 / seconds;
        state.counters["max_queued"] = maxQueued.load();
        state.counters["longest_stall_ms"] = double(longestGapNs) * 1e-6 - 5;
        state.counters["longest_busy_ms"] = double(longestBusyNs) * 1e-6;
        state.counters["refreshes"] = double(grid.RefreshCount() - refreshesBefore);
        state.counters["rss_start_MB"] = double(rssStart) / 1048576.0;
        state.counters["rss_1min_MB"] = double(rssAtFirstMinute) / 1048576.0;
        state.counters["rss_max_after_MB"] = double(rssMaxAfter) / 1048576.0;
        state.counters["rss_growth_pct"] =
            rssAtFirstMinute
                ? 100.0 * (double(rssMaxAfter) - double(rssAtFirstMinute)) / double(rssAtFirstMinute)
                : 0;
        state.counters["live"] = double(form->Board().cdsNoticeBd().TotalCount());
        state.counters["shown"] = double(grid.View().RowCount());
    }
    form->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    NBConfig.reset();
}

} // namespace

BENCHMARK(BM_Soak_StoreOnly)->Iterations(1)->UseManualTime()->Unit(benchmark::kSecond);
BENCHMARK(BM_Soak_Window)->Iterations(1)->UseManualTime()->Unit(benchmark::kSecond);

int main(int argc, char** argv) {
    if (const char* env = std::getenv("NB_SOAK_SECONDS")) SoakSeconds = std::atof(env);
    // Our own argument goes before Google Benchmark sees the rest.
    int kept = 1;
    for (int i = 1; i < argc; ++i) {
        if (std::strncmp(argv[i], "--soak_seconds=", 15) == 0)
            SoakSeconds = std::atof(argv[i] + 15);
        else
            argv[kept++] = argv[i];
    }
    argc = kept;
    if (SoakSeconds <= 0) SoakSeconds = 600;
    return RunOffscreenBenchmarks(argc, argv, UseBenchSettings);
}
