#include "adapters/ZNB_Cfg.h"

#include "adapters/ZS_NameValue.h"
#include "platform/Process.h"
#include "support/IniFiles.h"
#include "support/NBPrompt.h"
#include "support/StrUtils.h"

#include <filesystem>
#include <map>
#include <system_error>

std::unique_ptr<TNBConfig> NBConfig;

std::string NBLogFileName() {
    return NBConfig ? NBConfig->LogFileName : std::string();
}

namespace {

// The built-in adapters in list order, with their default records.
const struct {
    const char* Name;
    const char* Defaults;
} BuiltInAdapters[] = {
    {"DuskMere", "internal=false;DLL_Name=PvDuskmereAdapter;Configured=false;Enabled=false;Loadable=false;"},
    {"R/Vista", "internal=false;DLL_Name=ZNBA_RV;Configured=false;Enabled=false;Loadable=false;"},
};

const char* const SecNoticeboard = "Noticeboard";
const char* const SecAdapterConfig = "AdapterConfig";
const char* const SecAdapters = "Adapters";

// Creates Folder (the last level only). True when it exists afterwards.
bool CreateFolder(const std::string& Folder) {
    std::error_code ec;
    const std::string path = ExcludeTrailingPathDelimiter(Folder);
    std::filesystem::create_directory(path, ec);
    return !ec && DirectoryExists(path);
}

// Whether "Adapter_" + Name can be a section of its own. A section name ends at its first "]" and loses
// its trailing blanks, so "R/Vista]" or "R/Vista " (quoted) would be saved under a section that reads back
// as R/Vista's, and change that adapter's flags at the next start. Such a name (like an empty one) is a
// slip of the hand and is left out of the list.
bool CanNameSection(const std::string& Name) {
    return !Name.empty() && Name.find(']') == std::string::npos && Name.back() != ' ' && Name.back() != '\t';
}

// The usable names of keys Adapter_0 .. Adapter_<Count-1> of section Adapters, in number order.
// Only the keys present are visited, so a garbage Count such as 2000000000 costs nothing.
std::vector<std::string> ListedAdapters(const TIniFile& Ini) {
    const int32_t count = Ini.ReadInteger(SecAdapters, "Count", 0);
    std::map<int32_t, std::string> byNumber;
    for (const std::string& key : Ini.ReadSection(SecAdapters)) {
        if (key.size() <= 8 || !StartsText("Adapter_", key)) continue;
        const std::string digits = key.substr(8);
        int32_t i = 0;
        // Only the spelling the board writes, IntToStr(i), names key i ("Adapter_07" does not).
        if (!TryStrToInt(digits, i) || i < 0 || i >= count || IntToStr(i) != digits) continue;
        std::string name = Ini.ReadString(SecAdapters, key, "");
        if (CanNameSection(name)) byNumber.emplace(i, std::move(name));
    }
    std::vector<std::string> names;
    for (auto& entry : byNumber)
        names.push_back(std::move(entry.second));
    return names;
}

} // namespace

// ---- TZNB_Adapter_Cfg

int32_t TZNB_Adapter_Cfg::Read_Cfg_String(const std::string& Text) {
    try {
        TName_Value_List list;
        list.Decode_String(Text);
        Internal = list.Look_Up_Boolean("Internal");
        DLL_Name = list.Look_Up_Value("DLL_Name");
        Configured = list.Look_Up_Boolean("Configured");
        Enabled = list.Look_Up_Boolean("Enabled");
        Loadable = list.Look_Up_Boolean("Loadable");
        return 0;
    } catch (...) {
        return 44000;
    }
}

int32_t TZNB_Adapter_Cfg::Load_Ini_File(TIniFile& Ini) {
    try {
        const std::string section = "Adapter_" + Name;
        Internal = Ini.ReadBool(section, "Internal", false);
        DLL_Name = Ini.ReadString(section, "DLL_Name", "");
        Configured = Ini.ReadBool(section, "Configured", false);
        // A missing key means loadable here, although the built-in record says not loadable; older
        // files without the key rely on this.
        Loadable = Ini.ReadBool(section, "Loadable", true);
        Enabled = Ini.ReadBool(section, "Enabled", false);
        return 0;
    } catch (...) {
        return 3;
    }
}

int32_t TZNB_Adapter_Cfg::Save_Ini_File(TIniFile& Ini) {
    try {
        const std::string section = "Adapter_" + Name;
        Ini.WriteBool(section, "Internal", Internal);
        Ini.WriteString(section, "DLL_Name", DLL_Name);
        Ini.WriteBool(section, "Configured", Configured);
        Ini.WriteBool(section, "Loadable", Loadable);
        Ini.WriteBool(section, "Enabled", Enabled);
        return 0;
    } catch (...) {
        return 3;
    }
}

// ---- TNBConfig

TNBConfig::TNBConfig() : TNBConfig(DataFolder()) {}

TNBConfig::TNBConfig(std::string exeFolder) : FExeFolder(IncludeTrailingPathDelimiter(exeFolder)) {
    for (const auto& builtIn : BuiltInAdapters)
        AddAdapter(builtIn.Name).Read_Cfg_String(builtIn.Defaults);
}

TNBConfig::~TNBConfig() = default;

TZNB_Adapter_Cfg& TNBConfig::AddAdapter(const std::string& Name) {
    FAdapters.push_back(std::make_unique<TZNB_Adapter_Cfg>(Name));
    return *FAdapters.back();
}

const std::string& TNBConfig::AdapterName(int Index) const {
    return AdapterCfg(Index).Name;
}

TZNB_Adapter_Cfg& TNBConfig::AdapterCfg(int Index) const {
    return *FAdapters.at(static_cast<size_t>(Index));
}

TZNB_Adapter_Cfg* TNBConfig::FindAdapterCfg(const std::string& Name) const {
    for (const auto& a : FAdapters)
        if (SameText(a->Name, Name)) return a.get();
    return nullptr;
}

std::string TNBConfig::GetCfgFileName() const {
    return FExeFolder + "zpnbd.ini";
}

void TNBConfig::Get() {
    const std::string defaultFolder = FExeFolder + "Noticeboard";
    {
        TIniFile ini(GetCfgFileName());
        WhenToConnect = ini.ReadInteger(SecNoticeboard, "WhenToConnect", 0);
        ConnectDelay = ini.ReadInteger(SecNoticeboard, "ConnectDelay", 15);
        NBFolder = ini.ReadString(SecNoticeboard, "NBFolder", defaultFolder);
        // An empty value would make the file system root the board's folder; take the default instead.
        if (Trim(NBFolder).empty()) NBFolder = defaultFolder;
        DefaultFilter = ini.ReadString(SecNoticeboard, "DefaultFilter", "");
        DefaultDisplay = ini.ReadString(SecNoticeboard, "DefaultDisplay", "");
        PreviousFilter = ini.ReadString(SecNoticeboard, "PreviousFilter", "");
        PreviousDisplay = ini.ReadString(SecNoticeboard, "PreviousDisplay", "");
        NBShutdownPrompt = ini.ReadBool(SecNoticeboard, "NBShutdownPrompt", true);
        All_Adapters = ini.ReadBool(SecAdapterConfig, "All_Adapters", false);
        AlwaysPrompt = ini.ReadBool(SecAdapterConfig, "AlwaysPrompt", true);
        Notifications.Load(ini);

        for (const std::string& name : ListedAdapters(ini)) {
            TZNB_Adapter_Cfg* cfg = FindAdapterCfg(name);
            if (!cfg) cfg = &AddAdapter(name);
            cfg->Load_Ini_File(ini); // a failing section keeps what the record had
        }
    }

    NBFolder = IncludeTrailingPathDelimiter(NBFolder);
    if (!DirectoryExists(NBFolder) && !CreateFolder(NBFolder))
        NBPrompt().ShowMessage("Failed to create a Noticeboard folder: \"" + NBFolder + "\"",
                               TMsgDlgType::mtError);
    LogFileName = NBFolder + "znb.log";
}

void TNBConfig::Save() {
    TIniFile ini(GetCfgFileName());
    ini.WriteInteger(SecNoticeboard, "WhenToConnect", WhenToConnect);
    ini.WriteInteger(SecNoticeboard, "ConnectDelay", ConnectDelay);
    ini.WriteString(SecNoticeboard, "NBFolder", NBFolder);
    ini.WriteString(SecNoticeboard, "DefaultFilter", DefaultFilter);
    ini.WriteString(SecNoticeboard, "DefaultDisplay", DefaultDisplay);
    ini.WriteString(SecNoticeboard, "PreviousFilter", PreviousFilter);
    ini.WriteString(SecNoticeboard, "PreviousDisplay", PreviousDisplay);
    ini.WriteBool(SecNoticeboard, "NBShutdownPrompt", NBShutdownPrompt);
    // All_Adapters is a switch for the administrator's hand only; it is never written back.
    ini.WriteBool(SecAdapterConfig, "AlwaysPrompt", AlwaysPrompt);
    Notifications.Save(ini);

    ini.EraseSection(SecAdapters);
    ini.WriteInteger(SecAdapters, "Count", AdapterCount());
    for (int i = 0; i < AdapterCount(); ++i) {
        ini.WriteString(SecAdapters, "Adapter_" + IntToStr(i), AdapterName(i));
        AdapterCfg(i).Save_Ini_File(ini);
    }
    ini.UpdateFile();
}

void TNBConfig::SaveMRU() {
    TIniFile ini(GetCfgFileName());
    ini.WriteString(SecNoticeboard, "PreviousFilter", PreviousFilter);
    ini.WriteString(SecNoticeboard, "PreviousDisplay", PreviousDisplay);
    ini.UpdateFile();
}

bool TNBConfig::IsAdapterLoadable(const std::string& Name) const {
    if (All_Adapters) return true;
    const TZNB_Adapter_Cfg* cfg = FindAdapterCfg(Name);
    return cfg && cfg->Loadable;
}

void TNBConfig::SetAdapterLoadable(const std::string& Name, bool Value) {
    if (TZNB_Adapter_Cfg* cfg = FindAdapterCfg(Name)) cfg->Loadable = Value;
}

bool TNBConfig::IsAdapterEnabled(const std::string& Name) const {
    const TZNB_Adapter_Cfg* cfg = FindAdapterCfg(Name);
    return cfg && cfg->Enabled;
}

void TNBConfig::SetAdapterEnabled(const std::string& Name, bool Value) {
    if (TZNB_Adapter_Cfg* cfg = FindAdapterCfg(Name)) cfg->Enabled = Value;
}

bool TNBConfig::IsAdapterConfigured(const std::string& Name) const {
    const TZNB_Adapter_Cfg* cfg = FindAdapterCfg(Name);
    return cfg && cfg->Configured;
}

void TNBConfig::SetAdapterConfigured(const std::string& Name, bool Value) {
    if (TZNB_Adapter_Cfg* cfg = FindAdapterCfg(Name)) cfg->Configured = Value;
}

bool TNBConfig::ConfigPrompt() {
    if (!AlwaysPrompt) return true;
    const bool rvista = IsAdapterLoadable("R/Vista") && !IsAdapterConfigured("R/Vista");
    const bool duskmere = IsAdapterLoadable("DuskMere") && !IsAdapterConfigured("DuskMere");
    std::string question;
    if (rvista && duskmere)
        question = "Duskmere and R/Vista are installed but not configured - Do you wish to configure them?";
    else if (rvista)
        question = "R/Vista is installed but not configured - Do you wish to configure it?";
    else if (duskmere)
        question = "Duskmere is installed but not configured - Do you wish to configure?";
    if (question.empty()) return true;

    bool dontShowAgain = false;
    const bool yes = NBPrompt().DisplayDialog(question, dontShowAgain);
    // Yes opens the configuration dialog (whose OK saves the settings) before the check box is applied;
    // the box's answer reaches the file with the next Save, as it always has.
    if (yes) NBPrompt().ShowConfigDialog();
    AlwaysPrompt = !dontShowAgain;
    return true;
}
