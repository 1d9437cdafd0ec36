#include "adapters/ZNB_Cfg.h"

#include "ScriptedPrompt.h"
#include "TempFolder.h"
#include "support/Exception.h"
#include "support/IniFiles.h"
#include "support/StrUtils.h"

#include <gtest/gtest.h>

namespace {

class ConfigStore : public ::testing::Test {
protected:
    std::string Ini() const { return Folder / "zpnbd.ini"; }
    TTempFolder Folder;
    TScriptedPrompt Prompt;
};

} // namespace

TEST_F(ConfigStore, WithoutIniFileEverySettingHasItsDefault) {
    TNBConfig cfg(Folder.Path());
    EXPECT_EQ(cfg.GetCfgFileName(), Ini());
    cfg.Get();
    EXPECT_EQ(cfg.WhenToConnect, 0);
    EXPECT_EQ(cfg.ConnectDelay, 15);
    EXPECT_EQ(cfg.NBFolder, Folder.Path() + "Noticeboard/");
    EXPECT_TRUE(DirectoryExists(cfg.NBFolder));
    EXPECT_EQ(cfg.LogFileName, cfg.NBFolder + "znb.log");
    EXPECT_TRUE(cfg.NBShutdownPrompt);
    EXPECT_TRUE(cfg.AlwaysPrompt);
    EXPECT_FALSE(cfg.All_Adapters);
    EXPECT_EQ(cfg.DefaultFilter + cfg.DefaultDisplay + cfg.PreviousFilter + cfg.PreviousDisplay, "");
    ASSERT_EQ(cfg.AdapterCount(), 2);
    EXPECT_EQ(cfg.AdapterName(0), "DuskMere");
    EXPECT_EQ(cfg.AdapterName(1), "R/Vista");
    EXPECT_EQ(cfg.AdapterCfg(0).DLL_Name, "PvDuskmereAdapter");
    EXPECT_EQ(cfg.AdapterCfg(1).DLL_Name, "ZNBA_RV");
    for (int i = 0; i < 2; ++i) {
        const TZNB_Adapter_Cfg& a = cfg.AdapterCfg(i);
        EXPECT_FALSE(a.Internal || a.Configured || a.Loadable || a.Enabled) << a.Name;
    }
    EXPECT_TRUE(Prompt.Messages.empty());
    EXPECT_FALSE(FileExists(Ini())); // reading never writes
}

TEST_F(ConfigStore, SavedSettingsReadBackTheSame) {
    TNBConfig cfg(Folder.Path());
    cfg.Get();
    cfg.WhenToConnect = 1;
    cfg.ConnectDelay = 42;
    cfg.NBFolder = Folder / "board/";
    cfg.DefaultFilter = "Critical only";
    cfg.DefaultDisplay = "Wide";
    cfg.PreviousFilter = "All";
    cfg.PreviousDisplay = "Narrow";
    cfg.NBShutdownPrompt = false;
    cfg.AlwaysPrompt = false;
    cfg.SetAdapterEnabled("r/vista", true);
    cfg.SetAdapterConfigured("R/VISTA", true);
    cfg.SetAdapterLoadable("duskmere", true);
    cfg.Save();

    TNBConfig back(Folder.Path());
    back.Get();
    EXPECT_EQ(back.WhenToConnect, 1);
    EXPECT_EQ(back.ConnectDelay, 42);
    EXPECT_EQ(back.NBFolder, Folder / "board/");
    EXPECT_EQ(back.DefaultFilter, "Critical only");
    EXPECT_EQ(back.DefaultDisplay, "Wide");
    EXPECT_EQ(back.PreviousFilter, "All");
    EXPECT_EQ(back.PreviousDisplay, "Narrow");
    EXPECT_FALSE(back.NBShutdownPrompt);
    EXPECT_FALSE(back.AlwaysPrompt);
    EXPECT_TRUE(back.IsAdapterEnabled("R/Vista"));
    EXPECT_TRUE(back.IsAdapterConfigured("R/Vista"));
    EXPECT_FALSE(back.IsAdapterLoadable("R/Vista"));
    EXPECT_TRUE(back.IsAdapterLoadable("DuskMere"));
    EXPECT_EQ(back.FindAdapterCfg("r/vista")->DLL_Name, "ZNBA_RV");

    const std::string text = ReadTextFile(Ini());
    EXPECT_NE(text.find("\nNBShutdownPrompt=0\n"), std::string::npos) << text; // booleans in integer form
    EXPECT_EQ(text.find("All_Adapters"), std::string::npos);
}

TEST_F(ConfigStore, ListedAdapterWithoutLoadableKeyIsLoadable) {
    WriteTextFile(Ini(), "[Adapters]\nCount=3\nAdapter_0=duskmere\nAdapter_1=\nAdapter_2=Extra\n"
                         "[Adapter_Extra]\nDLL_Name=libextra\nEnabled=1\n"
                         "[Adapter_DuskMere]\nDLL_Name=dm2\n");
    TNBConfig cfg(Folder.Path());
    cfg.Get();
    ASSERT_EQ(cfg.AdapterCount(), 3);
    EXPECT_EQ(cfg.AdapterName(2), "Extra");
    EXPECT_EQ(cfg.AdapterCfg(2).DLL_Name, "libextra");
    EXPECT_TRUE(cfg.AdapterCfg(2).Loadable);
    EXPECT_TRUE(cfg.AdapterCfg(2).Enabled);
    // The built-in record says not loadable; read from the file, the missing key says loadable.
    EXPECT_TRUE(cfg.IsAdapterLoadable("DuskMere"));
    EXPECT_EQ(cfg.FindAdapterCfg("DuskMere")->DLL_Name, "dm2");
    // R/Vista is not named in the file and keeps its built-in record.
    EXPECT_FALSE(cfg.IsAdapterLoadable("R/Vista"));
    EXPECT_EQ(cfg.FindAdapterCfg("R/Vista")->DLL_Name, "ZNBA_RV");
}

TEST_F(ConfigStore, AllAdaptersMakesAnyNameLoadableAndIsNeverWrittenBack) {
    WriteTextFile(Ini(), "[AdapterConfig]\nAll_Adapters=1\n");
    TNBConfig cfg(Folder.Path());
    cfg.Get();
    EXPECT_TRUE(cfg.All_Adapters);
    EXPECT_TRUE(cfg.IsAdapterLoadable("R/Vista"));
    EXPECT_TRUE(cfg.IsAdapterLoadable("Nobody"));
    EXPECT_FALSE(cfg.IsAdapterEnabled("Nobody"));
    EXPECT_FALSE(cfg.IsAdapterConfigured("Nobody"));
    cfg.All_Adapters = false;
    cfg.Save();
    TNBConfig back(Folder.Path());
    back.Get();
    EXPECT_TRUE(back.All_Adapters); // stays as the administrator wrote it
    EXPECT_EQ(back.AdapterCount(), 2);
}

TEST_F(ConfigStore, GarbageAdapterCountReadsOnlyTheNumberedKeysBelowIt) {
    WriteTextFile(Ini(), "[Adapters]\nCount=2147483647\nadapter_9=Nine\nAdapter_07=Padded\n"
                         "Adapter_+3=Signed\nAdapter_2=Two\nAdapter_x=Junk\n");
    TNBConfig cfg(Folder.Path());
    cfg.Get(); // returns at once instead of probing two billion keys
    ASSERT_EQ(cfg.AdapterCount(), 4);
    EXPECT_EQ(cfg.AdapterName(2), "Two"); // in key number order, not file order
    EXPECT_EQ(cfg.AdapterName(3), "Nine");

    WriteTextFile(Ini(), "[Adapters]\nCount=1\nAdapter_1=Beyond\nAdapter_0=Inside\n");
    TNBConfig small(Folder.Path());
    small.Get();
    ASSERT_EQ(small.AdapterCount(), 3);
    EXPECT_EQ(small.AdapterName(2), "Inside");
}

// A section name ends at its first "]" and loses its trailing blanks: an adapter listed as "R/Vista]" or
// "R/Vista " would be saved under a section that reads back as R/Vista's, so that a start of the board
// rewrote the real adapter's flags.
TEST_F(ConfigStore, AnAdapterNameThatCannotNameItsOwnSectionIsLeftOut) {
    WriteTextFile(Ini(), "[Adapter_R/Vista]\nLoadable=0\nEnabled=1\n[Adapters]\nCount=4\nAdapter_0=R/Vista\n"
                         "Adapter_1=R/Vista]\nAdapter_2=\"R/Vista \"\nAdapter_3=Extra\n");
    TNBConfig cfg(Folder.Path());
    cfg.Get();
    ASSERT_EQ(cfg.AdapterCount(), 3);
    EXPECT_EQ(cfg.AdapterName(2), "Extra");
    cfg.Save();
    TNBConfig back(Folder.Path());
    back.Get();
    EXPECT_FALSE(back.IsAdapterLoadable("R/Vista"));
    EXPECT_TRUE(back.IsAdapterEnabled("R/Vista"));
}

TEST_F(ConfigStore, SaveRewritesAdapterListButKeepsOldAdapterSections) {
    WriteTextFile(Ini(),
                  "; kept comment\n[Noticeboard]\nConnectDelay=7\n"
                  "[Adapters]\nCount=4\nAdapter_0=DuskMere\nAdapter_1=R/Vista\nAdapter_2=\nAdapter_3=\n"
                  "Adapter_7=Junk\n[Adapter_Gone]\nDLL_Name=old\n");
    TNBConfig cfg(Folder.Path());
    cfg.Get();
    cfg.Save();
    TIniFile ini(Ini());
    EXPECT_EQ(ini.ReadSection("Adapters"), (std::vector<std::string>{"Count", "Adapter_0", "Adapter_1"}));
    EXPECT_EQ(ini.ReadInteger("Adapters", "Count", -1), 2);
    EXPECT_EQ(ini.ReadString("Adapter_Gone", "DLL_Name", ""), "old");
    EXPECT_EQ(ini.ReadSection("Adapter_R/Vista"),
              (std::vector<std::string>{"Internal", "DLL_Name", "Configured", "Loadable", "Enabled"}));
    EXPECT_NE(ReadTextFile(Ini()).find("; kept comment"), std::string::npos);
}

TEST_F(ConfigStore, SaveMRUWritesOnlyThePreviousFilterAndDisplay) {
    TNBConfig cfg(Folder.Path());
    cfg.Get();
    cfg.ConnectDelay = 99;
    cfg.PreviousFilter = "f";
    cfg.PreviousDisplay = "d";
    cfg.SaveMRU();
    TNBConfig back(Folder.Path());
    back.Get();
    EXPECT_EQ(back.PreviousFilter, "f");
    EXPECT_EQ(back.PreviousDisplay, "d");
    EXPECT_EQ(back.ConnectDelay, 15);
}

TEST_F(ConfigStore, UnusableIniFilesReadAsDefaults) {
    const std::string garbage("\x01\xff\xfe[[[=\0\0==]\n\x80\x81 Count=oops\n[Noticeboard\nConnectDelay", 45);
    for (const std::string& text : {std::string(), garbage,
                                    std::string("[Noticeboard]\nConnectDelay=abc\nNBFolder=\n"
                                                "WhenToConnect=\nNBShutdownPrompt=yes\n")}) {
        WriteTextFile(Ini(), text);
        TNBConfig cfg(Folder.Path());
        cfg.Get();
        EXPECT_EQ(cfg.NBFolder, Folder.Path() + "Noticeboard/"); // an empty value too, never the root
        EXPECT_EQ(cfg.ConnectDelay, 15);
        EXPECT_EQ(cfg.WhenToConnect, 0);
        EXPECT_TRUE(cfg.NBShutdownPrompt); // booleans are numbers: "yes" is not one
        EXPECT_EQ(cfg.AdapterCount(), 2);
    }
    std::filesystem::remove(Ini());
    std::filesystem::create_directory(Ini()); // a name that cannot be read as a file
    TNBConfig cfg(Folder.Path());
    cfg.Get();
    EXPECT_EQ(cfg.ConnectDelay, 15);
    EXPECT_THROW(cfg.Save(), EInOutError);
}

TEST_F(ConfigStore, FolderThatCannotBeCreatedIsReportedOnceAndReadingGoesOn) {
    const std::string folder = Folder / "missing/parent/nb/";
    WriteTextFile(Ini(), "[Noticeboard]\nNBFolder=" + folder + "\nConnectDelay=3\n");
    TNBConfig cfg(Folder.Path());
    cfg.Get();
    ASSERT_EQ(Prompt.Messages.size(), 1u);
    EXPECT_EQ(Prompt.Messages[0], "Failed to create a Noticeboard folder: \"" + folder + "\"");
    EXPECT_EQ(Prompt.MessageTypes[0], TMsgDlgType::mtError);
    EXPECT_FALSE(DirectoryExists(Folder / "missing"));
    EXPECT_EQ(cfg.ConnectDelay, 3);
    EXPECT_EQ(cfg.LogFileName, folder + "znb.log");
}
