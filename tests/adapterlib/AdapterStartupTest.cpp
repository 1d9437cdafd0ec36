// Loading, starting, polling and shutting down configured adapters, with real libraries, a real
// configuration in a temporary folder and a recorded status bar.
#include "AdapterStartupRig.h"
#include "adapters/TAdapterStartup.h"
#include "adapters/ZNB_Cfg.h"
#include "platform/SystemSettings.h"
#include "support/StrUtils.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace {

int32_t ZNA_CALL IgnoreNotice(intptr_t, const char* const*, intptr_t) {
    return 0;
}

class AdapterStartup : public ::testing::Test {
protected:
    // Writes zpnbd.ini (extra adapters after the two built-in ones) and reads it.
    std::unique_ptr<TNBConfig> Config(const std::string& ini) {
        Dir.WriteIni(ini);
        auto config = std::make_unique<TNBConfig>(Dir.Path());
        config->Get();
        return config;
    }
    std::string Log() const { return Dir.Log(); }
    bool Logged(const std::string& line) const { return Dir.Logged(line); }
    bool Shown(const std::string& panelText) const { return View.Shown(panelText); }

    TBoardFolder Dir;
    const fs::path Folder = fs::path(Dir.Path()).parent_path();
    TRecordedView View;
};

const char* const kTwoTestAdapters =
    "[Adapters]\nCount=2\nAdapter_0=DuskMere\nAdapter_1=R/Vista\n"
    "[Adapter_DuskMere]\nDLL_Name=ZNBA_TestRecorder\nLoadable=1\nEnabled=1\n"
    "[Adapter_R/Vista]\nDLL_Name=ZNBA_TestBadConnect.dll\nLoadable=1\nEnabled=1\n";

} // namespace

TEST_F(AdapterStartup, TwoAdaptersShareTheProgressPanelWidthAndUseTheirOwnPanels) {
    auto config = Config(kTwoTestAdapters);
    TAdapterStartup startup(*config, View, &IgnoreNotice);
    EXPECT_EQ(startup.Init_Adapters(), 0);
    // round(500 / 2) - 1 for panels 1 and 2; the last added panel keeps its default width.
    EXPECT_EQ(View.Widths, (std::vector<int>{200, 249, 249, 50}));
    EXPECT_TRUE(Shown("2 Adapter Loaded : DuskMere"));
    EXPECT_TRUE(Shown("1 Adapter Loaded : R/Vista"));
    EXPECT_EQ(View.Texts.back(), "1 ");
    EXPECT_TRUE(Logged("Adapter : DuskMere was loaded."));
    ASSERT_NE(startup.Adapters(), nullptr);
    EXPECT_TRUE(startup.Adapters()->Get_Adapter("duskmere")->Loaded);
}

TEST_F(AdapterStartup, ThreeConfiguredNamesSplitTheProgressPanelInThree) {
    auto config = Config("[Adapters]\nCount=1\nAdapter_0=Solo\n[Adapter_Solo]\nDLL_Name=ZNBA_TestRecorder\n");
    config->SetAdapterLoadable("DuskMere", false);
    TAdapterStartup startup(*config, View, &IgnoreNotice);
    // The two built-in names stay listed before the file's own.
    startup.Init_Adapters();
    EXPECT_EQ(View.Widths.size(), 5u);
    EXPECT_EQ(View.Widths[1], 166); // round(500 / 3) - 1
    EXPECT_TRUE(Shown("2 Adapter : DuskMere not loadable."));
    EXPECT_TRUE(Logged("Adapter : R/Vista Not Loadable"));
    EXPECT_TRUE(Logged("Adapter : Solo was loaded."));
}

TEST_F(AdapterStartup, HalfWidthsRoundToEven) {
    // Eight names: 500 / 8 = 62.5 rounds to 62, so the panels get 61.
    std::string ini = "[Adapters]\nCount=6\n";
    for (int i = 0; i < 6; ++i)
        ini += "Adapter_" + std::to_string(i) + "=Extra" + std::to_string(i) + "\n";
    auto config = Config(ini);
    TAdapterStartup startup(*config, View, &IgnoreNotice);
    startup.Init_Adapters();
    ASSERT_EQ(View.Widths.size(), 10u);
    EXPECT_EQ(View.Widths[1], 61);
    EXPECT_EQ(View.Widths[8], 61);
    EXPECT_EQ(View.Widths[9], 50);
}

// Only R/Vista is loaded, so the adapter list's first entry is paired with the first configured name,
// DuskMere: its progress goes to DuskMere's panel and its failure is logged under DuskMere's name.
TEST_F(AdapterStartup, StartPairsTheAdapterListWithTheConfiguredListByIndex) {
    auto config = Config(kTwoTestAdapters);
    config->SetAdapterLoadable("DuskMere", false);
    TAdapterStartup startup(*config, View, &IgnoreNotice);
    ASSERT_EQ(startup.Init_Adapters(), 0);
    ASSERT_EQ(startup.Adapters()->Count(), 1);
    EXPECT_EQ(startup.Start_Adapters(), 47000);
    EXPECT_TRUE(Shown("2 Starting Adapter : R/Vista"));
    EXPECT_TRUE(Shown("2 Adapter : DuskMere failed to connect"));
    EXPECT_TRUE(Logged("Adapter : DuskMere failed to connect"));
    EXPECT_TRUE(Logged("Error   : 47000 Unknown error 47000"));
}

TEST_F(AdapterStartup, MissingLibraryIsLoggedDisabledAndThenReportedAsDisabled) {
    auto config = Config("[Adapters]\nCount=1\nAdapter_0=DuskMere\n"
                         "[Adapter_DuskMere]\nDLL_Name=ZNBA_Missing\nLoadable=1\nEnabled=1\n");
    TAdapterStartup startup(*config, View, &IgnoreNotice);
    EXPECT_EQ(startup.Init_Adapters(), 2);
    EXPECT_FALSE(config->IsAdapterEnabled("DuskMere"));
    EXPECT_TRUE(Shown("2 Adapter : DuskMere failed to load"));
    EXPECT_TRUE(Logged("Adapter : DuskMere failed to load"));
    EXPECT_NE(Log().find("Status  : Load Library Error Msg  : "), std::string::npos);
    EXPECT_TRUE(Logged("Error   : 2 No such file or directory"));

    EXPECT_EQ(startup.Start_Adapters(), 0);
    EXPECT_TRUE(Logged("Adapter : DuskMere is disabled"));
    EXPECT_EQ(View.Caption, "All Adapters disabled");
    EXPECT_EQ(View.Image, 0);
}

TEST_F(AdapterStartup, EmptyDllNameStaysEnabledAndIsSkippedByTheStatusPoll) {
    auto config =
        Config("[Adapters]\nCount=1\nAdapter_0=DuskMere\n[Adapter_DuskMere]\nLoadable=1\nEnabled=1\n");
    TAdapterStartup startup(*config, View, &IgnoreNotice);
    EXPECT_EQ(startup.Init_Adapters(), -1);
    EXPECT_TRUE(Logged("Adapter : DuskMere DLL Name was not specified."));
    EXPECT_TRUE(config->IsAdapterEnabled("DuskMere"));
    EXPECT_EQ(startup.Start_Adapters(), 0);
    EXPECT_TRUE(Shown("2 Adapter : DuskMere DLL not loaded"));
    EXPECT_EQ(View.Caption, "All Adapters OK"); // no status entry point: it does not lower the state
    EXPECT_EQ(View.Image, 2);
}

TEST_F(AdapterStartup, StartConnectsUnderTheMutexAndLogsFailuresWithTheConfiguredName) {
    auto config = Config(kTwoTestAdapters);
    TAdapterStartup startup(*config, View, &IgnoreNotice);
    ASSERT_EQ(startup.Init_Adapters(), 0);
    EXPECT_EQ(startup.Start_Adapters(), 47000); // the last adapter's outcome
    EXPECT_NE(startup.MutexHandle(), nullptr);
    EXPECT_TRUE(Logged("Adapter : DuskMere has connected OK"));
    EXPECT_TRUE(Shown("2 Adapter : DuskMere has connected OK"));
    EXPECT_TRUE(Logged("Adapter : R/Vista failed to connect"));
    // Both report state 2 (the failed connect does not change what the test adapter says).
    EXPECT_EQ(View.Caption, "All Adapters OK");
    EXPECT_EQ(View.Image, 2);
}

TEST_F(AdapterStartup, MixedStatesGiveAdapterHasFailedAndAllZeroGivesAllFailed) {
    auto config = Config(kTwoTestAdapters);
    TAdapterStartup startup(*config, View, &IgnoreNotice);
    startup.Init_Adapters();
    using TSetState = void (*)(int32_t);
    auto stateOf = [&](const char* name) {
        return reinterpret_cast<TSetState>(
            GetProcAddress(startup.Adapters()->Get_Adapter(name)->DLL_Handle, "ZNBA_Test_SetState"));
    };
    ASSERT_NE(stateOf("DuskMere"), nullptr);
    ASSERT_NE(stateOf("R/Vista"), nullptr);
    stateOf("DuskMere")(ZNA_STATE_ALL_OK);
    stateOf("R/Vista")(ZNA_STATE_ALL_FAILED);
    startup.Set_Adapters_Status();
    EXPECT_EQ(View.Caption, "Adapter has failed");
    EXPECT_EQ(View.Image, 1);
    stateOf("DuskMere")(ZNA_STATE_ALL_FAILED);
    startup.Set_Adapters_Status();
    EXPECT_EQ(View.Caption, "All Adapters failed");
    EXPECT_EQ(View.Image, 0);
    stateOf("R/Vista")(ZNA_STATE_SOME_FAILED);
    startup.Set_Adapters_Status();
    EXPECT_EQ(View.Caption, "Adapter has failed");
    // The runtime may keep the libraries loaded after this test: leave them as they were.
    stateOf("DuskMere")(ZNA_STATE_ALL_OK);
    stateOf("R/Vista")(ZNA_STATE_ALL_OK);
}

TEST_F(AdapterStartup, GarbageAndThrowingStatusDoNotLowerTheState) {
    auto config = Config("[Adapters]\nCount=2\nAdapter_0=DuskMere\nAdapter_1=R/Vista\n"
                         "[Adapter_DuskMere]\nDLL_Name=ZNBA_TestGarbageStatus\nLoadable=1\nEnabled=1\n"
                         "[Adapter_R/Vista]\nDLL_Name=ZNBA_TestThrows\nLoadable=1\nEnabled=1\n");
    TAdapterStartup startup(*config, View, &IgnoreNotice);
    EXPECT_EQ(startup.Init_Adapters(), 0);
    EXPECT_EQ(startup.Start_Adapters(), -1); // the throwing connect counts as a failed connect
    EXPECT_TRUE(Logged("Adapter : R/Vista failed to connect"));
    startup.Set_Adapters_Status();
    EXPECT_EQ(View.Caption, "All Adapters OK");
    EXPECT_EQ(View.Image, 2);
}

TEST_F(AdapterStartup, ShutdownDisconnectsUnloadsAndLogsOnlyFailures) {
    auto config = Config(kTwoTestAdapters);
    auto startup = std::make_unique<TAdapterStartup>(*config, View, &IgnoreNotice);
    startup->Init_Adapters();
    startup->Start_Adapters();
    // Keep the recorder loaded past the shutdown to read what it was told.
    TLibHandle recorder = PvLoadLib("ZNBA_TestRecorder");
    ASSERT_NE(recorder, nullptr);
    auto calls = reinterpret_cast<const char* (*)()>(GetProcAddress(recorder, "ZNBA_Test_Calls"));
    startup->Shutdown_Adapters();
    EXPECT_EQ(startup->Adapters(), nullptr);
    EXPECT_EQ(startup->MutexHandle(), nullptr);
    const std::string record = calls();
    const std::string folder = (Folder / "nb").string() + "/";
    EXPECT_NE(
        record.find("Connect " + folder + "/" + std::to_string(folder.size() + 1) + " mutex callback\n"),
        std::string::npos)
        << record;
    // Disconnected by the close handler and once more by the unload, with the start-up mutex still open
    // (and free) while it disconnects.
    EXPECT_NE(record.find("Disconnect mutex 1\nDisconnect\n"), std::string::npos) << record;
    EXPECT_EQ(Log().find("Unloading DLL"), std::string::npos);
    FreeLibrary(recorder);
    startup.reset();
}

TEST_F(AdapterStartup, StartWithoutInitReports44000) {
    auto config = Config("");
    TAdapterStartup startup(*config, View, &IgnoreNotice);
    EXPECT_EQ(startup.Start_Adapters(), 44000);
    EXPECT_TRUE(Logged("Adapter List is not available"));
    EXPECT_EQ(View.Caption, "All Adapters disabled");
}

TEST_F(AdapterStartup, PreparedConfigurationTakesDuskmereLoadableFromTheInstallation) {
    Config("[Adapters]\nCount=1\nAdapter_0=DuskMere\n[Adapter_DuskMere]\nLoadable=1\n");
    SetSystemSettingsFolder(Folder.string()); // nothing registered there
    TNBConfig& config = Prepare_NBConfig(Folder.string() + "/");
    EXPECT_EQ(&config, NBConfig.get());
    EXPECT_FALSE(config.IsAdapterLoadable("DuskMere"));

    const fs::path install = Folder / "duskmere";
    fs::create_directories(install);
    std::ofstream(install / "dskconnector.exe") << "connector";
    fs::create_directories(Folder / "Zarvo Software");
    std::ofstream(Folder / "Zarvo Software" / "DuskmereOperationsConsole.conf")
        << "[InstallExists]\nCurrentDirectory=" << install.string() << "\n";
    EXPECT_TRUE(Prepare_NBConfig(Folder.string() + "/").IsAdapterLoadable("DuskMere"));
    SetSystemSettingsFolder("");
    NBConfig.reset();
}
