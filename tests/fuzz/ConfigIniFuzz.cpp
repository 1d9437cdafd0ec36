// A "zpnbd.ini" with any content, read as the package reads it at start-up (TNBConfig(exeFolder).Get() on a
// folder of its own). The settings must come out usable (a folder with its separator, the log beside it,
// the built-in adapters first, no adapter twice), and what the board saves must read back as the same
// settings, to the letter (values with blanks or quotes around them included), as the package saves the
// file at every start.
//
// The notice board folder the file names is created by Get; one that did not exist before is removed
// again, so that the fuzzer leaves no folders behind (relative names land in the fuzz folder).
#include "FuzzSupport.h"

#include "adapters/ZNB_Cfg.h"
#include "support/Exception.h"
#include "support/IniFiles.h"
#include "support/StrUtils.h"

#include <filesystem>
#include <string>
#include <unistd.h>

namespace {

struct TConfigFixture {
    TConfigFixture() {
        if (::chdir(Folder.Path().c_str()) != 0) FuzzFail(__FILE__, __LINE__, "chdir", Folder.Path());
    }
    TFuzzFolder Folder;
    TSilentPrompt Prompt;
};

// The folder Get will settle on, read the way Get reads it.
std::string FolderNamed(const std::string& IniFile, const std::string& ExeFolder) {
    const TIniFile ini(IniFile);
    std::string folder = ini.ReadString("Noticeboard", "NBFolder", ExeFolder + "Noticeboard");
    if (Trim(folder).empty()) folder = ExeFolder + "Noticeboard";
    return IncludeTrailingPathDelimiter(folder);
}

void CheckSettings(const TNBConfig& Cfg) {
    FUZZ_CHECK(!Cfg.NBFolder.empty() && Cfg.NBFolder.back() == '/', "folder without its separator");
    FUZZ_CHECK(Cfg.LogFileName == Cfg.NBFolder + "znb.log", "log not in the folder");
    FUZZ_CHECK(Cfg.AdapterCount() >= 2 && Cfg.AdapterName(0) == "DuskMere" && Cfg.AdapterName(1) == "R/Vista",
               "built-in adapters not first");
    for (int i = 0; i < Cfg.AdapterCount(); ++i) {
        FUZZ_CHECK(!Cfg.AdapterName(i).empty(), "an adapter without a name");
        FUZZ_CHECK(Cfg.FindAdapterCfg(Cfg.AdapterName(i)) == &Cfg.AdapterCfg(i),
                   "adapter " + Cfg.AdapterName(i) + " listed twice");
    }
}

void CheckSame(const TNBConfig& A, const TNBConfig& B) {
    FUZZ_CHECK(A.WhenToConnect == B.WhenToConnect && A.ConnectDelay == B.ConnectDelay, "numbers changed");
    FUZZ_CHECK(A.NBShutdownPrompt == B.NBShutdownPrompt && A.AlwaysPrompt == B.AlwaysPrompt, "flags changed");
    for (const auto member : {&TNBConfig::NBFolder, &TNBConfig::DefaultFilter, &TNBConfig::DefaultDisplay,
                              &TNBConfig::PreviousFilter, &TNBConfig::PreviousDisplay})
        FUZZ_CHECK(A.*member == B.*member, "'" + A.*member + "' read back as '" + B.*member + "'");
    FUZZ_CHECK(A.AdapterCount() == B.AdapterCount(), "adapters lost or gained");
    for (int i = 0; i < A.AdapterCount(); ++i) {
        const TZNB_Adapter_Cfg& a = A.AdapterCfg(i);
        const TZNB_Adapter_Cfg& b = B.AdapterCfg(i);
        FUZZ_CHECK(a.Name == b.Name, "adapter '" + a.Name + "' read back as '" + b.Name + "'");
        FUZZ_CHECK(a.Internal == b.Internal && a.Configured == b.Configured && a.Loadable == b.Loadable &&
                       a.Enabled == b.Enabled,
                   "flags of adapter " + a.Name + " changed");
        FUZZ_CHECK(a.DLL_Name == b.DLL_Name, "library of adapter " + a.Name);
    }
}

// Removes the folder Get created, unless it was there before.
void RemoveCreated(const std::string& Folder, bool Existed) {
    if (Existed) return;
    std::error_code ec;
    std::filesystem::remove(ExcludeTrailingPathDelimiter(Folder), ec);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* Data, size_t Size) {
    static TConfigFixture fixture;
    const std::string& exeFolder = fixture.Folder.Path();
    const std::string iniFile = exeFolder + "zpnbd.ini";
    WriteFuzzFile(iniFile, InputText(Data, Size));

    const std::string folder = FolderNamed(iniFile, exeFolder);
    const bool existed = DirectoryExists(folder);
    TNBConfig cfg(exeFolder);
    cfg.Get();
    FUZZ_CHECK(cfg.NBFolder == folder, "folder '" + cfg.NBFolder + "', not '" + folder + "'");
    CheckSettings(cfg);

    try {
        cfg.Save();
    } catch (const EInOutError&) {
        RemoveCreated(folder, existed);
        FUZZ_CHECK(false, "the settings could not be saved");
    }
    TNBConfig again(exeFolder);
    again.Get();
    CheckSettings(again);
    CheckSame(cfg, again);
    RemoveCreated(folder, existed);
    return 0;
}
