// The demo adapter through the real loader (what it sends, how it answers, that it stops cleanly) and its
// simulation on its own.
#include "DemoEstate.h"
#include "adapters/ZNBA_Interface.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace {

// Collects what the adapter's worker thread sends; the test thread waits for it.
struct TInbox {
    std::mutex Lock;
    std::condition_variable Arrived;
    std::vector<std::string> Messages;
};
TInbox gInbox;

int32_t ZNA_CALL Collect(intptr_t, const char* const* xml, intptr_t) {
    std::lock_guard<std::mutex> lock(gInbox.Lock);
    gInbox.Messages.emplace_back(*xml);
    gInbox.Arrived.notify_all();
    return 0;
}

// Waits (bounded, for a stalled adapter) until a message containing needle has arrived; returns it.
std::string WaitFor(const std::string& needle) {
    std::unique_lock<std::mutex> lock(gInbox.Lock);
    std::string found;
    gInbox.Arrived.wait_for(lock, std::chrono::seconds(10), [&] {
        for (const std::string& m : gInbox.Messages)
            if (m.find(needle) != std::string::npos) return !(found = m).empty();
        return false;
    });
    return found;
}

std::string Between(const std::string& text, const std::string& open, const std::string& close) {
    const size_t a = text.find(open);
    if (a == std::string::npos) return std::string();
    const size_t b = text.find(close, a + open.size());
    return b == std::string::npos ? std::string() : text.substr(a + open.size(), b - a - open.size());
}

} // namespace

TEST(DemoAdapter, PostsNoticesAndAnswersAcknowledgeAndDelete) {
    ::setenv("ZNBA_DEMO_INTERVAL_MS", "20", 1);
    ::setenv("ZNBA_DEMO_SEED", "7", 1);
    TZNB_Adapter_Obj demo;
    demo.Name = "demo";
    ASSERT_EQ(demo.Load_DLL("ZNBA_Demo"), 0) << demo.Message;

    int32_t state = -1, size = 0;
    ASSERT_EQ(demo.Call_Status(&state, nullptr, &size), 0);
    EXPECT_EQ(state, ZNA_STATE_ALL_FAILED); // not connected yet

    int32_t folderSize = 0;
    const char* folder = demo.Keep_Text("/tmp/nb/", folderSize);
    ASSERT_EQ(demo.Call_Connect(folder, folderSize, nullptr, &Collect), 0);

    const std::string first = WaitFor("<Command>post</Command>");
    ASSERT_FALSE(first.empty());
    EXPECT_EQ(first.rfind("<NoticeMessage><NoticeList><Notice>", 0), 0u);
    EXPECT_NE(first.find("<adpt_source_type>demo</adpt_source_type>"), std::string::npos);
    EXPECT_NE(first.find("<note_count>1</note_count>"), std::string::npos);
    const std::string raised = Between(first, "<note_raised_date>", "</note_raised_date>");
    EXPECT_EQ(raised.size(), 19u);
    EXPECT_EQ(raised[10], 'T');
    // A repeat of an earlier notice comes as another post with a higher count.
    EXPECT_FALSE(WaitFor("<note_count>2</note_count>").empty());

    char info[4096] = {};
    size = sizeof(info);
    ASSERT_EQ(demo.Call_Status(&state, info, &size), 0);
    EXPECT_EQ(state, ZNA_STATE_ALL_OK);
    EXPECT_NE(std::string(info).find("connected"), std::string::npos);

    // How acknowledgements and deletions are answered is the simulation's (below) and, through the
    // board, the end-to-end test's; here only that an unknown code is refused.
    int32_t idSize = 0, codeSize = 0;
    const char* id = demo.Keep_Text("DEMO", idSize);
    const char* code = demo.Keep_Text("ACK-unknown", codeSize);
    EXPECT_EQ(demo.Call_Acknowledge_Note(id, idSize, code, codeSize), ZNA_ERR_NOTICE_NOT_FOUND);

    // After disconnect nothing more arrives: the worker has been joined.
    EXPECT_EQ(demo.Call_Disconnect(), 0);
    size_t count;
    {
        std::lock_guard<std::mutex> lock(gInbox.Lock);
        count = gInbox.Messages.size();
    }
    EXPECT_EQ(demo.Call_Disconnect(), 0); // a second disconnect is harmless
    size = 0;
    ASSERT_EQ(demo.Call_Status(&state, nullptr, &size), 0);
    EXPECT_EQ(state, ZNA_STATE_ALL_FAILED);
    EXPECT_EQ(demo.UnLoad_DLL(), 0);
    std::lock_guard<std::mutex> lock(gInbox.Lock);
    EXPECT_EQ(gInbox.Messages.size(), count);
}

namespace {

// The notices of one message: command, key, count and last-raised date of each, in order.
struct TSentNotice {
    std::string Command, Key, LastRaised;
    int Count = 0;
};

std::vector<TSentNotice> NoticesOf(const std::string& message) {
    std::vector<TSentNotice> notices;
    for (size_t at = message.find("<Notice>"); at != std::string::npos;
         at = message.find("<Notice>", at + 1)) {
        const std::string notice = message.substr(at, message.find("</Notice>", at) - at);
        const std::string count = Between(notice, "<note_count>", "</note_count>");
        notices.push_back({Between(notice, "<Command>", "</Command>"),
                           Between(notice, "<adpt_orig_key>", "</adpt_orig_key>"),
                           Between(notice, "<note_last_raised_date>", "</note_last_raised_date>"),
                           count.empty() ? 0 : std::stoi(count)});
    }
    return notices;
}

} // namespace

// Many steps run within the same second here, which is when equal dates would slip through.
TEST(DemoEstate, RepeatedPostCarriesAHigherCountAndALaterLastRaisedDate) {
    TDemoEstate estate(5);
    std::map<std::string, TSentNotice> live;
    int repeats = 0, deletes = 0;
    for (int step = 0; step < 300; ++step) {
        for (const TSentNotice& n : NoticesOf(estate.Tick())) {
            const auto it = live.find(n.Key);
            if (n.Command == "delete") {
                EXPECT_NE(it, live.end()) << n.Key;
                ++deletes;
                live.erase(n.Key);
            } else if (it != live.end()) {
                ASSERT_EQ(n.Command, "post");
                EXPECT_GT(n.Count, it->second.Count) << n.Key;
                EXPECT_GT(n.LastRaised, it->second.LastRaised) << n.Key; // same fixed-width format
                ++repeats;
                it->second = n;
            } else {
                EXPECT_EQ(n.Count, 1);
                live[n.Key] = n;
            }
        }
    }
    EXPECT_GT(repeats, 0);
    EXPECT_GT(deletes, 0);
    EXPECT_EQ(estate.Live(), static_cast<int32_t>(live.size()));

    // An acknowledgement is answered with an update carrying ack_date, a deletion with a delete; a code
    // the estate does not know gets no answer.
    const std::string key = live.begin()->first;
    const std::string update = estate.Acknowledge("ACK-" + key);
    EXPECT_NE(update.find("<Command>update</Command><adpt_id>DEMO</adpt_id><adpt_orig_key>" + key +
                          "</adpt_orig_key><ack_date>"),
              std::string::npos)
        << update;
    EXPECT_NE(estate.Delete("DEL-" + key).find("<Command>delete</Command>"), std::string::npos);
    EXPECT_EQ(estate.Delete("DEL-" + key), "");
    EXPECT_EQ(estate.Acknowledge("DEL-" + live.rbegin()->first), "");
}

// Playing another product: every full notice names it as its source type (escaped like any text), so the
// board routes the user's acknowledgements to the adapter registered under that name.
TEST(DemoEstate, NoticesCarryTheSourceTypeItPlays) {
    TDemoEstate estate(7, "R/Vista & co");
    const std::string xml = estate.Tick();
    EXPECT_NE(xml.find("<adpt_source_type>R/Vista &amp; co</adpt_source_type>"), std::string::npos) << xml;
    EXPECT_EQ(xml.find("<adpt_source_type>demo</adpt_source_type>"), std::string::npos);
}
