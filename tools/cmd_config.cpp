// nbtool config: the settings the board would use, read from zpnbd.ini exactly as the board reads it.
#include "NbtoolCommand.h"

#include "adapters/ZNB_Cfg.h"
#include "platform/Process.h"
#include "support/StrUtils.h"

#include <cstdio>
#include <filesystem>
#include <memory>

namespace {

void Line(const std::string& key, const std::string& value) {
    std::printf("%s=%s\n", key.c_str(), value.c_str());
}
void Line(const std::string& key, int32_t value) {
    Line(key, IntToStr(value));
}
void Flag(const std::string& key, bool value) {
    Line(key, value ? "1" : "0");
}

void Print(const TNBConfig& cfg) {
    std::printf("# read from %s\n", cfg.GetCfgFileName().c_str());
    std::printf("[Noticeboard]\n");
    Line("WhenToConnect", cfg.WhenToConnect);
    Line("ConnectDelay", cfg.ConnectDelay);
    Line("NBFolder", cfg.NBFolder);
    Line("DefaultFilter", cfg.DefaultFilter);
    Line("DefaultDisplay", cfg.DefaultDisplay);
    Line("PreviousFilter", cfg.PreviousFilter);
    Line("PreviousDisplay", cfg.PreviousDisplay);
    Flag("NBShutdownPrompt", cfg.NBShutdownPrompt);
    Line("LogFileName", cfg.LogFileName);
    std::printf("[AdapterConfig]\n");
    Flag("All_Adapters", cfg.All_Adapters);
    Flag("AlwaysPrompt", cfg.AlwaysPrompt);
    std::printf("[Adapters]\n");
    Line("Count", cfg.AdapterCount());
    for (int i = 0; i < cfg.AdapterCount(); ++i)
        Line("Adapter_" + IntToStr(i), cfg.AdapterName(i));
    for (int i = 0; i < cfg.AdapterCount(); ++i) {
        const TZNB_Adapter_Cfg& a = cfg.AdapterCfg(i);
        std::printf("[Adapter_%s]\n", a.Name.c_str());
        Flag("Internal", a.Internal);
        Line("DLL_Name", a.DLL_Name);
        Flag("Configured", a.Configured);
        Flag("Loadable", a.Loadable);
        Flag("Enabled", a.Enabled);
        // What the board decides from the record and All_Adapters together.
        Flag("EffectiveLoadable", cfg.IsAdapterLoadable(a.Name));
    }
}

int RunConfig(const std::vector<std::string>& args) {
    std::string folder;
    if (args.size() == 2 && args[0] == "--ini") {
        std::error_code ec;
        const std::string file = std::filesystem::absolute(args[1], ec).string();
        if (ec || !FileExists(file)) {
            std::fprintf(stderr, "nbtool: cannot read '%s'\n", args[1].c_str());
            return 1;
        }
        if (ExtractFileName(file) != "zpnbd.ini") {
            std::fprintf(stderr, "nbtool: the board reads a file named zpnbd.ini, not '%s'\n",
                         ExtractFileName(file).c_str());
            return 2;
        }
        folder = ExtractFilePath(file);
    } else if (args.empty()) {
        folder = DataFolder();
    } else {
        std::fprintf(stderr, "usage: nbtool config [--ini FILE]\n");
        return 2;
    }
    // Reading creates the notice board folder when missing, as the board does, and nothing else.
    TNBConfig cfg(folder);
    cfg.Get();
    Print(cfg);
    return 0;
}

TNbtoolCommandRegistrar RegisterConfig({"config",
                                        "  nbtool config [--ini FILE]\n"
                                        "      Prints the settings the board reads from FILE (a zpnbd.ini),"
                                        " or from the\n"
                                        "      zpnbd.ini beside nbtool: one key=value per line, by section.",
                                        RunConfig});

} // namespace
