// Loading, binding and releasing real adapter libraries from bin/plugins/.
#include "adapters/ZNBA_Interface.h"
#include "platform/DynLib.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace {

const std::string kAllFound = "Adapter Get Info Function Found.\r\n"
                              "Adapter Set Config Function Found.\r\n"
                              "Adapter Connect Function Found.\r\n"
                              "Adapter Disconnect Function Found.\r\n"
                              "Adapter Status Function Found.\r\n"
                              "Adapter Acknowledge Note Function Found.\r\n"
                              "Adapter Delete Note Function Found.\r\n";

} // namespace

TEST(AdapterLoad, CompleteLibraryBindsAllSevenEntryPointsAndUnloadsOnce) {
    TZNB_Adapter_Obj adapter;
    EXPECT_EQ(adapter.Load_DLL("ZNBA_TestRecorder"), 0);
    EXPECT_TRUE(adapter.Loaded);
    EXPECT_NE(adapter.DLL_Handle, nullptr);
    EXPECT_EQ(adapter.Message, "Adapter Loaded from DLL : ZNBA_TestRecorder\r\n" + kAllFound);
    EXPECT_NE(adapter.ZNA_Get_Info, nullptr);
    EXPECT_NE(adapter.ZNA_Set_Config, nullptr);
    EXPECT_NE(adapter.ZNA_Connect, nullptr);
    EXPECT_NE(adapter.ZNA_Disconnect, nullptr);
    EXPECT_NE(adapter.ZNA_Status, nullptr);
    EXPECT_NE(adapter.ZNA_Acknowledge_Note, nullptr);
    EXPECT_NE(adapter.ZNA_Delete_Note, nullptr);

    EXPECT_EQ(adapter.UnLoad_DLL(), 0);
    EXPECT_EQ(adapter.Message, "DLL Unloaded");
    EXPECT_FALSE(adapter.Loaded);
    EXPECT_EQ(adapter.DLL_Handle, nullptr);
    EXPECT_EQ(adapter.ZNA_Status, nullptr);
    EXPECT_EQ(adapter.UnLoad_DLL(), 0);
    EXPECT_EQ(adapter.Message, "DLL was not Loaded");

    // Loadable again after an unload.
    EXPECT_EQ(adapter.Load_DLL("ZNBA_TestRecorder.dll"), 0);
    EXPECT_TRUE(adapter.Loaded);
}

TEST(AdapterLoad, MissingOrUnusableLibraryGivesTheLoadersCodeAndText) {
    TZNB_Adapter_Obj adapter;
    EXPECT_EQ(adapter.Load_DLL("ZNBA_NoSuchAdapter.dll"), ENOENT);
    EXPECT_FALSE(adapter.Loaded);
    EXPECT_EQ(adapter.DLL_Handle, nullptr);
    EXPECT_EQ(adapter.Message.rfind("Load Library Error Msg  : ", 0), 0u) << adapter.Message;
    EXPECT_GT(adapter.Message.size(), std::string("Load Library Error Msg  : ").size());
    EXPECT_EQ(adapter.Message.find("\r\n"), std::string::npos);

    EXPECT_EQ(adapter.Load_DLL("/no/such/folder/ZNBA_TestRecorder.so"), ENOENT);
    EXPECT_EQ(adapter.Load_DLL(""), ENOENT);

    // A file that is there but is no library fails with another code.
    const int32_t code = adapter.Load_DLL("ZNBA_NotALibrary");
    EXPECT_NE(code, 0);
    EXPECT_NE(code, ENOENT);
    EXPECT_FALSE(adapter.Loaded);
    EXPECT_EQ(adapter.Message.rfind("Load Library Error Msg  : ", 0), 0u);
}

TEST(AdapterLoad, OnlyGetInfoMissingGives43001AndStaysLoaded) {
    TZNB_Adapter_Obj adapter;
    EXPECT_EQ(adapter.Load_DLL("ZNBA_TestNoInfo"), 43001);
    EXPECT_TRUE(adapter.Loaded);
    EXPECT_EQ(adapter.ZNA_Get_Info, nullptr);
    EXPECT_NE(adapter.ZNA_Connect, nullptr);
    EXPECT_NE(adapter.Message.find("Adapter Loaded from DLL : ZNBA_TestNoInfo\r\nCould not Find Get Info\r\n"
                                   "Adapter Set Config Function Found.\r\n"),
              std::string::npos)
        << adapter.Message;
}

TEST(AdapterLoad, LaterMissingEntryPointDecidesTheCode) {
    TZNB_Adapter_Obj adapter;
    EXPECT_EQ(adapter.Load_DLL("ZNBA_TestNoInfoNoDelete"), 43000);
    EXPECT_TRUE(adapter.Loaded);
    EXPECT_EQ(adapter.ZNA_Delete_Note, nullptr);
    const std::string tail =
        "Adapter Acknowledge Note Function Found.\r\nCould not Find Delete Note Function\r\n";
    ASSERT_GE(adapter.Message.size(), tail.size());
    EXPECT_EQ(adapter.Message.substr(adapter.Message.size() - tail.size()), tail);
    EXPECT_EQ(adapter.Call_Delete_Note("A", 2, "B", 2), ZNA_ERR_FUNCTION_MISSING);
}

TEST(AdapterLoad, FailingDisconnectDoesNotStopTheRelease) {
    TZNB_Adapter_Obj adapter;
    ASSERT_EQ(adapter.Load_DLL("ZNBA_TestBadDisconnect"), 0);
    EXPECT_EQ(adapter.Call_Disconnect(), 40003);
    EXPECT_EQ(adapter.UnLoad_DLL(), 0);
    EXPECT_EQ(adapter.Message, "DLL Unloaded");
    EXPECT_FALSE(adapter.Loaded);
}

TEST(AdapterLoad, ExceptionFromAnAdapterIsCaughtAtTheCallSite) {
    TZNB_Adapter_Obj adapter;
    adapter.Name = "Thrower";
    ASSERT_EQ(adapter.Load_DLL("ZNBA_TestThrows"), 0);
    int32_t state = 0, size = 0;
    try {
        adapter.Call_Status(&state, nullptr, &size);
        FAIL() << "no exception";
    } catch (const EAdapterError& e) {
        EXPECT_EQ(e.Message(),
                  "Adapter : Thrower : ZNA_Status raised an exception : ZNA_Status failed on purpose");
    }
    EXPECT_THROW(adapter.Call_Connect("/tmp/", 6, nullptr, nullptr), EAdapterError);
    // The disconnect throws too; the library is released all the same.
    EXPECT_EQ(adapter.UnLoad_DLL(), 0);
    EXPECT_EQ(adapter.Message, "DLL Unloaded");
}

TEST(AdapterList, AddAndFindIgnoringCase) {
    TZNB_Adapter_List list;
    EXPECT_EQ(list.Get_Adapter("DuskMere"), nullptr);
    EXPECT_EQ(list.Add_Adapter("DuskMere", "ZNBA_Duskmere.dll"), 0);
    EXPECT_EQ(list.Add_Adapter("R/Vista", "ZNBA_RVista.dll"), 1);
    TZNB_Adapter_Obj* adapter = list.Get_Adapter("duskmere");
    ASSERT_NE(adapter, nullptr);
    EXPECT_EQ(adapter->Name, "DuskMere");
    EXPECT_EQ(adapter->DLL_Name, "ZNBA_Duskmere.dll");
    EXPECT_FALSE(adapter->Loaded);
    EXPECT_EQ(list.Get_Adapter("R/VISTA"), list.Objects(1));
    // The list itself allows a second entry of a name; look-ups find the first.
    EXPECT_EQ(list.Add_Adapter("DUSKMERE", "other.dll"), 2);
    EXPECT_EQ(list.Get_Adapter("DuskMere"), adapter);
    EXPECT_EQ(list.Count(), 3);
}
