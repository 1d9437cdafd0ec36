#include "reports/ui/Nb_xport2xls.h"

#include "ui_Nb_xport2xls.h"

#include "core/ui/NbIcons.h"
#include "platform/Process.h"
#include "reports/ui/ExportToFile.h"
#include "reports/ui/SaveXlsDialog.h"
#include "support/ui/AccessibleNames.h"

#include <QScreen>
#include <QShowEvent>

int ShowXLSExportDialog(QWidget* Owner, IExportSource& BoardGrid) {
    TfrmXLSExport dialog(BoardGrid);
    if (Owner && Owner->screen()) dialog.setScreen(Owner->screen());
    dialog.SetSelectedOnly(BoardGrid.SelectedCount() > 1);
    return dialog.exec();
}

TfrmXLSExport::TfrmXLSExport(IExportSource& BoardGrid, QWidget* Parent)
    : QDialog(Parent), ui(std::make_unique<Ui::frmXLSExport>()), FBoardGrid(BoardGrid) {
    ui->setupUi(this);
    NameBuddiesAfterTheirLabels(this);
    // A title bar without buttons: OK or Cancel (or Escape) close it.
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    setWindowIcon(NbIcon(TNbIcon::Export));
    connect(ui->btnBrowse, &QPushButton::clicked, this, &TfrmXLSExport::btnBrowseClick);
    connect(ui->btnOK, &QPushButton::clicked, this, &TfrmXLSExport::btnOKClick);
}

TfrmXLSExport::~TfrmXLSExport() = default;

void TfrmXLSExport::SetSelectedOnly(bool SelectedOnly) {
    ui->cbSelected->setChecked(SelectedOnly);
}

void TfrmXLSExport::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (event->spontaneous()) return;
    resize(size().expandedTo(minimumSizeHint()));
    if (QScreen* s = screen()) move(s->availableGeometry().center() - rect().center());
    FormShow();
}

void TfrmXLSExport::FormShow() {
    ui->editFilename->setText(QString::fromStdString(DataFolder() + "noticeboard_export.xls"));
}

void TfrmXLSExport::btnBrowseClick() {
    TSaveXlsDialog dialog(this);
    const QString chosen = dialog.Run(QString::fromStdString(DataFolder()), ui->editFilename->text());
    if (!chosen.isEmpty()) ui->editFilename->setText(chosen);
}

void TfrmXLSExport::btnOKClick() {
    const std::string fileName = ui->editFilename->text().toStdString();
    if (!ConfirmReplaceFile(this, fileName)) return;
    if (ExportToFile(this, FBoardGrid, fileName, ui->cbSelected->isChecked())) accept();
}
