#include "core/TNoticeStore.h"
#include "core/FilterExpression.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

void AddRow(TNoticeStore& store, const std::string& key, int32_t severity = 1) {
    store.Append();
    if (!key.empty()) store.Buffer().SetString(nf_adpt_orig_key, key);
    store.Buffer().SetInteger(nf_note_severity, severity);
    store.Post();
}

class TCountingListener : public INoticeStoreListener {
public:
    void DataSetChanged() override { ++DataSet; }
    void RecordChanged(int32_t) override { ++Records; }
    int DataSet = 0;
    int Records = 0;
};

} // namespace

TEST(TNoticeStore, OrigKeyIsUniqueInAnyLetterCase) {
    TNoticeStore store;
    AddRow(store, "Node1/Disk");
    store.Append();
    store.Buffer().SetString(nf_adpt_orig_key, "NODE1/disk");
    try {
        store.Post();
        FAIL() << "duplicate key accepted";
    } catch (const EDatabaseError& e) {
        EXPECT_EQ(e.Message(), "Key violation.");
    }
    EXPECT_EQ(store.State(), TDataSetState::dsInsert);
    store.Cancel();
    EXPECT_EQ(store.RecordCount(), 1);

    store.SetIndexName("Orig_Key_Index");
    EXPECT_EQ(store.IndexName(), "Orig_Key_Index");
    EXPECT_TRUE(store.FindKey("node1/DISK"));
    EXPECT_FALSE(store.FindKey("node1/dis"));
    store.SetIndexName("primaryIdx");
    EXPECT_TRUE(store.FindKey("1"));
    EXPECT_FALSE(store.FindKey("2"));
    EXPECT_THROW(store.SetIndexName("nope"), EDatabaseError);
}

TEST(TNoticeStore, EditThatTakesAnotherRowsKeyIsRefusedAndOwnKeyMayChangeCase) {
    TNoticeStore store;
    AddRow(store, "a");
    AddRow(store, "b");
    store.Edit();
    store.Buffer().SetString(nf_adpt_orig_key, "A");
    EXPECT_THROW(store.Post(), EDatabaseError);
    store.Cancel();
    store.Edit();
    store.Buffer().SetString(nf_adpt_orig_key, "B");
    store.Post();
    store.SetIndexName("Orig_Key_Index");
    EXPECT_TRUE(store.FindKey("b"));
    EXPECT_EQ(store.ActiveRecord().AsString(nf_adpt_orig_key), "B");
    EXPECT_EQ(store.ActiveRecord().AsInteger(nf_nb_internal_key), 2);
}

TEST(TNoticeStore, NullKeysNeverCollideButAnEmptyKeyIsUnique) {
    TNoticeStore store;
    AddRow(store, ""); // the key stays null
    AddRow(store, "");
    store.Append();
    store.Buffer().SetString(nf_adpt_orig_key, "");
    store.Post();
    EXPECT_EQ(store.RecordCount(), 3);
    store.Append();
    store.Buffer().SetString(nf_adpt_orig_key, "");
    EXPECT_THROW(store.Post(), EDatabaseError);
    store.Cancel();
    store.SetIndexName("Orig_Key_Index");
    ASSERT_TRUE(store.FindKey(""));
    EXPECT_EQ(store.ActiveRecord().AsInteger(nf_nb_internal_key), 3);
    store.Delete();
    EXPECT_FALSE(store.FindKey("")); // the null keys are not found
    // An edit gives a keyless row the empty key, and takes it away again.
    store.SetIndexName("primaryIdx");
    ASSERT_TRUE(store.FindKey("1"));
    store.Edit();
    store.Buffer().SetString(nf_adpt_orig_key, "");
    store.Post();
    store.SetIndexName("Orig_Key_Index");
    ASSERT_TRUE(store.FindKey(""));
    EXPECT_EQ(store.ActiveRecord().AsInteger(nf_nb_internal_key), 1);
    store.Edit();
    store.Buffer().SetNull(nf_adpt_orig_key);
    store.Post();
    EXPECT_FALSE(store.FindKey(""));
}

// Walks, record numbers, seeks and bookmarks of live rows are checked against a model (StoreModel.h); here
// the ends of the store and what is left of a deleted row.
TEST(TNoticeStore, EndsOfTheStoreAndBookmarksOfDeletedRows) {
    TNoticeStore store;
    EXPECT_TRUE(store.Eof());
    EXPECT_TRUE(store.Bof());
    for (int i = 1; i <= 4; ++i)
        AddRow(store, "k" + std::to_string(i));
    EXPECT_EQ(store.RowAt(2)->AsString(nf_adpt_orig_key), "k2");
    EXPECT_EQ(store.RowAt(5), nullptr);
    store.SetRecNo(3);
    const TBookmark mark = store.GetBookmark();
    store.First();
    store.Delete();
    store.GotoBookmark(mark);
    EXPECT_EQ(store.RecNo(), 2);
    store.Delete();
    EXPECT_FALSE(store.BookmarkValid(mark));
    EXPECT_THROW(store.GotoBookmark(mark), EDatabaseError);
    EXPECT_EQ(store.ActiveRecord().AsString(nf_adpt_orig_key), "k4") << "deleting moves to the next row";
}

// Counts and seeks under a filter are checked against a model (StoreModel.h); here where the current row
// goes and what a filter text that does not compile leaves.
TEST(TNoticeStore, CurrentRowUnderAFilterAndABadFilterText) {
    TNoticeStore store;
    store.SetFilterCompiler(CompileFilterExpression);
    AddRow(store, "a", 1);
    AddRow(store, "b", 2);
    store.SetFilterText("note_severity = 2");
    store.SetFiltered(true);
    EXPECT_EQ(store.ActiveRecord().AsString(nf_adpt_orig_key), "b");
    AddRow(store, "c", 2);
    AddRow(store, "d", 3);
    EXPECT_EQ(store.RecNo(), 2); // "c"; "d" was posted but does not pass
    store.Edit();
    store.Buffer().SetInteger(nf_note_severity, 3);
    store.Post();
    EXPECT_EQ(store.RecordCount(), 1);
    EXPECT_EQ(store.ActiveRecord().AsString(nf_adpt_orig_key), "b");
    EXPECT_THROW(store.SetFilterText("bad"), Exception);
    EXPECT_EQ(store.FilterText(), "note_severity = 2");
    EXPECT_EQ(store.RecordCount(), 1);
}

TEST(TNoticeStore, ListenersHearOnceAfterControlsAreReEnabled) {
    TNoticeStore store;
    TCountingListener listener;
    store.AddListener(&listener);
    AddRow(store, "a");
    EXPECT_EQ(listener.DataSet, 1);
    store.DisableControls();
    store.DisableControls();
    AddRow(store, "b");
    AddRow(store, "c");
    store.EnableControls();
    EXPECT_EQ(listener.DataSet, 1);
    EXPECT_TRUE(store.ControlsDisabled());
    store.EnableControls();
    EXPECT_EQ(listener.DataSet, 2);
    store.EnableControls(); // an extra enable is harmless
    store.Edit();
    store.Post();
    EXPECT_EQ(listener.Records, 1);
    store.RemoveListener(&listener);
}

// Row observers hear every change at once, detached views or not, with the slot's filter mark already set.
TEST(TNoticeStore, RowObserversHearEveryChangeEvenWhileDetached) {
    struct TLog : INoticeRowObserver {
        const TNoticeStore* Store = nullptr;
        std::vector<std::string> Events;
        void Add(const char* what, int32_t slot) {
            Events.push_back(std::string(what) + std::to_string(slot) +
                             (Store->SlotPasses(slot) ? "+" : "-"));
        }
        void RowInserted(int32_t slot) override { Add("ins", slot); }
        void RowUpdated(int32_t slot) override { Add("upd", slot); }
        void RowDeleted(int32_t slot) override { Add("del", slot); }
        void RowsReset() override { Events.push_back("reset"); }
    } log;
    TNoticeStore store;
    log.Store = &store;
    store.SetFilterCompiler(CompileFilterExpression);
    store.AddRowObserver(&log);
    store.SetFilterText("note_severity = 2");
    store.DisableControls();
    AddRow(store, "a", 2);
    AddRow(store, "b", 1);
    store.Append();
    store.Cancel(); // nothing posted, nothing heard
    store.First();
    store.Edit();
    store.Buffer().SetInteger(nf_note_severity, 3);
    store.Post();
    store.Delete();
    store.EnableControls();
    TNoticeStore copy;
    copy.AddRowObserver(&log);
    copy.CopyFrom(store);
    copy.EmptyDataSet();
    copy.RemoveRowObserver(&log);
    copy.EmptyDataSet();
    EXPECT_EQ(log.Events,
              (std::vector<std::string>{"reset", "ins0+", "ins1-", "upd0-", "del0-", "reset", "reset"}));
    EXPECT_EQ(store.SlotOfKey(1), -1);
    EXPECT_EQ(store.SlotOfKey(2), 1);
    EXPECT_EQ(store.SlotOfKey(3), -1);
}
