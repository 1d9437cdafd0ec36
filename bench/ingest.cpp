// Notice ingestion through the board's notice callback (parse + apply + counters), with 10 000 and with
// 1 000 000 notices already stored, against libxml2 parsing the same texts (xmlReadMemory + xmlFreeDoc).
#include "SampleBoard.h"

#include "core/TNoticeBoard.h"
#include "core/Znb_callback.h"
#include "xml/djlpXML.h"

#include <benchmark/benchmark.h>
#include <libxml/parser.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

// One board per pre-filled size, kept for the whole run (filling a million rows once is enough).

// Fresh keys for every message, made before timing starts.
std::vector<std::string> Messages(const std::string& prefix, int count, int perMessage) {
    std::vector<std::string> texts;
    texts.reserve(count);
    for (int i = 0; i < count; ++i)
        texts.push_back(SampleMessage(prefix, int64_t(i) * perMessage, perMessage));
    return texts;
}

void Ingest(benchmark::State& state, int perMessage, int messages) {
    static int run = 0;
    TNoticeBoard& board = SampleBoard(state.range(0));
    const std::vector<std::string> texts = Messages("run" + std::to_string(++run), messages, perMessage);
    size_t i = 0;
    int64_t failed = 0;
    for (auto _ : state) {
        const char* text = texts[i++ % texts.size()].c_str();
        failed += NoticeCallback(0, &text, 0) != 0;
    }
    state.counters["messages/s"] =
        benchmark::Counter(double(state.iterations()), benchmark::Counter::kIsRate);
    state.counters["notices/s"] =
        benchmark::Counter(double(state.iterations()) * perMessage, benchmark::Counter::kIsRate);
    state.counters["stored"] = board.cdsNoticeBd().TotalCount();
    state.counters["failed"] = double(failed);
}

void Libxml2(benchmark::State& state, int perMessage, int messages) {
    const std::vector<std::string> texts = Messages("ref", messages, perMessage);
    size_t i = 0;
    for (auto _ : state) {
        const std::string& t = texts[i++ % texts.size()];
        xmlDocPtr doc = xmlReadMemory(t.data(), static_cast<int>(t.size()), "msg.xml", nullptr, 0);
        benchmark::DoNotOptimize(doc);
        xmlFreeDoc(doc);
    }
    state.counters["messages/s"] =
        benchmark::Counter(double(state.iterations()), benchmark::Counter::kIsRate);
    state.counters["notices/s"] =
        benchmark::Counter(double(state.iterations()) * perMessage, benchmark::Counter::kIsRate);
}

// The board's own parser alone, to show how the callback's time splits between parsing and applying.
void DjlpXML(benchmark::State& state, int perMessage, int messages) {
    const std::vector<std::string> texts = Messages("djlp", messages, perMessage);
    size_t i = 0;
    for (auto _ : state) {
        TXMLNode node(std::string_view(texts[i++ % texts.size()]));
        benchmark::DoNotOptimize(node.GetChildCount());
    }
    state.counters["notices/s"] =
        benchmark::Counter(double(state.iterations()) * perMessage, benchmark::Counter::kIsRate);
}

void BM_Callback_1NoticeMessages(benchmark::State& state) {
    Ingest(state, 1, 50000);
}
void BM_Libxml2_1NoticeMessages(benchmark::State& state) {
    Libxml2(state, 1, 50000);
}
void BM_Callback_100NoticeMessages(benchmark::State& state) {
    Ingest(state, 100, 500);
}
void BM_Libxml2_100NoticeMessages(benchmark::State& state) {
    Libxml2(state, 100, 500);
}

void BM_DjlpXML_1NoticeMessages(benchmark::State& state) {
    DjlpXML(state, 1, 50000);
}
void BM_DjlpXML_100NoticeMessages(benchmark::State& state) {
    DjlpXML(state, 100, 500);
}

} // namespace

// Fixed iteration counts keep every timed message an insertion of a new notice.
BENCHMARK(BM_Callback_1NoticeMessages)
    ->Arg(10000)
    ->Arg(1000000)
    ->Iterations(50000)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Libxml2_1NoticeMessages)->Iterations(50000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DjlpXML_1NoticeMessages)->Iterations(50000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Callback_100NoticeMessages)
    ->Arg(10000)
    ->Arg(1000000)
    ->Iterations(500)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Libxml2_100NoticeMessages)->Iterations(500)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DjlpXML_100NoticeMessages)->Iterations(500)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
