// Product detection and launch against a redirected machine-wide settings folder.
#include "platform/SystemSettings.h"
#include "support/NBPrompt.h"
#include "support/Productintegrationutils.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;
namespace piu = Productintegrationutils;

namespace {

class TRecordingPrompt : public INBPrompt {
public:
    void ShowMessage(const std::string& text, TMsgDlgType) override { Messages.push_back(text); }
    bool Confirm(const std::string&) override { return false; }
    bool DisplayDialog(const std::string&, bool&) override { return false; }
    void ShowConfigDialog() override {}
    std::vector<std::string> Messages;
};

// A fresh settings folder per test (settings files are cached by name, so names are never reused).
class ProductIntegration : public ::testing::Test {
protected:
    void SetUp() override {
        static int serial = 0;
        FRoot = fs::temp_directory_path() /
                ("nb_piu_" + std::to_string(::getpid()) + "_" + std::to_string(++serial));
        fs::create_directories(FRoot / "Zarvo Software");
        SetSystemSettingsFolder(FRoot.string());
        piu::Finalize();
        FPrevious = SetNBPrompt(&FPrompt);
    }
    void TearDown() override {
        SetNBPrompt(FPrevious);
        SetSystemSettingsFolder("");
        piu::Finalize();
        fs::remove_all(FRoot);
    }
    void WriteSettings(const std::string& application, const std::string& body) {
        std::ofstream(FRoot / "Zarvo Software" / (application + ".conf")) << body;
    }
    // Registers the console as installed in folder; with create, the folder is made first.
    fs::path RegisterConsole(const fs::path& folder, bool create = true) {
        if (create) fs::create_directories(folder);
        WriteSettings("DuskmereOperationsConsole",
                      "[InstallExists]\nCurrentDirectory=" + folder.string() + "\n");
        return folder;
    }
    fs::path FRoot;
    TRecordingPrompt FPrompt;
    INBPrompt* FPrevious = nullptr;
};

} // namespace

TEST_F(ProductIntegration, RegisteredClassIsFound) {
    WriteSettings("CLSID",
                  "[{5E2A9C41-7D13-4B8F-9A26-C03B7E5D1F84}]\nInprocServer32=/opt/rvista/librvista.so\n");
    EXPECT_TRUE(piu::FindRVista());
    EXPECT_FALSE(piu::FindGUID("{00000000-0000-0000-0000-000000000000}"));
}

TEST_F(ProductIntegration, ConsoleKeyWithMissingFolderIsFalseButTheFolderIsRemembered) {
    RegisterConsole("/no/such/duskmere", false);
    EXPECT_FALSE(piu::FindDuskmere());
    EXPECT_EQ(piu::InstallFolder(), "/no/such/duskmere");
}

TEST_F(ProductIntegration, ConsoleIsFoundOnlyWithItsConnector) {
    const fs::path install = RegisterConsole(FRoot / "duskmere");
    EXPECT_FALSE(piu::FindDuskmere());
    std::ofstream(install / "dskconnector.exe") << "connector";
    EXPECT_TRUE(piu::FindDuskmere());
    EXPECT_EQ(FindDuskmere(), 1);
    EXPECT_EQ(piu::InstallFolder(), install.string());
}

TEST_F(ProductIntegration, NothingRegisteredFindsNothingAndLaunchTriesTheBareLauncherInVain) {
    EXPECT_FALSE(piu::FindRVista());
    EXPECT_FALSE(piu::FindDuskmere());
    EXPECT_EQ(FindDuskmere(), 0);
    EXPECT_EQ(piu::InstallFolder(), "");
    EXPECT_FALSE(piu::LaunchDuskmere());
    EXPECT_EQ(piu::LauncherPath(), "/StartDsk.exe");
    EXPECT_EQ(FPrompt.Messages, std::vector<std::string>{"Failed to launch Duskmere"});
    EXPECT_EQ(LaunchDuskmere(), 0);
    EXPECT_EQ(FPrompt.Messages.size(), 2u);
}

TEST_F(ProductIntegration, LaunchStartsTheInstalledLauncher) {
    const fs::path launcher = RegisterConsole(FRoot / "duskmere") / "StartDsk.exe";
    // A real program rather than a script: the folder is removed while a script would still be read.
    fs::copy_file("/bin/true", launcher);
    EXPECT_TRUE(piu::LaunchDuskmere());
    EXPECT_EQ(piu::LauncherPath(), launcher.string());
    EXPECT_TRUE(FPrompt.Messages.empty());
}
