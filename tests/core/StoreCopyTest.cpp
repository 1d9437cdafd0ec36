// A copied store (the filter editor's test dataset, the display editor's preview) shares its storage with
// the board's until either changes it, and a copied view starts in the board's order without sorting.
#include "GridViewCheck.h"

#include "core/FilterExpression.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

void Fill(TNoticeStore& store, int32_t rows) {
    store.SetFilterCompiler(CompileFilterExpression);
    for (int32_t n = 0; n < rows; ++n) {
        store.Append();
        TNoticeRecord& r = store.Buffer();
        r.SetString(nf_adpt_orig_key, "key-" + std::to_string(n));
        r.SetString(nf_note_summary, "Tablespace TS_" + std::to_string(n * 7919 % rows) + " is full");
        r.SetString(nf_note_text, std::string(300, 't'));
        r.SetInteger(nf_note_severity, 1 + n % 4);
        store.Post();
    }
}

std::string OrigKeyAt(TNoticeStore& store, int32_t key) {
    EXPECT_TRUE(store.FindKey(std::to_string(key)));
    return std::string(store.ActiveRecord().AsString(nf_adpt_orig_key));
}

} // namespace

TEST(StoreCopy, SharesEverythingUntilEitherSideChangesAndThenCopiesOnlyWhatChanged) {
    TNoticeStore board;
    Fill(board, 20000);
    const size_t alone = board.OwnBytes();
    TNoticeStore copy;
    copy.CopyFrom(board);
    EXPECT_LT(copy.OwnBytes(), alone / 50) << "a copy costs next to nothing";
    EXPECT_LT(board.OwnBytes(), alone / 50) << "everything is shared now";

    // Reading and filtering the copy copies no rows.
    copy.SetFilterText("note_summary LIKE '%TS_1%' AND note_severity >= 2");
    copy.SetFiltered(true);
    EXPECT_GT(copy.RecordCount(), 0);
    EXPECT_LT(copy.RecordCount(), 20000);
    EXPECT_LT(board.OwnBytes(), alone / 50);
    EXPECT_LT(copy.OwnBytes(), alone / 50);

    // A change copies one block of rows (not their text) and is seen on its side only, in the key index too.
    // (Random writes on both sides of a copy: StoreCompaction.CopiesStayIndependentAcrossCompactions...)
    const size_t before = board.OwnBytes();
    ASSERT_TRUE(board.FindKey("100"));
    board.Edit();
    board.Buffer().SetString(nf_adpt_orig_key, "changed");
    board.Post();
    EXPECT_LT(board.OwnBytes() - before, size_t(100000));
    copy.SetFiltered(false);
    EXPECT_EQ(OrigKeyAt(copy, 100), "key-99");
    EXPECT_EQ(OrigKeyAt(board, 100), "changed");
    copy.SetIndexName(TNoticeStore::OrigKeyIndexName);
    EXPECT_TRUE(copy.FindKey("KEY-99"));
    EXPECT_FALSE(copy.FindKey("changed"));
    board.SetIndexName(TNoticeStore::OrigKeyIndexName);
    EXPECT_FALSE(board.FindKey("key-99"));
    copy.EmptyDataSet();
    EXPECT_EQ(board.TotalCount(), 20000);
}

TEST(StoreCopy, ACopiedViewTakesTheBoardsOrderAndThenGoesItsOwnWay) {
    TNoticeStore board;
    Fill(board, 5000);
    board.SetFilterText("note_severity >= 2");
    board.SetFiltered(true);
    TNoticeGridView grid(board);
    grid.SetOrder({{nf_note_severity, true}}, {{nf_note_summary, false}});
    TNoticeStore preview;
    preview.CopyFrom(board);
    TNoticeGridView previewView(preview, grid);
    EXPECT_EQ(previewView.GroupColumns(), grid.GroupColumns());
    EXPECT_EQ(previewView.SortColumns(), grid.SortColumns());
    ASSERT_NO_FATAL_FAILURE(ExpectViewMatches(previewView));
    EXPECT_EQ(previewView.RebuildCount(), 0u);

    preview.SetRecNo(3);
    preview.Delete();
    ASSERT_NO_FATAL_FAILURE(ExpectViewMatches(grid));
    ASSERT_NO_FATAL_FAILURE(ExpectViewMatches(previewView));
    EXPECT_EQ(previewView.RebuildCount(), 0u);

    // A view copied onto a store that no longer holds the same rows sorts for itself.
    TNoticeGridView late(preview, grid);
    ASSERT_NO_FATAL_FAILURE(ExpectViewMatches(late));
    EXPECT_EQ(late.RebuildCount(), 1u);
}

TEST(StoreCopy, AViewAskedForAnotherOrderSortsOnceAndOnlyThat) {
    TNoticeStore board;
    Fill(board, 3000);
    TNoticeGridView grid(board);
    grid.SetOrder({}, {{nf_note_summary, false}});
    TNoticeStore preview;
    preview.CopyFrom(board);
    // Named twice, severity counts once: the order is compared after that.
    TNoticeGridView severity(preview, grid, {}, {{nf_note_severity, false}, {nf_note_severity, true}});
    EXPECT_EQ(severity.SortColumns(), (std::vector<TSortColumn>{{nf_note_severity, false}}));
    ASSERT_NO_FATAL_FAILURE(ExpectViewMatches(severity));
    EXPECT_EQ(severity.RebuildCount(), 1u);
    TNoticeGridView same(preview, grid, {}, {{nf_note_summary, false}});
    ASSERT_NO_FATAL_FAILURE(ExpectViewMatches(same));
    EXPECT_EQ(same.RebuildCount(), 0u);
}
