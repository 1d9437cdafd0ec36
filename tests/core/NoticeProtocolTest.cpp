#include "NoticeBoardFixture.h"

#include "support/DateUtils.h"

#include <climits>

TEST_F(NoticeBoardTest, RepeatedPostInAnyCaseUpdatesAndKeepsFirstRaisedDate) {
    EXPECT_EQ(Send(Message(Notice("post", El("adpt_orig_key", "Db1/Disk") + El("note_count", "1") +
                                              El("note_raised_date", "2004-02-29T13:05:09Z") +
                                              El("note_last_raised_date", "2004-02-29T13:05:09Z")) +
                           Notice(" POST ", El("adpt_orig_key", "DB1/disk") + El("note_count", "2") +
                                                El("note_raised_date", "2005-01-01T00:00:00") +
                                                El("note_last_raised_date", "2005-01-01T10:00:00")))),
              0);
    ASSERT_EQ(Store().TotalCount(), 1);
    const TNoticeRecord* row = Row("db1/DISK");
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(row->AsString(nf_adpt_orig_key), "DB1/disk"); // the key is a field like any other
    EXPECT_EQ(row->AsInteger(nf_note_count), 2);
    EXPECT_EQ(row->AsDateTime(nf_note_raised_date), EncodeDateTime(2004, 2, 29, 13, 5, 9, 0));
    EXPECT_EQ(row->AsDateTime(nf_note_last_raised_date), EncodeDateTime(2005, 1, 1, 10, 0, 0, 0));
    EXPECT_EQ(Board->TotalCount(), 1);
    EXPECT_EQ(Board->StatusBarText(), "Total notices: 1");
}

TEST_F(NoticeBoardTest, StringsAreCutToSizeButMemosAreNot) {
    const std::string summary200(200, 's'), summary128(128, 't'), key300(300, 'k'), text(5000, 'x');
    Send(Message(
        Notice("new", El("adpt_orig_key", key300) + El("note_summary", summary200) + El("note_text", text)) +
        Notice("new", El("adpt_orig_key", "exact") + El("note_summary", summary128))));
    ASSERT_EQ(Store().TotalCount(), 2);
    const TNoticeRecord* row = Row(std::string(253, 'k') + "...");
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(row->AsString(nf_note_summary), std::string(125, 's') + "...");
    EXPECT_EQ(row->AsString(nf_note_text).size(), 5000u);
    EXPECT_EQ(Row("exact")->AsString(nf_note_summary), summary128);
    // The full key never finds the cut one again: update changes nothing, a repeated post is refused.
    Send(Message(Notice("update", El("adpt_orig_key", key300) + El("note_summary", "changed"))));
    EXPECT_EQ(Row(std::string(253, 'k') + "...")->AsString(nf_note_summary), std::string(125, 's') + "...");
    EXPECT_EQ(Send(Message(Notice("post", El("adpt_orig_key", key300)))), ZNB_NOTICE_FAILED);
    EXPECT_EQ(Store().TotalCount(), 2);
}

TEST_F(NoticeBoardTest, EmptyCountIsNullOnInsertAndZeroOnUpdate) {
    Send(Message(Notice("post", El("adpt_orig_key", "a") + El("note_count", "") + El("note_severity", "x"))));
    const TNoticeRecord* row = Row("a");
    EXPECT_TRUE(row->IsNull(nf_note_count));
    EXPECT_EQ(row->AsInteger(nf_note_severity), 0);
    EXPECT_FALSE(row->IsNull(nf_note_severity));
    Send(Message(Notice("update", El("adpt_orig_key", "a") + El("note_count", "") +
                                      El("note_summary", "a &amp;lt; b &QUOT;q&quot;"))));
    row = Row("a");
    EXPECT_FALSE(row->IsNull(nf_note_count));
    EXPECT_EQ(row->AsInteger(nf_note_count), 0);
    EXPECT_EQ(row->AsString(nf_note_summary), "a < b \"q\"");
}

TEST_F(NoticeBoardTest, FailedInsertionDropsTheRestAndRestoresTheStore) {
    Send(Message(Notice("post", El("adpt_orig_key", "keep") + El("note_severity", "1")) +
                 Notice("post", El("adpt_orig_key", "hidden") + El("note_severity", "2")) +
                 Notice("post", El("adpt_orig_key", "keep2") + El("note_severity", "1"))));
    Store().SetFilterText("note_severity = 'Normal'");
    Store().SetFiltered(true);
    Store().Last();
    const std::string msg =
        Message(Notice("post", El("adpt_orig_key", "first") + El("note_severity", "1") +
                                   El("note_pvo_node", "n1") + El("note_severity_str", "Normal")) +
                Notice("post", El("adpt_orig_key", "second") + El("note_raised_date", "2004-13-01") +
                                   El("note_pvo_node", "n1") + El("note_severity_str", "Normal")) +
                Notice("post", El("adpt_orig_key", "third") + El("note_severity", "1")));
    EXPECT_EQ(Send(msg), ZNB_NOTICE_FAILED);
    EXPECT_TRUE(Store().Filtered());
    EXPECT_EQ(Store().ActiveRecord().AsString(nf_adpt_orig_key), "keep2");
    EXPECT_NE(Row("first"), nullptr);
    Store().SetFiltered(false);
    EXPECT_EQ(Row("second"), nullptr);
    EXPECT_EQ(Row("third"), nullptr);
    Store().SetFiltered(true);
    EXPECT_EQ(Store().TotalCount(), 4);
    EXPECT_EQ(Board->TotalCount(), 4);
    EXPECT_EQ(Store().RecordCount(), 3);
    EXPECT_EQ(Board->StatusBarText(), "Total notices: 4 (3 in this filter)");
    EXPECT_EQ(PVO_Node_Stats->Get_Count("n1", "Normal"), 1);
    EXPECT_FALSE(Board->Busy());
    EXPECT_FALSE(Store().ControlsDisabled());
    EXPECT_EQ(Store().State(), TDataSetState::dsBrowse);
    EXPECT_NE(LogText().find("Process NoticeBoard :  Status =Notice Board append error" + msg),
              std::string::npos);
}

TEST_F(NoticeBoardTest, MessageWithoutNoticeListLeavesTheTotal) {
    Send(Message(Notice("post", El("adpt_orig_key", "a"))));
    Board->SetTotalCount(42);
    const std::string msg = "<Msg><Other/></Msg>";
    EXPECT_EQ(Send(msg), 0);
    EXPECT_EQ(Board->TotalCount(), 42);
    EXPECT_NE(LogText().find("Can not find NOTICELIST node " + msg), std::string::npos);
}

TEST_F(NoticeBoardTest, UnknownKeysAndCommandsChangeNothing) {
    Send(Message(Notice("post", El("adpt_orig_key", "a") + El("note_summary", "s"))));
    const std::string before = LogText();
    Send(Message(Notice("update", El("adpt_orig_key", "zz") + El("note_summary", "x")) +
                 Notice("delete", El("adpt_orig_key", "zz"))));
    EXPECT_EQ(LogText(), before);
    EXPECT_EQ(Store().TotalCount(), 1);
    Send(Message(Notice(" Archive ", El("adpt_orig_key", "a")) +
                 "<Notice><adpt_orig_key>a</adpt_orig_key></Notice>"));
    EXPECT_NE(LogText().find("Process_XML_Notice : Invalid XML command  archive"), std::string::npos);
    EXPECT_NE(LogText().find("Process_XML_Notice : No XML command in document."), std::string::npos);
    EXPECT_EQ(Row("a")->AsString(nf_note_summary), "s");
}

TEST_F(NoticeBoardTest, DeleteCountsDownUnderTheStoredNodeAndSeverity) {
    Send(Message(Notice("post", El("adpt_orig_key", "a") + El("note_pvo_node", " NodeA ") +
                                    El("note_severity_str", "Warning")) +
                 Notice("post", El("adpt_orig_key", "b"))));
    EXPECT_EQ(PVO_Node_Stats->Get_Count("nodea", "Warning"), 1);
    EXPECT_EQ(PVO_Node_Stats->Get_Count("not set", ""), 1);
    Send(Message(Notice("update", El("adpt_orig_key", "a") + El("note_pvo_node", "NodeB"))));
    EXPECT_EQ(PVO_Node_Stats->Get_Count("nodea", "Warning"), 1);
    Send(Message(Notice("delete", El("adpt_orig_key", " A ")) + Notice("delete", El("adpt_orig_key", "b"))));
    EXPECT_EQ(Store().TotalCount(), 0);
    EXPECT_EQ(PVO_Node_Stats->Get_Count("nodea", "Warning"), 1);
    EXPECT_EQ(PVO_Node_Stats->Get_Count("nodeb", "Warning"), -1);
    EXPECT_EQ(PVO_Node_Stats->Get_Count("not set", ""), 0);
}

TEST_F(NoticeBoardTest, KeyWithApostropheIsNeverFoundAgain) {
    EXPECT_EQ(Send(Message(Notice("post", El("adpt_orig_key", "O&apos;Brien") + El("note_count", "1")))), 0);
    Send(Message(Notice("update", El("adpt_orig_key", "O'Brien") + El("note_count", "5"))));
    EXPECT_EQ(Row("O'Brien")->AsInteger(nf_note_count), 1);
    EXPECT_EQ(Send(Message(Notice("post", El("adpt_orig_key", "O'Brien")))), ZNB_NOTICE_FAILED);
    Send(Message(Notice("delete", El("adpt_orig_key", "O'Brien"))));
    EXPECT_EQ(Store().TotalCount(), 1);
}

TEST_F(NoticeBoardTest, FailingUpdatePostsTheFieldsBeforeTheBadOne) {
    Send(Message(Notice("post", El("adpt_orig_key", "a") + El("note_summary", "old"))));
    Send(Message(Notice("update", El("adpt_orig_key", "a") + El("note_summary", "new") +
                                      El("note_last_raised_date", "garbage") + El("note_count", "9"))));
    const TNoticeRecord* row = Row("a");
    EXPECT_EQ(row->AsString(nf_note_summary), "new");
    EXPECT_TRUE(row->IsNull(nf_note_count));
    EXPECT_NE(
        LogText().find("UpdateNote : Exception occurred : Error converting Date. Invalid DateTime string : "
                       "garbage"),
        std::string::npos);
    EXPECT_EQ(Store().State(), TDataSetState::dsBrowse);
}

TEST_F(NoticeBoardTest, EmptyKeyIsOneNoticeThatDeleteFinds) {
    EXPECT_EQ(Send(Message(Notice("new", El("adpt_orig_key", " ") + El("note_pvo_node", "n1") +
                                             El("note_severity_str", "Fatal")) +
                           Notice("new", El("note_summary", "no key")) +
                           Notice("new", El("note_summary", "no key either")))),
              0);
    EXPECT_EQ(Store().TotalCount(), 3);
    // "post" does not look an empty key up, and a second row with it is refused.
    EXPECT_EQ(Send(Message(Notice("post", "<adpt_orig_key/>"))), ZNB_NOTICE_FAILED);
    Send(Message(Notice("delete", "<adpt_orig_key></adpt_orig_key>")));
    EXPECT_EQ(Store().TotalCount(), 2);
    EXPECT_EQ(PVO_Node_Stats->Get_Count("n1", "Fatal"), 0);
    Send(Message(Notice("delete", "<adpt_orig_key/>"))); // notices sent without a key are never found
    EXPECT_EQ(Store().TotalCount(), 2);
}

TEST_F(NoticeBoardTest, MultiLineFieldsKeepTheirOwnTextOnInsertAndUpdate) {
    // Several multi-line elements in one notice: each field gets its own lines, joined.
    Send(Message(Notice("new", El("adpt_orig_key", "ml") + El("note_summary", "a\r\nb") +
                                   El("note_text", "c\nd") + El("ack_code", "e\rf"))));
    const TNoticeRecord* row = Row("ml");
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(row->AsString(nf_note_summary), "a\nb");
    EXPECT_EQ(row->AsString(nf_note_text), "c\nd");
    EXPECT_EQ(row->AsString(nf_ack_code), "e\nf");
    Send(Message(Notice("update", El("adpt_orig_key", "ml") + El("note_summary", "g\nh") +
                                      El("note_text", "i\nj &amp; k"))));
    row = Row("ml");
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(row->AsString(nf_note_summary), "g\nh");
    EXPECT_EQ(row->AsString(nf_note_text), "i\nj & k");
    EXPECT_EQ(row->AsString(nf_ack_code), "e\nf");
}

// A board that has issued every key refuses new notices, says why in the log just before the protocol's
// own line, and goes on updating and deleting the notices it has; no key is issued twice.
TEST_F(NoticeBoardTest, ABoardOutOfKeysRefusesNewNoticesAndSaysWhy) {
    Store().SetNextKey(INT32_MAX - 1);
    const std::string msg = Message(Notice("post", El("adpt_orig_key", "a") + El("note_pvo_node", "N")) +
                                    Notice("post", El("adpt_orig_key", "b") + El("note_pvo_node", "N")) +
                                    Notice("post", El("adpt_orig_key", "c") + El("note_pvo_node", "N")));
    EXPECT_EQ(Send(msg), ZNB_NOTICE_FAILED);
    ASSERT_EQ(Store().TotalCount(), 2);
    EXPECT_EQ(Row("a")->AsInteger(nf_nb_internal_key), INT32_MAX - 1);
    EXPECT_EQ(Row("b")->AsInteger(nf_nb_internal_key), INT32_MAX);
    EXPECT_EQ(Row("c"), nullptr);
    const std::string log = LogText();
    const size_t why =
        log.find("AddNote : Every nb_internal_key has been issued (the last was 2147483647); the "
                 "Notice Board accepts no new notices until it is restarted");
    const size_t status = log.find("Process NoticeBoard :  Status =Notice Board append error" + msg);
    ASSERT_NE(why, std::string::npos) << log;
    ASSERT_NE(status, std::string::npos) << log;
    EXPECT_LT(why, status);

    EXPECT_EQ(Send(Message(Notice("post", El("adpt_orig_key", "A") + El("note_summary", "updated")) +
                           Notice("delete", El("adpt_orig_key", "b")))),
              0);
    EXPECT_EQ(Row("a")->AsString(nf_note_summary), "updated");
    EXPECT_EQ(Row("b"), nullptr);
    EXPECT_EQ(Send(Message(Notice("new", El("adpt_orig_key", "b")))), ZNB_NOTICE_FAILED);
    EXPECT_EQ(Store().TotalCount(), 1);
    EXPECT_EQ(Board->TotalCount(), 1);
}

// Deleting most notices makes the store move the rest into fewer slots in the middle of a message; the
// notices keep their keys, the protocol still finds them by originator key, new notices get keys above all
// earlier ones, and the row the user was on is still current afterwards.
TEST_F(NoticeBoardTest, ReclaimedSlotsChangeNothingTheProtocolOrTheUserSees) {
    std::string fill;
    for (int n = 0; n < 200; ++n)
        fill += Notice("new", El("adpt_orig_key", "n" + std::to_string(n)) + El("note_pvo_node", "N"));
    ASSERT_EQ(Send(Message(fill)), 0);
    Store().SetCompactionFloor(1);
    const int32_t keyOf150 = Row("n150")->AsInteger(nf_nb_internal_key);
    const TBookmark current = Store().GetBookmark();
    ASSERT_EQ(current, keyOf150);

    std::string deletes;
    for (int n = 0; n < 120; ++n)
        deletes += Notice("delete", El("adpt_orig_key", "N" + std::to_string(n)));
    ASSERT_EQ(Send(Message(deletes + Notice("post", El("adpt_orig_key", "n130") + El("note_count", "7")) +
                           Notice("new", El("adpt_orig_key", "late")))),
              0);
    EXPECT_LT(Store().SlotCount(), 200) << "the deleted notices' slots were reclaimed";
    EXPECT_EQ(Store().GetBookmark(), current);
    EXPECT_EQ(Store().TotalCount(), 81);
    EXPECT_EQ(Board->TotalCount(), 81);
    EXPECT_EQ(Row("n0"), nullptr);
    EXPECT_EQ(Row("n130")->AsInteger(nf_note_count), 7);
    EXPECT_EQ(Row("n150")->AsInteger(nf_nb_internal_key), keyOf150);
    EXPECT_EQ(Row("late")->AsInteger(nf_nb_internal_key), 201);
    EXPECT_EQ(Send(Message(Notice("new", El("adpt_orig_key", "N199")))), ZNB_NOTICE_FAILED)
        << "still a duplicate";
}
