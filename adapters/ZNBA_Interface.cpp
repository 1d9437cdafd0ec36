#include "adapters/ZNBA_Interface.h"

#include "support/StrUtils.h"

#include <cstring>
#include <exception>

namespace {

const char* const kLineEnd = "\r\n"; // message lines end in CR LF on every platform

// One row of the look-up done by Load_DLL: the export's name, the report lines, the code when missing.
struct TEntryPointRow {
    const char* Export;
    const char* FoundLine;
    const char* MissingLine;
    int32_t MissingCode;
};

// "Could not Find Load Config" for the connect entry is the line operators know; it is relied on.
constexpr TEntryPointRow kEntryPoints[7] = {
    {"ZNA_Get_Info", "Adapter Get Info Function Found.", "Could not Find Get Info", ZNA_ERR_GET_INFO_MISSING},
    {"ZNA_Set_Config", "Adapter Set Config Function Found.", "Could not Find Set Config",
     ZNA_ERR_FUNCTION_MISSING},
    {"ZNA_Connect", "Adapter Connect Function Found.", "Could not Find Load Config",
     ZNA_ERR_FUNCTION_MISSING},
    {"ZNA_Disconnect", "Adapter Disconnect Function Found.", "Could not Find Disconnect Function",
     ZNA_ERR_FUNCTION_MISSING},
    {"ZNA_Status", "Adapter Status Function Found.", "Could not Find Status Function",
     ZNA_ERR_FUNCTION_MISSING},
    {"ZNA_Acknowledge_Note", "Adapter Acknowledge Note Function Found.",
     "Could not Find Acknowledge Note Function", ZNA_ERR_FUNCTION_MISSING},
    {"ZNA_Delete_Note", "Adapter Delete Note Function Found.", "Could not Find Delete Note Function",
     ZNA_ERR_FUNCTION_MISSING},
};

template <typename Fn> Fn As(void* p) {
    return reinterpret_cast<Fn>(p);
}

} // namespace

TZNB_Adapter_Obj::~TZNB_Adapter_Obj() {
    if (Loaded) UnLoad_DLL();
}

int32_t TZNB_Adapter_Obj::Load_DLL(const std::string& DLL_Name) {
    Message.clear();
    DLL_Handle = PvLoadLib(DLL_Name);
    if (!DLL_Handle) {
        Loaded = false;
        const int32_t code = GetLastError();
        Message = "Load Library Error Msg  : " + GetLastErrorText();
        return code;
    }
    Loaded = true;
    int32_t result = 0;
    Message = "Adapter Loaded from DLL : " + DLL_Name + kLineEnd;
    void* found[7];
    for (int i = 0; i < 7; ++i) {
        const TEntryPointRow& row = kEntryPoints[i];
        found[i] = GetProcAddress(DLL_Handle, row.Export);
        Message += std::string(found[i] ? row.FoundLine : row.MissingLine) + kLineEnd;
        if (!found[i]) result = row.MissingCode; // the last missing entry decides the code
    }
    ZNA_Get_Info = As<ZNA_Get_Info_Fn>(found[0]);
    ZNA_Set_Config = As<ZNA_Set_Config_Fn>(found[1]);
    ZNA_Connect = As<ZNA_Connect_Fn>(found[2]);
    ZNA_Disconnect = As<ZNA_Disconnect_Fn>(found[3]);
    ZNA_Status = As<ZNA_Status_Fn>(found[4]);
    ZNA_Acknowledge_Note = As<ZNA_Acknowledge_Note_Fn>(found[5]);
    ZNA_Delete_Note = As<ZNA_Delete_Note_Fn>(found[6]);
    return result;
}

int32_t TZNB_Adapter_Obj::UnLoad_DLL() {
    if (!Loaded) {
        Message = "DLL was not Loaded";
        return 0;
    }
    int32_t disconnect = 0;
    try {
        if (ZNA_Disconnect) disconnect = Call_Disconnect();
    } catch (const EAdapterError&) {
        disconnect = -1;
    }
    // Overwritten by the release below in every case; the release matters more than the disconnect.
    if (disconnect != 0) Message = "Error : Unlodad DLL Disconnect Error " + IntToStr(disconnect);
    int32_t result = 0;
    if (FreeLibrary(DLL_Handle)) {
        Message = "DLL Unloaded";
    } else {
        result = GetLastError();
        Message = "Error : Unlodad DLL " + GetLastErrorText();
    }
    Clear_Functions();
    Loaded = false;
    DLL_Handle = nullptr;
    FKeptTexts.clear(); // the library is gone, so nothing can still read these
    return result;
}

void TZNB_Adapter_Obj::Clear_Functions() {
    ZNA_Get_Info = nullptr;
    ZNA_Set_Config = nullptr;
    ZNA_Connect = nullptr;
    ZNA_Disconnect = nullptr;
    ZNA_Status = nullptr;
    ZNA_Acknowledge_Note = nullptr;
    ZNA_Delete_Note = nullptr;
}

const char* TZNB_Adapter_Obj::Keep_Text(const std::string& text, int32_t& size) {
    size = static_cast<int32_t>(text.size() + 1);
    auto buffer = std::make_unique<char[]>(text.size() + 1);
    std::memcpy(buffer.get(), text.c_str(), text.size() + 1);
    FKeptTexts.push_back(std::move(buffer));
    return FKeptTexts.back().get();
}

void TZNB_Adapter_Obj::RaiseAdapterError(const char* entry, const char* what) const {
    throw EAdapterError("Adapter : " + Name + " : " + entry + " raised an exception : " + what);
}

// Adapters are C libraries, but one written in C++ may still let an exception out; it stops here.
#define ZNA_GUARDED_CALL(entry, call)                                                                        \
    if (!entry) return ZNA_ERR_FUNCTION_MISSING;                                                             \
    try {                                                                                                    \
        return call;                                                                                         \
    } catch (const std::exception& e) {                                                                      \
        RaiseAdapterError(#entry, e.what());                                                                 \
    } catch (...) {                                                                                          \
        RaiseAdapterError(#entry, "unknown exception");                                                      \
    }

int32_t TZNB_Adapter_Obj::Call_Connect(const char* folder, int32_t folder_size, ZNA_Mutex mutex,
                                       ZNA_Notice_Callback callback){
    ZNA_GUARDED_CALL(ZNA_Connect, ZNA_Connect(folder, folder_size, mutex, callback))}

int32_t TZNB_Adapter_Obj::Call_Disconnect(){ZNA_GUARDED_CALL(ZNA_Disconnect, ZNA_Disconnect())}

int32_t TZNB_Adapter_Obj::Call_Status(int32_t* state, char* info, int32_t* info_size){
    ZNA_GUARDED_CALL(ZNA_Status, ZNA_Status(state, info, info_size))}

int32_t TZNB_Adapter_Obj::Call_Set_Config(intptr_t owner_window, const char* adapter_name, const char* folder,
                                          int32_t folder_size, const char* config, int32_t config_size){
    ZNA_GUARDED_CALL(ZNA_Set_Config,
                     ZNA_Set_Config(owner_window, adapter_name, folder, folder_size, config, config_size))}

int32_t TZNB_Adapter_Obj::Call_Acknowledge_Note(const char* adpt_id, int32_t adpt_id_size, const char* code,
                                                int32_t code_size){
    ZNA_GUARDED_CALL(ZNA_Acknowledge_Note, ZNA_Acknowledge_Note(adpt_id, adpt_id_size, code, code_size))}

int32_t TZNB_Adapter_Obj::Call_Delete_Note(const char* adpt_id, int32_t adpt_id_size, const char* code,
                                           int32_t code_size){
    ZNA_GUARDED_CALL(ZNA_Delete_Note, ZNA_Delete_Note(adpt_id, adpt_id_size, code, code_size))}

#undef ZNA_GUARDED_CALL

int32_t TZNB_Adapter_List::Add_Adapter(const std::string& Name, const std::string& DLL_Name) {
    try {
        FItems.emplace_back(Name, nullptr);
        const int32_t i = Count() - 1;
        FItems.back().second = std::make_unique<TZNB_Adapter_Obj>();
        TZNB_Adapter_Obj* adapter = FItems.back().second.get();
        adapter->Name = Name;
        adapter->DLL_Name = DLL_Name;
        return i;
    } catch (...) {
        return -1;
    }
}

TZNB_Adapter_Obj* TZNB_Adapter_List::Get_Adapter(const std::string& Name) const {
    for (const auto& item : FItems)
        if (SameText(item.first, Name)) return item.second.get();
    return nullptr;
}
