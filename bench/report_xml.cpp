// The report XML of 100 000 realistic notices: TPrintColumnsDefinition::initializeFromGrid over every row
// of the grid (the default display's columns: Source ID, Summary, Date Raised, Count, Severity), then
// initializeXMLTemplate with the shipped template. Widths are measured with the real Arial measurer
// (QFontMetrics on the offscreen platform), which sums a table of advances for ASCII text. References in
// the same run: the same work with the width cache off, so every cell is measured; the same with every
// text laid out by Qt ("LaidOut", what a plain QFontMetrics::horizontalAdvance costs), with and without the
// cache; "FixedMeasurer" shows the text building alone.
#include "NoticeSamples.h"

#include "reports/Ugridtoxml.h"
#include "reports/ui/TArialTextMeasurer.h"
#include "support/StrUtils.h"

#include <QGuiApplication>
#include <benchmark/benchmark.h>

#include <algorithm>

namespace {

constexpr int Rows = 100000;

// The board's grid as the report sees it: no grouping, every row of the store in key order.
class TBenchGrid : public IReportGrid {
public:
    TBenchGrid() {
        for (int n = 0; n < Rows; ++n) {
            const TSampleNotice s = SampleNotice("bench", n);
            FStore.Append();
            TNoticeRecord& b = FStore.Buffer();
            b.SetString(nf_adpt_id, "DEMO");
            b.SetString(nf_adpt_orig_key, s.Key);
            b.SetString(nf_adpt_orig_server, s.Server);
            b.SetString(nf_adpt_source_id, "TS_FULL");
            b.SetString(nf_note_summary, s.Summary);
            b.SetString(nf_note_text, s.Text);
            // Raised a few seconds apart, as a busy estate raises them.
            b.SetDateTime(nf_note_raised_date, EncodeDateTime(2026, 11, 21, 8, 0, 0, 0) + n * 7.0 / 86400);
            b.SetInteger(nf_note_count, 1 + n % 9);
            b.SetInteger(nf_note_severity, s.Severity);
            b.SetString(nf_note_pvo_node, s.Node);
            FStore.Post();
        }
        for (TNoticeField f :
             {nf_adpt_source_id, nf_note_summary, nf_note_raised_date, nf_note_count, nf_note_severity}) {
            const NoticeBdColRec& c = *std::find_if(NoticeBdColumnArray.begin(), NoticeBdColumnArray.end(),
                                                    [f](const NoticeBdColRec& r) { return r.Field == f; });
            FVisible.push_back({c.FieldName, c.Caption, c.DataType});
        }
    }
    int GroupColumnCount() const override { return 0; }
    TReportColumn GroupColumn(int) const override { return {}; }
    int VisibleColumnCount() const override { return int(FVisible.size()); }
    TReportColumn VisibleColumn(int Index) const override { return FVisible[size_t(Index)]; }
    int SelectedCount() const override { return 0; }
    TBookmark SelectedBookmark(int) const override { return 0; }
    TNoticeStore& DataSet() override { return FStore; }
    void WalkNodes(const std::function<bool(const TGridNode&)>& Visit) const override {
        FStore.ForEachRow([&](const TNoticeRecord& row) {
            Visit({false, 0, nf_nb_internal_key, &row, 0, 1});
        });
    }

private:
    TNoticeStore FStore;
    std::vector<TReportColumn> FVisible;
};

class TLaidOutMeasurer : public ITextMeasurer {
public:
    int TextWidth(const std::string& Text) override { return FArial.LaidOutWidth(Text); }

private:
    TArialTextMeasurer FArial;
};

class TFixedMeasurer : public ITextMeasurer {
public:
    int TextWidth(const std::string& Text) override { return 6 * int(Text.size()); }
};

TBenchGrid& Grid() {
    static TBenchGrid grid;
    return grid;
}

const std::string& Template() {
    static const std::string text = [] {
        std::string t;
        ReadWholeFile(NB_SOURCE_DIR "/reports/r_base_template.xml", t);
        return t;
    }();
    return text;
}

void RunReport(benchmark::State& state, ITextMeasurer& measurer, bool cache) {
    TBenchGrid& grid = Grid();
    size_t bytes = 0;
    for (auto _ : state) {
        TPrintColumnsDefinition definition;
        definition.CacheTextWidths = cache;
        definition.initializeFromGrid(grid, false, measurer);
        const std::string xml = definition.initializeXMLTemplate(Template(), "Notice Board Report");
        bytes = xml.size();
        benchmark::DoNotOptimize(xml.data());
    }
    state.counters["rows/s"] =
        benchmark::Counter(double(Rows), benchmark::Counter::kIsIterationInvariantRate);
    state.counters["MB"] = double(bytes) / 1e6;
}

void BM_ReportXml_Arial_Cached(benchmark::State& state) {
    TArialTextMeasurer measurer;
    RunReport(state, measurer, true);
}
void BM_ReportXml_Arial_Uncached(benchmark::State& state) {
    TArialTextMeasurer measurer;
    RunReport(state, measurer, false);
}
void BM_ReportXml_LaidOut_Cached(benchmark::State& state) {
    TLaidOutMeasurer measurer;
    RunReport(state, measurer, true);
}
void BM_ReportXml_LaidOut_Uncached(benchmark::State& state) {
    TLaidOutMeasurer measurer;
    RunReport(state, measurer, false);
}
void BM_ReportXml_FixedMeasurer(benchmark::State& state) {
    TFixedMeasurer measurer;
    RunReport(state, measurer, true);
}

BENCHMARK(BM_ReportXml_Arial_Cached)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ReportXml_Arial_Uncached)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ReportXml_LaidOut_Cached)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ReportXml_LaidOut_Uncached)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ReportXml_FixedMeasurer)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace

int main(int argc, char** argv) {
    // Fonts need a GUI application; the offscreen platform needs no display.
    static char name[] = "report_xml", platform[] = "-platform", offscreen[] = "offscreen";
    static char* qtArgs[] = {name, platform, offscreen, nullptr};
    int qtArgc = 3;
    QGuiApplication app(qtArgc, qtArgs);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
