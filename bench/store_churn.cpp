// A board that runs for weeks: 100 000 live notices, then millions of new notices each followed by the
// deletion of the oldest one, so that the live count stays the same while keys climb. Straight on the
// store (the way the protocol inserts and deletes, without parsing), sampling the store's own byte count
// and the resident set as it goes. The reference, in the same run, is the live rows alone (their records,
// text and index entries) as a fresh store holds them. Goal: memory stays flat after warm-up.
// Also the pause of one compaction of a million-row store, with and without the grid's view.
#include "NoticeSamples.h"

#include "core/TNoticeGridView.h"
#include "core/TNoticeStore.h"

#include <benchmark/benchmark.h>
#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <memory>
#include <string>

namespace {

size_t Resident() {
    long pages = 0, resident = 0;
    if (FILE* f = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(f, "%ld %ld", &pages, &resident) != 2) resident = 0;
        std::fclose(f);
    }
    return size_t(resident) * size_t(sysconf(_SC_PAGESIZE));
}

void Insert(TNoticeStore& store, int64_t n) {
    const TSampleNotice s = SampleNotice("churn", n);
    store.Append();
    TNoticeRecord& row = store.Buffer();
    std::string_view values[NoticeFieldCount];
    values[nf_adpt_orig_key] = s.Key;
    values[nf_adpt_orig_server] = s.Server;
    values[nf_note_summary] = s.Summary;
    values[nf_note_text] = s.Text;
    values[nf_note_pvo_node] = s.Node;
    values[nf_note_severity_str] = s.SeverityStr;
    row.SetStrings(values, (1u << nf_adpt_orig_key) | (1u << nf_adpt_orig_server) | (1u << nf_note_summary) |
                               (1u << nf_note_text) | (1u << nf_note_pvo_node) |
                               (1u << nf_note_severity_str));
    row.SetInteger(nf_note_severity, s.Severity);
    store.Post();
}

void BM_Churn(benchmark::State& state) {
    const int64_t live = state.range(0);
    const int64_t churn = state.range(1);
    for (auto _ : state) {
        TNoticeStore store;
        store.SetIndexName(TNoticeStore::OrigKeyIndexName);
        for (int64_t n = 0; n < live; ++n)
            Insert(store, n);
        size_t warmOwn = 0, warmRss = 0, lateOwn = 0, lateRss = 0;
        for (int64_t n = live; n < live + churn; ++n) {
            // The oldest notice is deleted the way the protocol deletes: found by its originator key.
            store.FindKey(SampleNotice("churn", n - live).Key);
            store.Delete();
            Insert(store, n);
            if ((n - live) % 10000 != 0 || n == live) continue; // every phase of the compaction cycle
            malloc_trim(0);
            const bool warm = n - live <= churn / 4;
            size_t& own = warm ? warmOwn : lateOwn;
            size_t& rss = warm ? warmRss : lateRss;
            own = std::max(own, store.OwnBytes());
            rss = std::max(rss, Resident());
        }
        state.counters["warm_own_MB"] = double(warmOwn) / 1e6;
        state.counters["late_own_MB"] = double(lateOwn) / 1e6;
        state.counters["warm_rss_MB"] = double(warmRss) / 1e6;
        state.counters["late_rss_MB"] = double(lateRss) / 1e6;
        state.counters["last_key"] = double(store.NextKey() - 1);
        state.counters["slots"] = store.SlotCount();
        state.counters["dead_slots"] = store.DeadSlotCount();
        // The reference: the same live rows in a store that never deleted anything.
        TNoticeStore fresh;
        for (int64_t n = churn; n < live + churn; ++n)
            Insert(fresh, n);
        state.counters["fresh_own_MB"] = double(fresh.OwnBytes()) / 1e6;
    }
}

// The pause a compaction makes: a store of 1 000 000 live notices that has just reached a quarter of dead
// slots (333 334 random ones deleted while as many new ones arrived), compacted; with and without the
// grid's view sorted by severity, which renumbers its slots in the same pass.
void BM_CompactionPause(benchmark::State& state) {
    const bool withView = state.range(0) != 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto store = std::make_unique<TNoticeStore>();
        store->SetCompactionFloor(INT32_MAX); // compacted below, by hand
        for (int64_t n = 0; n < 1000000; ++n)
            Insert(*store, n);
        std::unique_ptr<TNoticeGridView> view;
        if (withView) {
            view = std::make_unique<TNoticeGridView>(*store);
            view->SetOrder({}, {{nf_note_severity, false}});
        }
        // Notices come and go at random until a quarter of the slots are dead, as they would on the board.
        uint64_t x = 88172645463325252ull;
        for (int64_t n = 1000000; store->DeadSlotCount() < 333334; ++n) {
            x ^= x << 13, x ^= x >> 7, x ^= x << 17;
            store->SetRecNo(int32_t(1 + x % uint64_t(store->RecordCount())));
            store->Delete();
            Insert(*store, n);
        }
        const uint64_t rebuilds = view ? view->RebuildCount() : 0;
        state.ResumeTiming();
        store->Compact();
        if (view) benchmark::DoNotOptimize(view->KeyAt(0));
        state.PauseTiming();
        state.counters["slots"] = store->SlotCount();
        if (view) state.counters["view_rebuilds"] = double(view->RebuildCount() - rebuilds);
        view.reset();
        store.reset();
        state.ResumeTiming();
    }
}

} // namespace

BENCHMARK(BM_CompactionPause)->Arg(0)->Arg(1)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Churn)->Args({100000, 3000000})->Iterations(1)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
