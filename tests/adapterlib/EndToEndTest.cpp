// The demo adapter driven the way the board drives it: configured, loaded, connected with the real
// notice callback, polled, acknowledged, deleted, disconnected and unloaded, with its notices applied
// to a real store on this thread.
#include "adapters/TAdapterStartup.h"
#include "adapters/ZNB_Cfg.h"
#include "core/TNoticeBoard.h"
#include "core/Znb_callback.h"
#include "core/Znb_noteactions.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <mutex>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

class TSilentView : public IAdapterStatusView {
public:
    int PanelCount() const override { return 2; }
    int PanelWidth(int) const override { return 500; }
    void AddPanel() override {}
    void SetPanelWidth(int, int) override {}
    void SetPanelText(int, const std::string&) override {}
    void SetStatusImage(int imageIndex) override { Image = imageIndex; }
    void SetStatusCaption(const std::string& text) override { Caption = text; }
    int Image = -1;
    std::string Caption;
};

// Wakes the test thread whenever the adapter's thread has queued a message, as the window's event loop
// would be woken.
struct TWake {
    std::mutex Lock;
    std::condition_variable Queued;
};

} // namespace

TEST(AdapterEndToEnd, DemoNoticesFlowInAndAnswersComeBack) {
    ::setenv("ZNBA_DEMO_INTERVAL_MS", "20", 1);
    ::setenv("ZNBA_DEMO_SEED", "11", 1);
    const fs::path folder = fs::temp_directory_path() / ("nb_e2e_" + std::to_string(::getpid()));
    fs::create_directories(folder);
    std::ofstream(folder / "zpnbd.ini") << "[Noticeboard]\nNBFolder=" << (folder / "nb").string() << "\n"
                                        << "[Adapters]\nCount=1\nAdapter_0=demo\n"
                                        << "[Adapter_demo]\nDLL_Name=ZNBA_Demo\nLoadable=1\nEnabled=1\n";
    NBConfig = std::make_unique<TNBConfig>(folder.string() + "/");
    NBConfig->Get();
    TNoticeBoard board;
    SetNoticeBoard(&board);
    TWake wake;
    SetNoticeWake([&] { wake.Queued.notify_all(); });
    TNoticeStore& store = board.cdsNoticeBd();
    // Applies queued messages until the condition holds (bounded, in case the adapter stalls).
    auto pumpUntil = [&](const std::function<bool()>& done) {
        const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (!done() && std::chrono::steady_clock::now() < until) {
            std::unique_lock<std::mutex> lock(wake.Lock);
            wake.Queued.wait_for(lock, std::chrono::milliseconds(50),
                                 [] { return PendingNoticeCount() > 0; });
            lock.unlock();
            ProcessPendingNotices();
        }
        return done();
    };

    TSilentView view;
    {
        TAdapterStartup startup(*NBConfig, view, &NoticeCallback);
        ASSERT_EQ(startup.Init_Adapters(), 0);
        ASSERT_EQ(startup.Start_Adapters(), 0);
        EXPECT_EQ(view.Caption, "All Adapters OK");
        EXPECT_EQ(view.Image, 2);

        ASSERT_TRUE(pumpUntil([&] { return store.RecordCount() >= 3; }));
        // Pick one notice and acknowledge it; the demo answers with an update carrying ack_date.
        store.First();
        const TBookmark first = store.GetBookmark();
        const std::string key(store.ActiveRecord().AsString(nf_adpt_orig_key));
        btnAckNoteClick(store, {first}, startup.Adapters());
        auto row = [&]() -> const TNoticeRecord* {
            store.SetIndexName("Orig_Key_Index");
            const bool found = store.FindKey(key);
            store.SetIndexName("primaryIdx");
            return found ? &store.ActiveRecord() : nullptr;
        };
        // The simulation may clear the notice on its own first; either way it must change or go.
        EXPECT_TRUE(pumpUntil([&] { return row() == nullptr || !row()->IsNull(nf_ack_date); }));
        if (row()) {
            const TBookmark bookmark = store.GetBookmark();
            btnDelNoteClick(store, {bookmark}, startup.Adapters());
            EXPECT_NE(row(), nullptr); // the board deletes nothing itself
            EXPECT_TRUE(pumpUntil([&] { return row() == nullptr; }));
        }

        startup.Shutdown_Adapters();
        ProcessPendingNotices();
        const int32_t rows = store.TotalCount();
        EXPECT_EQ(PendingNoticeCount(), 0); // the demo's thread is gone: nothing more arrives
        EXPECT_EQ(store.TotalCount(), rows);
    }
    SetNoticeWake({});
    SetNoticeBoard(nullptr);
    NBConfig.reset();
    fs::remove_all(folder);
}
