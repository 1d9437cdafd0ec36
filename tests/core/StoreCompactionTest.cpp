// The store reclaims the slots of deleted rows: keys, order, bookmarks, record numbers and the grid's view
// stay as they were, also across copies that share their storage with the original.
#include "StoreModel.h"

#include <gtest/gtest.h>

#include <climits>

TEST(StoreCompaction, RandomChangesAgreeWithTheModelWhileSlotsAreReclaimed) {
    for (const int32_t floor : {1, 16}) {
        for (uint32_t seed : {1u, 2u}) {
            SCOPED_TRACE(testing::Message() << "floor " << floor << " seed " << seed);
            TStoreDriver d(seed);
            d.Store().SetCompactionFloor(floor);
            for (int i = 0; i < 150; ++i)
                d.Insert();
            int32_t bookmark = d.GoToRandomRow();
            const std::string marked = d.Model().at(bookmark).OrigKey;
            for (int step = 0; step < 3000; ++step) {
                d.RandomChange();
                if (step % 150 == 0) {
                    ASSERT_NO_FATAL_FAILURE(d.ExpectMatches()) << "step " << step;
                }
                // A delete compacts once a quarter of the slots are dead.
                if (d.Store().DeadSlotCount() >= floor) {
                    ASSERT_LT(d.Store().DeadSlotCount() * 4, d.Store().SlotCount());
                }
            }
            ASSERT_NO_FATAL_FAILURE(d.ExpectMatches());
            // The bookmark still names its row if the row is still there, however often slots moved.
            d.Store().SetFiltered(false);
            if (d.Model().count(bookmark)) {
                d.Store().GotoBookmark(bookmark);
                EXPECT_EQ(d.Store().ActiveRecord().AsString(nf_adpt_orig_key), marked);
            } else {
                EXPECT_FALSE(d.Store().BookmarkValid(bookmark));
            }
            EXPECT_LT(d.Store().SlotCount(), d.Store().NextKey() - 1) << "slots were reclaimed";
        }
    }
}

// Compaction moves rows to new slots: the view rewrites its slots without sorting again, and the current
// row stays the same row.
TEST(StoreCompaction, TheViewFollowsRenumberedSlotsWithoutRebuilding) {
    TStoreDriver d(7);
    d.Store().SetCompactionFloor(1);
    for (int i = 0; i < 2000; ++i)
        d.Insert();
    d.View().SetOrder({{nf_note_severity, false}}, {{nf_note_summary, true}});
    d.SetFilter(2);
    d.Store().SetFiltered(true);
    ASSERT_NO_FATAL_FAILURE(d.ExpectMatches());
    const uint64_t rebuilds = d.View().RebuildCount();
    for (int i = 0; i < 1500; ++i) {
        if (i % 3 == 0) d.Insert();
        d.Delete();
    }
    d.Store().SetRecNo(10);
    const int32_t current = d.Store().GetBookmark();
    d.Store().Compact();
    EXPECT_EQ(d.Store().DeadSlotCount(), 0);
    EXPECT_EQ(d.Store().SlotCount(), d.Store().TotalCount());
    EXPECT_EQ(d.Store().GetBookmark(), current);
    EXPECT_EQ(d.Store().RecNo(), 10);
    ASSERT_NO_FATAL_FAILURE(d.ExpectMatches());
    EXPECT_EQ(d.View().RebuildCount(), rebuilds);
}

// The original goes on changing while a copy is open (and the other way round); compactions on either side
// must not disturb the other, whose blocks are shared until written.
TEST(StoreCompaction, CopiesStayIndependentAcrossCompactionsOnEitherSide) {
    TStoreDriver board(21), copy(22);
    board.Store().SetCompactionFloor(4);
    for (int i = 0; i < 3000; ++i)
        board.Insert();
    board.View().SetOrder({}, {{nf_note_summary, false}});
    for (int round = 0; round < 4; ++round) {
        SCOPED_TRACE(round);
        copy.CopyFrom(board);
        copy.Store().SetCompactionFloor(4);
        EXPECT_EQ(copy.View().RebuildCount(), 0u) << "the copy's view takes the board's order";
        ASSERT_NO_FATAL_FAILURE(copy.ExpectMatches());
        for (int step = 0; step < 1200; ++step) {
            board.RandomChange();
            if (step % 2) copy.RandomChange();
            if (step % 400 == 0) {
                ASSERT_NO_FATAL_FAILURE(board.ExpectMatches());
                ASSERT_NO_FATAL_FAILURE(copy.ExpectMatches());
            }
        }
        copy.Store().Compact();
        ASSERT_NO_FATAL_FAILURE(board.ExpectMatches());
        ASSERT_NO_FATAL_FAILURE(copy.ExpectMatches());
    }
}

// A board with a steady number of live notices and a stream of new and deleted ones keeps the same memory.
TEST(StoreCompaction, ChurnWithAConstantLiveCountKeepsMemoryFlat) {
    TNoticeStore store;
    constexpr int32_t Live = 3000;
    const auto insert = [&](int32_t n) {
        store.Append();
        store.Buffer().SetString(nf_adpt_orig_key, "churn-" + std::to_string(n));
        store.Buffer().SetString(nf_note_text, std::string(100 + n % 50, 'x'));
        store.Post();
    };
    for (int32_t n = 0; n < Live; ++n)
        insert(n);
    // Memory saws up and down as dead slots gather and are reclaimed: compare the peaks.
    size_t warm = 0, late = 0;
    for (int32_t n = Live; n < 300000; ++n) {
        store.First(); // the oldest notice goes, a new one comes
        store.Delete();
        insert(n);
        if (n % 1000 == 0 && n >= 50000)
            (n < 100000 ? warm : late) = std::max(n < 100000 ? warm : late, store.OwnBytes());
    }
    EXPECT_EQ(store.TotalCount(), Live);
    EXPECT_LE(store.SlotCount(), Live + TNoticeStore::DefaultCompactionFloor + 1);
    EXPECT_LE(double(late), double(warm) * 1.05) << "warm " << warm << " late " << late;
}

TEST(StoreKeys, TheLastKeysAreIssuedThenInsertionsAreRefusedWithoutReusingAKey) {
    TNoticeStore store;
    const auto insert = [&](const std::string& key) {
        store.Append();
        store.Buffer().SetString(nf_adpt_orig_key, key);
        store.Post();
        return store.ActiveRecord().AsInteger(nf_nb_internal_key);
    };
    insert("early");
    EXPECT_THROW(store.SetNextKey(1), EDatabaseError); // below a key in use
    store.SetNextKey(INT32_MAX - 2);
    EXPECT_EQ(insert("a"), INT32_MAX - 2);
    EXPECT_EQ(insert("b"), INT32_MAX - 1);
    EXPECT_FALSE(store.KeysExhausted());
    EXPECT_EQ(insert("c"), INT32_MAX);
    EXPECT_TRUE(store.KeysExhausted());
    store.Append();
    store.Buffer().SetString(nf_adpt_orig_key, "d");
    EXPECT_THROW(store.Post(), EKeysExhausted);
    store.Cancel();
    // Existing rows are still found by key and go (and change: ABoardOutOfKeysRefusesNewNoticesAndSaysWhy).
    ASSERT_TRUE(store.FindKey(std::to_string(INT32_MAX)));
    ASSERT_TRUE(store.FindKey(std::to_string(INT32_MAX - 1)));
    store.Delete();
    store.Compact();
    EXPECT_EQ(store.SlotOfKey(INT32_MAX), 2);
    EXPECT_EQ(store.SlotOfKey(INT32_MAX - 1), -1);
    EXPECT_EQ(store.RecordCount(), 3);
    store.Last();
    EXPECT_EQ(store.GetBookmark(), INT32_MAX);
    EXPECT_THROW(insert("e"), EKeysExhausted);
}
