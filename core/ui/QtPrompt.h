// The engine's prompt (support/NBPrompt.h) on screen: real message boxes, the shared confirmation form
// and the configuration dialog, each modal over the widget the owner names.
//
// Ownership and lifetime: the board window owns one for its own life. Constructing it installs it as the
// engine's prompt (SetNBPrompt); destroying it puts back whatever was installed before. Nest them only in
// last-in, first-out order (a prompt destroyed while another installed after it is still alive leaves that
// later one installed).
// GUI thread only; every call blocks in a modal loop until the user answers. Nothing throws.
#pragma once

#include "support/NBPrompt.h"

#include <QPointer>
#include <QWidget>
#include <functional>

class TQtPrompt final : public INBPrompt {
public:
    // Dialogs are parented to parent (may be null, or be deleted before the prompt: they then have none).
    explicit TQtPrompt(QWidget* parent);
    ~TQtPrompt() override;
    TQtPrompt(const TQtPrompt&) = delete;
    TQtPrompt& operator=(const TQtPrompt&) = delete;

    // A message box with the icon of the type (warning, error, information, question), an OK button and
    // the type's caption: "Warning", "Error", "Information", "Confirm".
    void ShowMessage(const std::string& text, TMsgDlgType type = TMsgDlgType::mtInformation) override;
    // A question box with Yes (the default button) and No; Escape and closing it count as No.
    bool Confirm(const std::string& text) override;
    // The confirmation form of adapters/ui/DisplayDialog.h.
    bool DisplayDialog(const std::string& text, bool& dontShowAgain) override;
    // Runs the installed opener of the configuration dialog. The dialog belongs to the board window, which
    // installs the opener; until it does, this does nothing.
    void ShowConfigDialog() override;

    void SetConfigDialogOpener(std::function<void()> opener) { FConfigDialogOpener = std::move(opener); }
    QWidget* DialogParent() const { return FParent; }

private:
    QPointer<QWidget> FParent;
    std::function<void()> FConfigDialogOpener;
    INBPrompt* FPrevious = nullptr;
};
