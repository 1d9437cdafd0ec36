#include "adapters/ZNB_NotifyCfg.h"

#include "core/Znb_const.h"
#include "support/IniFiles.h"

namespace {

// "Sound_Normal" .. "Sound_Critical": the severity's own text, so the file reads without a key.
std::string SoundKey(size_t Index) {
    return "Sound_" + SeverityStrings[Index];
}

} // namespace

void TNotificationSettings::Load(const TIniFile& Ini) {
    const TNotificationSettings defaults;
    Desktop = Ini.ReadBool(Section, "Desktop", defaults.Desktop);
    Sound = Ini.ReadBool(Section, "Sound", defaults.Sound);
    MinSeverity = Ini.ReadInteger(Section, "MinSeverity", defaults.MinSeverity);
    if (MinSeverity < 1 || MinSeverity > 4) MinSeverity = defaults.MinSeverity;
    RepeatMinutes = Ini.ReadInteger(Section, "RepeatMinutes", defaults.RepeatMinutes);
    if (RepeatMinutes < 0 || RepeatMinutes > MaxRepeatMinutes) RepeatMinutes = defaults.RepeatMinutes;
    TrayIcon = Ini.ReadBool(Section, "TrayIcon", defaults.TrayIcon);
    Highlight = Ini.ReadBool(Section, "Highlight", defaults.Highlight);
    for (size_t i = 0; i < SoundFiles.size(); ++i)
        SoundFiles[i] = Ini.ReadString(Section, SoundKey(i), "");
}

void TNotificationSettings::Save(TIniFile& Ini) const {
    Ini.WriteBool(Section, "Desktop", Desktop);
    Ini.WriteBool(Section, "Sound", Sound);
    Ini.WriteInteger(Section, "MinSeverity", MinSeverity);
    Ini.WriteInteger(Section, "RepeatMinutes", RepeatMinutes);
    Ini.WriteBool(Section, "TrayIcon", TrayIcon);
    Ini.WriteBool(Section, "Highlight", Highlight);
    for (size_t i = 0; i < SoundFiles.size(); ++i)
        Ini.WriteString(Section, SoundKey(i), SoundFiles[i]);
}

const std::string& TNotificationSettings::SoundFile(int32_t Severity) const {
    static const std::string none;
    return Severity >= 1 && Severity <= 4 ? SoundFiles[static_cast<size_t>(Severity - 1)] : none;
}
