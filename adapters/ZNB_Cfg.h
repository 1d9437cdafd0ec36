// The notice board's settings, kept in "zpnbd.ini" beside the console's executable: when adapters are
// started, the notice board folder (filters, displays and the log live there), the default and last-used
// filter and display, the shutdown prompt, and one record per adapter.
// One TNBConfig, the global NBConfig, is created and read by the package entry, saved at start-up and when
// the board closes, and read by every other part of the board. Board thread only.
#pragma once

#include "adapters/ZNB_NotifyCfg.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class TIniFile;

// One adapter's settings. Owned by TNBConfig's adapter list.
class TZNB_Adapter_Cfg {
public:
    explicit TZNB_Adapter_Cfg(std::string AName) : Name(std::move(AName)) {}

    // Sets the flags and DLL_Name from a "name=value;" text (names in any case). 0, or 44000 on failure.
    int32_t Read_Cfg_String(const std::string& Text);
    // Reads, respectively writes, section "Adapter_" + Name. 0, or 3 on failure; never throws.
    int32_t Load_Ini_File(TIniFile& Ini);
    int32_t Save_Ini_File(TIniFile& Ini);

    std::string Name;
    bool Internal = false;
    std::string DLL_Name;    // the library loaded for this adapter
    bool Configured = false; // the user has configured the adapter
    bool Loadable = false;   // the product behind it is installed, so its library may be loaded
    bool Enabled = false;    // connect it at start-up
};

class TNBConfig {
public:
    // The built-in adapters "DuskMere" and "R/Vista" with their default records; the other fields stay
    // zero/empty until Get. The first form uses DataFolder() (the executable's folder, or the per-user
    // copy when that is not writable), the second exeFolder (tests and tools): the ini file and the
    // default notice board folder are found there.
    TNBConfig();
    explicit TNBConfig(std::string exeFolder);
    ~TNBConfig();
    TNBConfig(const TNBConfig&) = delete;
    TNBConfig& operator=(const TNBConfig&) = delete;

    // The executable's folder (with trailing separator) + "zpnbd.ini".
    std::string GetCfgFileName() const;
    // Reads every setting; a missing or unreadable file and missing keys give the defaults. Creates the
    // notice board folder (one level) when it does not exist; a failure is shown to the user once through
    // NBPrompt() and the board goes on. Does not throw for file problems.
    void Get();
    // Writes every setting except All_Adapters, rewriting section Adapters. Raises EInOutError when the
    // file cannot be written.
    void Save();
    // Writes only PreviousFilter and PreviousDisplay. Raises EInOutError when the file cannot be written.
    void SaveMRU();

    // Adapter flags by name (any letter case). Unknown names read false (Loadable: true while
    // All_Adapters is set); the setters ignore unknown names and do not save.
    bool IsAdapterLoadable(const std::string& Name) const;
    void SetAdapterLoadable(const std::string& Name, bool Value);
    bool IsAdapterEnabled(const std::string& Name) const;
    void SetAdapterEnabled(const std::string& Name, bool Value);
    bool IsAdapterConfigured(const std::string& Name) const;
    void SetAdapterConfigured(const std::string& Name, bool Value);

    // Asks, through NBPrompt(), whether to configure installed but unconfigured adapters (only while
    // AlwaysPrompt is set). Always returns true.
    bool ConfigPrompt();

    // The adapter list in list order. The records live as long as this object.
    int AdapterCount() const { return static_cast<int>(FAdapters.size()); }
    const std::string& AdapterName(int Index) const;
    TZNB_Adapter_Cfg& AdapterCfg(int Index) const;
    TZNB_Adapter_Cfg* FindAdapterCfg(const std::string& Name) const; // any letter case; null when absent

    int32_t WhenToConnect = 0; // 0: when the console starts; otherwise when the board is shown
    int32_t ConnectDelay = 0;  // seconds
    std::string NBFolder;      // ends in a path separator after Get
    std::string DefaultFilter;
    std::string DefaultDisplay;
    std::string PreviousFilter;
    std::string PreviousDisplay;
    bool NBShutdownPrompt = false;
    std::string LogFileName;   // NBFolder + "znb.log"
    bool All_Adapters = false; // every adapter counts as loadable; read, never written
    bool AlwaysPrompt = false; // ask about installed but unconfigured adapters
    // Section "Notifications": desktop notifications, sounds, tray icon, row highlight. Read by Get and
    // written by Save with the rest.
    TNotificationSettings Notifications;

private:
    TZNB_Adapter_Cfg& AddAdapter(const std::string& Name);

    std::string FExeFolder;
    std::vector<std::unique_ptr<TZNB_Adapter_Cfg>> FAdapters;
};

// The board's configuration; created by the package entry, null before that.
extern std::unique_ptr<TNBConfig> NBConfig;

// The log file every ZS_Log call of the board writes: NBConfig's LogFileName, or empty (nothing is
// logged) while there is no NBConfig.
std::string NBLogFileName();
