// The engine's only way to talk to the user. The window installs an implementation that shows real
// message boxes and dialogs; tests install a scripted one; without either, a silent default answers "No"
// and writes messages to standard error, so engine code never blocks on a missing screen.
// All calls come from the board's thread and are modal: they return when the user has answered.
#pragma once

#include <string>

enum class TMsgDlgType { mtWarning, mtError, mtInformation, mtConfirmation };

class INBPrompt {
public:
    virtual ~INBPrompt() = default;

    // A plain message box with an OK button.
    virtual void ShowMessage(const std::string& text, TMsgDlgType type = TMsgDlgType::mtInformation) = 0;

    // A Yes/No question; true for Yes.
    virtual bool Confirm(const std::string& text) = 0;

    // The shared confirmation form (DisplayDialog): the text, Yes and No buttons and the check box
    // "Don't show me this message again". Returns true for Yes; dontShowAgain receives the check box's
    // state when the form closed, whichever button was pressed.
    virtual bool DisplayDialog(const std::string& text, bool& dontShowAgain) = 0;

    // Opens the configuration dialog modally (from ConfigPrompt's Yes).
    virtual void ShowConfigDialog() = 0;
};

// The installed prompt, or the silent default when none is installed. Never null.
INBPrompt& NBPrompt();

// Installs a prompt (not owned; it must outlive its installation). nullptr restores the silent default.
// Returns the previously installed prompt (nullptr for the default).
INBPrompt* SetNBPrompt(INBPrompt* prompt);
