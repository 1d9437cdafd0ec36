// The spreadsheet export dialog "Notice Board - XLS Export" (TfrmXLSExport): writes the board's notice grid,
// all rows or the selected ones, to a file. GUI (board) thread only.
#pragma once

#include "reports/ui/ExportSource.h"

#include <QDialog>

#include <memory>

namespace Ui {
class frmXLSExport;
}

// The board's export button: an export dialog without a parent window (the application frees it), centred
// on Owner's screen (Owner may be null), "Selected notices only" ticked exactly when more than one row of
// BoardGrid is selected, shown modally and freed. BoardGrid is not owned. Returns the dialog's result
// (QDialog::Accepted once a file was written). Nothing escapes: failures were shown in the dialog.
int ShowXLSExportDialog(QWidget* Owner, IExportSource& BoardGrid);

class TfrmXLSExport : public QDialog {
    Q_OBJECT
public:
    // BoardGrid: what is written; not owned, must outlive the dialog.
    explicit TfrmXLSExport(IExportSource& BoardGrid, QWidget* Parent = nullptr);
    ~TfrmXLSExport() override;

    // "Selected notices only", set by the opener before the dialog is shown.
    void SetSelectedOnly(bool SelectedOnly);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void FormShow();
    void btnBrowseClick();
    void btnOKClick();

    std::unique_ptr<Ui::frmXLSExport> ui;
    IExportSource& FBoardGrid;
};
