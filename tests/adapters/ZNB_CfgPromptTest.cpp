#include "adapters/ZNB_Cfg.h"

#include "ScriptedPrompt.h"
#include "TempFolder.h"

#include <gtest/gtest.h>

namespace {

const char* const BothQuestion =
    "Duskmere and R/Vista are installed but not configured - Do you wish to configure them?";
const char* const RVistaQuestion = "R/Vista is installed but not configured - Do you wish to configure it?";
const char* const DuskMereQuestion = "Duskmere is installed but not configured - Do you wish to configure?";

class ConfigPrompt : public ::testing::Test {
protected:
    ConfigPrompt() : Cfg(Folder.Path()) { Cfg.Get(); }
    TTempFolder Folder;
    TScriptedPrompt Prompt;
    TNBConfig Cfg;
};

} // namespace

TEST_F(ConfigPrompt, YesOnBothAdaptersOpensTheConfigurationDialog) {
    Cfg.SetAdapterLoadable("DuskMere", true);
    Cfg.SetAdapterLoadable("R/Vista", true);
    Prompt.AnswerYes = true;
    EXPECT_TRUE(Cfg.ConfigPrompt());
    EXPECT_EQ(Prompt.Questions, std::vector<std::string>{BothQuestion});
    EXPECT_EQ(Prompt.ConfigDialogs, 1);
    EXPECT_TRUE(Cfg.AlwaysPrompt); // box left unchecked
}

TEST_F(ConfigPrompt, NoWithTheBoxCheckedStopsFurtherQuestionsAfterSave) {
    Cfg.SetAdapterLoadable("R/Vista", true);
    Prompt.CheckDontShowAgain = true;
    EXPECT_TRUE(Cfg.ConfigPrompt());
    EXPECT_EQ(Prompt.Questions, std::vector<std::string>{RVistaQuestion});
    EXPECT_EQ(Prompt.ConfigDialogs, 0);
    EXPECT_FALSE(Cfg.AlwaysPrompt);

    Cfg.Save();
    TNBConfig back(Folder.Path());
    back.Get();
    back.SetAdapterLoadable("R/Vista", true);
    EXPECT_TRUE(back.ConfigPrompt());
    EXPECT_EQ(Prompt.Questions.size(), 1u); // nothing asked the second time
}

TEST_F(ConfigPrompt, EachAdapterStateAsksItsOwnQuestion) {
    // All_Adapters counts every adapter as installed.
    const struct {
        bool DuskMereLoadable, DuskMereConfigured, RVistaLoadable, RVistaConfigured, AllAdapters;
        const char* Question;
    } cases[] = {{true, false, true, true, false, DuskMereQuestion},
                 {true, true, true, false, false, RVistaQuestion},
                 {false, false, true, false, false, RVistaQuestion},
                 {false, false, false, true, true, DuskMereQuestion}};
    for (const auto& c : cases) {
        Prompt.Questions.clear();
        Cfg.SetAdapterLoadable("DuskMere", c.DuskMereLoadable);
        Cfg.SetAdapterConfigured("DuskMere", c.DuskMereConfigured);
        Cfg.SetAdapterLoadable("R/Vista", c.RVistaLoadable);
        Cfg.SetAdapterConfigured("R/Vista", c.RVistaConfigured);
        Cfg.All_Adapters = c.AllAdapters;
        Cfg.ConfigPrompt();
        EXPECT_EQ(Prompt.Questions, std::vector<std::string>{c.Question}) << c.Question;
        EXPECT_TRUE(Cfg.AlwaysPrompt);
    }
}

TEST_F(ConfigPrompt, NothingIsAskedWhenNothingNeedsConfiguringOrPromptingIsOff) {
    EXPECT_TRUE(Cfg.ConfigPrompt()); // neither product installed
    Cfg.SetAdapterLoadable("DuskMere", true);
    Cfg.SetAdapterConfigured("DuskMere", true);
    EXPECT_TRUE(Cfg.ConfigPrompt());
    Cfg.SetAdapterLoadable("R/Vista", true);
    Cfg.AlwaysPrompt = false;
    EXPECT_TRUE(Cfg.ConfigPrompt());
    EXPECT_TRUE(Prompt.Questions.empty());
    EXPECT_EQ(Prompt.ConfigDialogs, 0);
    EXPECT_FALSE(Cfg.AlwaysPrompt);
}

TEST(AdapterCfg, ReadsItsFlagsFromANameValueText) {
    TZNB_Adapter_Cfg cfg("X");
    EXPECT_EQ(cfg.Read_Cfg_String("INTERNAL=True;dll_name=libx;configured=t;enabled=yes;LOADABLE=TRUE"), 0);
    EXPECT_TRUE(cfg.Internal);
    EXPECT_EQ(cfg.DLL_Name, "libx");
    EXPECT_TRUE(cfg.Configured);
    EXPECT_FALSE(cfg.Enabled);
    EXPECT_TRUE(cfg.Loadable);
    EXPECT_EQ(cfg.Read_Cfg_String(""), 0);
    EXPECT_FALSE(cfg.Internal || cfg.Configured || cfg.Loadable);
    EXPECT_EQ(cfg.DLL_Name, "");
}
