// nbtool xml-echo: shows how the board's XML library reads a file, by writing the tree it built back out
// with the library's own writer. Adapter authors use it to check a message before sending it.
#include "NbtoolCommand.h"

#include "support/StrUtils.h"
#include "xml/djlpXML.h"

#include <cstdio>
#include <string>

namespace {

int RunXmlEcho(const std::vector<std::string>& args) {
    if (args.size() != 1) {
        std::fprintf(stderr, "usage: nbtool xml-echo FILE\n");
        return 2;
    }
    std::string bytes;
    const TFileRead read = ReadFileBytes(args[0], bytes);
    if (read != TFileRead::Read) {
        std::fprintf(stderr, "nbtool xml-echo: cannot %s '%s'\n",
                     read == TFileRead::CannotOpen ? "open" : "read", args[0].c_str());
        return 2;
    }
    std::string out;
    try {
        TXMLNode node(bytes);
        node.WriteToStream(out);
    } catch (const Exception& e) {
        // The message may hold any byte the reader found, a zero byte included: written as it is.
        const std::string line = std::string(e.ClassName()) + ": " + e.Message() + "\n";
        std::fwrite(line.data(), 1, line.size(), stderr);
        return 1;
    } catch (const std::exception& e) { // out of memory on a huge file: no tree, and said so
        std::fprintf(stderr, "nbtool xml-echo: %s\n", e.what());
        return 1;
    }
    out += '\n';
    std::fwrite(out.data(), 1, out.size(), stdout);
    return 0;
}

const TNbtoolCommandRegistrar Registrar({
    "xml-echo",
    "  nbtool xml-echo FILE\n"
    "      Parses FILE with the board's XML reader and writes the tree back with its writer (one line:\n"
    "      no indentation, values and text percent-escaped). A parse error prints its class and message\n"
    "      on stderr and exits 1; an unreadable FILE exits 2.",
    RunXmlEcho,
});

} // namespace
