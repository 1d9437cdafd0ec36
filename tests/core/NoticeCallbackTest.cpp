#include "NoticeBoardFixture.h"

#include <atomic>
#include <thread>

TEST_F(NoticeBoardTest, CallsFromOtherThreadsAreQueuedAndAppliedInOrder) {
    std::atomic<int> wakes{0};
    SetNoticeWake([&] { ++wakes; });
    const std::string post = Message(Notice("post", El("adpt_orig_key", "a") + El("note_count", "1")));
    const std::string update = Message(Notice("update", El("adpt_orig_key", "A") + El("note_count", "2")));
    const std::string del = Message(Notice("delete", El("adpt_orig_key", "a")));
    const std::string again = Message(Notice("post", El("adpt_orig_key", "a") + El("note_count", "7")));
    int32_t results[4] = {-1, -1, -1, -1};
    std::thread adapter([&] {
        const std::string* texts[4] = {&post, &update, &del, &again};
        for (int i = 0; i < 4; ++i) {
            const char* p = texts[i]->c_str();
            results[i] = NoticeCallback(0, &p, 0);
        }
    });
    adapter.join();
    for (int32_t r : results)
        EXPECT_EQ(r, 0);
    EXPECT_EQ(wakes.load(), 4);
    EXPECT_EQ(Store().TotalCount(), 0);
    EXPECT_EQ(PendingNoticeCount(), 4);
    EXPECT_EQ(ProcessPendingNotices(), 4);
    EXPECT_EQ(PendingNoticeCount(), 0);
    ASSERT_EQ(Store().TotalCount(), 1);
    EXPECT_EQ(Row("a")->AsInteger(nf_note_count), 7);
    EXPECT_EQ(Row("a")->AsInteger(nf_nb_internal_key), 2);
}

// Cut and arbitrary texts: the NoticeCallback fuzz target.
TEST_F(NoticeBoardTest, HostileInputsAreRefusedWithoutHarm) {
    EXPECT_EQ(NoticeCallback(0, nullptr, 0), ZNB_NOTICE_FAILED);
    const char* none = nullptr;
    EXPECT_EQ(NoticeCallback(0, &none, 0), ZNB_NOTICE_FAILED);
    EXPECT_NE(LogText().find("Process NoticeBoard :  Status ="), std::string::npos);

    std::string deep;
    for (int i = 0; i < 100000; ++i)
        deep += "<a>";
    EXPECT_EQ(Send(deep), ZNB_NOTICE_FAILED);
    EXPECT_FALSE(Board->Busy());
    EXPECT_FALSE(Store().ControlsDisabled());
}

TEST_F(NoticeBoardTest, WithoutABoardTheCallbackFailsCleanly) {
    SetNoticeBoard(nullptr);
    EXPECT_EQ(Send(Message(Notice("post", El("adpt_orig_key", "a")))), ZNB_NOTICE_FAILED);
    EXPECT_EQ(Store().TotalCount(), 0);
}

namespace {
struct TRecordingListener : INoticeBoardListener {
    TNoticeBoard* Board = nullptr;
    std::string Log;
    bool BusyDuringReload = false;
    int32_t AppliedDuringReload = -1;
    void SetHourglass(bool on) override { Log += on ? "H+" : "H-"; }
    void ShowBusyImages(bool busy) override { Log += busy ? "B+" : "B-"; }
    void ReloadGrid() override {
        Log += "R";
        BusyDuringReload = Board->Busy();
        AppliedDuringReload = ProcessPendingNotices();
    }
    void SetStatusText(const std::string& text) override { Log += "[" + text + "]"; }
};
} // namespace

TEST_F(NoticeBoardTest, WindowSeesBusyMarksReloadAndStatusAroundEachMessage) {
    TRecordingListener listener;
    listener.Board = Board.get();
    Board->SetListener(&listener);
    std::thread adapter([&] { Send(Message(Notice("post", El("adpt_orig_key", "queued")))); });
    adapter.join();
    Send(Message(Notice("post", El("adpt_orig_key", "a"))));
    // The queued message went first, then the direct one; none started inside the reload.
    EXPECT_EQ(listener.Log, "H+B+RH-[Total notices: 1]B-H+B+RH-[Total notices: 2]B-");
    EXPECT_TRUE(listener.BusyDuringReload);
    EXPECT_EQ(listener.AppliedDuringReload, 0);
    listener.Log.clear();
    Send("<Msg/>");
    EXPECT_EQ(listener.Log, "H+B+H-[Total notices: 2]B-");
    listener.Log.clear();
    EXPECT_EQ(Send("<Msg><NoticeList></Msg>"), ZNB_NOTICE_FAILED);
    EXPECT_EQ(listener.Log, ""); // a malformed text changes nothing on screen
    Board->SetListener(nullptr);
}

TEST_F(NoticeBoardTest, OtherThreadsNeverApplyMessagesThemselves) {
    // Whether or not a board is installed at the moment of the call, an adapter's thread must not enter it.
    struct TThreadCheck : INoticeBoardListener {
        std::thread::id Owner = std::this_thread::get_id();
        std::atomic<bool> Foreign{false};
        void SetHourglass(bool) override {
            if (std::this_thread::get_id() != Owner) Foreign = true;
        }
    } check;
    Board->SetListener(&check);
    NBConfig->LogFileName.clear(); // thousands of refused calls: not worth a log line each
    std::atomic<bool> done{false};
    std::thread adapter([&] {
        const std::string msg = Message(Notice("post", El("adpt_orig_key", "a")));
        for (int i = 0; i < 20000 && !check.Foreign; ++i)
            Send(msg);
        done = true;
    });
    while (!done) {
        SetNoticeBoard(nullptr);
        std::this_thread::yield();
        SetNoticeBoard(Board.get());
        std::this_thread::yield();
    }
    adapter.join();
    ProcessPendingNotices();
    EXPECT_FALSE(check.Foreign);
    Board->SetListener(nullptr);
}

TEST_F(NoticeBoardTest, ReplacedWakeIsNotRunningOnceSetNoticeWakeReturns) {
    // A window frees what its wake function refers to right after replacing it.
    std::atomic<bool> inWake{false}, calling{false}, replaced{false}, replacedDuringWake{false};
    SetNoticeWake([&] {
        inWake = true;
        while (!calling)
            std::this_thread::yield();
        for (int i = 0; i < 1000 && !replaced; ++i)
            std::this_thread::yield();
        replacedDuringWake = replaced.load();
    });
    std::thread adapter([&] { Send(Message(Notice("post", El("adpt_orig_key", "a")))); });
    while (!inWake)
        std::this_thread::yield();
    calling = true;
    SetNoticeWake({});
    replaced = true;
    adapter.join();
    EXPECT_FALSE(replacedDuringWake);
    EXPECT_EQ(ProcessPendingNotices(), 1);
}

TEST_F(NoticeBoardTest, ADrainTakesOnlyWhatWasQueuedWhenItStarted) {
    // An adapter that sends again from its own thread each time the board has applied one of its messages.
    struct TEagerAdapter : INoticeBoardListener {
        int Resends = 0;
        void SetHourglass(bool) override {}
        void ShowBusyImages(bool) override {}
        void ReloadGrid() override {}
        void SetStatusText(const std::string&) override {
            if (Resends == 10) return; // (a drain that took every arrival would otherwise never end)
            const std::string text =
                Message(Notice("post", El("adpt_orig_key", "r" + std::to_string(Resends++))));
            std::thread([&text] {
                const char* p = text.c_str();
                NoticeCallback(0, &p, 0);
            }).join();
        }
    } adapter;
    Board->SetListener(&adapter);
    std::thread([&] {
        for (const char* key : {"a", "b"})
            Send(Message(Notice("post", El("adpt_orig_key", key))));
    }).join();
    EXPECT_EQ(ProcessPendingNotices(), 2);
    // What came during the drain waits for the next one, so the board's thread gets back to its window.
    EXPECT_EQ(PendingNoticeCount(), 2);
    EXPECT_EQ(ProcessPendingNotices(), 2);
    EXPECT_EQ(Store().TotalCount(), 4);
    Board->SetListener(nullptr);
}
