#include "adapters/ui/DisplayDialog.h"

#include "ui_DisplayDialog.h"

#include "support/ui/AccessibleNames.h"
#include <QStyle>

TDisplayDialog::TDisplayDialog(QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint | Qt::WindowTitleHint |
                          Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint),
      ui(std::make_unique<Ui::TDisplayDialog>()) {
    ui->setupUi(this);
    NameBuddiesAfterTheirLabels(this);
    const int side = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
    ui->imgQuestion->setPixmap(
        style()->standardIcon(QStyle::SP_MessageBoxQuestion, nullptr, this).pixmap(side));
    connect(ui->btnYes, &QPushButton::clicked, this, &QDialog::accept);
    connect(ui->btnNo, &QPushButton::clicked, this, &QDialog::reject);
}

TDisplayDialog::~TDisplayDialog() = default;

void TDisplayDialog::SetPrompt(const QString& Text) {
    ui->lblPrompt->setText(Text);
    adjustSize();
}

bool TDisplayDialog::DontShowAgain() const {
    return ui->cbDontShowAgain->isChecked();
}

bool ShowDisplayDialog(QWidget* parent, const std::string& text, bool& dontShowAgain) {
    TDisplayDialog dialog(parent);
    dialog.SetPrompt(QString::fromStdString(text));
    const bool yes = dialog.exec() == QDialog::Accepted;
    dontShowAgain = dialog.DontShowAgain();
    return yes;
}
