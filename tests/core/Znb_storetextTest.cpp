#include "core/Znb_storetext.h"

#include <gtest/gtest.h>

TEST(Znb_storetext, FieldsAreWrittenInTheirDumpForms) {
    TNoticeRecord row;
    row.SetString(nf_note_text, "a\\b\tc\r\nd");
    row.SetInteger(nf_note_count, -7);
    row.SetDateTime(nf_note_raised_date, EncodeDateTime(2004, 2, 29, 13, 5, 9, 0));
    row.SetDateTime(nf_ack_date, EncodeDateTime(2004, 2, 29, 13, 5, 9, 250));
    row.SetString(nf_adpt_id, "");
    EXPECT_EQ(StoreFieldText(row, nf_note_text), "a\\\\b\\tc\\r\\nd");
    EXPECT_EQ(StoreFieldText(row, nf_note_count), "-7");
    EXPECT_EQ(StoreFieldText(row, nf_note_raised_date), "2004-02-29 13:05:09");
    EXPECT_EQ(StoreFieldText(row, nf_ack_date), "2004-02-29 13:05:09.250");
    EXPECT_EQ(StoreFieldText(row, nf_adpt_id), "");
    EXPECT_EQ(StoreFieldText(row, nf_del_code), "\\N");
}

TEST(Znb_storetext, StoreDumpHasColumnTableHeaderAndPassingRowsOnly) {
    TNoticeStore store;
    for (const char* key : {"a", "b"}) {
        store.Append();
        store.Buffer().SetString(nf_adpt_orig_key, key);
        store.Post();
    }
    store.First();
    store.Delete();
    const std::string text = StoreAsText(store);
    const std::string header = text.substr(0, text.find('\n'));
    EXPECT_EQ(header.rfind("nb_internal_key\tadpt_id\tadpt_orig_key\t", 0), 0u);
    EXPECT_NE(header.find("\tnote_severity\tnote_severity_str\tnote_group_notified\t"), std::string::npos);
    EXPECT_EQ(text.substr(header.size() + 1, 6), "2\t\\N\tb");

    TStats_Obj stats(nullptr, nullptr);
    stats.Inc("n1", "Fatal");
    stats.Dec("", "");
    EXPECT_EQ(CountersAsText(stats), "n1\tfatal\t1\nn1\t\t0\nnot set\tfatal\t0\nnot set\t\t-1\n");
}
