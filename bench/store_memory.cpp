// Memory per stored notice: heap bytes in use (mallinfo2) before and after 200 000 typical notices (about
// 400 bytes of field text each) went through the notice callback, against the text they carry.
// Goal: under twice the text.
#include "NoticeSamples.h"

#include "core/TNoticeBoard.h"
#include "core/Znb_callback.h"

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <memory>
#include <string>

namespace {

size_t HeapInUse() {
    malloc_trim(0);
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

void BM_StoreMemoryPerNotice(benchmark::State& state) {
    const int64_t count = state.range(0);
    for (auto _ : state) {
        state.PauseTiming();
        auto board = std::make_unique<TNoticeBoard>();
        SetNoticeBoard(board.get());
        const size_t before = HeapInUse();
        size_t textBytes = 0;
        for (int64_t first = 0; first < count; first += 100) {
            const std::string xml = SampleMessage("mem", first, 100);
            const char* text = xml.c_str();
            NoticeCallback(0, &text, 0);
        }
        for (int64_t n = 0; n < count; ++n)
            textBytes += SampleTextBytes("mem", n);
        const size_t after = HeapInUse();
        const double perNotice = double(after - before) / double(count);
        const double textPerNotice = double(textBytes) / double(count);
        state.counters["bytes/notice"] = perNotice;
        state.counters["text/notice"] = textPerNotice;
        state.counters["ratio"] = perNotice / textPerNotice;
        state.counters["stored"] = board->cdsNoticeBd().TotalCount();
        SetNoticeBoard(nullptr);
        board.reset();
        state.ResumeTiming();
    }
}

} // namespace

BENCHMARK(BM_StoreMemoryPerNotice)->Arg(200000)->Iterations(1)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
