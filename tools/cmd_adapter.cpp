// nbtool adapter: loads an adapter library exactly as the board does and shows what the board would see:
// the load report, the adapter's status and, with --seconds, the notices it delivers.
#include "NbtoolCommand.h"

#include "adapters/TAdapterStartup.h"
#include "adapters/ZNBA_Interface.h"
#include "adapters/ZNB_Cfg.h"
#include "core/TNoticeBoard.h"
#include "core/Znb_callback.h"
#include "core/Znb_storetext.h"
#include "platform/NamedMutex.h"
#include "platform/Process.h"
#include "support/StrUtils.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

int Usage() {
    std::fprintf(stderr, "usage: nbtool adapter LIBRARY [--seconds N]\n");
    return 2;
}

void PrintStatus(TZNB_Adapter_Obj& adapter) {
    if (!adapter.ZNA_Status) {
        std::printf("Status: no ZNA_Status entry point\n");
        return;
    }
    char info[4096] = {};
    int32_t size = sizeof(info);
    int32_t state = -1;
    try {
        const int32_t rc = adapter.Call_Status(&state, info, &size);
        std::printf("Status: result %d, state %d, info \"%s\"\n", rc, state, info);
    } catch (const EAdapterError& e) {
        std::printf("Status: %s\n", e.Message().c_str());
    }
}

void PrintUnload(TZNB_Adapter_Obj& adapter) {
    const int32_t rc = adapter.UnLoad_DLL();
    std::printf("UnLoad_DLL: %d %s\n", rc, adapter.Message.c_str());
}

// Connects the adapter to a board of its own in a temporary folder, applies what it sends for the given
// time, disconnects and prints the store.
int RunConnected(TZNB_Adapter_Obj& adapter, int seconds) {
    namespace fs = std::filesystem;
    const fs::path folder = fs::temp_directory_path() / ("nbtool_adapter_" + std::to_string(::getpid()));
    fs::create_directories(folder);
    NBConfig = std::make_unique<TNBConfig>(folder.string() + "/");
    NBConfig->NBFolder = folder.string() + "/";
    NBConfig->LogFileName = NBConfig->NBFolder + "znb.log";
    int exitCode = 0;
    {
        TNoticeBoard board;
        SetNoticeBoard(&board);
        int32_t error = 0;
        std::unique_ptr<TNamedMutex> mutex = TNamedMutex::Create(NoticeBoardMutexName, true, error);
        if (mutex) mutex->Release();
        int32_t folderSize = 0;
        const char* text = adapter.Keep_Text(NBConfig->NBFolder, folderSize);
        int32_t rc = -1;
        try {
            rc = adapter.Call_Connect(text, folderSize, mutex ? mutex->Handle() : nullptr, &NoticeCallback);
        } catch (const EAdapterError& e) {
            std::printf("Connect: %s\n", e.Message().c_str());
        }
        std::printf("Connect: %d\n", rc);
        if (rc == 0) {
            const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
            int32_t applied = 0;
            while (std::chrono::steady_clock::now() < until) {
                applied += ProcessPendingNotices();
                SleepMs(50);
            }
            PrintStatus(adapter);
            try {
                std::printf("Disconnect: %d\n", adapter.Call_Disconnect());
            } catch (const EAdapterError& e) {
                std::printf("Disconnect: %s\n", e.Message().c_str());
            }
            applied += ProcessPendingNotices();
            std::printf("Messages applied: %d\n", applied);
        } else {
            exitCode = 1;
        }
        PrintUnload(adapter);
        const std::string store = StoreAsText(board.cdsNoticeBd());
        std::fwrite(store.data(), 1, store.size(), stdout);
        SetNoticeBoard(nullptr);
    }
    NBConfig.reset();
    std::error_code ignored;
    fs::remove_all(folder, ignored);
    return exitCode;
}

int RunAdapter(const std::vector<std::string>& args) {
    std::string library;
    int seconds = -1;
    for (size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--seconds" && i + 1 < args.size()) {
            if (!TryStrToInt(args[++i], seconds) || seconds < 0) return Usage();
        } else if (args[i].size() > 1 && args[i][0] == '-') {
            return Usage();
        } else if (library.empty()) {
            library = args[i];
        } else {
            return Usage();
        }
    }
    if (library.empty()) return Usage();

    TZNB_Adapter_Obj adapter;
    adapter.Name = library;
    adapter.DLL_Name = library;
    const int32_t loaded = adapter.Load_DLL(library);
    // Message lines end in CR LF; a terminal wants LF.
    std::printf("Load_DLL: %d\n%s\n", loaded, TrimRight(ReplaceAll(adapter.Message, "\r\n", "\n")).c_str());
    if (!adapter.Loaded) return 1;
    PrintStatus(adapter);
    if (seconds >= 0) return RunConnected(adapter, seconds);
    PrintUnload(adapter);
    return loaded == 0 ? 0 : 1;
}

const TNbtoolCommandRegistrar
    Registrar({"adapter",
               "  nbtool adapter LIBRARY [--seconds N]\n"
               "      Loads an adapter library as the board does, prints the load\n"
               "      report and the adapter's status; with --seconds N connects it\n"
               "      to a board in a temporary folder, applies what it sends for N\n"
               "      seconds, disconnects, unloads and prints the store.",
               RunAdapter});

} // namespace
