// What every fuzz target shares. Each target is one source defining LLVMFuzzerTestOneInput; it is built
// twice: with clang and libFuzzer (build-fuzz/, `make fuzz`), and with the normal compiler beside
// ReplayMain.cpp, which feeds it the saved corpus as an ordinary test.
//
// A target reports a fault by aborting (FUZZ_CHECK), never by an exception: libFuzzer then keeps the input
// and the replay test fails. Everything here is for one thread, the fuzzer's.
#pragma once

#include "support/NBPrompt.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* Data, size_t Size);

// Aborts with the target's own message when a property of the reader does not hold.
#define FUZZ_CHECK(cond, what) ((cond) ? void(0) : FuzzFail(__FILE__, __LINE__, #cond, what))
[[noreturn]] void FuzzFail(const char* File, int Line, const char* Cond, const std::string& What);

inline std::string_view InputText(const uint8_t* Data, size_t Size) {
    return {reinterpret_cast<const char*>(Data), Size};
}

// A folder of its own under the system's temporary folder for the life of the process (removed at exit),
// for the targets that read files. Path() ends in a separator.
class TFuzzFolder {
public:
    TFuzzFolder();
    ~TFuzzFolder();
    TFuzzFolder(const TFuzzFolder&) = delete;
    TFuzzFolder& operator=(const TFuzzFolder&) = delete;
    const std::string& Path() const { return FPath; }
    std::string operator/(const std::string& Name) const { return FPath + Name; }

private:
    std::string FPath;
};

// Writes Bytes as the whole content of FileName; aborts when the file cannot be written (a full or
// missing temporary folder must not pass for a clean run).
void WriteFuzzFile(const std::string& FileName, std::string_view Bytes);

// A prompt that answers No and shows nothing, so a reader that wants to tell the user something neither
// blocks nor floods the fuzzer's output. Installed for the life of the object.
class TSilentPrompt : public INBPrompt {
public:
    TSilentPrompt();
    ~TSilentPrompt() override;
    void ShowMessage(const std::string&, TMsgDlgType) override { ++Messages; }
    bool Confirm(const std::string&) override { return false; }
    bool DisplayDialog(const std::string&, bool&) override { return false; }
    void ShowConfigDialog() override {}
    int Messages = 0;

private:
    INBPrompt* FPrevious;
};
