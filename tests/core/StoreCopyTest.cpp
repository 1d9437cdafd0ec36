// A copied store (the filter editor's test dataset, the display editor's preview) shares its storage with
// the board's until either changes it, and a copied view starts in the board's order without sorting.
#include "GridViewCheck.h"

#include "core/FilterExpression.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <tuple>
#include <utility>
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
    // (Every other kind of write, on either side: AWriteOnEitherSideNeverShowsInTheOther.)
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
    for (int32_t p = 0; p < grid.RowCount(); p += 97)
        ASSERT_EQ(previewView.KeyAt(p), grid.KeyAt(p));

    // Notices keep arriving on the board; the preview changes on its own.
    for (int i = 0; i < 300; ++i) {
        board.SetRecNo(1 + (i * 37) % board.RecordCount());
        if (i % 3 == 0) {
            board.Delete();
        } else {
            board.Edit();
            board.Buffer().SetInteger(nf_note_severity, 1 + i % 4);
            board.Post();
        }
    }
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

namespace {

// What a user of one store can see of it: every row (key, originator key, severity, whether the filter
// passes it), the counts, the filter and the current row.
struct TSnapshot {
    std::vector<std::tuple<int64_t, std::string, int64_t, bool>> Rows;
    int32_t Total = 0, Records = 0;
    std::string FilterText;
    bool Filtered = false;
    TBookmark Current = 0;
    bool operator==(const TSnapshot&) const = default;
};

TSnapshot Snap(const TNoticeStore& store) {
    TSnapshot s;
    for (int32_t slot = 0; slot < store.SlotCount(); ++slot)
        if (store.SlotLive(slot)) {
            const TNoticeRecord& r = store.RowBySlot(slot);
            s.Rows.emplace_back(r.AsInteger(nf_nb_internal_key), std::string(r.AsString(nf_adpt_orig_key)),
                                r.AsInteger(nf_note_severity), store.SlotPasses(slot));
        }
    s.Total = store.TotalCount();
    s.Records = store.RecordCount();
    s.FilterText = store.FilterText();
    s.Filtered = store.Filtered();
    s.Current = store.GetBookmark();
    return s;
}

} // namespace

// Every kind of write, on either side of a fresh copy, changes that side only.
TEST(StoreCopy, AWriteOnEitherSideNeverShowsInTheOther) {
    const std::vector<std::pair<const char*, std::function<void(TNoticeStore&)>>> writes = {
        {"edit",
         [](TNoticeStore& s) {
             s.SetRecNo(70); // in the second block of rows
             s.Edit();
             s.Buffer().SetString(nf_adpt_orig_key, "edited");
             s.Buffer().SetInteger(nf_note_severity, 9);
             s.Post();
         }},
        {"insert",
         [](TNoticeStore& s) {
             s.Append();
             s.Buffer().SetString(nf_adpt_orig_key, "inserted");
             s.Post();
         }},
        {"delete and compact",
         [](TNoticeStore& s) {
             s.SetCompactionFloor(1);
             for (int i = 0; i < 100; ++i) {
                 s.SetRecNo(1 + i % s.RecordCount());
                 s.Delete();
             }
         }},
        {"filter",
         [](TNoticeStore& s) {
             s.SetFilterText("note_severity = 3");
             s.SetFiltered(true);
         }},
        {"move", [](TNoticeStore& s) { s.Last(); }},
        {"empty", [](TNoticeStore& s) { s.EmptyDataSet(); }},
    };
    for (const auto& [what, write] : writes) {
        for (const bool onCopy : {false, true}) {
            SCOPED_TRACE(testing::Message() << what << (onCopy ? " on the copy" : " on the board"));
            TNoticeStore board;
            Fill(board, 300);
            board.SetFilterText("note_severity >= 2");
            board.SetFiltered(true);
            board.SetRecNo(5);
            TNoticeStore copy;
            copy.CopyFrom(board);
            ASSERT_TRUE(Snap(copy) == Snap(board));
            const TSnapshot untouched = Snap(onCopy ? board : copy);
            TNoticeStore& written = onCopy ? copy : board;
            const TSnapshot before = Snap(written);
            write(written);
            EXPECT_FALSE(Snap(written) == before) << "the write took effect";
            EXPECT_TRUE(Snap(onCopy ? board : copy) == untouched);
            // The untouched side can itself still be written without disturbing the written one.
            TNoticeStore& other = onCopy ? board : copy;
            const TSnapshot writtenNow = Snap(written);
            other.SetRecNo(1);
            other.Edit();
            other.Buffer().SetInteger(nf_note_severity, 4);
            other.Post();
            EXPECT_TRUE(Snap(written) == writtenNow);
        }
    }
}
