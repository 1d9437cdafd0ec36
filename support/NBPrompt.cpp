#include "support/NBPrompt.h"

#include <cstdio>

namespace {

class TSilentPrompt final : public INBPrompt {
public:
    void ShowMessage(const std::string& text, TMsgDlgType) override {
        std::fprintf(stderr, "%s\n", text.c_str());
    }
    bool Confirm(const std::string&) override { return false; }
    bool DisplayDialog(const std::string&, bool& dontShowAgain) override {
        dontShowAgain = false;
        return false;
    }
    void ShowConfigDialog() override {}
};

TSilentPrompt SilentPrompt;
INBPrompt* Installed = nullptr;

} // namespace

INBPrompt& NBPrompt() {
    return Installed ? *Installed : SilentPrompt;
}

INBPrompt* SetNBPrompt(INBPrompt* prompt) {
    INBPrompt* previous = Installed;
    Installed = prompt;
    return previous;
}
