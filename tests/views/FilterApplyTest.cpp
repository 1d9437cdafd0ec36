// Applying saved filters to a real notice store.
#include "views/FilterApply.h"

#include "core/FilterExpression.h"
#include "core/TNoticeStore.h"

#include <gtest/gtest.h>

namespace {

const std::string Samples = NB_SOURCE_DIR "/examples/filters/";

void AddNotice(TNoticeStore& store, int severity, bool acknowledged) {
    store.Append();
    TNoticeRecord& r = store.Buffer();
    r.SetString(nf_adpt_orig_key, "K" + std::to_string(store.TotalCount() + 1));
    r.SetInteger(nf_note_severity, severity);
    if (acknowledged) r.SetDateTime(nf_ack_date, 46000);
    store.Post();
}

} // namespace

TEST(FilterApply, NamedFilterFiltersTheStoreAndNoFilterClearsIt) {
    TNoticeStore store;
    AddNotice(store, 1, false);
    AddNotice(store, 3, true);
    AddNotice(store, 2, false);
    ApplyFilter("unacknowledged", Samples, store);
    EXPECT_TRUE(store.Filtered());
    EXPECT_EQ(store.FilterText(), "( ack_date IS NULL  )");
    EXPECT_EQ(store.RecordCount(), 2);
    ApplyFilter("severity-range", Samples, store);
    EXPECT_EQ(store.RecordCount(), 2);
    AddNotice(store, 4, false);
    EXPECT_EQ(store.RecordCount(), 2) << "new rows are judged by the compiled filter";
    ApplyFilter("<No Filter>", Samples, store);
    EXPECT_FALSE(store.Filtered());
    EXPECT_EQ(store.FilterText(), "");
    EXPECT_EQ(store.RecordCount(), 4);
}

TEST(FilterApply, MissingFileIsAnEmptyFilterAndABadTextKeepsTheOldOne) {
    TNoticeStore store;
    AddNotice(store, 1, false);
    AddNotice(store, 3, false);
    ApplyFilter("gone", Samples, store);
    EXPECT_TRUE(store.Filtered());
    EXPECT_EQ(store.RecordCount(), 2);
    ApplyFilterText("note_severity = 'Fatal'", store);
    EXPECT_EQ(store.RecordCount(), 1);
    EXPECT_THROW(ApplyFilterText("note_severity = 'Fatl'", store), EFilterExpressionError);
    EXPECT_EQ(store.FilterText(), "note_severity = 'Fatal'");
    EXPECT_EQ(store.RecordCount(), 1);
    std::string text = "stale";
    EXPECT_FALSE(FilterTextForName("<No Filter>", Samples, text));
    EXPECT_EQ(text, "");
}
