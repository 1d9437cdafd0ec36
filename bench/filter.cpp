// Filter evaluation over a million notices, against SQLite in memory holding the same rows in one table
// with the board's two indexes, counting the rows that pass the same condition. Our side is the notice
// store's own recount after a new filter text, as the board runs it.
#include "core/FilterExpression.h"
#include "core/TNoticeStore.h"
#include "support/DateUtils.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <chrono>
#include <cstdio>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int RowCount = 1000000;

struct TCase {
    const char* Name;
    std::string Filter; // as the filter editor writes it
    std::string Sql;    // the equivalent WHERE clause
};

std::vector<TNoticeRecord>& Rows() {
    static std::vector<TNoticeRecord> rows;
    return rows;
}
TNoticeStore& Store() {
    static TNoticeStore store;
    return store;
}
sqlite3* Db = nullptr;
std::map<std::string, double> RowsPerSecond; // "ours/<case>", "sqlite/<case>"

std::string Sql(double v) {
    char buf[40];
    std::snprintf(buf, sizeof buf, "%.10f", v);
    return buf;
}

const TDateTime Nov1 = EncodeDate(2026, 11, 1), Nov8 = EncodeDate(2026, 11, 8);

const std::vector<TCase>& Cases() {
    static const std::vector<TCase> cases = {
        {"severity_range", "( note_severity >= 2 )\r\nAND ( note_severity <= 3 )",
         "note_severity >= 2 AND note_severity <= 3"},
        {"source_equal", "( adpt_source_id = 'db-prod-07' )", "adpt_source_id = 'db-prod-07'"},
        {"summary_like", "( note_summary LIKE '%full%' )", "note_summary LIKE '%full%'"},
        {"date_range", "( note_raised_date >= '2026-11-01' )\r\nAND ( note_raised_date < '2026-11-08' )",
         "note_raised_date >= " + Sql(Nov1) + " AND note_raised_date < " + Sql(Nov8)},
        {"ack_is_null", "( ack_date IS NULL  )", "ack_date IS NULL"},
        {"six_lines",
         "( note_severity >= 'Fatal' )\r\nAND ( adpt_source_type = 'DuskMere' )\r\n"
         "AND NOT ( note_summary LIKE '%test%' )\r\nAND (( ack_date IS NULL  )\r\n"
         "OR ( note_last_raised_date > ack_date ))\r\nAND ( note_pvo_node IN 'node1','node2' )",
         "note_severity >= 3 AND adpt_source_type = 'DuskMere' AND NOT (note_summary LIKE '%test%') AND "
         "(ack_date IS NULL OR note_last_raised_date > ack_date) AND note_pvo_node IN ('node1','node2')"},
    };
    return cases;
}

void Exec(const std::string& sql) {
    char* err = nullptr;
    if (sqlite3_exec(Db, sql.c_str(), nullptr, nullptr, &err) != SQLITE_OK) {
        std::fprintf(stderr, "sqlite: %s\n", err ? err : "?");
        sqlite3_free(err);
        std::exit(1);
    }
}

void BuildData() {
    static const char* const Summaries[] = {"Tablespace USERS is %d%% full",
                                            "Disk full on /var (%d MB left)",
                                            "Listener not responding for %d s",
                                            "Deadlock detected in session %d",
                                            "Backup job %d failed",
                                            "CPU above %d%% for 5 minutes",
                                            "Replication lag %d seconds",
                                            "Login failures: %d in the last hour",
                                            "test notice %d",
                                            "Archive log destination %d%% used"};
    std::mt19937 rng(4242);
    sqlite3_open(":memory:", &Db);
    Exec("PRAGMA case_sensitive_like = ON"); // our LIKE, like our '=', minds letter case
    Exec("CREATE TABLE notices (nb_internal_key INTEGER PRIMARY KEY, adpt_id TEXT, adpt_orig_key TEXT, "
         "adpt_orig_server TEXT, adpt_source_type TEXT, adpt_source_id TEXT, note_summary TEXT, note_text "
         "TEXT, "
         "note_raised_date REAL, note_last_raised_date REAL, note_count INTEGER, note_severity INTEGER, "
         "note_group_notified TEXT, note_pvo_node TEXT, ack_date REAL, ack_code TEXT, del_code TEXT, "
         "note_severity_str TEXT)");
    Exec("CREATE UNIQUE INDEX Orig_Key_Index ON notices (adpt_orig_key COLLATE NOCASE)");
    Exec("BEGIN");
    sqlite3_stmt* ins = nullptr;
    sqlite3_prepare_v2(Db, "INSERT INTO notices VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)", -1, &ins,
                       nullptr);
    const TDateTime start = EncodeDate(2026, 9, 22);
    Rows().reserve(RowCount);
    char buf[256];
    for (int i = 1; i <= RowCount; ++i) {
        TNoticeRecord r;
        const int sev = 1 + static_cast<int>(rng() % 100 < 50 ? 0 : rng() % 100 < 60 ? 1 : 2 + rng() % 2);
        const bool dusk = rng() % 3 != 0;
        std::snprintf(buf, sizeof buf, Summaries[rng() % 10], static_cast<int>(rng() % 100));
        const std::string summary = buf;
        const TDateTime raised = start + (rng() % (60 * 1440)) / 1440.0;
        const TDateTime last = raised + (rng() % 3 == 0 ? (rng() % 2880) / 1440.0 : 0);
        const bool acked = rng() % 10 < 3;
        const TDateTime ack = raised + (rng() % 1440) / 1440.0;
        std::snprintf(buf, sizeof buf, "db-prod-%02d", static_cast<int>(rng() % 40));
        const std::string source = buf;
        const std::string node = "node" + std::to_string(1 + rng() % 8);
        const std::string key = "KEY-" + std::to_string(i);
        const std::string text =
            summary + ". Raised by the monitor on " + source + "; see the product for details.";
        const std::string type = dusk ? "DuskMere" : "R/Vista";
        const int count = 1 + static_cast<int>(rng() % 50);
        r.SetInteger(nf_nb_internal_key, i);
        r.SetString(nf_adpt_id, dusk ? "DuskMere" : "RVista");
        r.SetString(nf_adpt_orig_key, key);
        r.SetString(nf_adpt_orig_server, source + ".example.net");
        r.SetString(nf_adpt_source_type, type);
        r.SetString(nf_adpt_source_id, source);
        r.SetString(nf_note_summary, summary);
        r.SetString(nf_note_text, text);
        r.SetDateTime(nf_note_raised_date, raised);
        r.SetDateTime(nf_note_last_raised_date, last);
        r.SetInteger(nf_note_count, count);
        r.SetInteger(nf_note_severity, sev);
        r.SetString(nf_note_severity_str, SeverityStrings[static_cast<size_t>(sev - 1)]);
        r.SetString(nf_note_group_notified, "dba");
        r.SetString(nf_note_pvo_node, node);
        if (acked) r.SetDateTime(nf_ack_date, ack);
        r.SetString(nf_ack_code, "A" + std::to_string(i));
        r.SetString(nf_del_code, "D" + std::to_string(i));
        for (int f = 0; f < NoticeFieldCount; ++f) {
            const TNoticeField field = static_cast<TNoticeField>(f);
            const int col = f + 1;
            if (r.IsNull(field))
                sqlite3_bind_null(ins, col);
            else if (NoticeFieldType(field) == TFieldType::ftDateTime)
                sqlite3_bind_double(ins, col, r.AsDateTime(field));
            else if (r.StringSlot(field) < 0)
                sqlite3_bind_int(ins, col, r.AsInteger(field));
            else {
                const std::string_view s = r.AsString(field);
                sqlite3_bind_text(ins, col, s.data(), static_cast<int>(s.size()), SQLITE_TRANSIENT);
            }
        }
        sqlite3_step(ins);
        sqlite3_reset(ins);
        Rows().push_back(std::move(r));
    }
    sqlite3_finalize(ins);
    Exec("COMMIT");
    TNoticeStore& store = Store();
    store.SetFilterCompiler(CompileFilterExpression);
    store.SetFiltered(true);
    store.DisableControls();
    // Field by field in column-table order, as the notice protocol fills a new row from its XML.
    for (const auto& row : Rows()) {
        store.Append();
        TNoticeRecord& buffer = store.Buffer();
        for (const auto& col : NoticeBdColumnArray) {
            if (row.IsNull(col.Field) || col.Field == nf_nb_internal_key) continue;
            if (col.DataType == TFieldType::ftDateTime)
                buffer.SetDateTime(col.Field, row.AsDateTime(col.Field));
            else if (TNoticeRecord::StringSlot(col.Field) < 0)
                buffer.SetInteger(col.Field, row.AsInteger(col.Field));
            else
                buffer.SetString(col.Field, row.AsString(col.Field));
        }
        store.Post();
    }
    store.EnableControls();
    std::vector<TNoticeRecord>().swap(Rows()); // the store holds its own copies
}

// What a user waits for after choosing another filter: the store compiles the text once and recounts every
// row it holds. This is the path the board takes, so it is what the "Ours" rows measure.
int64_t CountOurs(const std::string& filter) {
    TNoticeStore& store = Store();
    store.SetFilterText(filter);
    return store.RecordCount();
}

int64_t CountSqlite(sqlite3_stmt* stmt) {
    sqlite3_reset(stmt);
    sqlite3_step(stmt);
    return sqlite3_column_int64(stmt, 0);
}

// Rows per second of the last run (the one the library reports), kept for the closing comparison.
void Report(benchmark::State& state, const std::string& key, int64_t matches,
            std::chrono::steady_clock::time_point t0) {
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
    const double rows = double(RowCount) * double(state.iterations());
    state.counters["matches"] = static_cast<double>(matches);
    state.counters["rows/s"] = benchmark::Counter(rows, benchmark::Counter::kIsRate);
    if (seconds > 0) RowsPerSecond[key] = rows / seconds;
}

void BM_Ours(benchmark::State& state, const TCase* c) {
    int64_t n = 0;
    const auto t0 = std::chrono::steady_clock::now();
    for (auto _ : state)
        benchmark::DoNotOptimize(n = CountOurs(c->Filter));
    Report(state, std::string("ours/") + c->Name, n, t0);
    Store().SetFilterText("");
}

void BM_Sqlite(benchmark::State& state, const TCase* c) {
    sqlite3_stmt* stmt = nullptr;
    sqlite3_prepare_v2(Db, ("SELECT count(*) FROM notices WHERE " + c->Sql).c_str(), -1, &stmt, nullptr);
    int64_t n = 0;
    const auto t0 = std::chrono::steady_clock::now();
    for (auto _ : state)
        benchmark::DoNotOptimize(n = CountSqlite(stmt));
    Report(state, std::string("sqlite/") + c->Name, n, t0);
    sqlite3_finalize(stmt);
    const int64_t ours = CountOurs(c->Filter);
    Store().SetFilterText("");
    if (n != ours) state.SkipWithError(("counts differ: ours " + std::to_string(ours)).c_str());
}

} // namespace

int main(int argc, char** argv) {
    BuildData();
    for (const auto& c : Cases()) {
        benchmark::RegisterBenchmark((std::string("Ours/") + c.Name).c_str(), BM_Ours, &c)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark((std::string("SQLite/") + c.Name).c_str(), BM_Sqlite, &c)
            ->Unit(benchmark::kMillisecond);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    std::printf(
        "\nOurs: TNoticeStore::SetFilterText, compiling the filter text and recounting the store's %d "
        "rows\n(what choosing a filter on the board costs). SQLite: SELECT count(*) ... WHERE on the "
        "same rows.\n",
        RowCount);
    std::printf("\n%-16s %16s %16s %8s\n", "expression", "ours rows/s", "SQLite rows/s", "ratio");
    for (const auto& c : Cases()) {
        const double ours = RowsPerSecond[std::string("ours/") + c.Name];
        const double lite = RowsPerSecond[std::string("sqlite/") + c.Name];
        if (ours > 0 && lite > 0)
            std::printf("%-16s %16.0f %16.0f %7.1fx\n", c.Name, ours, lite, ours / lite);
    }
    sqlite3_close(Db);
    return 0;
}
