// nbtool's sub-commands. Each command lives in its own source file and registers itself with a static
// TNbtoolCommandRegistrar, so adding a command touches no other file.
#pragma once

#include <string>
#include <vector>

struct TNbtoolCommand {
    std::string Name;  // e.g. "replay"
    std::string Usage; // one or more lines for --help, starting with "nbtool <name> ..."
    int (*Run)(const std::vector<std::string>& args); // args after the command name; returns the exit code
};

// All registered commands, sorted by name.
std::vector<TNbtoolCommand>& NbtoolCommands();

struct TNbtoolCommandRegistrar {
    explicit TNbtoolCommandRegistrar(TNbtoolCommand command) {
        NbtoolCommands().push_back(std::move(command));
    }
};
