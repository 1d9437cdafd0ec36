// nbtool filter-string / filter-check: a filter file's expression, and whether an expression compiles.
#include "NbtoolCommand.h"

#include "core/FilterExpression.h"
#include "support/StrUtils.h"
#include "views/Ufilter.h"

#include <cstdio>

namespace {

int RunFilterString(const std::vector<std::string>& args) {
    if (args.size() != 1) {
        std::fprintf(stderr, "usage: nbtool filter-string FILE.nbf\n");
        return 2;
    }
    if (!FileExists(args[0])) {
        std::fprintf(stderr, "nbtool: cannot read '%s'\n", args[0].c_str());
        return 1;
    }
    TFilter filter;
    filter.filterFromFile(args[0]);
    std::printf("%s\n", filter.GetFilterString().c_str());
    return 0;
}

int RunFilterCheck(const std::vector<std::string>& args) {
    if (args.size() != 1) {
        std::fprintf(stderr, "usage: nbtool filter-check EXPR\n");
        return 2;
    }
    try {
        CompileFilterExpression(args[0]);
    } catch (const EFilterExpressionError& e) {
        std::printf("%s\n", e.Message().c_str());
        return 1;
    }
    std::printf("OK\n");
    return 0;
}

TNbtoolCommandRegistrar RegisterFilterString({"filter-string",
                                              "  nbtool filter-string FILE.nbf\n"
                                              "      Prints the filter expression of a filter file.",
                                              RunFilterString});
TNbtoolCommandRegistrar
    RegisterFilterCheck({"filter-check",
                         "  nbtool filter-check EXPR\n"
                         "      Compiles a filter expression: prints OK (exit 0) or what is"
                         " wrong and where (exit 1).",
                         RunFilterCheck});

} // namespace
