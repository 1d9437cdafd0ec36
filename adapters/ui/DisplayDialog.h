// The shared confirmation form: a question, Yes and No, and the check box "Don't show me this message
// again". The configuration's adapter prompt and the board's shutdown prompt ask through it.
// GUI thread. Nothing throws.
#pragma once

#include <QDialog>
#include <memory>
#include <string>

namespace Ui {
class TDisplayDialog;
}

class TDisplayDialog : public QDialog {
    Q_OBJECT
public:
    // Owned by the caller (usually a stack object shown with exec()); parent only places it.
    explicit TDisplayDialog(QWidget* parent = nullptr);
    ~TDisplayDialog() override;

    void SetPrompt(const QString& Text);
    bool DontShowAgain() const;

private:
    std::unique_ptr<Ui::TDisplayDialog> ui;
};

// Shows the form modally over parent (may be null) with text (UTF-8). True for Yes; No, Escape and closing
// the window count as No. dontShowAgain receives the check box's state whichever way the form closed.
bool ShowDisplayDialog(QWidget* parent, const std::string& text, bool& dontShowAgain);
