// The loader's name mapping, the status-code messages and the named start-up mutex.
#include "adapters/Znb_erc.h"
#include "platform/DynLib.h"
#include "platform/NamedMutex.h"
#include "platform/Process.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
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
