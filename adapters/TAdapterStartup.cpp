#include "adapters/TAdapterStartup.h"

#include "adapters/ZNB_Cfg.h"
#include "adapters/Znb_log.h"
#include "platform/DynLib.h"
#include "support/Productintegrationutils.h"
#include "support/StrUtils.h"

#include <algorithm>
#include <cmath>

const char* const NoticeBoardMutexName = "PV_NoticeBoard_Mutex";

namespace {

const int kProgressPanel = 1;

// Progress of the two known adapters goes to their own panels once there are two or more adapters.
int PanelFor(const std::string& name, int current) {
    if (name == "R/Vista") return 1;
    if (name == "DuskMere") return 2;
    return current;
}

std::string CodeAndText(int32_t code) {
    return IntToStr(code) + " " + SysErrorMessage(code);
}

} // namespace

TAdapterStartup::TAdapterStartup(TNBConfig& config, IAdapterStatusView& view, ZNA_Notice_Callback callback)
    : FConfig(config), FView(view), FCallback(callback) {}

TAdapterStartup::~TAdapterStartup() {
    if (FAdapters || FMutex) Shutdown_Adapters();
}

void TAdapterStartup::Log(const std::string& message) const {
    ZS_Log(FConfig.LogFileName, message);
}

int32_t TAdapterStartup::Init_Adapters() {
    try {
        FAdapters = std::make_unique<TZNB_Adapter_List>();
    } catch (...) {
        return ZNA_ERR_CREATE_OBJECT;
    }
    int panel = kProgressPanel;
    int32_t result = 0;
    const int n = FConfig.AdapterCount();
    if (n >= 2) {
        // Rounds half to even, as the status bar always has; the last added panel keeps its default width.
        const int width = static_cast<int>(std::nearbyint(FView.PanelWidth(kProgressPanel) / double(n))) - 1;
        for (int k = 0; k < n; ++k)
            FView.AddPanel();
        for (int k = 1; k <= n; ++k)
            FView.SetPanelWidth(k, width);
    }
    for (int i = 0; i < n; ++i) {
        const std::string name = FConfig.AdapterName(i);
        if (n >= 2) panel = PanelFor(name, panel);
        FView.SetPanelText(panel, "Initializing Adapter : " + name);
        std::string summary;
        if (FConfig.IsAdapterLoadable(name)) {
            FView.SetPanelText(panel, "Loading Adapter : " + name);
            TZNB_Adapter_Obj* adapter = FAdapters->Get_Adapter(name);
            if (!adapter) {
                const int32_t added = FAdapters->Add_Adapter(name, FConfig.AdapterCfg(i).DLL_Name);
                adapter = added < 0 ? nullptr : FAdapters->Objects(added);
            }
            FView.SetPanelText(panel, "Loading Adapter DLL : " + name);
            if (adapter && !adapter->DLL_Name.empty()) {
                result = adapter->Load_DLL(adapter->DLL_Name);
                // Disabled for the rest of this run, and for later ones if the configuration is saved.
                if (result != 0) FConfig.SetAdapterEnabled(name, false);
            } else if (adapter) {
                Log("Adapter : " + name + " DLL Name was not specified.");
                result = -1;
            } else {
                Log("Adapter Not Found");
                result = -1;
            }
            if (result != 0) {
                FView.SetPanelText(panel, "Adapter : " + name + " failed to load");
                Log("Adapter : " + name + " failed to load");
                if (adapter) Log("Status  : " + adapter->Message);
                summary = "Error   : " + CodeAndText(result);
            } else {
                FView.SetPanelText(panel, "Adapter Loaded : " + name);
                summary = "Adapter : " + name + " was loaded.";
            }
        } else {
            FView.SetPanelText(panel, "Adapter : " + name + " not loadable.");
            summary = "Adapter : " + name + " Not Loadable";
        }
        Log(summary);
    }
    FView.SetPanelText(kProgressPanel, "");
    return result; // the last adapter's outcome: an earlier failure can be hidden by a later success
}

int32_t TAdapterStartup::Start_Adapters() {
    FView.SetStatusImage(0);
    int32_t result = 0;
    if (!FAdapters) {
        result = ZNA_ERR_CREATE_OBJECT;
        Log("Adapter List is not available");
    } else {
        int32_t error = 0;
        std::unique_ptr<TNamedMutex> mutex = TNamedMutex::Create(NoticeBoardMutexName, true, error);
        if (!mutex) {
            Log("Could not Create Mutex : " + CodeAndText(error));
            return error;
        }
        mutex->Release(); // the board holds it only while creating it
        FMutex = std::move(mutex);
        int panel = kProgressPanel;
        const int configured = FConfig.AdapterCount();
        for (int i = 0; i < FAdapters->Count(); ++i) {
            const std::string name = FAdapters->Strings(i);
            // The configured list is indexed with the adapter list's index here; relied on for the panels.
            const std::string configuredName = i < configured ? FConfig.AdapterName(i) : name;
            if (configured >= 2) panel = PanelFor(configuredName, panel);
            FView.SetPanelText(panel, "Starting Adapter : " + name);
            if (!FConfig.IsAdapterEnabled(name)) {
                FView.SetPanelText(panel, "Adapter : " + name + " is disabled");
                Log("Adapter : " + name + " is disabled");
                continue;
            }
            FView.SetPanelText(panel, "Adapter : " + name + " is enabled");
            TZNB_Adapter_Obj* adapter = FAdapters->Get_Adapter(name);
            if (!adapter) {
                result = -1;
                Log("Adapter : " + name + " is enabled but not loaded");
            } else if (!adapter->Loaded) {
                FView.SetPanelText(panel, "Adapter : " + configuredName + " DLL not loaded");
            } else {
                int32_t folderSize = 0;
                const char* folder = adapter->Keep_Text(FConfig.NBFolder, folderSize);
                std::string status = adapter->Message;
                try {
                    result = adapter->Call_Connect(folder, folderSize, FMutex->Handle(), FCallback);
                } catch (const EAdapterError& e) {
                    result = -1;
                    status = e.Message();
                }
                if (result == 0) {
                    FView.SetPanelText(panel, "Adapter : " + name + " has connected OK");
                    FView.SetPanelText(panel, "");
                    Log("Adapter : " + name + " has connected OK");
                } else {
                    FView.SetPanelText(panel, "Adapter : " + configuredName + " failed to connect");
                    Log("Adapter : " + configuredName + " failed to connect");
                    Log("Status  : " + status);
                    Log("Error   : " + CodeAndText(result));
                }
            }
        }
    }
    Set_Adapters_Status();
    return result;
}

void TAdapterStartup::Set_Adapters_Status() {
    int32_t overall = ZNA_STATE_ALL_OK;
    int disabled = 0;
    int positive = 0;
    const int count = FAdapters ? FAdapters->Count() : 0;
    for (int i = 0; i < count; ++i) {
        if (!FConfig.IsAdapterEnabled(FAdapters->Strings(i))) {
            ++disabled;
            continue;
        }
        TZNB_Adapter_Obj* adapter = FAdapters->Objects(i);
        // An adapter without a status entry (its DLL name was empty, so it stayed enabled) is skipped.
        if (!adapter || !adapter->ZNA_Status) continue;
        int32_t state = 0;
        int32_t size = 0;
        int32_t rc;
        try {
            rc = adapter->Call_Status(&state, nullptr, &size);
        } catch (const EAdapterError& e) {
            Log("Status  : " + e.Message());
            continue;
        }
        if (rc != 0) continue;
        state = std::clamp<int32_t>(state, ZNA_STATE_ALL_FAILED, ZNA_STATE_ALL_OK); // out-of-contract values
        if (state > 0) ++positive;
        overall = std::min(overall, state);
    }
    std::string text = "All Adapters failed";
    if (count == disabled) {
        overall = ZNA_STATE_ALL_FAILED;
        text = "All Adapters disabled";
    } else if (overall == ZNA_STATE_ALL_FAILED && positive > 0) {
        overall = ZNA_STATE_SOME_FAILED; // one adapter reported 0, another more
    }
    if (overall == ZNA_STATE_ALL_FAILED)
        FView.SetStatusCaption(text);
    else
        FView.SetStatusCaption(overall == ZNA_STATE_SOME_FAILED ? "Adapter has failed" : "All Adapters OK");
    FView.SetStatusImage(overall);
}

void TAdapterStartup::Shutdown_Adapters() {
    // The mutex handle is closed only after every adapter is disconnected: adapters hold the very same
    // sem_t*, and a closed one is unmapped memory under any adapter thread still waiting on it.
    if (!FAdapters) {
        FMutex.reset();
        return;
    }
    for (int i = 0; i < FAdapters->Count(); ++i) {
        TZNB_Adapter_Obj* adapter = FAdapters->Objects(i);
        if (!adapter) continue;
        // Disconnected here and once more by UnLoad_DLL; adapters are required to take that.
        try {
            if (adapter->ZNA_Disconnect) adapter->Call_Disconnect();
        } catch (const EAdapterError& e) {
            Log("Status  : " + e.Message());
        }
        if (!adapter->Loaded) continue;
        const int32_t rc = adapter->UnLoad_DLL();
        if (rc != 0)
            Log("Error : " + IntToStr(rc) + " Unloading DLL " + adapter->Name + " " + adapter->DLL_Name);
    }
    FAdapters.reset();
    FMutex.reset();
}

TNBConfig& Prepare_NBConfig(const std::string& exeFolder) {
    NBConfig = exeFolder.empty() ? std::make_unique<TNBConfig>() : std::make_unique<TNBConfig>(exeFolder);
    NBConfig->Get();
    NBConfig->SetAdapterLoadable("DuskMere", Productintegrationutils::FindDuskmere());
    return *NBConfig;
}
