// One loaded adapter library (TZNB_Adapter_Obj) and the board's list of adapters by name
// (TZNB_Adapter_List). Both belong to the board's thread: no member may be called from another thread.
#pragma once

#include "platform/DynLib.h"
#include "sdk/znb_adapter.h"
#include "support/Exception.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

// An exception that escaped an adapter's entry point, caught at the call site and re-raised as the
// board's own error with the adapter's name, the entry point and what the adapter's exception said.
class EAdapterError : public Exception {
public:
    using Exception::Exception;
    const char* ClassName() const noexcept override { return "EAdapterError"; }
};

// An adapter library: created unloaded, loaded by Load_DLL (also when entry points are missing), back to
// unloaded by UnLoad_DLL, and loadable again. Destroying a loaded object unloads it (disconnect, release).
class TZNB_Adapter_Obj {
public:
    TZNB_Adapter_Obj() = default;
    ~TZNB_Adapter_Obj();
    TZNB_Adapter_Obj(const TZNB_Adapter_Obj&) = delete;
    TZNB_Adapter_Obj& operator=(const TZNB_Adapter_Obj&) = delete;

    // Opens the library through PvLoadLib and looks up the seven entry points. Returns 0, the loader's
    // error code (nothing loaded), 43000 or 43001 (library loaded, entry points missing). Message holds
    // one CR LF-terminated line per step, or "Load Library Error Msg  : " + the loader's text.
    int32_t Load_DLL(const std::string& DLL_Name);

    // Disconnects (when the entry point exists) and releases the library, then frees every text kept for
    // the adapter. Returns 0, or the loader's error code when the release failed. Message says what
    // happened; a disconnect failure or exception does not stop the release.
    int32_t UnLoad_DLL();

    // Sets the seven entry points to null.
    void Clear_Functions();

    // A NUL-terminated copy of text for handing to the adapter; size receives its length + 1. The copy is
    // owned by this object and stays valid until the adapter is unloaded (or this object is destroyed).
    const char* Keep_Text(const std::string& text, int32_t& size);

    // Guarded calls of the entry points: a missing entry point gives ZNA_ERR_FUNCTION_MISSING without a
    // call; an exception escaping the adapter is raised as EAdapterError. The adapter's result otherwise.
    int32_t Call_Connect(const char* folder, int32_t folder_size, ZNA_Mutex mutex,
                         ZNA_Notice_Callback callback);
    int32_t Call_Disconnect();
    int32_t Call_Status(int32_t* state, char* info, int32_t* info_size);
    int32_t Call_Set_Config(intptr_t owner_window, const char* adapter_name, const char* folder,
                            int32_t folder_size, const char* config, int32_t config_size);
    int32_t Call_Acknowledge_Note(const char* adpt_id, int32_t adpt_id_size, const char* code,
                                  int32_t code_size);
    int32_t Call_Delete_Note(const char* adpt_id, int32_t adpt_id_size, const char* code, int32_t code_size);

    std::string Name;     // the adapter's configured name, e.g. "DuskMere"
    std::string DLL_Name; // the library name from the configuration, handed to the loader as it is
    bool Loaded = false;
    TLibHandle DLL_Handle = nullptr;
    int32_t Reserved_Int = 0;   // kept for the record layout; never read
    bool Reserved_Flag = false; // kept for the record layout; never read
    std::string Message;        // the last load or unload report, lines joined by CR LF

    // Null until found by Load_DLL; test before calling (or use the Call_ methods).
    ZNA_Get_Info_Fn ZNA_Get_Info = nullptr;
    ZNA_Set_Config_Fn ZNA_Set_Config = nullptr;
    ZNA_Connect_Fn ZNA_Connect = nullptr;
    ZNA_Disconnect_Fn ZNA_Disconnect = nullptr;
    ZNA_Status_Fn ZNA_Status = nullptr;
    ZNA_Acknowledge_Note_Fn ZNA_Acknowledge_Note = nullptr;
    ZNA_Delete_Note_Fn ZNA_Delete_Note = nullptr;

private:
    [[noreturn]] void RaiseAdapterError(const char* entry, const char* what) const;
    std::vector<std::unique_ptr<char[]>> FKeptTexts;
};

// The adapters by name, in the order they were added. Owns its adapter objects; names may repeat (callers
// look a name up with Get_Adapter before adding it).
class TZNB_Adapter_List {
public:
    // Appends name with a new adapter object carrying name and DLL_Name. Returns its index, or -1 when the
    // object could not be made (never throws).
    int32_t Add_Adapter(const std::string& Name, const std::string& DLL_Name);

    // The object of the first entry whose name equals Name ignoring letter case; nullptr when absent. The
    // object lives as long as the list.
    TZNB_Adapter_Obj* Get_Adapter(const std::string& Name) const;

    int32_t Count() const { return static_cast<int32_t>(FItems.size()); }
    const std::string& Strings(int32_t index) const { return FItems.at(static_cast<size_t>(index)).first; }
    TZNB_Adapter_Obj* Objects(int32_t index) const {
        return FItems.at(static_cast<size_t>(index)).second.get();
    }

private:
    std::vector<std::pair<std::string, std::unique_ptr<TZNB_Adapter_Obj>>> FItems;
};
