// Adapters that break the kit's rules, loaded through the real loader: the board stays up, logs what
// happened, still applies messages, and shuts down cleanly.
#include "AdapterStartupRig.h"
#include "adapters/TAdapterStartup.h"
#include "adapters/ZNB_Cfg.h"
#include "core/TNoticeBoard.h"
#include "core/Znb_callback.h"
#include "core/Znb_noteactions.h"
#include "support/StrUtils.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <functional>
#include <mutex>
#include <thread>

namespace fs = std::filesystem;

namespace {

class MisbehavingAdapters : public ::testing::Test {
protected:
    MisbehavingAdapters() {
        SetNoticeBoard(&Board);
        SetNoticeWake([this] { Queued.notify_all(); });
    }
    ~MisbehavingAdapters() override {
        SetNoticeWake({});
        SetNoticeBoard(nullptr);
        NBConfig.reset();
    }

    // Configures the adapters (name, library) after the two built-in ones, which stay unloadable.
    void Configure(const std::vector<std::pair<std::string, std::string>>& adapters) {
        std::string ini = "[Adapters]\nCount=" + std::to_string(adapters.size() + 2) +
                          "\nAdapter_0=DuskMere\nAdapter_1=R/Vista\n";
        for (size_t i = 0; i < adapters.size(); ++i)
            ini += "Adapter_" + std::to_string(i + 2) + "=" + adapters[i].first + "\n";
        ini += "[Adapter_DuskMere]\nLoadable=0\n[Adapter_R/Vista]\nLoadable=0\n";
        for (const auto& [name, library] : adapters)
            ini += "[Adapter_" + name + "]\nDLL_Name=" + library + "\nLoadable=1\nEnabled=1\n";
        Dir.WriteIni(ini);
        NBConfig = std::make_unique<TNBConfig>(Dir.Path());
        NBConfig->Get();
    }

    std::string Log() const { return Dir.Log(); }
    bool Logged(const std::string& line) const { return Dir.Logged(line); }

    // Applies queued messages until done() holds, for at most 20 s.
    bool PumpUntil(const std::function<bool()>& done) {
        const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!done() && std::chrono::steady_clock::now() < until) {
            std::unique_lock<std::mutex> lock(WakeLock);
            Queued.wait_for(lock, std::chrono::milliseconds(20), [] { return PendingNoticeCount() > 0; });
            lock.unlock();
            ProcessPendingNotices();
        }
        return done();
    }

    // The board still takes a message on its own thread after whatever the adapters did.
    void ExpectBoardApplies(const std::string& key) {
        const std::string xml = "<Msg><NoticeList><Notice><Command>post</Command><adpt_orig_key>" + key +
                                "</adpt_orig_key></Notice></NoticeList></Msg>";
        const char* text = xml.c_str();
        EXPECT_EQ(NoticeCallback(0, &text, 0), 0);
        EXPECT_TRUE(Find(key));
    }
    bool Find(const std::string& key) {
        TNoticeStore& store = Board.cdsNoticeBd();
        store.SetIndexName("Orig_Key_Index");
        const bool found = store.FindKey(key);
        store.SetIndexName("primaryIdx");
        return found;
    }

    template <typename F> F Export(TAdapterStartup& startup, const std::string& adapter, const char* name) {
        TZNB_Adapter_Obj* obj = startup.Adapters()->Get_Adapter(adapter);
        return obj && obj->DLL_Handle ? reinterpret_cast<F>(GetProcAddress(obj->DLL_Handle, name)) : nullptr;
    }

    TBoardFolder Dir;
    const fs::path Folder = fs::path(Dir.Path()).parent_path();
    TNoticeBoard Board;
    TRecordedView View;
    std::mutex WakeLock;
    std::condition_variable Queued;
};

const char* const kCaptions[] = {"All Adapters failed", "Adapter has failed", "All Adapters OK"};

} // namespace

TEST_F(MisbehavingAdapters, ThrowingAndGarbageAdaptersAreLoggedAndTheBoardGoesOn) {
    Configure({{"throws", "ZNBA_TestThrows"}, {"garbage", "ZNBA_TestGarbage"}});
    TAdapterStartup startup(*NBConfig, View, &NoticeCallback);
    EXPECT_EQ(startup.Init_Adapters(), 0);
    startup.Start_Adapters();
    EXPECT_TRUE(Logged(
        "Status  : Adapter : throws : ZNA_Connect raised an exception : ZNA_Connect failed on purpose"));
    EXPECT_NE(Log().find("Error   : -2147483648 "), std::string::npos) << Log();

    // States below 0 and above 2, with good and garbage codes, and a status that throws: the icon and the
    // caption stay within what the window can show.
    for (int round = 0; round < 8; ++round) {
        startup.Set_Adapters_Status();
        ASSERT_GE(View.Image, 0);
        ASSERT_LE(View.Image, 2);
        EXPECT_EQ(View.Caption, kCaptions[View.Image]) << round;
    }
    EXPECT_TRUE(
        Logged("Status  : Adapter : throws : ZNA_Status raised an exception : ZNA_Status failed on purpose"));

    // Acknowledge and delete: garbage results are not examined; the throw ends the action for the window
    // to log, and the store is left as it was.
    const char* notices = "<Msg><NoticeList>"
                          "<Notice><Command>post</Command><adpt_orig_key>g</adpt_orig_key>"
                          "<adpt_source_type>garbage</adpt_source_type><adpt_id>G</adpt_id></Notice>"
                          "<Notice><Command>post</Command><adpt_orig_key>t</adpt_orig_key>"
                          "<adpt_source_type>throws</adpt_source_type><adpt_id>T</adpt_id></Notice>"
                          "</NoticeList></Msg>";
    ASSERT_EQ(NoticeCallback(0, &notices, 0), 0);
    TNoticeStore& store = Board.cdsNoticeBd();
    ASSERT_TRUE(Find("g"));
    const TBookmark garbageRow = store.GetBookmark();
    ASSERT_TRUE(Find("t"));
    const TBookmark throwingRow = store.GetBookmark();
    for (int i = 0; i < 4; ++i) {
        EXPECT_NO_THROW(btnAckNoteClick(store, {garbageRow}, startup.Adapters()));
        EXPECT_NO_THROW(btnDelNoteClick(store, {garbageRow}, startup.Adapters()));
    }
    EXPECT_THROW(btnAckNoteClick(store, {throwingRow, garbageRow}, startup.Adapters()), EAdapterError);
    EXPECT_THROW(btnDelNoteClick(store, {throwingRow}, startup.Adapters()), EAdapterError);
    EXPECT_EQ(store.RecordCount(), 2);
    EXPECT_FALSE(store.ControlsDisabled());

    startup.Shutdown_Adapters();
    EXPECT_TRUE(Logged("Status  : Adapter : throws : ZNA_Disconnect raised an exception : ZNA_Disconnect "
                       "failed on purpose"));
    EXPECT_EQ(Log().find("Unloading DLL"), std::string::npos) << "both libraries are released";
    ExpectBoardApplies("after");
}

TEST_F(MisbehavingAdapters, LibraryDeletedWhileLoadedKeepsWorkingUntilUnloaded) {
    // A copy of its own, so that no other test holds the same file open.
    const fs::path copy = Folder / "ZNBA_Deleted.so";
    fs::copy_file(fs::path(NB_PLUGIN_DIR) / "ZNBA_TestRecorder.so", copy);
    Configure({{"deleted", copy.string()}});
    {
        TAdapterStartup startup(*NBConfig, View, &NoticeCallback);
        ASSERT_EQ(startup.Init_Adapters(), 0);
        fs::remove(copy);
        EXPECT_EQ(startup.Start_Adapters(), 0);
        startup.Set_Adapters_Status();
        EXPECT_EQ(View.Caption, "All Adapters OK");
        using TSend = int32_t (*)(const char*);
        const auto send = Export<TSend>(startup, "deleted", "ZNBA_Test_Send");
        ASSERT_NE(send, nullptr);
        EXPECT_EQ(
            send("<Msg><NoticeList><Notice><Command>post</Command><adpt_orig_key>from-deleted</adpt_orig_key>"
                 "</Notice></NoticeList></Msg>"),
            0);
        EXPECT_TRUE(Find("from-deleted"));
        startup.Shutdown_Adapters();
    }
    // The next start finds no file: logged, disabled, and the board goes on.
    TAdapterStartup again(*NBConfig, View, &NoticeCallback);
    EXPECT_EQ(again.Init_Adapters(), 2);
    EXPECT_TRUE(Logged("Adapter : deleted failed to load"));
    EXPECT_FALSE(NBConfig->IsAdapterEnabled("deleted"));
    again.Start_Adapters();
    EXPECT_EQ(View.Caption, "All Adapters disabled");
    again.Shutdown_Adapters();
    ExpectBoardApplies("after");
}

TEST_F(MisbehavingAdapters, CallsDuringAndAfterDisconnectAreTakenUntilTheBoardGoes) {
    Configure({{"late", "ZNBA_TestLateThread"}});
    auto startup = std::make_unique<TAdapterStartup>(*NBConfig, View, &NoticeCallback);
    ASSERT_EQ(startup->Init_Adapters(), 0);
    ASSERT_EQ(startup->Start_Adapters(), 0);
    // The library pins itself at connect, so this handle reaches the same instance after the unload.
    TLibHandle library = PvLoadLib("ZNBA_TestLateThread");
    ASSERT_NE(library, nullptr);
    const auto posted = reinterpret_cast<int32_t (*)(int32_t)>(GetProcAddress(library, "ZNBA_Test_Posted"));
    const auto stop = reinterpret_cast<void (*)()>(GetProcAddress(library, "ZNBA_Test_Stop"));
    ASSERT_TRUE(posted && stop);
    const int32_t before = posted(0);
    ASSERT_TRUE(PumpUntil([&] { return posted(0) >= before + 20 && Find("late/10"); }));

    startup->Shutdown_Adapters(); // the disconnect waits for posts made during it
    startup.reset();
    const int32_t during = posted(1);
    EXPECT_GE(during, 5);
    const int32_t after = posted(2);
    ASSERT_TRUE(PumpUntil([&] { return posted(2) >= after + 20; }));
    EXPECT_EQ(posted(3), 0) << "every call so far was taken";
    ProcessPendingNotices();

    // The board goes, and the configuration with it, while the thread still posts: refused and logged
    // where the board logged, nothing queued for a later board.
    SetNoticeWake({});
    SetNoticeBoard(nullptr);
    NBConfig.reset();
    const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (posted(3) < 10 && std::chrono::steady_clock::now() < until)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    stop();
    EXPECT_GE(posted(3), 10);
    EXPECT_EQ(PendingNoticeCount(), 0);
    EXPECT_TRUE(Log().find("Status =Access violation: no notice board<Msg><NoticeList>") !=
                std::string::npos);
    FreeLibrary(library);
    SetNoticeBoard(&Board);
    ExpectBoardApplies("after");
}

TEST_F(MisbehavingAdapters, TenMegabyteMessagesFromAnAdapterThreadAreApplied) {
    Configure({{"big", "ZNBA_TestBigMessages"}});
    TAdapterStartup startup(*NBConfig, View, &NoticeCallback);
    ASSERT_EQ(startup.Init_Adapters(), 0);
    ASSERT_EQ(startup.Start_Adapters(), 0);
    TNoticeStore& store = Board.cdsNoticeBd();
    auto bigText = [&]() -> size_t {
        return Find("big/text") ? store.ActiveRecord().AsString(nf_note_text).size() : 0;
    };
    ASSERT_TRUE(PumpUntil([&] { return bigText() == 10 * 1024 * 1024 + 1; }));
    EXPECT_EQ(store.TotalCount(), 40001);
    EXPECT_TRUE(Find("big/39999"));
    EXPECT_EQ(store.ActiveRecord().AsString(nf_note_text),
              std::string(220, static_cast<char>('a' + 39999 % 26)));
    startup.Shutdown_Adapters();
    EXPECT_EQ(ProcessPendingNotices(), 0);
    EXPECT_EQ(Log().find("Exception"), std::string::npos);
    ExpectBoardApplies("after");
}
