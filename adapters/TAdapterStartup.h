// Bringing the configured adapters to life and summarising their health: load (Init_Adapters), connect
// under the start-up mutex (Start_Adapters), poll (Set_Adapters_Status) and, when the board closes,
// disconnect and unload (Shutdown_Adapters). The board window owns one TAdapterStartup and drives it from
// its show handler, its timer and its close handler; progress goes to the window's status bar through
// IAdapterStatusView and every outcome to the log. Board thread only; nothing here throws.
#pragma once

#include "adapters/ZNBA_Interface.h"
#include "platform/NamedMutex.h"
#include "sdk/znb_adapter.h"

#include <cstdint>
#include <memory>
#include <string>

class TNBConfig;

// What the window shows of the adapters: the status bar's panels (index 0 first; the window starts with
// two, widths 200 and 500, panel 1 being the progress panel), the status icon and the status caption.
// Implemented by the window; tests record the calls.
class IAdapterStatusView {
public:
    virtual ~IAdapterStatusView() = default;
    virtual int PanelCount() const = 0;
    virtual int PanelWidth(int index) const = 0;
    virtual void AddPanel() = 0; // appended with the status bar's default width
    virtual void SetPanelWidth(int index, int width) = 0;
    virtual void SetPanelText(int index, const std::string& text) = 0;
    // 0 = failed or disabled, 1 = at least one adapter failing, 2 = all OK.
    virtual void SetStatusImage(int imageIndex) = 0;
    virtual void SetStatusCaption(const std::string& text) = 0;
};

// The name of the board's start-up mutex, handed to every adapter in ZNA_Connect.
extern const char* const NoticeBoardMutexName; // "PV_NoticeBoard_Mutex"

class TAdapterStartup {
public:
    // config and view are not owned and must outlive this object; callback is the board's notice
    // callback handed to every adapter that is connected.
    TAdapterStartup(TNBConfig& config, IAdapterStatusView& view, ZNA_Notice_Callback callback);
    ~TAdapterStartup(); // Shutdown_Adapters when that has not run
    TAdapterStartup(const TAdapterStartup&) = delete;
    TAdapterStartup& operator=(const TAdapterStartup&) = delete;

    // Creates the adapter list and loads the library of every loadable configured adapter; an adapter
    // that fails to load is disabled in the configuration. Returns the last adapter's code (0, a loader
    // or 43000/43001 code, -1 for a missing adapter or DLL name), or 44000 when no list could be made.
    int32_t Init_Adapters();

    // Creates the start-up mutex, connects every enabled, loaded adapter with the notice board folder and
    // the callback, then refreshes the status. Returns the last adapter's code, 44000 without an adapter
    // list, or the system's code when the mutex could not be made (nothing is connected then).
    int32_t Start_Adapters();

    // Asks every enabled adapter for its state and sets the status icon and caption.
    void Set_Adapters_Status();

    // Disconnects and unloads every adapter (failures are logged), frees the list, then closes the mutex
    // handle (adapters may use it until they are disconnected). Afterwards Adapters() is null.
    void Shutdown_Adapters();

    // The adapter list; null before Init_Adapters and after Shutdown_Adapters. Owned by this object.
    TZNB_Adapter_List* Adapters() const { return FAdapters.get(); }
    // The start-up mutex handle given to adapters; null before Start_Adapters.
    void* MutexHandle() const { return FMutex ? FMutex->Handle() : nullptr; }

private:
    void Log(const std::string& message) const;

    TNBConfig& FConfig;
    IAdapterStatusView& FView;
    ZNA_Notice_Callback FCallback;
    std::unique_ptr<TZNB_Adapter_List> FAdapters;
    std::unique_ptr<TNamedMutex> FMutex;
};

// The package entry's first two steps: creates the global NBConfig, reads it, and records whether the
// Duskmere console is installed as the "DuskMere" adapter's Loadable flag. Returns the configuration.
// exeFolder: where zpnbd.ini is looked for; empty for the running executable's folder.
TNBConfig& Prepare_NBConfig(const std::string& exeFolder = std::string());
