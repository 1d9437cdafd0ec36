#include "core/TAlertWatcher.h"
#include "core/TNoticeBoard.h"
#include "core/TRowHighlights.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

constexpr int64_t Minute = 60000;

constexpr const char* T0 = "2026-01-05T10:00:00";

struct N {
    N(std::string key, int severity = 3, std::string raised = T0, std::string acked = "",
      std::string summary = "Disk full")
        : Key(std::move(key)), Severity(severity), Raised(std::move(raised)), Acked(std::move(acked)),
          Summary(std::move(summary)) {}
    std::string Key;
    int Severity;
    std::string Raised;
    std::string Acked; // empty: no ack_date element
    std::string Summary;
};

std::string El(const std::string& name, const std::string& value) {
    return value.empty() ? "" : "<" + name + ">" + value + "</" + name + ">";
}

std::string NoticeXml(const N& n, const std::string& command) {
    return "<Notice><Command>" + command + "</Command>" + El("adpt_orig_key", n.Key) +
           El("note_summary", n.Summary) + El("adpt_orig_server", "SRV1") +
           El("note_severity", std::to_string(n.Severity)) + El("note_raised_date", n.Raised) +
           El("note_last_raised_date", n.Raised) + El("ack_date", n.Acked) + "</Notice>";
}

class AlertWatcher : public ::testing::Test {
protected:
    AlertWatcher() {
        Watcher.SetThreshold(3);
        Watcher.SetOnChange([this] { ++Changes; });
    }
    void Send(const std::vector<N>& notices, const std::string& command = "post") {
        std::string xml = "<Msg><NoticeList>";
        for (const N& n : notices)
            xml += NoticeXml(n, command);
        Board.Process_XML_Notice(xml + "</NoticeList></Msg>");
    }
    void Delete(const std::string& key) {
        Board.Process_XML_Notice("<Msg><NoticeList><Notice><Command>delete</Command><adpt_orig_key>" + key +
                                 "</adpt_orig_key></Notice></NoticeList></Msg>");
    }
    int32_t Announced() {
        const auto a = Watcher.TakeAnnouncement();
        return a ? a->Notices : 0;
    }

    int64_t Now = 1000;
    TNoticeBoard Board;
    TAlertWatcher Watcher{Board.cdsNoticeBd(), [this] { return Now; }};
    int Changes = 0;
};

} // namespace

TEST_F(AlertWatcher, OneMessageMakesOneAnnouncementNamingItsWorstNotice) {
    Send({{"a", 1}, {"b", 3, T0, "", "Fatal one"}, {"c", 4, T0, "", "Critical one"}, {"d", 4}});
    EXPECT_EQ(Changes, 4);
    ASSERT_TRUE(Watcher.Pending());
    const auto a = Watcher.TakeAnnouncement();
    ASSERT_TRUE(a);
    EXPECT_EQ(a->Kind, TAlertKind::NewTrouble);
    EXPECT_EQ(a->Notices, 3);
    EXPECT_EQ(a->Severity, 4);
    EXPECT_EQ(a->Summary, "Critical one"); // the first of the worst
    EXPECT_EQ(a->Server, "SRV1");
    EXPECT_EQ(a->Key, 3);
    EXPECT_FALSE(Watcher.TakeAnnouncement());
    EXPECT_EQ(Watcher.TroubleCount(), 3);
}

TEST_F(AlertWatcher, OnlyChangesIntoTroubleAreAnnounced) {
    Send({{"k", 2}});
    ASSERT_EQ(Announced(), 0);
    struct Step {
        const char* What;
        N Notice;
        int32_t Announced;
        int32_t Trouble;
    };
    const Step steps[] = {
        {"raised into the threshold", {"k", 3}, 1, 1},
        {"posted again while trouble", {"k", 4, "2026-01-05T10:05:00"}, 0, 1},
        {"acknowledged", {"k", 4, "2026-01-05T10:05:00", "2026-01-05T10:06:00"}, 0, 0},
        {"posted again, not raised since the acknowledgement",
         {"k", 4, "2026-01-05T10:06:00", "2026-01-05T10:06:00"},
         0,
         0},
        {"raised again after the acknowledgement",
         {"k", 4, "2026-01-05T10:07:00", "2026-01-05T10:06:00"},
         1,
         1},
        {"lowered below the threshold", {"k", 2, "2026-01-05T10:08:00"}, 0, 0},
        {"severity out of range", {"k", 9, "2026-01-05T10:09:00"}, 0, 0},
    };
    for (const Step& s : steps) {
        Send({s.Notice}, "update");
        EXPECT_EQ(Announced(), s.Announced) << s.What;
        EXPECT_EQ(Watcher.TroubleCount(), s.Trouble) << s.What;
    }
}

TEST_F(AlertWatcher, RemindersFollowTheLastAnnouncementWhileTroubleStays) {
    Watcher.SetRepeatMinutes(10);
    Send({{"a", 3}, {"b", 4, T0, "", "newest critical"}, {"c", 3}});
    ASSERT_EQ(Announced(), 3);
    EXPECT_EQ(Watcher.NextReminderIn(), 10 * Minute);
    Now += 10 * Minute - 1;
    EXPECT_FALSE(Watcher.TakeReminder());
    Now += 1;
    auto r = Watcher.TakeReminder();
    ASSERT_TRUE(r);
    EXPECT_EQ(r->Kind, TAlertKind::Reminder);
    EXPECT_EQ(r->Notices, 3);
    EXPECT_EQ(r->Severity, 4);
    EXPECT_EQ(r->Summary, "newest critical");
    EXPECT_EQ(Watcher.NextReminderIn(), 10 * Minute);

    // A new announcement starts the rhythm again.
    Now += 4 * Minute;
    Send({{"d", 3}});
    ASSERT_EQ(Announced(), 1);
    EXPECT_EQ(Watcher.NextReminderIn(), 10 * Minute);

    // Once nothing is trouble, no reminder is to come.
    Delete("b");
    Send({{"a", 3, "2026-01-05T10:00:00", "2026-01-05T11:00:00"},
          {"c", 2},
          {"d", 3, "2026-01-05T10:00:00", "2026-01-05T11:00:00"}},
         "update");
    EXPECT_EQ(Watcher.TroubleCount(), 0);
    EXPECT_FALSE(Watcher.NextReminderIn());
    Now += 60 * Minute;
    EXPECT_FALSE(Watcher.TakeReminder());
}

TEST_F(AlertWatcher, MutingSwallowsAnnouncementsAndRemindersButKeepsTheRhythm) {
    Watcher.SetRepeatMinutes(10);
    Watcher.MuteFor(15 * Minute);
    EXPECT_TRUE(Watcher.Muted());
    EXPECT_EQ(Watcher.MuteLeft(), 15 * Minute);
    Send({{"a", 4}});
    EXPECT_EQ(Announced(), 0);
    EXPECT_FALSE(Watcher.Pending());
    Now += 10 * Minute;
    EXPECT_FALSE(Watcher.TakeReminder()); // due, swallowed, next at +20
    Now += 5 * Minute;
    EXPECT_FALSE(Watcher.Muted());
    EXPECT_EQ(Watcher.NextReminderIn(), 5 * Minute);
    Now += 5 * Minute;
    EXPECT_TRUE(Watcher.TakeReminder());

    Watcher.MuteUntilRestart();
    EXPECT_TRUE(Watcher.MutedUntilRestart());
    EXPECT_EQ(Watcher.MuteLeft(), 0);
    Now += 1000 * Minute;
    EXPECT_TRUE(Watcher.Muted());
    Send({{"b", 4}});
    EXPECT_EQ(Announced(), 0);
    Watcher.Unmute();
    Send({{"c", 4}});
    EXPECT_EQ(Announced(), 1);
}

TEST_F(AlertWatcher, ThresholdAndResetsRecountWithoutAnnouncing) {
    Send({{"a", 2}, {"b", 2}, {"c", 1}});
    EXPECT_EQ(Watcher.TroubleCount(), 0);
    Watcher.SetRepeatMinutes(5);
    Watcher.SetThreshold(2);
    EXPECT_EQ(Watcher.TroubleCount(), 2);
    EXPECT_FALSE(Watcher.Pending());
    EXPECT_EQ(Watcher.NextReminderIn(), 5 * Minute);

    // A watcher that starts on a filled store counts its rows and says nothing of them.
    TAlertWatcher late(Board.cdsNoticeBd(), [this] { return Now; });
    late.SetThreshold(1);
    EXPECT_EQ(late.TroubleCount(), 3);
    EXPECT_FALSE(late.Pending());

    Send({{"d", 4}});
    EXPECT_TRUE(Watcher.Pending());
    Board.cdsNoticeBd().EmptyDataSet();
    EXPECT_FALSE(Watcher.Pending());
    EXPECT_EQ(Watcher.TroubleCount(), 0);
    EXPECT_FALSE(Watcher.NextReminderIn());
}

TEST(RowHighlights, ChangedRowsFadeOverTwoMinutes) {
    int64_t now = 5000;
    TNoticeBoard board;
    TRowHighlights lit(board.cdsNoticeBd(), [&] { return now; });
    board.Process_XML_Notice("<M><NoticeList>" + NoticeXml({"a"}, "post") + NoticeXml({"b"}, "post") +
                             "</NoticeList></M>");
    EXPECT_TRUE(lit.Active());
    EXPECT_NEAR(lit.Emphasis(1), 1.0, 0.01);
    EXPECT_EQ(lit.Emphasis(99), 0.0);
    now += 60000;
    EXPECT_NEAR(lit.Emphasis(1), 0.5, 0.01);
    board.Process_XML_Notice("<M><NoticeList>" + NoticeXml({"b", 4}, "update") + "</NoticeList></M>");
    EXPECT_NEAR(lit.Emphasis(2), 1.0, 0.01); // an update lights the row again
    now += 60000;
    EXPECT_EQ(lit.Emphasis(1), 0.0);
    EXPECT_NEAR(lit.Emphasis(2), 0.5, 0.01);
    EXPECT_TRUE(lit.Active());

    // A new filter text keeps the rows and their light; a deleted row goes dark.
    board.cdsNoticeBd().SetFilterCompiler([](const std::string&) { return nullptr; });
    board.cdsNoticeBd().SetFilterText("");
    EXPECT_NEAR(lit.Emphasis(2), 0.5, 0.01);
    board.Process_XML_Notice("<M><NoticeList><Notice><Command>delete</Command><adpt_orig_key>b"
                             "</adpt_orig_key></Notice></NoticeList></M>");
    EXPECT_EQ(lit.Emphasis(2), 0.0);

    now += 61000;
    EXPECT_FALSE(lit.Active());

    // An emptied store starts its keys again: the new key 1 is not the old one.
    board.Process_XML_Notice("<M><NoticeList>" + NoticeXml({"c"}, "post") + "</NoticeList></M>");
    now += 1000;
    board.cdsNoticeBd().EmptyDataSet();
    EXPECT_FALSE(lit.Active());
    EXPECT_EQ(lit.Emphasis(3), 0.0);
}
