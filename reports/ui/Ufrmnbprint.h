// The print dialog "Print" (TfrmNBPrint): prints the notice grid through the report library, or writes the
// board's notice grid to a spreadsheet file. GUI (board) thread only.
#pragma once

#include "reports/ui/ExportSource.h"

#include <QDialog>

#include <memory>
#include <string>

class IReportGrid;
class TElidedPathEdit;
namespace Ui {
class frmNBPrint;
}

// The board's print action (Ctrl+P and the print button): a print dialog made without an owner, centred
// on Owner's screen (Owner may be null), given Grid to print and BoardGrid to export, shown modally and
// freed. Grid and BoardGrid are not owned. Returns the dialog's result (QDialog::Accepted after OK).
// Nothing escapes: every failure was shown to the user in the dialog.
int ShowPrintDialog(QWidget* Owner, IReportGrid& Grid, IExportSource& BoardGrid);

class TfrmNBPrint : public QDialog {
    Q_OBJECT
public:
    // Grid: what "Printer" prints. BoardGrid: what "File" writes (the board's notice grid, even when Grid is
    // another). Neither is owned; both must outlive the dialog.
    TfrmNBPrint(IReportGrid& Grid, IExportSource& BoardGrid, QWidget* Parent = nullptr);
    ~TfrmNBPrint() override;

    // The report library "Printer" hands the report to: "XmlReportingNB.dll" unless changed (tests name a
    // library that records what it was given).
    void SetReportLibrary(const std::string& LibraryName) { FReportLibrary = LibraryName; }
    // The report template: "r_base_template.xml" in the executable's folder unless changed.
    void SetTemplateFileName(const std::string& FileName) { FTemplateFileName = FileName; }
    const std::string& TemplateFileName() const { return FTemplateFileName; }

    // The export file: the file name edit's hint (its tool tip). The hint takes the edit's text only when
    // the focus leaves the edit, so a path typed and confirmed with Enter while still in the edit is not
    // used, the previous one is: the dialog has always worked so, and this is kept.
    QString ExportFileName() const;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void FormShow();
    void rbPrinterClick();
    void btnBrowseClick();
    void btnOKClick();
    void btnCancelClick();
    // The two ways OK goes. Export returns false when the dialog is to stay open.
    bool ExportToChosenFile();
    void PrintReport();

    std::unique_ptr<Ui::frmNBPrint> ui;
    IReportGrid& FGrid;
    IExportSource& FBoardGrid;
    TElidedPathEdit*
        FFileName; // keeps the hint, shows it whole in the edit only while the edit has the focus
    std::string FReportLibrary = "XmlReportingNB.dll";
    std::string FTemplateFileName;
};
