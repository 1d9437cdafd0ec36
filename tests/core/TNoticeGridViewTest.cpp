#include "RandomBoard.h"

#include "core/FilterExpression.h"
#include "core/TNoticeRowOrder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace {

const char* const FilterTexts[] = {"", "note_severity >= 2", "note_count < 60 OR note_count IS NULL",
                                   "note_summary LIKE '%a%'"};

} // namespace

// Thousands of random changes (refused insertions among them), some applied as a notice message applies
// them (views detached, filtering switched off and back on), with filters and orders changing in between:
// after each batch the view is the brute-force sort, position by position, key by key, group by group.
TEST(TNoticeGridView, FollowsRandomChangesLikeABruteForceSort) {
    for (uint32_t seed : {11u, 12u, 13u}) {
        SCOPED_TRACE(seed);
        TRandomBoard b(seed);
        TNoticeGridView view(b.Store());
        for (int i = 0; i < 300; ++i)
            b.Insert();
        for (int batch = 0; batch < 60; ++batch) {
            switch (b.Pick(6)) {
            case 0:
                view.SetOrder(b.RandomColumns(2), b.RandomColumns(3));
                break;
            case 1:
                b.Store().SetFilterText(FilterTexts[b.Pick(std::size(FilterTexts))]);
                break;
            case 2:
                b.Store().SetFiltered(!b.Store().Filtered());
                break;
            default:
                break;
            }
            ASSERT_NO_FATAL_FAILURE(ExpectViewMatches(view));
            const uint64_t rebuilds = view.RebuildCount();
            const uint64_t revision = view.Revision();
            const bool asMessage = b.Pick(2) == 0;
            const bool wasFiltered = b.Store().Filtered();
            if (asMessage) {
                b.Store().DisableControls();
                b.Store().SetFiltered(false);
            }
            for (int i = 0; i < 40; ++i)
                b.RandomChange();
            if (asMessage) {
                b.Store().SetFiltered(wasFiltered);
                b.Store().EnableControls();
            }
            ASSERT_NO_FATAL_FAILURE(ExpectViewMatches(view));
            EXPECT_EQ(view.RebuildCount(), rebuilds) << "rows changed one by one must not rebuild";
            EXPECT_NE(view.Revision(), revision);
        }
    }
}

// Large runs of equal values, equal texts in every letter case and texts that share long prefixes go
// through every refinement step of the bulk sort.
TEST(TNoticeGridView, BulkSortMatchesTheComparisonOnManyTies) {
    TRandomBoard b(5);
    for (int i = 0; i < 3000; ++i)
        b.Insert();
    TNoticeGridView view(b.Store());
    for (int i = 0; i < 12; ++i) {
        view.SetOrder(b.RandomColumns(2), b.RandomColumns(3));
        ASSERT_NO_FATAL_FAILURE(ExpectViewMatches(view));
    }
    view.SetOrder({}, {{nf_note_summary, true}, {nf_adpt_source_id, false}});
    ASSERT_NO_FATAL_FAILURE(ExpectViewMatches(view));
}

// Enough rows for inner nodes, whose searches compare the order keys they keep for their children's first
// rows: rows that change value without moving (so their keys change) must leave later insertions right.
TEST(TNoticeGridView, InPlaceUpdatesKeepLaterInsertionsRight) {
    for (const bool descending : {false, true}) {
        SCOPED_TRACE(descending);
        TNoticeStore store;
        const auto add = [&](int32_t count) {
            store.Append();
            store.Buffer().SetInteger(nf_note_count, count);
            store.Post();
        };
        constexpr int32_t Rows = 20000;
        for (int32_t i = 0; i < Rows; ++i)
            add(10 * i + 9);
        TNoticeGridView view(store);
        view.SetOrder({}, {{nf_note_count, descending}});
        const uint64_t rebuilds = view.RebuildCount();
        for (int32_t i = 0; i < Rows; ++i) { // every row moves down its gap and stays where it is
            store.SetRecNo(i + 1);
            store.Edit();
            store.Buffer().SetInteger(nf_note_count, 10 * i + 1);
            store.Post();
        }
        std::mt19937 rng(9);
        for (int i = 0; i < 2000; ++i)
            add(10 * int32_t(rng() % Rows) + 5);
        ASSERT_NO_FATAL_FAILURE(ExpectViewMatches(view));
        EXPECT_EQ(view.RebuildCount(), rebuilds);
    }
}

TEST(TNoticeGridView, RebuildsOnlyWhenTheFilterInEffectReallyChanges) {
    TRandomBoard b(3);
    for (int i = 0; i < 50; ++i)
        b.Insert();
    TNoticeGridView view(b.Store());
    view.SetOrder({}, {{nf_note_severity, false}});
    const uint64_t built = view.RebuildCount();
    b.Store().SetFilterText("note_severity >= 3"); // not in effect until filtering is on
    EXPECT_EQ(view.RowCount(), 50);
    b.Store().SetFiltered(true);
    EXPECT_EQ(view.RowCount(), b.Store().RecordCount());
    const uint64_t filtered = view.RebuildCount();
    EXPECT_GT(filtered, built);
    // Off and on again before anyone reads: nothing to do.
    b.Store().SetFiltered(false);
    b.Insert();
    b.Store().SetFiltered(true);
    ASSERT_NO_FATAL_FAILURE(ExpectViewMatches(view));
    EXPECT_EQ(view.RebuildCount(), filtered);
    // Read while off: all rows, then the filter's rows again.
    b.Store().SetFiltered(false);
    EXPECT_EQ(view.RowCount(), 51);
    b.Store().SetFiltered(true);
    ASSERT_NO_FATAL_FAILURE(ExpectViewMatches(view));
    EXPECT_EQ(view.RebuildCount(), filtered + 2);
    // Emptied and refilled.
    b.Store().EmptyDataSet();
    EXPECT_EQ(view.RowCount(), 0);
    b.Insert();
    ASSERT_NO_FATAL_FAILURE(ExpectViewMatches(view));
}

// A field named twice counts at its first place: a grouped field is not sorted again, and a group
// column's direction orders its groups.
TEST(TNoticeGridView, RepeatedFieldsCountOnceAtTheirFirstPlace) {
    TRandomBoard b(4);
    for (int i = 0; i < 40; ++i)
        b.Insert();
    TNoticeGridView view(b.Store());
    view.SetOrder({{nf_note_pvo_node, true}, {nf_note_pvo_node, false}},
                  {{nf_note_pvo_node, false}, {nf_note_severity, false}, {nf_note_severity, true}});
    ASSERT_EQ(view.GroupColumns(), (std::vector<TSortColumn>{{nf_note_pvo_node, true}}));
    ASSERT_EQ(view.SortColumns(), (std::vector<TSortColumn>{{nf_note_severity, false}}));
    ASSERT_NO_FATAL_FAILURE(ExpectViewMatches(view));
    int32_t first = -1, count = -1;
    view.GroupRange(1, 0, first, count); // no such level
    EXPECT_EQ(count, 0);
}

// Whoever hears the store's own notices (the grid's model) finds the view already in step.
TEST(TNoticeGridView, IsInStepWhenTheStoreTellsItsListeners) {
    struct TReader : INoticeStoreListener {
        const TNoticeGridView* View = nullptr;
        int Checks = 0;
        void DataSetChanged() override { Check(); }
        void RecordChanged(int32_t) override { Check(); }
        void CurrentChanged() override { Check(); }
        void Check() {
            ++Checks;
            ExpectViewMatches(*View);
        }
    } reader;
    TRandomBoard b(8);
    TNoticeGridView view(b.Store());
    view.SetOrder({}, {{nf_note_summary, false}});
    reader.View = &view;
    b.Store().AddListener(&reader);
    for (int i = 0; i < 60; ++i)
        b.RandomChange();
    b.Store().RemoveListener(&reader);
    EXPECT_GT(reader.Checks, 60);
}

// Integer first columns: a few values (with nulls, deleted rows and a filter) are ordered by counting;
// values too far apart or too many of them go to the general sort after the counting read gave up. Each
// order, in both directions and with a text column after it, is the brute-force one.
TEST(TNoticeGridView, IntegerFirstColumnsInEveryRangeMatchTheComparison) {
    const struct {
        const char* What;
        std::vector<int32_t> Values; // cycled through the rows; INT32_MIN stands for null
    } Cases[] = {
        {"one value", {3}},
        {"few values and nulls", {2, INT32_MIN, 4, 1, 2, INT32_MIN, 3}},
        {"only nulls", {INT32_MIN}},
        {"far apart", {1, 1000, 2, INT32_MIN}},
        {"the extremes", {INT32_MAX, -2147483647, 0}},
        {"17 values", {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}},
        {"close to the window's ends", {-126, 0, 127, 128}},
    };
    for (const auto& c : Cases) {
        SCOPED_TRACE(c.What);
        TNoticeStore store;
        store.SetFilterCompiler(CompileFilterExpression);
        for (int32_t i = 0; i < 700; ++i) {
            store.Append();
            const int32_t v = c.Values[size_t(i) % c.Values.size()];
            if (v != INT32_MIN) store.Buffer().SetInteger(nf_note_severity, v);
            store.Buffer().SetString(nf_note_summary, i % 3 == 0 ? "b" : i % 3 == 1 ? "A" : "a");
            store.Post();
        }
        for (int32_t rec = 1; rec <= 60; ++rec) { // gaps in the slots
            store.SetRecNo(rec * 10);
            store.Delete();
        }
        TNoticeGridView view(store);
        for (const bool filtered : {false, true}) {
            store.SetFilterText("note_summary <> 'b'");
            store.SetFiltered(filtered);
            for (const bool descending : {false, true}) {
                SCOPED_TRACE(testing::Message() << "filtered " << filtered << " descending " << descending);
                view.SetOrder({}, {{nf_note_severity, descending}});
                ASSERT_NO_FATAL_FAILURE(ExpectViewMatches(view));
                view.SetOrder({{nf_note_severity, descending}}, {{nf_note_summary, !descending}});
                ASSERT_NO_FATAL_FAILURE(ExpectViewMatches(view));
            }
        }
    }
}
