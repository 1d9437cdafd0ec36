// What the filter editor's live check costs on a board of a million notices: the copy of the board's store
// the editor takes when it opens, compiling the expression after an edit, and counting the notices it
// passes in slices between the window's events. The reference, measured in the same run, is the store's
// own recount after a new filter text (TNoticeStore::SetFilterText), which is what Check Syntax and the
// line editor's OK run.
#include "NoticeSamples.h"

#include "core/FilterExpression.h"
#include "core/TNoticeStore.h"
#include "views/FilterPassCount.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <string>

namespace {

constexpr int RowCount = 1000000;
constexpr int32_t RowsPerStep = 4096; // the editor's check view looks at the clock after every step

const char* const Expressions[][2] = {
    {"severity", "( note_severity >= 3 )"},
    {"summary_like", "( note_summary LIKE '%TS_1%' )"},
    {"three_lines", "( note_severity >= 'Fatal' )\r\nAND ( adpt_source_type = 'R/Vista' )\r\n"
                    "AND NOT ( note_summary LIKE '%TS_9%' )"},
};

TNoticeStore& Board() {
    static TNoticeStore store;
    return store;
}

void Fill() {
    TNoticeStore& store = Board();
    store.SetFilterCompiler(CompileFilterExpression);
    store.DisableControls();
    for (int i = 0; i < RowCount; ++i) {
        const TSampleNotice n = SampleNotice("bench", i);
        store.Append();
        TNoticeRecord& r = store.Buffer();
        r.SetString(nf_adpt_id, "DEMO");
        r.SetString(nf_adpt_orig_key, n.Key);
        r.SetString(nf_adpt_orig_server, n.Server);
        r.SetString(nf_adpt_source_type, i % 3 ? "R/Vista" : "DuskMere");
        r.SetString(nf_note_summary, n.Summary);
        r.SetString(nf_note_text, n.Text);
        r.SetInteger(nf_note_severity, n.Severity);
        r.SetString(nf_note_severity_str, n.SeverityStr);
        r.SetString(nf_note_pvo_node, n.Node);
        store.Post();
    }
    store.EnableControls();
}

// The filter editor opening: its private copy of the board's notices.
void BM_EditorCopy(benchmark::State& state) {
    for (auto _ : state) {
        TNoticeStore copy;
        copy.CopyFrom(Board());
        benchmark::DoNotOptimize(copy.TotalCount());
    }
}

// After an edit: the expression compiled on its own.
void BM_Compile(benchmark::State& state, const char* text) {
    for (auto _ : state)
        benchmark::DoNotOptimize(CompileFilterExpression(text));
}

// The whole live count, step by step; "longest step" is the most the dialog waits between two looks at
// the clock, so a slice overshoots its 8 ms by at most that.
void BM_LiveCount(benchmark::State& state, const char* text) {
    TFilterPassCount count;
    double longest = 0, total = 0;
    int64_t steps = 0;
    for (auto _ : state) {
        count.Start(Board(), text);
        for (bool done = false; !done; ++steps) {
            const auto t0 = std::chrono::steady_clock::now();
            done = count.Step(RowsPerStep);
            const double us =
                std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - t0).count();
            longest = std::max(longest, us);
            total += us;
        }
        benchmark::DoNotOptimize(count.Passed());
    }
    state.counters["passed"] = count.Passed();
    state.counters["longest_step_us"] = longest; // wall time: includes the machine's preemptions
    state.counters["mean_step_us"] = total / double(steps);
    state.counters["rows/s"] =
        benchmark::Counter(double(RowCount) * double(state.iterations()), benchmark::Counter::kIsRate);
}

// Reference: the store's recount of every row after a new filter text.
void BM_StoreRecount(benchmark::State& state, const char* text) {
    for (auto _ : state) {
        Board().SetFilterText(text);
        benchmark::DoNotOptimize(Board().RecordCount());
    }
    Board().SetFilterText("");
    state.counters["rows/s"] =
        benchmark::Counter(double(RowCount) * double(state.iterations()), benchmark::Counter::kIsRate);
}

} // namespace

int main(int argc, char** argv) {
    Fill();
    benchmark::RegisterBenchmark("EditorCopy", BM_EditorCopy)->Unit(benchmark::kMillisecond);
    for (const auto& e : Expressions) {
        benchmark::RegisterBenchmark((std::string("Compile/") + e[0]).c_str(), BM_Compile, e[1])
            ->Unit(benchmark::kMicrosecond);
        benchmark::RegisterBenchmark((std::string("LiveCount/") + e[0]).c_str(), BM_LiveCount, e[1])
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark((std::string("StoreRecount/") + e[0]).c_str(), BM_StoreRecount, e[1])
            ->Unit(benchmark::kMillisecond);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
