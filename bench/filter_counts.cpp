// The counts beside the board's saved filters (TFilterCounts) on a board of 1 000 000 typical notices
// (NoticeSamples.h) with ten saved filters, and the severity counts of the status bar (TSeverityCounts):
//  - the first count of the ten filters (every row evaluated against each), and the severity count;
//  - one 10-notice "post" message (5 new notices, 5 updates that change the severity) through the notice
//    callback, with the counts kept and without (the board alone); the new notices are deleted again,
//    untimed, so the board keeps its size.
// The reference, in the same run, is what recounting the ten filters after every message would cost: the
// first count again.
#include "SampleBoard.h"

#include "core/TNoticeBoard.h"
#include "core/TSeverityCounts.h"
#include "core/Znb_callback.h"
#include "views/FilterCounts.h"

#include <benchmark/benchmark.h>

#include <ctime>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int64_t Rows = 1000000;

const std::vector<std::string> Names = {
    "critical",         "fatal or worse",     "dbserver 7", "tablespaces 1", "full",
    "not acknowledged", "raised in November", "repeated",   "combination",   "node 3"};
const std::vector<std::string> Texts = {
    "note_severity = 4",
    "note_severity >= 3",
    "adpt_orig_server = 'dbserver7.example.net'",
    "note_summary LIKE 'Tablespace TS_1%'",
    "note_summary LIKE '%full%'",
    "ack_date IS NULL",
    "note_raised_date >= '2026-11-01' AND note_raised_date < '2026-12-01'",
    "note_count > 1",
    "note_severity >= 2 AND adpt_source_type = 'R/Vista' AND NOT note_text LIKE '%autoextend is on%'",
    "note_pvo_node = 'PVONODE3'"};

TNoticeBoard& Board() {
    return SampleBoard(Rows);
}

void BM_FirstCount_TenFilters(benchmark::State& state) {
    TNoticeStore& store = Board().cdsNoticeBd();
    TFilterCounts counts(store);
    for (auto _ : state) {
        counts.SetFilters(Names, Texts);
        counts.CountAll();
    }
    state.counters["critical"] = counts.Count(size_t(0));
    state.counters["rows"] = double(store.TotalCount());
}

void BM_FirstCount_Severities(benchmark::State& state) {
    TNoticeStore& store = Board().cdsNoticeBd();
    for (auto _ : state) {
        TSeverityCounts counts(store);
        benchmark::DoNotOptimize(counts.Count(4));
    }
}

// Message i: 5 new notices and 5 posts of stored notices whose severity moves on.
void Message(benchmark::State& state, bool Counted) {
    TNoticeStore& store = Board().cdsNoticeBd();
    std::unique_ptr<TFilterCounts> counts;
    std::unique_ptr<TSeverityCounts> severities;
    if (Counted) {
        counts = std::make_unique<TFilterCounts>(store);
        counts->SetFilters(Names, Texts);
        counts->CountAll();
        severities = std::make_unique<TSeverityCounts>(store);
    }
    static int run = 0;
    const std::string prefix = "new" + std::to_string(++run);
    std::mt19937_64 rng{uint64_t(run)};
    std::vector<std::string> posts, undos;
    for (int i = 0; i < 200; ++i) {
        std::string post = "<NoticeMessage><NoticeList>", undo = post;
        for (int k = 0; k < 5; ++k) {
            post += SampleNoticeXML(prefix, i * 5 + k);
            undo += "<Notice><Command>delete</Command><adpt_orig_key>" + SampleNotice(prefix, i * 5 + k).Key +
                    "</adpt_orig_key></Notice>";
        }
        for (int k = 0; k < 5; ++k) {
            const int64_t n = int64_t(rng() % uint64_t(Rows));
            std::string xml = SampleNoticeXML("fill", n);
            const std::string old = "<note_severity>" + std::to_string(n % 4 + 1) + "<";
            xml.replace(xml.find(old), old.size(), "<note_severity>" + std::to_string((n + i) % 4 + 1) + "<");
            post += xml;
        }
        posts.push_back(post + "</NoticeList></NoticeMessage>");
        undos.push_back(undo + "</NoticeList></NoticeMessage>");
    }
    size_t i = 0;
    for (auto _ : state) {
        const double t0 = ThreadSeconds();
        SendToBoard(posts[i % posts.size()]);
        state.SetIterationTime(ThreadSeconds() - t0);
        SendToBoard(undos[i % undos.size()]);
        ++i;
    }
    if (counts) state.counters["critical"] = counts->Count(size_t(0));
}

void BM_Message_BoardAlone(benchmark::State& state) {
    Message(state, false);
}
void BM_Message_WithCounts(benchmark::State& state) {
    Message(state, true);
}

} // namespace

BENCHMARK(BM_FirstCount_TenFilters)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_FirstCount_Severities)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_Message_BoardAlone)->UseManualTime()->Unit(benchmark::kMicrosecond)->Iterations(2000);
BENCHMARK(BM_Message_WithCounts)->UseManualTime()->Unit(benchmark::kMicrosecond)->Iterations(2000);
BENCHMARK_MAIN();
