// nbtool: the notice board's engine on the command line, for operators, adapter authors and scripts.
#include "NbtoolCommand.h"

#include <algorithm>
#include <cstdio>
#include <string>

std::vector<TNbtoolCommand>& NbtoolCommands() {
    static std::vector<TNbtoolCommand> commands;
    return commands;
}

namespace {

void PrintHelp(std::FILE* out) {
    std::fprintf(out, "nbtool - the notice board engine on the command line\n\nUsage:\n");
    auto commands = NbtoolCommands();
    std::sort(commands.begin(), commands.end(), [](auto& a, auto& b) { return a.Name < b.Name; });
    for (const auto& c : commands)
        std::fprintf(out, "%s\n", c.Usage.c_str());
    std::fprintf(out, "  nbtool --help\n      Shows this text.\n");
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2 || std::string(argv[1]) == "--help" || std::string(argv[1]) == "-h") {
        PrintHelp(argc < 2 ? stderr : stdout);
        return argc < 2 ? 2 : 0;
    }
    const std::string name = argv[1];
    for (const auto& c : NbtoolCommands()) {
        if (c.Name == name) return c.Run(std::vector<std::string>(argv + 2, argv + argc));
    }
    std::fprintf(stderr, "nbtool: unknown command '%s' (see nbtool --help)\n", name.c_str());
    return 2;
}
