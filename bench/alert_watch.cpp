// What the board's alerts cost on the notice path: messages of 100 new notices applied to a board of
// 10 000 or 1 000 000 notices with the alert watcher and the row highlight listening, against the same
// board without them (the reference). Also a reminder (a search from the newest row for the worst
// trouble) and a new threshold (one pass over a byte per row).
#include "NoticeSamples.h"

#include "core/TAlertWatcher.h"
#include "core/TNoticeBoard.h"
#include "core/TRowHighlights.h"

#include <benchmark/benchmark.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

int64_t gNow = 0;

struct TBench {
    TNoticeBoard Board;
    std::unique_ptr<TAlertWatcher> Watcher;
    std::unique_ptr<TRowHighlights> Highlights;
};

// One board per size and kind, filled once for the whole run.
TBench& BenchWith(int64_t stored, bool alerts) {
    static std::map<std::pair<int64_t, bool>, std::unique_ptr<TBench>> benches;
    auto& b = benches[{stored, alerts}];
    if (!b) {
        b = std::make_unique<TBench>();
        if (alerts) {
            b->Watcher = std::make_unique<TAlertWatcher>(b->Board.cdsNoticeBd(), [] { return gNow; });
            b->Watcher->SetThreshold(3);
            b->Watcher->SetRepeatMinutes(10);
            b->Highlights = std::make_unique<TRowHighlights>(b->Board.cdsNoticeBd(), [] { return gNow; });
        }
        for (int64_t first = 0; first < stored; first += 1000)
            b->Board.Process_XML_Notice(SampleMessage("fill", first, 1000));
        if (alerts) b->Watcher->TakeAnnouncement();
    }
    return *b;
}

void Messages(benchmark::State& state, bool alerts) {
    static int run = 0;
    TBench& b = BenchWith(state.range(0), alerts);
    const std::string prefix = "run" + std::to_string(++run) + (alerts ? "a" : "r");
    std::vector<std::string> texts;
    for (int i = 0; i < 300; ++i)
        texts.push_back(SampleMessage(prefix, int64_t(i) * 100, 100));
    size_t i = 0;
    for (auto _ : state) {
        b.Board.Process_XML_Notice(texts[i++ % texts.size()]);
        if (alerts) benchmark::DoNotOptimize(b.Watcher->TakeAnnouncement());
        gNow += 1000;
    }
    state.counters["notices/s"] =
        benchmark::Counter(double(state.iterations()) * 100, benchmark::Counter::kIsRate);
}

void BM_Board_100NewNotices(benchmark::State& state) {
    Messages(state, false);
}
void BM_BoardWithAlerts_100NewNotices(benchmark::State& state) {
    Messages(state, true);
}

void BM_Reminder(benchmark::State& state) {
    TBench& b = BenchWith(state.range(0), true);
    for (auto _ : state) {
        gNow += 10 * 60000;
        benchmark::DoNotOptimize(b.Watcher->TakeReminder());
    }
}

// A new threshold counts the trouble again: one pass over a byte per row, the watcher's worst case.
void BM_ThresholdChange(benchmark::State& state) {
    TBench& b = BenchWith(state.range(0), true);
    int threshold = 3;
    for (auto _ : state) {
        threshold = threshold == 3 ? 2 : 3;
        b.Watcher->SetThreshold(threshold);
        benchmark::DoNotOptimize(b.Watcher->TroubleCount());
    }
    b.Watcher->SetThreshold(3);
}

} // namespace

// Fixed iteration counts keep every timed message an insertion of new notices.
BENCHMARK(BM_Board_100NewNotices)->Arg(10000)->Arg(1000000)->Iterations(300)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_BoardWithAlerts_100NewNotices)
    ->Arg(10000)
    ->Arg(1000000)
    ->Iterations(300)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Reminder)->Arg(10000)->Arg(1000000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ThresholdChange)->Arg(10000)->Arg(1000000)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
