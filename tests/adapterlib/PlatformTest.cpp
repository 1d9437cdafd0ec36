// The loader's name mapping, the status-code messages and the named start-up mutex.
#include "adapters/Znb_erc.h"
#include "platform/DynLib.h"
#include "platform/NamedMutex.h"
#include "platform/Process.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

TEST(LibraryLoader, BareNameIsLookedForBesideTheExecutableThenInPluginsThenBySystem) {
    const std::string exe = ExecutableFolder();
    EXPECT_EQ(LibraryCandidates("ZNBA_Demo"),
              (std::vector<std::string>{exe + "ZNBA_Demo.so", exe + "plugins/ZNBA_Demo.so", "ZNBA_Demo.so"}));
    EXPECT_EQ(LibraryCandidates("ZNBA_Demo.DLL").back(), "ZNBA_Demo.so");
    EXPECT_EQ(LibraryCandidates("libfoo.so.1").back(), "libfoo.so.1");
    EXPECT_EQ(LibraryCandidates("/opt/x/ZNBA_Demo.dll"), std::vector<std::string>{"/opt/x/ZNBA_Demo.so"});
    EXPECT_EQ(LibraryCandidates("./plugins/ZNBA_Demo"), std::vector<std::string>{"./plugins/ZNBA_Demo.so"});
    EXPECT_EQ(LibraryCandidates("/opt/x.d/adapter").back(), "/opt/x.d/adapter.so");
}

TEST(LibraryLoader, OpensByBareNameDllNameOrFullPath) {
    for (const std::string& name :
         std::vector<std::string>{"ZNBA_TestRecorder", "ZNBA_TestRecorder.dll", "ZNBA_TestRecorder.so",
                                  std::string(NB_PLUGIN_DIR) + "/ZNBA_TestRecorder"}) {
        TLibHandle h = PvLoadLib(name);
        ASSERT_NE(h, nullptr) << name << ": " << GetLastErrorText();
        EXPECT_EQ(GetLastError(), 0);
        EXPECT_NE(GetProcAddress(h, "ZNA_Connect"), nullptr);
        EXPECT_EQ(GetProcAddress(h, "ZNA_NoSuchEntry"), nullptr);
        EXPECT_NE(GetLastError(), 0);
        // Every spelling ends at the one file in the plug-in folder, and the handle says which file that is.
        EXPECT_TRUE(std::filesystem::equivalent(LibraryFileName(h),
                                                std::string(NB_PLUGIN_DIR) + "/ZNBA_TestRecorder.so"))
            << LibraryFileName(h);
        EXPECT_NE(GetLastError(), 0); // asking for the file name leaves the last error alone
        EXPECT_TRUE(FreeLibrary(h));
    }
    EXPECT_EQ(LibraryFileName(nullptr), "");
}

TEST(LibraryLoader, LastErrorBelongsToTheCallingThread) {
    EXPECT_EQ(PvLoadLib("ZNBA_NoSuchAdapter"), nullptr);
    EXPECT_EQ(GetLastError(), ENOENT);
    int32_t other = -1;
    std::thread([&] { other = GetLastError(); }).join();
    EXPECT_EQ(other, 0);
    EXPECT_EQ(GetLastError(), ENOENT);
}

TEST(ErrorMessages, TableTextsAndSystemTextsForOtherCodes) {
    EXPECT_EQ(Get_ZNB_Error_Message(0), "Operation OK");
    EXPECT_EQ(Get_ZNB_Error_Message(40008), "An Error occured Setting Configuration Details");
    EXPECT_EQ(Get_ZNB_Error_Message(41003), "R/Vista no Connnections have been made");
    EXPECT_EQ(Get_ZNB_Error_Message(43000), "One or more of the Adapter Functions was not found.");
    EXPECT_EQ(Get_ZNB_Error_Message(47002), "An Error occurred whilst reading from a list");
    EXPECT_EQ(Get_ZNB_Error_Message(47003), "An Error occurred whilst adding item to list");
    EXPECT_EQ(Get_ZNB_Error_Message(2), std::strerror(2));
    EXPECT_EQ(Get_ZNB_Error_Message(43001), SysErrorMessage(43001));
    EXPECT_FALSE(Get_ZNB_Error_Message(43001).empty());
    EXPECT_FALSE(Get_ZNB_Error_Message(-1).empty());
}

TEST(NamedMutex, CreatedOwnedThenReleasedIsFreeForOthers) {
    const std::string name = "PV_NoticeBoard_Mutex_test_" + std::to_string(::getpid());
    RemoveNamedMutex(name);
    int32_t error = -1;
    auto board = TNamedMutex::Create(name, true, error);
    ASSERT_NE(board, nullptr);
    EXPECT_EQ(error, 0);
    EXPECT_TRUE(board->Owned());
    EXPECT_NE(board->Handle(), nullptr);

    // A second opener (an adapter, another process) finds it taken, without ownership of its own.
    auto adapter = TNamedMutex::Create(name, true, error);
    ASSERT_NE(adapter, nullptr);
    EXPECT_FALSE(adapter->Owned());
    EXPECT_FALSE(adapter->Acquire(0));

    EXPECT_TRUE(board->Release());
    EXPECT_FALSE(board->Release()); // releasing twice does not free it twice
    EXPECT_TRUE(adapter->Acquire(0));
    EXPECT_FALSE(board->Acquire(0));
    adapter.reset(); // closing an owned handle frees it
    EXPECT_TRUE(board->Acquire(0));
    board.reset();
    RemoveNamedMutex(name);
}

TEST(NamedMutex, InvalidNameReportsTheSystemError) {
    int32_t error = 0;
    EXPECT_EQ(TNamedMutex::Create("bad/name/with/slashes", true, error), nullptr);
    EXPECT_NE(error, 0);
}

// An installed program's folder is not writable for its users: the board's settings and files go to a
// per-user folder seeded with the shipped zpnbd.ini. Run in a child that drops to an unprivileged user,
// so the test needs root (as in CI's container); a writable executable folder is its own data folder.
TEST(DataFolder, ExecutableFolderWhenWritableElseAPerUserCopyOfTheShippedIni) {
    namespace fs = std::filesystem;
    if (::access(ExecutableFolder().c_str(), W_OK) == 0) {
        EXPECT_EQ(DataFolder(), ExecutableFolder());
    }
    if (::geteuid() != 0) GTEST_SKIP() << "needs root to run a child as an unprivileged user";

    // A private executable folder with a shipped zpnbd.ini: a copy of this test program runs from it.
    const fs::path root = fs::temp_directory_path() / ("nb_datafolder_" + std::to_string(::getpid()));
    fs::remove_all(root);
    fs::create_directories(root / "opt");
    fs::create_directories(root / "home");
    fs::copy_file("/proc/self/exe", root / "opt" / "probe");
    { std::ofstream(root / "opt" / "zpnbd.ini") << "[NoticeBoard]\nAlwaysPrompt=0\n"; }
    fs::permissions(root, fs::perms::all);
    fs::permissions(root / "home", fs::perms::all);
    fs::permissions(root / "opt", fs::perms::owner_all | fs::perms::group_read | fs::perms::group_exec |
                                      fs::perms::others_read | fs::perms::others_exec);
    const std::string out = (root / "home" / "answer").string();
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        ::setenv("HOME", (root / "home").c_str(), 1);
        ::unsetenv("XDG_CONFIG_HOME");
        ::setenv("NB_DATAFOLDER_PROBE", out.c_str(), 1);
        if (::setgid(65534) != 0 || ::setuid(65534) != 0) ::_exit(3);
        ::execl((root / "opt" / "probe").c_str(), "probe", "--gtest_filter=DataFolderProbe.*", nullptr);
        ::_exit(4);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    std::string answer;
    std::getline(std::ifstream(out), answer);
    EXPECT_EQ(answer, (root / "home" / ".config" / "noticeboard").string() + "/");
    std::string copied;
    std::getline(std::ifstream(root / "home" / ".config" / "noticeboard" / "zpnbd.ini"), copied);
    EXPECT_EQ(copied, "[NoticeBoard]");
    fs::remove_all(root);
}

// The child's half of the test above: does nothing unless that test started it.
TEST(DataFolderProbe, WritesTheDataFolderItSees) {
    const char* out = std::getenv("NB_DATAFOLDER_PROBE");
    if (!out) GTEST_SKIP();
    std::ofstream(out) << DataFolder() << "\n";
}
