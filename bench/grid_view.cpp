// The grid's row order (TNoticeGridView) on boards of typical notices filled through the notice callback:
//  - setting the order (a full sort) by summary and by severity, at 100 000 and 1 000 000 rows;
//  - one 10-notice "post" message (5 new notices, 5 updates that change the severity) with the view
//    sorted by severity, at 10 000, 100 000 and 1 000 000 rows, with and without a filter in effect;
//  - the same ten row changes made straight on the store, with and without the view;
//  - the view's heap bytes per row, freshly sorted and after many updates.
// The reference, measured in the same run, is std::stable_sort of the row slots with the plain row
// comparison: what re-sorting the grid after each message would cost. "Board" is the message with no view
// attached, so View - Board is what the view adds to a message.
#include "SampleBoard.h"

#include "core/TNoticeBoard.h"
#include "core/TNoticeGridView.h"
#include "core/Znb_callback.h"

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <ctime>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

const std::vector<TSortColumn> BySummary = {{nf_note_summary, false}};
const std::vector<TSortColumn> BySeverity = {{nf_note_severity, false}};

// Full sorts: each iteration sorts the other way round, so that every SetOrder really sorts.
void SetOrder(benchmark::State& state, TNoticeField field) {
    TNoticeBoard& board = SampleBoard(state.range(0));
    TNoticeGridView view(board.cdsNoticeBd());
    bool descending = false;
    for (auto _ : state) {
        descending = !descending;
        view.SetOrder({}, {{field, descending}});
        benchmark::DoNotOptimize(view.KeyAt(0));
    }
    state.counters["rows"] = view.RowCount();
}

void StableSortReference(benchmark::State& state, const std::vector<TSortColumn>& columns) {
    TNoticeStore& store = SampleBoard(state.range(0)).cdsNoticeBd();
    std::vector<int32_t> slots;
    for (auto _ : state) {
        state.PauseTiming();
        slots.clear();
        for (int32_t s = 0; s < store.SlotCount(); ++s)
            if (store.SlotLive(s)) slots.push_back(s);
        state.ResumeTiming();
        std::stable_sort(slots.begin(), slots.end(), [&](int32_t a, int32_t b) {
            return CompareNoticeRows(store.RowBySlot(a), store.RowBySlot(b), columns) < 0;
        });
        benchmark::DoNotOptimize(slots.data());
    }
    state.counters["rows"] = double(slots.size());
}

void BM_SetOrder_Summary(benchmark::State& state) {
    SetOrder(state, nf_note_summary);
}
void BM_SetOrder_Severity(benchmark::State& state) {
    SetOrder(state, nf_note_severity);
}
void BM_StableSort_Summary(benchmark::State& state) {
    StableSortReference(state, BySummary);
}
void BM_StableSort_Severity(benchmark::State& state) {
    StableSortReference(state, BySeverity);
}

// Message i: 5 new notices and 5 posts of stored notices whose severity moves up by 1 to 3 steps. The new
// notices are deleted again (untimed) so that the board keeps its size.
struct TMessages {
    std::vector<std::string> Post, Undo;
};

TMessages MakeMessages(int64_t rows, int count) {
    static int run = 0;
    const std::string prefix = "new" + std::to_string(++run);
    std::mt19937_64 rng(uint64_t(rows) + uint64_t(run));
    TMessages m;
    for (int i = 0; i < count; ++i) {
        std::string post = "<NoticeMessage><NoticeList>", undo = post;
        for (int k = 0; k < 5; ++k) {
            const int64_t n = int64_t(i) * 5 + k;
            post += SampleNoticeXML(prefix, n);
            undo += "<Notice><Command>delete</Command><adpt_orig_key>" + SampleNotice(prefix, n).Key +
                    "</adpt_orig_key></Notice>";
        }
        for (int k = 0; k < 5; ++k) {
            const int64_t n = int64_t(rng() % uint64_t(rows));
            std::string xml = SampleNoticeXML("fill", n);
            const std::string old = "<note_severity>" + std::to_string(n % 4 + 1) + "<";
            const int severity = int((n % 4 + 1 + int64_t(rng() % 3)) % 4) + 1;
            xml.replace(xml.find(old), old.size(), "<note_severity>" + std::to_string(severity) + "<");
            post += xml;
        }
        m.Post.push_back(post + "</NoticeList></NoticeMessage>");
        m.Undo.push_back(undo + "</NoticeList></NoticeMessage>");
    }
    return m;
}

enum class TMode { Board, View, FilteredView, Resort };

// The timed part of a message is measured in the thread's CPU time: the machine is shared, and a message
// is short enough for other processes' bursts to swamp its wall time.

void Message(benchmark::State& state, TMode mode) {
    const int64_t rows = state.range(0);
    TNoticeBoard& board = SampleBoard(rows);
    TNoticeStore& store = board.cdsNoticeBd();
    if (mode == TMode::FilteredView) {
        store.SetFilterText("note_severity >= 2");
        store.SetFiltered(true);
    }
    std::unique_ptr<TNoticeGridView> view;
    if (mode == TMode::View || mode == TMode::FilteredView) {
        view = std::make_unique<TNoticeGridView>(store);
        view->SetOrder({}, BySeverity);
    }
    const uint64_t rebuilds = view ? view->RebuildCount() : 0;
    const TMessages messages = MakeMessages(rows, 200);
    std::vector<int32_t> slots;
    size_t i = 0;
    for (auto _ : state) {
        const double t0 = ThreadSeconds();
        SendToBoard(messages.Post[i % messages.Post.size()]);
        if (view) benchmark::DoNotOptimize(view->KeyAt(0)); // the grid reads the view after a message
        if (mode == TMode::Resort) {
            slots.clear();
            for (int32_t s = 0; s < store.SlotCount(); ++s)
                if (store.SlotLive(s)) slots.push_back(s);
            std::stable_sort(slots.begin(), slots.end(), [&](int32_t a, int32_t b) {
                return CompareNoticeRows(store.RowBySlot(a), store.RowBySlot(b), BySeverity) < 0;
            });
        }
        state.SetIterationTime(ThreadSeconds() - t0);
        SendToBoard(messages.Undo[i % messages.Undo.size()]);
        ++i;
    }
    state.counters["rows"] = double(store.TotalCount());
    if (view) state.counters["rebuilds"] = double(view->RebuildCount() - rebuilds);
    view.reset();
    if (mode == TMode::FilteredView) {
        store.SetFiltered(false);
        store.SetFilterText("");
    }
}

void BM_Message_Board(benchmark::State& state) {
    Message(state, TMode::Board);
}
void BM_Message_View(benchmark::State& state) {
    Message(state, TMode::View);
}
void BM_Message_FilteredView(benchmark::State& state) {
    Message(state, TMode::FilteredView);
}
void BM_Message_StableSortReference(benchmark::State& state) {
    Message(state, TMode::Resort);
}

// The same ten row changes made straight on the store, without parsing: the view's own share of a
// message, apart from the XML work that makes the message timings noisy.
void RowChanges(benchmark::State& state, bool withView) {
    TNoticeStore& store = SampleBoard(state.range(0)).cdsNoticeBd();
    std::unique_ptr<TNoticeGridView> view;
    if (withView) {
        view = std::make_unique<TNoticeGridView>(store);
        view->SetOrder({}, BySeverity);
    }
    std::mt19937 rng(uint32_t(state.range(0)));
    store.DisableControls();
    for (auto _ : state) {
        const double t0 = ThreadSeconds();
        for (int k = 0; k < 5; ++k) {
            store.Append();
            store.Buffer().SetInteger(nf_note_severity, int32_t(1 + rng() % 4));
            store.Post();
        }
        for (int k = 0; k < 5; ++k) {
            store.SetRecNo(int32_t(1 + rng() % uint32_t(store.RecordCount())));
            store.Edit();
            store.Buffer().SetInteger(nf_note_severity, store.Buffer().AsInteger(nf_note_severity) % 4 + 1);
            store.Post();
        }
        if (view) benchmark::DoNotOptimize(view->KeyAt(0));
        state.SetIterationTime(ThreadSeconds() - t0);
        for (int k = 0; k < 5; ++k) {
            store.Last();
            store.Delete();
        }
    }
    store.EnableControls();
}

void BM_RowChanges_Store(benchmark::State& state) {
    RowChanges(state, false);
}
void BM_RowChanges_View(benchmark::State& state) {
    RowChanges(state, true);
}

size_t HeapInUse() {
    malloc_trim(0);
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

// Heap bytes the view holds per row: freshly sorted by severity (leaves 7/8 full), then after a million
// updates of random rows' severity (leaves that split are half full until they fill again).
void BM_ViewMemoryPerRow(benchmark::State& state) {
    TNoticeStore& store = SampleBoard(state.range(0)).cdsNoticeBd();
    for (auto _ : state) {
        const size_t before = HeapInUse();
        auto view = std::make_unique<TNoticeGridView>(store);
        view->SetOrder({}, BySeverity);
        const double rows = view->RowCount();
        state.counters["bytes/row sorted"] = double(HeapInUse() - before) / rows;
        std::mt19937 rng(1);
        store.DisableControls();
        for (int i = 0; i < 1000000; ++i) {
            store.SetRecNo(int32_t(1 + rng() % uint32_t(store.RecordCount())));
            store.Edit();
            store.Buffer().SetInteger(nf_note_severity, int32_t(1 + rng() % 4));
            store.Post();
        }
        store.EnableControls();
        benchmark::DoNotOptimize(view->KeyAt(0));
        state.counters["bytes/row updated"] = double(HeapInUse() - before) / rows;
        view.reset();
    }
}

} // namespace

BENCHMARK(BM_SetOrder_Summary)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StableSort_Summary)->Arg(100000)->Arg(1000000)->Iterations(2)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SetOrder_Severity)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StableSort_Severity)->Arg(100000)->Arg(1000000)->Iterations(3)->Unit(benchmark::kMillisecond);

BENCHMARK(BM_Message_Board)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(1000000)
    ->UseManualTime()
    ->Iterations(5000)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Message_View)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(1000000)
    ->UseManualTime()
    ->Iterations(5000)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Message_FilteredView)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(1000000)
    ->UseManualTime()
    ->Iterations(5000)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Message_StableSortReference)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(1000000)
    ->UseManualTime()
    ->Iterations(5)
    ->Unit(benchmark::kMicrosecond);

BENCHMARK(BM_RowChanges_Store)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(1000000)
    ->UseManualTime()
    ->Iterations(20000)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_RowChanges_View)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(1000000)
    ->UseManualTime()
    ->Iterations(20000)
    ->Unit(benchmark::kMicrosecond);

BENCHMARK(BM_ViewMemoryPerRow)->Arg(1000000)->Iterations(1)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
