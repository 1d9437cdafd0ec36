// The grid's quick search (TQuickSearch narrowing a TNoticeGridView) on a board of 1 000 000 typical
// notices (NoticeSamples.h) filled through the notice callback, the view sorted by summary and searching
// the default display's five columns (source id, summary, date raised, count, severity):
//  - folding every row's shown texts the first time (Prepare);
//  - the answer to one change of the search text, from a set-up state that is not timed: the first word
//    typed into an empty box (one that every row matches, and a rare one), a letter typed on, a second
//    word, a letter taken back, and the box cleared; with one thread and with two;
//  - the same with the note text shown too (about 300 more bytes a row).
// The answer is SetText plus the grid's next read of the view (its row count). The reference, measured in
// the same run, is the naive scan: every row's shown texts formatted, folded and searched per keystroke.
#include "SampleBoard.h"

#include "core/TNoticeBoard.h"
#include "core/TNoticeGridView.h"
#include "core/TQuickSearch.h"
#include "core/Znb_callback.h"
#include "core/Znb_fieldtext.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int64_t Rows = 1000000;
const std::vector<TNoticeField> Shown = {nf_adpt_source_id, nf_note_summary, nf_note_raised_date,
                                         nf_note_count, nf_note_severity};

TNoticeBoard& Board() {
    return SampleBoard(Rows);
}

struct TSetup {
    TNoticeGridView View{Board().cdsNoticeBd()};
    TQuickSearch Search{Board().cdsNoticeBd()};
    explicit TSetup(bool WithText, int Threads) {
        std::vector<TNoticeField> fields = Shown;
        if (WithText) fields.push_back(nf_note_text);
        Search.SetFields(fields);
        Search.SetThreads(Threads);
        View.SetOrder({}, {{nf_note_summary, false}});
        View.SetNarrowing(&Search);
        Search.Prepare();
    }
};

void BM_Prepare(benchmark::State& state) {
    TSetup s(state.range(0) != 0, 1);
    for (auto _ : state) {
        s.Search.SetFields({});
        s.Search.SetFields(state.range(0) ? std::vector<TNoticeField>{nf_adpt_source_id, nf_note_summary,
                                                                      nf_note_raised_date, nf_note_count,
                                                                      nf_note_severity, nf_note_text}
                                          : Shown);
        s.Search.Prepare();
    }
    state.counters["cache_bytes_per_row"] = double(s.Search.CacheBytes()) / double(Rows);
}

// From the text Before (set up, untimed) to After (timed).
void Answer(benchmark::State& state, const char* Before, const char* After) {
    TSetup s(state.range(0) != 0, int(state.range(1)));
    int32_t found = 0;
    for (auto _ : state) {
        state.PauseTiming();
        s.Search.SetText(Before);
        benchmark::DoNotOptimize(s.View.RowCount());
        state.ResumeTiming();
        s.Search.SetText(After);
        found = s.View.RowCount();
    }
    state.counters["found"] = found;
    state.counters["rebuilds"] = double(s.View.RebuildCount());
}

// What a search costs without any of this: each keystroke formats, folds and searches every row's texts.
void BM_NaiveScanReference(benchmark::State& state) {
    TNoticeStore& store = Board().cdsNoticeBd();
    std::vector<TNoticeField> fields = Shown;
    if (state.range(0)) fields.push_back(nf_note_text);
    const std::vector<std::string> words = QuickSearchWords("ts_12345");
    int32_t found = 0;
    for (auto _ : state) {
        found = 0;
        store.ForEachRow([&](const TNoticeRecord& row) {
            for (const std::string& w : words) {
                bool in = false;
                for (TNoticeField f : fields)
                    if (QuickSearchFold(FieldDisplayText(row, f)).find(w) != std::string::npos) {
                        in = true;
                        break;
                    }
                if (!in) return;
            }
            ++found;
        });
    }
    state.counters["found"] = found;
}

} // namespace

#define QS_ARGS ArgsProduct({{0, 1}, {1, 2}})->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(5)
BENCHMARK(BM_Prepare)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(2);
BENCHMARK_CAPTURE(Answer, FirstWordEveryRow, "", "t")->QS_ARGS;
BENCHMARK_CAPTURE(Answer, FirstWordRare, "", "ts_123456")->QS_ARGS;
BENCHMARK_CAPTURE(Answer, LetterTypedOn, "ts_1234", "ts_12345")->QS_ARGS;
BENCHMARK_CAPTURE(Answer, SecondWord, "ts_1", "ts_1 dbserver7")->QS_ARGS;
BENCHMARK_CAPTURE(Answer, LetterTakenBack, "ts_12345", "ts_1234")->QS_ARGS;
BENCHMARK_CAPTURE(Answer, WideningToEveryRow, "ts_1", "t")->QS_ARGS;
BENCHMARK_CAPTURE(Answer, BoxCleared, "ts_1", "")->QS_ARGS;
BENCHMARK(BM_NaiveScanReference)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK_MAIN();
