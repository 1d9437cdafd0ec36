// nbtool replay: hands message files to the board's notice callback exactly as an adapter would and prints
// what the board made of them.
#include "NbtoolCommand.h"

#include "adapters/ZNB_Cfg.h"
#include "core/TNoticeBoard.h"
#include "core/Znb_callback.h"
#include "core/Znb_data.h"
#include "core/Znb_storetext.h"
#include "support/StrUtils.h"
#include "views/FilterApply.h"

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace {

int Usage() {
    std::fprintf(
        stderr,
        "usage: nbtool replay [--results] [--counters] [--status] [--log FILE] [--filter-file FILE.nbf] "
        "[--filter EXPR] MESSAGE_FILE...\n");
    return 2;
}

int RunReplay(const std::vector<std::string>& args) {
    bool results = false, counters = false, status = false;
    std::string logFile, filterFile, filterText;
    std::vector<std::string> files;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--results")
            results = true;
        else if (a == "--counters")
            counters = true;
        else if (a == "--status")
            status = true;
        else if (a == "--log" && i + 1 < args.size())
            logFile = args[++i];
        else if (a == "--filter-file" && i + 1 < args.size())
            filterFile = args[++i];
        else if (a == "--filter" && i + 1 < args.size())
            filterText = args[++i];
        else if (a.size() > 1 && a[0] == '-')
            return Usage();
        else
            files.push_back(a);
    }
    if (files.empty()) return Usage();
    // The board treats a missing filter file as an empty filter; on the command line that is a typing
    // mistake that would silently show every row.
    if (!filterFile.empty() && !FileExists(filterFile)) {
        std::fprintf(stderr, "nbtool replay: cannot read '%s'\n", filterFile.c_str());
        return 1;
    }

    // The log goes where --log says; without it nothing is logged.
    NBConfig = std::make_unique<TNBConfig>(std::string("./"));
    NBConfig->LogFileName = logFile;
    TNoticeBoard board;
    SetNoticeBoard(&board);

    std::vector<std::pair<std::string, int32_t>> outcomes;
    int exitCode = 0;
    for (const std::string& file : files) {
        std::string bytes;
        if (!ReadWholeFile(file, bytes)) {
            std::fprintf(stderr, "nbtool replay: cannot read '%s'\n", file.c_str());
            exitCode = 1;
            continue;
        }
        // The callback reads up to the first NUL, as it would from an adapter's buffer.
        const char* text = bytes.c_str();
        outcomes.emplace_back(file, NoticeCallback(0, &text, 0));
    }

    // The filter applies to the store as the board left it, as choosing one in the window does.
    try {
        if (!filterFile.empty()) ApplyFilterFile(filterFile, board.cdsNoticeBd());
        if (!filterText.empty()) ApplyFilterText(filterText, board.cdsNoticeBd());
    } catch (const Exception& e) {
        std::fprintf(stderr, "nbtool replay: %s\n", e.Message().c_str());
        SetNoticeBoard(nullptr);
        NBConfig.reset();
        return 1;
    }

    std::string out;
    if (results)
        for (const auto& [file, result] : outcomes)
            out += file + '\t' + std::to_string(result) + '\n';
    out += StoreAsText(board.cdsNoticeBd());
    if (counters) {
        out += '\n';
        if (PVO_Node_Stats) out += CountersAsText(*PVO_Node_Stats);
    }
    if (status) out += board.StatusBarText() + '\n';
    std::fwrite(out.data(), 1, out.size(), stdout);

    SetNoticeBoard(nullptr);
    NBConfig.reset();
    return exitCode;
}

const TNbtoolCommandRegistrar
    Registrar({"replay",
               "  nbtool replay [--results] [--counters] [--status] [--log FILE] "
               "[--filter-file FILE.nbf] [--filter EXPR] MESSAGE_FILE...\n"
               "      Hands each file's bytes to the notice callback exactly as an adapter would\n"
               "      (one file = one message, in the order given), then prints to standard output:\n"
               "        --results      first, one line per file: name, tab, the callback's result\n"
               "                       (0, or 53244 when the message failed);\n"
               "        (always)       the store as tab-separated text: a header of the 18 field\n"
               "                       names, then one line per row in nb_internal_key order; \\\\,\n"
               "                       \\t, \\r, \\n escapes; dates yyyy-mm-dd hh:nn:ss[.zzz]; null \\N;\n"
               "        --counters     then a blank line and node<TAB>severity<TAB>count per counter;\n"
               "        --status       last, the status bar text.\n"
               "      --log FILE          the log file the board writes (none by default).\n"
               "      --filter-file F     apply the saved filter F (.nbf) after the messages;\n"
               "      --filter EXPR       apply a filter expression; only passing rows are printed\n"
               "                          and the status line shows the filtered count.",
               RunReplay});

} // namespace
