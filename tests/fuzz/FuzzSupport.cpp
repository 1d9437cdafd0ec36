#include "FuzzSupport.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

void FuzzFail(const char* File, int Line, const char* Cond, const std::string& What) {
    std::fprintf(stderr, "%s:%d: check failed: %s\n  %s\n", File, Line, Cond, What.c_str());
    std::fflush(stderr);
    std::abort();
}

TFuzzFolder::TFuzzFolder() {
    std::string tmpl = (std::filesystem::temp_directory_path() / "nbfuzz.XXXXXX").string();
    if (!::mkdtemp(tmpl.data())) FuzzFail(__FILE__, __LINE__, "mkdtemp", "no temporary folder");
    FPath = tmpl + "/";
}

TFuzzFolder::~TFuzzFolder() {
    std::error_code ec;
    std::filesystem::remove_all(FPath, ec);
}

void WriteFuzzFile(const std::string& FileName, std::string_view Bytes) {
    std::ofstream out(FileName, std::ios::binary | std::ios::trunc);
    out.write(Bytes.data(), static_cast<std::streamsize>(Bytes.size()));
    out.close();
    if (!out) FuzzFail(__FILE__, __LINE__, "write", "cannot write " + FileName);
}

TSilentPrompt::TSilentPrompt() : FPrevious(SetNBPrompt(this)) {}

TSilentPrompt::~TSilentPrompt() {
    SetNBPrompt(FPrevious);
}
