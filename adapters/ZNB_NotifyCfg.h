// How the board makes new trouble heard and seen: desktop notifications, sounds, the tray icon and the
// highlight of new and changed rows. Kept in zpnbd.ini in a section of its own, "Notifications", beside
// the board's other settings (TNBConfig reads and writes it with the rest).
//
// Every default leaves the board as it was without these settings: nothing pops up, nothing sounds, no
// tray icon, rows painted as the display says. A plain value; one thread at a time.
#pragma once

#include <array>
#include <cstdint>
#include <string>

class TIniFile;

struct TNotificationSettings {
    static constexpr const char* Section = "Notifications";
    static constexpr int32_t MaxRepeatMinutes = 1440;

    bool Desktop = false;       // a desktop notification (or the board's banner) for new trouble
    bool Sound = false;         // a sound for new trouble
    int32_t MinSeverity = 3;    // notices at or above this severity (1 Normal .. 4 Critical) are trouble
    int32_t RepeatMinutes = 10; // repeat while such a notice stays unacknowledged; 0 never
    bool TrayIcon = false;      // the tray icon also while neither announcement is on
    bool Highlight = false;     // new and changed rows bold and tinted for two minutes
    // A sound file per severity (index 0 = Normal); empty for the board's own sound.
    std::array<std::string, 4> SoundFiles;

    // Reads the section; missing keys and values out of range give the defaults. Never throws.
    void Load(const TIniFile& Ini);
    // Writes every key of the section (the ini file is the caller's to save).
    void Save(TIniFile& Ini) const;

    // The sound file of a severity (1..4), empty for the board's own or for any other number.
    const std::string& SoundFile(int32_t Severity) const;
    // The tray icon is needed: asked for, or the desktop notifications come through it.
    bool WantsTray() const { return TrayIcon || Desktop; }

    bool operator==(const TNotificationSettings&) const = default;
};
