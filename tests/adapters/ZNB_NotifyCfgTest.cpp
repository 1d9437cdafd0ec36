#include "adapters/ZNB_Cfg.h"

#include "ScriptedPrompt.h"
#include "TempFolder.h"
#include "support/IniFiles.h"
#include "support/StrUtils.h"

#include <gtest/gtest.h>

namespace {

class NotificationSettings : public ::testing::Test {
protected:
    std::string Ini() const { return Folder / "zpnbd.ini"; }
    void WriteIni(const std::string& Text) const { WriteTextFile(Ini(), Text); }
    TTempFolder Folder;
    TScriptedPrompt Prompt;
};

} // namespace

TEST_F(NotificationSettings, WithoutTheSectionTheBoardStaysQuiet) {
    TNBConfig cfg(Folder.Path());
    cfg.Get();
    const TNotificationSettings& n = cfg.Notifications;
    EXPECT_FALSE(n.Desktop || n.Sound || n.TrayIcon || n.Highlight || n.WantsTray());
    EXPECT_EQ(n.MinSeverity, 3);
    EXPECT_EQ(n.RepeatMinutes, 10);
    for (int sev = 0; sev <= 5; ++sev)
        EXPECT_EQ(n.SoundFile(sev), "") << sev;
}

TEST_F(NotificationSettings, SaveWritesItsOwnSectionAndReadsBackTheSame) {
    WriteIni("[Noticeboard]\nConnectDelay=7\n[Other]\nKept=yes\n");
    TNBConfig cfg(Folder.Path());
    cfg.Get();
    TNotificationSettings& n = cfg.Notifications;
    n.Desktop = n.Sound = n.TrayIcon = n.Highlight = true;
    n.MinSeverity = 4;
    n.RepeatMinutes = 0;
    n.SoundFiles = {"/snd/a.wav", "", "/snd/fatal sound.wav", "/snd/c.wav"};
    cfg.Save();

    TIniFile ini(Ini());
    EXPECT_EQ(ini.ReadString("Notifications", "Sound_Fatal", ""), "/snd/fatal sound.wav");
    EXPECT_EQ(ini.ReadInteger("Noticeboard", "ConnectDelay", 0), 7);
    EXPECT_EQ(ini.ReadString("Other", "Kept", ""), "yes");
    // The board's own keys stay where they were: the new keys went to their own section only.
    for (const std::string& section : {"Noticeboard", "AdapterConfig", "Adapters"})
        for (const std::string& key : ini.ReadSection(section))
            EXPECT_FALSE(ini.ValueExists("Notifications", key) && key != "Count") << section << "/" << key;

    TNBConfig again(Folder.Path());
    again.Get();
    EXPECT_EQ(again.Notifications, n);
    EXPECT_EQ(again.Notifications.SoundFile(3), "/snd/fatal sound.wav");
    EXPECT_EQ(again.Notifications.SoundFile(2), "");
}

TEST_F(NotificationSettings, ValuesOutOfRangeReadAsTheDefaults) {
    struct Case {
        const char* Key;
        const char* Value;
        int32_t MinSeverity, RepeatMinutes;
    };
    const Case cases[] = {
        {"MinSeverity", "0", 3, 10},        {"MinSeverity", "5", 3, 10},    {"MinSeverity", "1", 1, 10},
        {"MinSeverity", "Fatal", 3, 10},    {"RepeatMinutes", "-1", 3, 10}, {"RepeatMinutes", "1441", 3, 10},
        {"RepeatMinutes", "1440", 3, 1440}, {"RepeatMinutes", "0", 3, 0},
    };
    for (const Case& c : cases) {
        WriteIni(std::string("[Notifications]\n") + c.Key + "=" + c.Value + "\nDesktop=1\n");
        TIniFile ini(Ini());
        TNotificationSettings n;
        n.Load(ini);
        EXPECT_EQ(n.MinSeverity, c.MinSeverity) << c.Key << "=" << c.Value;
        EXPECT_EQ(n.RepeatMinutes, c.RepeatMinutes) << c.Key << "=" << c.Value;
        EXPECT_TRUE(n.Desktop && n.WantsTray());
    }
}
