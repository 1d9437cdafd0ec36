// An INBPrompt that records what the engine asked and answers from a script; installed for its lifetime.
#pragma once

#include "support/NBPrompt.h"

#include <functional>
#include <string>
#include <vector>

class TScriptedPrompt final : public INBPrompt {
public:
    TScriptedPrompt() { FPrevious = SetNBPrompt(this); }
    ~TScriptedPrompt() override { SetNBPrompt(FPrevious); }
    TScriptedPrompt(const TScriptedPrompt&) = delete;
    TScriptedPrompt& operator=(const TScriptedPrompt&) = delete;

    void ShowMessage(const std::string& text, TMsgDlgType type) override {
        Messages.push_back(text);
        MessageTypes.push_back(type);
    }
    bool Confirm(const std::string& text) override {
        Questions.push_back(text);
        return AnswerYes;
    }
    bool DisplayDialog(const std::string& text, bool& dontShowAgain) override {
        Questions.push_back(text);
        dontShowAgain = CheckDontShowAgain;
        return AnswerYes;
    }
    void ShowConfigDialog() override {
        ++ConfigDialogs;
        if (OnConfigDialog) OnConfigDialog();
    }

    bool AnswerYes = false;
    bool CheckDontShowAgain = false;
    std::vector<std::string> Messages;
    std::vector<TMsgDlgType> MessageTypes;
    std::vector<std::string> Questions;
    int ConfigDialogs = 0;
    std::function<void()> OnConfigDialog; // e.g. a window test opening the real dialog

private:
    INBPrompt* FPrevious = nullptr;
};
