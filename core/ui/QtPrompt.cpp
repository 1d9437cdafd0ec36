#include "core/ui/QtPrompt.h"

#include "adapters/ui/DisplayDialog.h"

#include <QMessageBox>

TQtPrompt::TQtPrompt(QWidget* parent) : FParent(parent) {
    FPrevious = SetNBPrompt(this);
}

TQtPrompt::~TQtPrompt() {
    INBPrompt* current = SetNBPrompt(FPrevious);
    if (current != this) SetNBPrompt(current); // a later prompt is still in charge
}

void TQtPrompt::ShowMessage(const std::string& text, TMsgDlgType type) {
    QMessageBox::Icon icon = QMessageBox::Information;
    const char* caption = "Information";
    switch (type) {
    case TMsgDlgType::mtWarning:
        icon = QMessageBox::Warning;
        caption = "Warning";
        break;
    case TMsgDlgType::mtError:
        icon = QMessageBox::Critical;
        caption = "Error";
        break;
    case TMsgDlgType::mtInformation:
        break;
    case TMsgDlgType::mtConfirmation:
        icon = QMessageBox::Question;
        caption = "Confirm";
        break;
    }
    QMessageBox box(icon, QString::fromLatin1(caption), QString::fromStdString(text), QMessageBox::Ok,
                    FParent);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

bool TQtPrompt::Confirm(const std::string& text) {
    QMessageBox box(QMessageBox::Question, QStringLiteral("Confirm"), QString::fromStdString(text),
                    QMessageBox::Yes | QMessageBox::No, FParent);
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(QMessageBox::Yes);
    box.setEscapeButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}

bool TQtPrompt::DisplayDialog(const std::string& text, bool& dontShowAgain) {
    return ShowDisplayDialog(FParent, text, dontShowAgain);
}

void TQtPrompt::ShowConfigDialog() {
    if (FConfigDialogOpener) FConfigDialogOpener();
}
