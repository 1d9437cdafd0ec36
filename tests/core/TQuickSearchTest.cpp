#include "RandomBoard.h"

#include "core/FilterExpression.h"
#include "core/TQuickSearch.h"
#include "core/Znb_fieldtext.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// clang-format off
const char* const Searches[] = {"", "full", "FULL disk", "disk  full ", "ts_1", "ts_12", "ts_1 91%",
    "\u00e9t\u00e9", "\u03a9MEGA", "zeta ab", "a", "b", "fatal", "full zeta", "nothing-at-all"};
// clang-format on

constexpr TNoticeField Searched[] = {nf_note_summary, nf_note_pvo_node, nf_note_severity, nf_note_count};

// The view holds exactly the rows the plain answer passes: each word lies inside the folded shown text
// of one of the searched fields.
void ExpectNarrowed(const TNoticeGridView& View, const std::string& Search) {
    SCOPED_TRACE(Search);
    const std::vector<std::string> words = QuickSearchWords(Search);
    ExpectViewMatches(View, [&](const TNoticeRecord& Row) {
        for (const std::string& w : words) {
            bool found = false;
            for (TNoticeField f : Searched)
                found |= QuickSearchFold(FieldDisplayText(Row, f)).find(w) != std::string::npos;
            if (!found) return false;
        }
        return true;
    });
}

} // namespace

TEST(QuickSearchWords, SplitOnBlanksAndFoldEveryLetterCase) {
    EXPECT_EQ(QuickSearchWords("  Disk\tFULL \u00c9T\u00c9 "),
              (std::vector<std::string>{"disk", "full", "\u00e9t\u00e9"}));
    EXPECT_TRUE(QuickSearchWords(" \t ").empty());
    EXPECT_EQ(QuickSearchMatchText(12), "(12 match)");
}

// Searches typed, widened and cleared between random changes of the store, under random filters and
// orders: the view always serves exactly the rows the plain answer passes, in the view's order.
TEST(TQuickSearch, NarrowsTheViewLikeAPlainScanAcrossChanges) {
    for (uint32_t seed : {1u, 2u, 3u}) {
        SCOPED_TRACE(seed);
        TRandomBoard b(seed);
        // Seed 3 compacts the store every few deletions: the search's texts and the view's two orders
        // must follow the renumbered slots.
        if (seed == 3) b.Store().SetCompactionFloor(4);
        TNoticeGridView view(b.Store());
        TQuickSearch search(b.Store());
        search.SetFields({std::begin(Searched), std::end(Searched)});
        search.SetThreads(seed == 2 ? 3 : 1);
        view.SetNarrowing(&search);
        for (int i = 0; i < 400; ++i)
            b.Insert();
        for (int round = 0; round < 80; ++round) {
            const char* text = Searches[b.Pick(std::size(Searches))];
            search.SetText(text);
            switch (b.Pick(5)) {
            case 0:
                b.Store().SetFilterText(b.Pick(2) ? "note_severity >= 2" : "");
                b.Store().SetFiltered(b.Pick(2) == 0);
                break;
            case 1:
                view.SetOrder(b.Pick(2) ? std::vector<TSortColumn>{{nf_note_pvo_node, true}}
                                        : std::vector<TSortColumn>{},
                              {{nf_note_summary, b.Pick(2) == 0}});
                break;
            default:
                break;
            }
            if (b.Pick(2)) ExpectNarrowed(view, text); // read before the changes, as a grid would
            b.Store().DisableControls();
            for (int n = int(b.Pick(12)); n > 0; --n)
                b.RandomChange();
            b.Store().EnableControls();
            ExpectNarrowed(view, text);
            if (HasFatalFailure()) return;
        }
    }
}

// Typing, taking letters back and clearing the box only drop rows from an order that stands: the view
// never reads and sorts the whole store again, and an empty search is exactly the view without one.
TEST(TQuickSearch, TypingOnNarrowsWithoutRebuildingAndEmptyChangesNothing) {
    TRandomBoard b(7);
    for (int i = 0; i < 3000; ++i)
        b.Insert();
    TNoticeGridView view(b.Store());
    view.SetOrder({}, {{nf_note_summary, true}});
    TQuickSearch search(b.Store());
    search.SetFields({std::begin(Searched), std::end(Searched)});
    view.SetNarrowing(&search);
    const int32_t all = view.RowCount();
    const uint64_t rebuilds = view.RebuildCount();
    for (const char* typed : {"t", "ta", "tab", "tabl", "tablespace", "tablespace ts_", "tablespace ts_12"}) {
        search.SetText(typed);
        ExpectNarrowed(view, typed);
    }
    EXPECT_EQ(view.RebuildCount(), rebuilds);
    EXPECT_LT(view.RowCount(), all);
    search.SetText("tablespace ts_1"); // a letter taken back
    ExpectNarrowed(view, "tablespace ts_1");
    search.SetText("");
    EXPECT_EQ(view.RowCount(), all);
    ExpectNarrowed(view, "");
    EXPECT_EQ(view.RebuildCount(), rebuilds);
}

// The shown text of every kind of field is searched: a severity by its name, numbers in decimal; other
// fields not at all, and a word never spans two fields.
TEST(TQuickSearch, MatchesShownTextsOfTheSearchedFieldsOnly) {
    TNoticeStore store;
    store.Append();
    store.Buffer().SetString(nf_note_summary, "Disk");
    store.Buffer().SetString(nf_note_pvo_node, "full");
    store.Buffer().SetString(nf_note_text, "hidden words");
    store.Buffer().SetInteger(nf_note_severity, 3);
    store.Buffer().SetInteger(nf_note_count, 42);
    store.Post();
    TQuickSearch search(store);
    search.SetFields({std::begin(Searched), std::end(Searched)});
    struct {
        const char* Text;
        bool Match;
    } const cases[] = {{"disk", true},  {"FULL DISK", true}, {"fatal", true},     {"42", true},
                       {"3", false},    {"hidden", false},   {"diskfull", false}, {"disk\x1f", true},
                       {"sk ul", true}, {"dusk", false}};
    for (const auto& c : cases) {
        search.SetText(c.Text);
        EXPECT_EQ(search.Matches(0), c.Match) << c.Text;
        std::vector<int32_t> slots{0};
        search.Narrow(slots);
        EXPECT_EQ(slots.size(), c.Match ? 1u : 0u) << c.Text;
    }
}

// Narrowing and widening by typing: NarrowsTheViewLikeAPlainScanAcrossChanges and TypingOn...; here the
// searched fields changing under a search.
TEST(TQuickSearch, OtherFieldsAreNoNarrowing) {
    TNoticeStore store;
    TQuickSearch search(store);
    search.SetText("disk");
    const uint64_t disk = search.Generation();
    search.SetText("disk full");
    EXPECT_TRUE(search.Refines(disk));
    search.SetFields({nf_note_summary});
    EXPECT_FALSE(search.Refines(disk));
}

// The first search is applied at the view's next read; a row posted or edited in between must neither
// vanish from the view nor be lost to the rows kept aside for when the search is taken back.
TEST(TQuickSearch, RowsChangedBeforeTheFirstSearchIsReadStayInTheView) {
    for (const bool update : {false, true}) {
        SCOPED_TRACE(update);
        TNoticeStore store;
        TQuickSearch search(store);
        search.SetFields({nf_note_summary});
        TNoticeGridView view(store);
        view.SetNarrowing(&search);
        for (const char* summary : {"zeta one", "other"}) {
            store.Append();
            store.Buffer().SetString(nf_note_summary, summary);
            store.Post();
        }
        EXPECT_EQ(view.RowCount(), 2);
        search.SetText("zeta");
        if (update) {
            store.SetRecNo(2);
            store.Edit();
        } else {
            store.Append();
        }
        store.Buffer().SetString(nf_note_summary, "other two");
        store.Post();
        EXPECT_EQ(view.RowCount(), 1);
        search.SetText("");
        EXPECT_EQ(view.RowCount(), update ? 2 : 3);
    }
}
