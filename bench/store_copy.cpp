// Opening the filter editor (a copy of the board's store, cdsTestFilter) and the display editor (a copy of
// the store and of the grid's row order, the preview) with 1 000 000 typical notices on the board:
//  - Open: TNoticeStore::CopyFrom, plus for the preview a TNoticeGridView started from the grid's view;
//  - DeepReference: what copying cost before the stores shared their storage, measured in the same run:
//    every row copied with its text into a new store (rows, key index and marks built as insertions build
//    them), and for the preview a view sorted again;
//  - FilterOnCopy: a filter text set on the copy (a recount of every row, reading only), against the same
//    filter set on the board itself and on a deep copy (whose rows lie freshly packed in memory);
//  - ChangesWithCopyOpen: 10 000 changes on the board (1 000 messages of 3 new notices, 4 updates of
//    random notices and 3 deletions) while a preview is open, against the same changes with none.
// Memory: the heap bytes in use (mallinfo2) and the resident set (/proc/self/statm) before and after.
// Goal: opening either editor takes under 100 ms and under 20 MB.
#include "SampleBoard.h"
#include "StoreDeepCopy.h"

#include "core/FilterExpression.h"
#include "core/TNoticeBoard.h"
#include "core/TNoticeGridView.h"
#include "core/Znb_callback.h"

#include <benchmark/benchmark.h>
#include <malloc.h>
#include <unistd.h>

#include <cstdio>
#include <ctime>
#include <memory>
#include <random>
#include <string>

namespace {

constexpr int64_t Rows = 1000000;
const std::vector<TSortColumn> GridOrder = {{nf_note_summary, false}};

struct TBoard {
    TNoticeBoard Board;
    std::unique_ptr<TNoticeGridView> Grid;
};

// The board with its grid sorted by summary, filled once through the notice callback.
TBoard& Board() {
    static std::unique_ptr<TBoard> board;
    if (!board) {
        board = std::make_unique<TBoard>();
        SetNoticeBoard(&board->Board);
        FillBoard(Rows);
        board->Grid = std::make_unique<TNoticeGridView>(board->Board.cdsNoticeBd());
        board->Grid->SetOrder({}, GridOrder);
    }
    return *board;
}

size_t HeapInUse() {
    malloc_trim(0);
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

size_t Resident() {
    long pages = 0, resident = 0;
    if (FILE* f = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(f, "%ld %ld", &pages, &resident) != 2) resident = 0;
        std::fclose(f);
    }
    return size_t(resident) * size_t(sysconf(_SC_PAGESIZE));
}

struct TMemory {
    size_t Heap = HeapInUse(), Rss = Resident();
    void Report(benchmark::State& state, const char* what) const {
        state.counters[std::string(what) + "_heap_MB"] = double(HeapInUse() - Heap) / 1e6;
        state.counters[std::string(what) + "_rss_MB"] = (double(Resident()) - double(Rss)) / 1e6;
    }
};

// Timed parts are measured in the thread's CPU time (page faults included): the machine is shared, and
// other processes' bursts would swamp wall time.

void Open(benchmark::State& state, bool preview, bool deep) {
    TBoard& b = Board();
    TNoticeStore& store = b.Board.cdsNoticeBd();
    benchmark::DoNotOptimize(b.Grid->KeyAt(0));
    for (auto _ : state) {
        const TMemory before;
        const double t0 = ThreadSeconds();
        auto copy = std::make_unique<TNoticeStore>();
        if (deep)
            DeepCopyStore(store, *copy);
        else
            copy->CopyFrom(store);
        std::unique_ptr<TNoticeGridView> view;
        if (preview) {
            if (deep) {
                view = std::make_unique<TNoticeGridView>(*copy);
                view->SetOrder({}, GridOrder);
            } else {
                view = std::make_unique<TNoticeGridView>(*copy, *b.Grid);
            }
            benchmark::DoNotOptimize(view->KeyAt(0));
        }
        state.SetIterationTime(ThreadSeconds() - t0);
        before.Report(state, "extra");
        if (view) state.counters["rebuilds"] = double(view->RebuildCount());
        view.reset();
        copy.reset();
    }
}

void BM_OpenFilterEditor(benchmark::State& state) {
    Open(state, false, false);
}
void BM_OpenFilterEditor_DeepReference(benchmark::State& state) {
    Open(state, false, true);
}
void BM_OpenDisplayEditor(benchmark::State& state) {
    Open(state, true, false);
}
void BM_OpenDisplayEditor_DeepReference(benchmark::State& state) {
    Open(state, true, true);
}

enum class TFilterOn { Copy, Board, DeepCopy };

void FilterOn(benchmark::State& state, TFilterOn on) {
    TNoticeStore& store = Board().Board.cdsNoticeBd();
    TNoticeStore copy;
    if (on == TFilterOn::DeepCopy)
        DeepCopyStore(store, copy);
    else if (on == TFilterOn::Copy)
        copy.CopyFrom(store);
    TNoticeStore& target = on == TFilterOn::Board ? store : copy;
    const size_t boardOwn = store.OwnBytes();
    bool odd = false;
    for (auto _ : state) {
        const TMemory before;
        const double t0 = ThreadSeconds();
        target.SetFiltered(false);
        target.SetFilterText((odd = !odd) ? "note_summary LIKE '%TS_1%'" : "note_summary LIKE '%TS_2%'");
        target.SetFiltered(true);
        benchmark::DoNotOptimize(target.RecordCount());
        state.SetIterationTime(ThreadSeconds() - t0);
        before.Report(state, "filter");
    }
    state.counters["passing"] = target.RecordCount();
    if (on == TFilterOn::Copy)
        state.counters["board_unshared_MB"] = (double(store.OwnBytes()) - double(boardOwn)) / 1e6;
    target.SetFiltered(false);
    target.SetFilterText("");
}

void BM_FilterOnCopy(benchmark::State& state) {
    FilterOn(state, TFilterOn::Copy);
}
void BM_FilterOnBoard_Reference(benchmark::State& state) {
    FilterOn(state, TFilterOn::Board);
}
void BM_FilterOnDeepCopy_Reference(benchmark::State& state) {
    FilterOn(state, TFilterOn::DeepCopy);
}

// 1 000 messages of 10 changes: 3 new notices, 4 posts of random stored notices with a new severity,
// 3 deletions of random stored notices (some already gone).
std::vector<std::string> ChangeMessages(uint32_t seed) {
    std::mt19937_64 rng(seed);
    std::vector<std::string> messages;
    for (int m = 0; m < 1000; ++m) {
        std::string xml = "<NoticeMessage><NoticeList>";
        for (int k = 0; k < 3; ++k)
            xml += SampleNoticeXML("arrived" + std::to_string(seed), m * 3 + k);
        for (int k = 0; k < 4; ++k) {
            const int64_t n = int64_t(rng() % uint64_t(Rows));
            std::string post = SampleNoticeXML("fill", n);
            const std::string old = "<note_severity>" + std::to_string(n % 4 + 1) + "<";
            post.replace(post.find(old), old.size(), "<note_severity>" + std::to_string(1 + rng() % 4) + "<");
            xml += post;
        }
        for (int k = 0; k < 3; ++k)
            xml += "<Notice><Command>delete</Command><adpt_orig_key>" +
                   SampleNotice("fill", int64_t(rng() % uint64_t(Rows))).Key + "</adpt_orig_key></Notice>";
        messages.push_back(xml + "</NoticeList></NoticeMessage>");
    }
    return messages;
}

void Changes(benchmark::State& state, bool copyOpen) {
    TBoard& b = Board();
    TNoticeStore& store = b.Board.cdsNoticeBd();
    SetNoticeBoard(&b.Board);
    static uint32_t seed = 0;
    for (auto _ : state) {
        const std::vector<std::string> messages = ChangeMessages(++seed);
        std::unique_ptr<TNoticeStore> copy;
        std::unique_ptr<TNoticeGridView> preview;
        if (copyOpen) {
            copy = std::make_unique<TNoticeStore>();
            copy->CopyFrom(store);
            preview = std::make_unique<TNoticeGridView>(*copy, *b.Grid);
        }
        const TMemory before;
        const double t0 = ThreadSeconds();
        for (const std::string& xml : messages) {
            const char* text = xml.c_str();
            NoticeCallback(0, &text, 0);
            benchmark::DoNotOptimize(b.Grid->KeyAt(0));
        }
        state.SetIterationTime(ThreadSeconds() - t0);
        before.Report(state, "growth");
        if (preview) state.counters["preview_rows"] = preview->RowCount();
    }
    state.counters["rows"] = store.TotalCount();
}

void BM_ChangesWithCopyOpen(benchmark::State& state) {
    Changes(state, true);
}
void BM_ChangesWithoutCopy(benchmark::State& state) {
    Changes(state, false);
}

} // namespace

BENCHMARK(BM_OpenFilterEditor)->UseManualTime()->Iterations(10)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OpenFilterEditor_DeepReference)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OpenDisplayEditor)->UseManualTime()->Iterations(10)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OpenDisplayEditor_DeepReference)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FilterOnCopy)->UseManualTime()->Iterations(4)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FilterOnBoard_Reference)->UseManualTime()->Iterations(4)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FilterOnDeepCopy_Reference)->UseManualTime()->Iterations(4)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ChangesWithoutCopy)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ChangesWithCopyOpen)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
