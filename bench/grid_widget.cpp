// The notice grid widget (TNoticeBdGrid over TNoticeGridView) against the usual Qt way of showing the same
// rows: QStandardItemModel (18 items per notice) + QSortFilterProxyModel (dynamic sorting, severity by
// its number) + QTableView, both shown at 1200 x 800 on the offscreen platform, on boards of typical
// notices filled through the notice callback (NoticeSamples.h):
//  (a) load: build the grid (or the reference's items, proxy and view) on the board, sort by severity,
//      paint the first screen;
//  (b) one 10-notice "post" message (5 new notices, 5 updates that change the severity) through the
//      callback with the grid sorted by severity, the grid brought up to date, with and without a repaint
//      (the reference mirrors the ten changes into its items, every cell of an updated row, and lays its
//      view out). Messages follow each other with nothing painted in between unless the case repaints;
//      the new notices are deleted again, untimed, so the board keeps its size;
//  (c) sorting by summary and by severity, repaint included;
//  (d) painting one page in the middle, again (the texts laid out before) and paging down (new texts);
//  (e) the heap the grid (or the reference) adds beyond the store, per row;
// and selecting every row (Ctrl+A) of a million.
// Times are the thread's CPU time (the machine is shared); (e) is measured with mallinfo2.
#include "GridWidgetSides.h"

#include "core/Znb_callback.h"

#include <QApplication>
#include <QScrollBar>

#include <benchmark/benchmark.h>

#include <ctime>
#include <map>
#include <memory>
#include <random>

namespace {

// ---- (a) load and paint the first screen ----

void BM_Load_Ours(benchmark::State& state) {
    TNoticeStore& store = SampleBoard(state.range(0)).cdsNoticeBd();
    for (auto _ : state) {
        const double t0 = ThreadSeconds();
        auto ours = std::make_unique<TOurs>(store);
        state.SetIterationTime(ThreadSeconds() - t0);
        ours.reset();
    }
}

void BM_Load_Reference(benchmark::State& state) {
    TNoticeStore& store = SampleBoard(state.range(0)).cdsNoticeBd();
    for (auto _ : state) {
        const double t0 = ThreadSeconds();
        auto reference = std::make_unique<TReference>(store);
        state.SetIterationTime(ThreadSeconds() - t0);
        reference.reset();
    }
}

// ---- (b) one 10-notice message ----

struct TMessages {
    std::vector<std::string> Post, Undo;
    std::vector<std::vector<std::string>> NewKeys, UpdatedKeys;
};

TMessages MakeMessages(int64_t rows, int count) {
    static int run = 0;
    const std::string prefix = "new" + std::to_string(++run);
    std::mt19937_64 rng(uint64_t(rows) + uint64_t(run));
    TMessages m;
    for (int i = 0; i < count; ++i) {
        std::string post = "<NoticeMessage><NoticeList>", undo = post;
        std::vector<std::string> added, updated;
        for (int k = 0; k < 5; ++k) {
            const int64_t n = int64_t(i) * 5 + k;
            post += SampleNoticeXML(prefix, n);
            added.push_back(SampleNotice(prefix, n).Key);
            undo += "<Notice><Command>delete</Command><adpt_orig_key>" + added.back() +
                    "</adpt_orig_key></Notice>";
        }
        for (int k = 0; k < 5; ++k) {
            const int64_t n = int64_t(rng() % uint64_t(rows));
            std::string xml = SampleNoticeXML("fill", n);
            const std::string old = "<note_severity>" + std::to_string(n % 4 + 1) + "<";
            const int severity = int((n % 4 + 1 + int64_t(rng() % 3)) % 4) + 1;
            xml.replace(xml.find(old), old.size(), "<note_severity>" + std::to_string(severity) + "<");
            post += xml;
            updated.push_back(SampleNotice("fill", n).Key);
        }
        m.Post.push_back(post + "</NoticeList></NoticeMessage>");
        m.Undo.push_back(undo + "</NoticeList></NoticeMessage>");
        m.NewKeys.push_back(added);
        m.UpdatedKeys.push_back(updated);
    }
    return m;
}

void Message_Ours(benchmark::State& state, bool repaint) {
    TNoticeBoard& board = SampleBoard(state.range(0));
    TOurs ours(board.cdsNoticeBd());
    ours.Grid.verticalScrollBar()->setValue(ours.Grid.verticalScrollBar()->maximum() / 2);
    ours.Grid.viewport()->repaint();
    const TMessages messages = MakeMessages(state.range(0), 200);
    size_t i = 0;
    for (auto _ : state) {
        const double t0 = ThreadSeconds();
        SendToBoard(messages.Post[i % messages.Post.size()]);
        ours.Grid.RefreshNow(); // what the grid's timer does, layout included
        if (repaint) ours.Grid.viewport()->repaint();
        state.SetIterationTime(ThreadSeconds() - t0);
        SendToBoard(messages.Undo[i % messages.Undo.size()]);
        ours.Grid.RefreshNow();
        ++i;
    }
    state.counters["rows"] = double(ours.Grid.model()->rowCount());
}

void Message_Reference(benchmark::State& state, bool repaint) {
    TNoticeBoard& board = SampleBoard(state.range(0));
    TNoticeStore& store = board.cdsNoticeBd();
    TReference reference(store);
    reference.View.verticalScrollBar()->setValue(reference.View.verticalScrollBar()->maximum() / 2);
    reference.View.viewport()->repaint();
    const TMessages messages = MakeMessages(state.range(0), 50);
    size_t i = 0;
    std::vector<int32_t> added;
    for (auto _ : state) {
        const size_t m = i % messages.Post.size();
        const double t0 = ThreadSeconds();
        SendToBoard(messages.Post[m]);
        added.clear();
        for (const std::string& key : messages.NewKeys[m]) {
            added.push_back(KeyOfOrig(store, key));
            reference.Add(RowOfKey(store, added.back()));
        }
        for (const std::string& key : messages.UpdatedKeys[m])
            reference.Update(RowOfKey(store, KeyOfOrig(store, key)));
        reference.View.doItemsLayout(); // what the view's delayed layout would do next
        if (repaint) reference.View.viewport()->repaint();
        state.SetIterationTime(ThreadSeconds() - t0);
        SendToBoard(messages.Undo[m]);
        for (const int32_t key : added)
            reference.Remove(key);
        reference.View.doItemsLayout();
        ++i;
    }
    state.counters["rows"] = double(reference.Proxy.rowCount());
}

void BM_Message_Ours(benchmark::State& state) {
    Message_Ours(state, false);
}
void BM_Message_Ours_Repaint(benchmark::State& state) {
    Message_Ours(state, true);
}
void BM_Message_Reference(benchmark::State& state) {
    Message_Reference(state, false);
}
void BM_Message_Reference_Repaint(benchmark::State& state) {
    Message_Reference(state, true);
}

// ---- (c) sorting ----

void Sort_Ours(benchmark::State& state, TNoticeField field) {
    TOurs ours(SampleBoard(state.range(0)).cdsNoticeBd());
    bool descending = false;
    for (auto _ : state) {
        descending = !descending;
        const double t0 = ThreadSeconds();
        ours.SortBy(field, descending);
        ours.Grid.viewport()->repaint();
        state.SetIterationTime(ThreadSeconds() - t0);
    }
}

void Sort_Reference(benchmark::State& state, TNoticeField field) {
    TReference reference(SampleBoard(state.range(0)).cdsNoticeBd());
    bool descending = false;
    for (auto _ : state) {
        descending = !descending;
        const double t0 = ThreadSeconds();
        reference.Proxy.sort(field, descending ? Qt::DescendingOrder : Qt::AscendingOrder);
        reference.View.viewport()->repaint();
        state.SetIterationTime(ThreadSeconds() - t0);
    }
}

void BM_SortSummary_Ours(benchmark::State& state) {
    Sort_Ours(state, nf_note_summary);
}
void BM_SortSeverity_Ours(benchmark::State& state) {
    Sort_Ours(state, nf_note_severity);
}
void BM_SortSummary_Reference(benchmark::State& state) {
    Sort_Reference(state, nf_note_summary);
}
void BM_SortSeverity_Reference(benchmark::State& state) {
    Sort_Reference(state, nf_note_severity);
}

// ---- (d) one page in the middle ----

template <typename T> void PaintPage(benchmark::State& state, T& widget, QTableView& view) {
    view.scrollTo(view.model()->index(view.model()->rowCount() / 2, nf_note_summary));
    view.viewport()->repaint();
    for (auto _ : state) {
        const double t0 = ThreadSeconds();
        view.viewport()->repaint();
        state.SetIterationTime(ThreadSeconds() - t0);
    }
    (void)widget;
    state.counters["rows shown"] = double(view.rowAt(view.viewport()->height() - 1) - view.rowAt(0) + 1);
}

// Paging down: every iteration shows rows not painted before (their texts are laid out afresh).
template <typename T> void PageDown(benchmark::State& state, T& widget, QTableView& view) {
    view.viewport()->repaint();
    QScrollBar* bar = view.verticalScrollBar();
    for (auto _ : state) {
        const double t0 = ThreadSeconds();
        bar->setValue(bar->value() + bar->pageStep());
        view.viewport()->repaint();
        state.SetIterationTime(ThreadSeconds() - t0);
    }
    (void)widget;
}

void BM_PageDown_Ours(benchmark::State& state) {
    TOurs ours(SampleBoard(state.range(0)).cdsNoticeBd());
    PageDown(state, ours, ours.Grid);
}

void BM_PageDown_Reference(benchmark::State& state) {
    TReference reference(SampleBoard(state.range(0)).cdsNoticeBd());
    PageDown(state, reference, reference.View);
}

void BM_Page_Ours(benchmark::State& state) {
    TOurs ours(SampleBoard(state.range(0)).cdsNoticeBd());
    PaintPage(state, ours, ours.Grid);
}

void BM_Page_Reference(benchmark::State& state) {
    TReference reference(SampleBoard(state.range(0)).cdsNoticeBd());
    PaintPage(state, reference, reference.View);
}

// Ctrl+A on every row, and a click that clears it again (untimed).
void BM_SelectAll_Ours(benchmark::State& state) {
    TOurs ours(SampleBoard(state.range(0)).cdsNoticeBd());
    for (auto _ : state) {
        const double t0 = ThreadSeconds();
        ours.Grid.selectAll();
        ours.Grid.viewport()->repaint();
        state.SetIterationTime(ThreadSeconds() - t0);
        ours.Grid.SetSelectedKeys({});
    }
    state.counters["selected"] = double(ours.Grid.model()->rowCount());
}

// ---- (e) memory ----

template <typename T> void Memory(benchmark::State& state) {
    TNoticeStore& store = SampleBoard(state.range(0)).cdsNoticeBd();
    const double rows = double(store.RecordCount());
    for (auto _ : state) {
        // What the view alone holds, sorted by severity, for comparison.
        size_t before = HeapInUse();
        auto view = std::make_unique<TNoticeGridView>(store);
        benchmark::DoNotOptimize(view->RowCount()); // read in key order first, as the grid does
        view->SetOrder({}, {{nf_note_severity, false}});
        state.counters["view bytes/row"] = double(HeapInUse() - before) / rows;
        view.reset();
        before = HeapInUse();
        auto shown = std::make_unique<T>(store);
        state.counters["bytes/row"] = double(HeapInUse() - before) / rows;
        shown.reset();
    }
}

void BM_Memory_Ours(benchmark::State& state) {
    Memory<TOurs>(state);
}
void BM_Memory_Reference(benchmark::State& state) {
    Memory<TReference>(state);
}

} // namespace

BENCHMARK(BM_Load_Ours)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(1000000)
    ->Iterations(3)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Load_Reference)
    ->Arg(10000)
    ->Arg(100000)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

BENCHMARK(BM_Message_Ours)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(1000000)
    ->Iterations(2000)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Message_Ours_Repaint)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(1000000)
    ->Iterations(500)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Message_Reference)
    ->Arg(10000)
    ->Arg(100000)
    ->Iterations(20)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Message_Reference_Repaint)
    ->Arg(10000)
    ->Arg(100000)
    ->Iterations(20)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

BENCHMARK(BM_SortSummary_Ours)
    ->Arg(100000)
    ->Arg(1000000)
    ->Iterations(4)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SortSeverity_Ours)
    ->Arg(100000)
    ->Arg(1000000)
    ->Iterations(4)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SortSummary_Reference)
    ->Arg(100000)
    ->Iterations(2)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SortSeverity_Reference)
    ->Arg(100000)
    ->Iterations(2)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

BENCHMARK(BM_Page_Ours)
    ->Arg(100000)
    ->Arg(1000000)
    ->Iterations(200)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Page_Reference)->Arg(100000)->Iterations(100)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PageDown_Ours)
    ->Arg(100000)
    ->Arg(1000000)
    ->Iterations(100)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PageDown_Reference)
    ->Arg(100000)
    ->Iterations(100)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

BENCHMARK(BM_SelectAll_Ours)->Arg(1000000)->Iterations(5)->UseManualTime()->Unit(benchmark::kMillisecond);

BENCHMARK(BM_Memory_Ours)->Arg(100000)->Arg(1000000)->Iterations(1);
BENCHMARK(BM_Memory_Reference)->Arg(100000)->Iterations(1);

int main(int argc, char** argv) {
    return RunOffscreenBenchmarks(argc, argv);
}
