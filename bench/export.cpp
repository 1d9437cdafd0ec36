// The grid's spreadsheet export of 100 000 and 1 000 000 typical notices, with the board's five default
// columns and with all eighteen, to .xls (our BIFF8 writer), .xlsx (libxlsxwriter) and .csv. The reference
// is libxlsxwriter itself writing the same cells straight from the records in its constant-memory mode, as
// a program would that needs no cleaning, no sheet split and no temporary file. Files go to a temporary
// folder and are deleted after each run. "per_cell" is the time per cell; "rss_growth" is how far the
// process's peak memory rose during the benchmark (the rows themselves are built beforehand).
#include "NoticeSamples.h"
#include "core/Nb_utils.h"
#include "reports/ExportRows.h"
#include "support/DateUtils.h"

#include <benchmark/benchmark.h>
#include <xlsxwriter.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/resource.h>
#include <vector>

namespace {

constexpr int MaxRows = 1000000;

const std::vector<TNoticeRecord>& Records() {
    static const std::vector<TNoticeRecord> records = [] {
        std::vector<TNoticeRecord> rows(MaxRows);
        const TDateTime raised = EncodeDateTime(2026, 11, 21, 8, 15, 0, 0);
        for (int n = 0; n < MaxRows; ++n) {
            const TSampleNotice s = SampleNotice("bench", n);
            TNoticeRecord& r = rows[n];
            r.SetInteger(nf_nb_internal_key, n + 1);
            r.SetString(nf_adpt_id, "DEMO");
            r.SetString(nf_adpt_orig_key, s.Key);
            r.SetString(nf_adpt_orig_server, s.Server);
            r.SetString(nf_adpt_source_type, "R/Vista");
            r.SetString(nf_adpt_source_id, "TS_FULL");
            r.SetString(nf_note_summary, s.Summary);
            r.SetString(nf_note_text, s.Text);
            r.SetDateTime(nf_note_raised_date, raised + n / 86400.0);
            r.SetDateTime(nf_note_last_raised_date, raised + n / 86400.0);
            r.SetInteger(nf_note_count, 1 + n % 7);
            r.SetInteger(nf_note_severity, s.Severity);
            r.SetString(nf_note_severity_str, s.SeverityStr);
            r.SetString(nf_note_group_notified, "DBA");
            r.SetString(nf_note_pvo_node, s.Node);
            if (n % 3 == 0) r.SetDateTime(nf_ack_date, raised + n / 86400.0 + 0.01);
            r.SetString(nf_ack_code, "ACK-" + std::to_string(n));
            r.SetString(nf_del_code, "DEL-" + std::to_string(n));
        }
        return rows;
    }();
    return records;
}

// The first Count records.
class TFirstRows : public IExportRows {
public:
    explicit TFirstRows(int32_t Count) : FCount(Count) {}
    int32_t Count() const override { return FCount; }
    const TNoticeRecord* Row(int32_t Index) const override { return &Records()[static_cast<size_t>(Index)]; }

private:
    int32_t FCount;
};

// The board's default display (the columns shown by default), or every column, in the column table's order.
std::vector<TExportColumn> Columns(bool All) {
    std::vector<TExportColumn> columns;
    for (const NoticeBdColRec& c : NoticeBdColumnArray)
        if (All || c.ShownByDefault) columns.push_back({c.Field, c.Caption});
    return columns;
}

std::string Folder() {
    static const std::string folder = [] {
        std::string tmpl = (std::filesystem::temp_directory_path() / "nbexport.XXXXXX").string();
        if (!::mkdtemp(tmpl.data())) std::abort();
        return tmpl + "/";
    }();
    return folder;
}

long PeakRssKb() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

void Report(benchmark::State& state, int32_t rows, size_t columns, long rssBefore) {
    const double cells = static_cast<double>(rows) * static_cast<double>(columns);
    state.counters["per_cell"] = benchmark::Counter(cells, benchmark::Counter::kIsIterationInvariantRate |
                                                               benchmark::Counter::kInvert);
    state.counters["rss_growth_MB"] = static_cast<double>(PeakRssKb() - rssBefore) / 1024.0;
}

// Arguments: rows, all columns (1) or the default five (0), format (0 .xls, 1 .xlsx, 2 .csv).
void BM_ExportGrid(benchmark::State& state) {
    const auto rows = static_cast<int32_t>(state.range(0));
    const std::vector<TExportColumn> columns = Columns(state.range(1) != 0);
    const char* ext = state.range(2) == 0 ? ".xls" : state.range(2) == 1 ? ".xlsx" : ".csv";
    const std::string file = Folder() + "export" + ext;
    Records();
    const long rss = PeakRssKb();
    for (auto _ : state) {
        ExportGrid(columns, TFirstRows(rows), file);
        state.PauseTiming();
        state.counters["file_MB"] = static_cast<double>(std::filesystem::file_size(file)) / 1e6;
        std::filesystem::remove(file);
        state.ResumeTiming();
    }
    Report(state, rows, columns.size(), rss);
}

// The same cells through libxlsxwriter directly.
void BM_LibxlsxwriterReference(benchmark::State& state) {
    const auto rows = static_cast<int32_t>(state.range(0));
    const std::vector<TExportColumn> columns = Columns(state.range(1) != 0);
    const std::string file = Folder() + "reference.xlsx";
    Records();
    const long rss = PeakRssKb();
    std::string text;
    for (auto _ : state) {
        lxw_workbook_options options{};
        options.constant_memory = LXW_TRUE;
        lxw_workbook* book = workbook_new_opt(file.c_str(), &options);
        lxw_format* bold = workbook_add_format(book);
        format_set_bold(bold);
        lxw_format* date = workbook_add_format(book);
        format_set_num_format(date, "dd/mm/yyyy hh:mm:ss");
        lxw_worksheet* sheet = workbook_add_worksheet(book, "Notices");
        for (size_t c = 0; c < columns.size(); ++c) {
            worksheet_set_column(sheet, static_cast<lxw_col_t>(c), static_cast<lxw_col_t>(c), 20, nullptr);
            worksheet_write_string(sheet, 0, static_cast<lxw_col_t>(c), columns[c].Caption.c_str(), bold);
        }
        for (int32_t r = 0; r < rows; ++r) {
            const TNoticeRecord& row = Records()[static_cast<size_t>(r)];
            for (size_t c = 0; c < columns.size(); ++c) {
                const TNoticeField f = columns[c].Field;
                const auto col = static_cast<lxw_col_t>(c);
                if (row.IsNull(f)) continue;
                switch (NoticeFieldType(f)) {
                case TFieldType::ftString:
                case TFieldType::ftMemo:
                    text.assign(row.AsString(f));
                    worksheet_write_string(sheet, r + 1, col, text.c_str(), nullptr);
                    break;
                case TFieldType::ftDateTime:
                    worksheet_write_number(sheet, r + 1, col, row.AsDateTime(f), date);
                    break;
                default:
                    if (f == nf_note_severity)
                        worksheet_write_string(sheet, r + 1, col,
                                               Get_Severity_String(row.AsInteger(f)).c_str(), nullptr);
                    else
                        worksheet_write_number(sheet, r + 1, col, row.AsInteger(f), nullptr);
                }
            }
        }
        if (workbook_close(book) != LXW_NO_ERROR) state.SkipWithError("libxlsxwriter failed");
        state.PauseTiming();
        std::filesystem::remove(file);
        state.ResumeTiming();
    }
    Report(state, rows, columns.size(), rss);
}

void Cases(benchmark::internal::Benchmark* b, bool Reference) {
    b->ArgNames(Reference ? std::vector<std::string>{"rows", "all"}
                          : std::vector<std::string>{"rows", "all", "fmt"});
    for (const int rows : {100000, MaxRows})
        for (const int all : {0, 1}) {
            if (Reference)
                b->Args({rows, all});
            else
                for (const int format : {0, 1, 2})
                    b->Args({rows, all, format});
        }
    b->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();
}

BENCHMARK(BM_ExportGrid)->Apply([](benchmark::internal::Benchmark* b) { Cases(b, false); });
BENCHMARK(BM_LibxlsxwriterReference)->Apply([](benchmark::internal::Benchmark* b) { Cases(b, true); });

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    std::filesystem::remove_all(Folder());
    return 0;
}
