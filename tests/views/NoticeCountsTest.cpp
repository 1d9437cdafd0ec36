// The live counts beside the board's filters and in its severity badges, against plain recounts.
#include "core/FilterExpression.h"
#include "core/TSeverityCounts.h"
#include "views/FilterApply.h"
#include "views/FilterCounts.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace {

const std::vector<std::string> Texts = {"",
                                        "note_severity >= 3",
                                        "note_summary LIKE '%full%'",
                                        "note_pvo_node = 'N1' AND note_count > 2",
                                        "note_count IS NULL",
                                        "this does not compile ((("};

struct TBoard {
    std::mt19937 Rng{5};
    TNoticeStore Store;
    int Keys = 0;
    TBoard() {
        Store.SetFilterCompiler(CompileFilterExpression);
        // Compacts every few deletions, so the counters also meet renumbered slots.
        Store.SetCompactionFloor(8);
    }
    uint32_t Pick(uint32_t n) { return Rng() % n; }
    void Fill(TNoticeRecord& r) {
        r.SetString(nf_note_summary, Pick(2) ? "disk full" : "slow");
        r.SetString(nf_note_pvo_node, "N" + std::to_string(Pick(3)));
        if (Pick(5) == 0)
            r.SetNull(nf_note_count);
        else
            r.SetInteger(nf_note_count, int32_t(Pick(5)));
        if (Pick(6) == 0)
            r.SetNull(nf_note_severity);
        else
            r.SetInteger(nf_note_severity, int32_t(Pick(6))); // 0 and 5 count as "other"
    }
    void Change() {
        const uint32_t p = Pick(10);
        if (p < 5 || Store.RecordCount() == 0) {
            Store.Append();
            Store.Buffer().SetString(nf_adpt_orig_key, "K" + std::to_string(++Keys));
            Fill(Store.Buffer());
            Store.Post();
            return;
        }
        Store.SetRecNo(int32_t(1 + Pick(uint32_t(Store.RecordCount()))));
        if (p < 8) {
            Store.Edit();
            Fill(Store.Buffer());
            Store.Post();
        } else {
            Store.Delete();
        }
    }
};

int32_t Recount(const TNoticeStore& Store, const std::string& Text) {
    std::unique_ptr<IRowFilter> f = Text.empty() ? nullptr : CompileFilterExpression(Text);
    int32_t n = 0;
    for (int32_t s = 0; s < Store.SlotCount(); ++s)
        if (Store.SlotLive(s) && (!f || f->Accept(Store.RowBySlot(s)))) ++n;
    return n;
}

void ExpectCounts(const TBoard& b, const TFilterCounts& counts, const TSeverityCounts& severities) {
    ASSERT_TRUE(counts.Done());
    for (size_t i = 0; i + 1 < Texts.size(); ++i)
        EXPECT_EQ(counts.Count(i), Recount(b.Store, Texts[i])) << Texts[i];
    EXPECT_EQ(counts.Count(Texts.size() - 1), -1); // did not compile
    int32_t other = b.Store.TotalCount();
    int32_t worst = 0;
    for (int s = 1; s <= 4; ++s) {
        const int32_t n = Recount(b.Store, "note_severity = " + std::to_string(s));
        EXPECT_EQ(severities.Count(s), n) << s;
        other -= n;
        if (n > 0) worst = s;
    }
    EXPECT_EQ(severities.Count(0), other);
    EXPECT_EQ(severities.Worst(), worst);
    EXPECT_EQ(severities.Total(), b.Store.TotalCount());
}

} // namespace

// Rows change while the first count runs in slices, between slices, under the store's own filter being
// switched (which changes no row), and after the store is emptied: every count equals a plain recount.
TEST(NoticeCounts, FollowEveryChangeLikeAPlainRecount) {
    TBoard b;
    for (int i = 0; i < 500; ++i)
        b.Change();
    TSeverityCounts severities(b.Store);
    TFilterCounts counts(b.Store);
    std::vector<std::string> names;
    for (size_t i = 0; i < Texts.size(); ++i)
        names.push_back("F" + std::to_string(i));
    counts.SetFilters(names, Texts);
    EXPECT_EQ(counts.Count(size_t(0)), -1); // not counted yet
    while (!counts.Step(37)) {
        b.Store.DisableControls(); // as a notice message does
        b.Store.SetFiltered(false);
        for (int n = int(b.Pick(6)); n > 0; --n)
            b.Change();
        b.Store.SetFiltered(true);
        b.Store.EnableControls();
    }
    ExpectCounts(b, counts, severities);
    const uint64_t seen = counts.Revision();
    b.Store.SetFilterText("note_severity >= 2");
    EXPECT_EQ(counts.Revision(), seen) << "a new filter for the store is no reason to count again";
    for (int round = 0; round < 50; ++round) {
        for (int n = int(b.Pick(20)); n > 0; --n)
            b.Change();
        ExpectCounts(b, counts, severities);
    }
    b.Store.EmptyDataSet();
    counts.CountAll();
    ExpectCounts(b, counts, severities);
    for (int n = 0; n < 30; ++n)
        b.Change();
    ExpectCounts(b, counts, severities);
    EXPECT_EQ(counts.Count("f1"), counts.Count(size_t(1)));
    EXPECT_EQ(counts.Count("nobody"), -1);
}

TEST(NoticeCounts, NoFilterAndAMissingFilePassEveryRow) {
    TBoard b;
    for (int i = 0; i < 40; ++i)
        b.Change();
    TFilterCounts counts(b.Store);
    counts.SetFilterNames({NoFilterName, "no such filter"}, "/nonexistent/");
    counts.CountAll();
    EXPECT_EQ(counts.Count(size_t(0)), b.Store.TotalCount());
    EXPECT_EQ(counts.Count(size_t(1)), b.Store.TotalCount());
}
