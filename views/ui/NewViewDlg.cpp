#include "views/ui/NewViewDlg.h"

#include "ui_NewViewDlg.h"

#include "support/StrUtils.h"
#include "support/ui/AccessibleNames.h"
#include "views/NameChecks.h"

TNB_NewViewDlg::TNB_NewViewDlg(QWidget* parent) : QDialog(parent), ui(std::make_unique<Ui::NB_NewViewDlg>()) {
    ui->setupUi(this);
    NameBuddiesAfterTheirLabels(this);
    ui->btnOK->setEnabled(false);
    connect(ui->EditNewViewName, &QLineEdit::textChanged, this,
            [this](const QString& text) { ui->btnOK->setEnabled(!TrimView(text.toStdString()).empty()); });
    connect(ui->btnOK, &QPushButton::clicked, this, &TNB_NewViewDlg::btnOKClick);
    connect(ui->btnCancel, &QPushButton::clicked, this, &QDialog::reject);
}

TNB_NewViewDlg::~TNB_NewViewDlg() = default;

std::string TNB_NewViewDlg::ViewName() const {
    return ui->EditNewViewName->text().toStdString();
}

bool TNB_NewViewDlg::CopyDefaultView() const {
    return ui->rbCopyDefaultView->isChecked();
}

void TNB_NewViewDlg::SetCopyDefaultView(bool Checked) {
    // Exclusive radio buttons refuse to be unchecked by hand; the other button is deliberately left alone.
    ui->rbCopyDefaultView->setAutoExclusive(false);
    ui->rbCopyDefaultView->setChecked(Checked);
    ui->rbCopyDefaultView->setAutoExclusive(true);
}

void TNB_NewViewDlg::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    ui->EditNewViewName->setFocus(Qt::OtherFocusReason);
}

void TNB_NewViewDlg::btnOKClick() {
    if (ValidateViewName(ViewName())) {
        accept();
        return;
    }
    ui->EditNewViewName->setFocus(Qt::OtherFocusReason);
}
