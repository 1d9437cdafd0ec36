#include "reports/ui/Ufrmnbprint.h"

#include "ui_Ufrmnbprint.h"

#include "core/ui/NbColors.h"
#include "core/ui/NbIcons.h"
#include "core/ui/PathElide.h"
#include "platform/DynLib.h"
#include "platform/Process.h"
#include "reports/Ugridtoxml.h"
#include "reports/Uxmlprintdll_interface.h"
#include "reports/ui/ExportToFile.h"
#include "reports/ui/SaveXlsDialog.h"
#include "reports/ui/TArialTextMeasurer.h"
#include "support/Exception.h"
#include "support/StrUtils.h"
#include "support/ui/AccessibleNames.h"

#include <QApplication>
#include <QFileInfo>
#include <QScreen>
#include <QShowEvent>

#include <cerrno>
#include <exception>
#include <string_view>

namespace {

// Text as a string list gives it back after taking it in: every line break (CR LF, LF or CR) made CR LF,
// and a CR LF after the last line.
std::string AsCrLfLines(std::string_view Text) {
    std::string lines;
    lines.reserve(Text.size() + Text.size() / 16 + 2);
    size_t i = 0;
    while (i < Text.size()) {
        const size_t start = i;
        while (i < Text.size() && Text[i] != '\r' && Text[i] != '\n')
            ++i;
        lines.append(Text.substr(start, i - start));
        lines += "\r\n";
        if (i < Text.size() && Text[i] == '\r') ++i;
        if (i < Text.size() && Text[i] == '\n') ++i;
    }
    return lines;
}

std::string ReadTemplate(const std::string& FileName) {
    std::string text;
    errno = 0;
    const TFileRead read = ReadFileBytes(FileName, text);
    if (read == TFileRead::Read) return text;
    const int error = read == TFileRead::CannotOpen && errno ? errno : EIO;
    throw EInOutError("Cannot open file \"" + FileName + "\". " + SysErrorMessage(error));
}

// The wait cursor while it lives.
struct TWaitCursor {
    TWaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~TWaitCursor() { QApplication::restoreOverrideCursor(); }
    TWaitCursor(const TWaitCursor&) = delete;
    TWaitCursor& operator=(const TWaitCursor&) = delete;
};

} // namespace

int ShowPrintDialog(QWidget* Owner, IReportGrid& Grid, IExportSource& BoardGrid) {
    TfrmNBPrint dialog(Grid, BoardGrid);
    if (Owner && Owner->screen()) dialog.setScreen(Owner->screen());
    return dialog.exec();
}

TfrmNBPrint::TfrmNBPrint(IReportGrid& Grid, IExportSource& BoardGrid, QWidget* Parent)
    : QDialog(Parent), ui(std::make_unique<Ui::frmNBPrint>()), FGrid(Grid), FBoardGrid(BoardGrid),
      FTemplateFileName(ExecutableFolder() + "r_base_template.xml") {
    ui->setupUi(this);
    NameBuddiesAfterTheirLabels(this);
    setWindowIcon(NbIcon(TNbIcon::Print));
    FFileName = new TElidedPathEdit(ui->EditExportFilename);
    FFileName->SetKeptTextAsToolTip(true);
    connect(ui->rbPrinter, &QRadioButton::toggled, this, &TfrmNBPrint::rbPrinterClick);
    connect(ui->rbExport, &QRadioButton::toggled, this, &TfrmNBPrint::rbPrinterClick);
    connect(ui->btnBrowse, &QPushButton::clicked, this, &TfrmNBPrint::btnBrowseClick);
    connect(ui->btnOK, &QPushButton::clicked, this, &TfrmNBPrint::btnOKClick);
    connect(ui->btnCancel, &QPushButton::clicked, this, &TfrmNBPrint::btnCancelClick);
}

TfrmNBPrint::~TfrmNBPrint() = default;

QString TfrmNBPrint::ExportFileName() const {
    return FFileName->KeptText();
}

void TfrmNBPrint::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (event->spontaneous()) return;
    resize(size().expandedTo(minimumSizeHint()));
    if (QScreen* s = screen()) move(s->availableGeometry().center() - rect().center());
    FormShow();
}

void TfrmNBPrint::FormShow() {
    FFileName->SetFullText(
        QString::fromStdString(DataFolder() + "NoticeBoard" + PathDelim + "nb_export.xls"));
    ui->rbPrinter->setChecked(true);
    rbPrinterClick(); // also when Printer was checked already
}

void TfrmNBPrint::rbPrinterClick() {
    const bool toFile = ui->rbExport->isChecked();
    ui->EditExportFilename->setEnabled(toFile);
    ui->btnBrowse->setEnabled(toFile);
    QPalette palette = ui->EditExportFilename->palette();
    palette.setColor(QPalette::Base, ToQColor(toFile ? clWindow : clBtnFace));
    ui->EditExportFilename->setPalette(palette);
}

void TfrmNBPrint::btnBrowseClick() {
    std::unique_ptr<TSaveXlsDialog> dialog;
    {
        // The hourglass while the file dialog is made and reads the folder, not while the user chooses.
        const TWaitCursor waiting;
        dialog = std::make_unique<TSaveXlsDialog>(this);
        dialog->setNameFilter(QStringLiteral("XLS format (*.xls);;All (*)"));
        dialog->setDefaultSuffix(QStringLiteral("xls"));
    }
    const QString hint = FFileName->KeptText();
    const QString chosen = dialog->Run(QFileInfo(hint).path(), hint);
    if (!chosen.isEmpty()) FFileName->SetFullText(chosen);
}

void TfrmNBPrint::btnCancelClick() {
    reject();
}

void TfrmNBPrint::btnOKClick() {
    if (ui->rbExport->isChecked()) {
        if (ExportToChosenFile()) accept();
        return;
    }
    PrintReport();
    // Closes also when the report could not be printed: the user was told why.
    accept();
}

bool TfrmNBPrint::ExportToChosenFile() {
    const std::string fileName = ExportFileName().toStdString();
    if (!ConfirmReplaceFile(this, fileName)) return false;
    return ExportToFile(this, FBoardGrid, fileName, ui->cbSelected->isChecked());
}

void TfrmNBPrint::PrintReport() {
    QString detail;
    try {
        const std::string reportTemplate = AsCrLfLines(ReadTemplate(FTemplateFileName));
        TArialTextMeasurer measurer;
        TPrintColumnsDefinition definition;
        definition.initializeFromGrid(FGrid, ui->cbSelected->isChecked(), measurer);
        const std::string report =
            AsCrLfLines(definition.initializeXMLTemplate(reportTemplate, "Notice Board Report"));
        try {
            launchReport(FReportLibrary, report, "", "", "");
            return;
        } catch (const Exception&) {
            // A library that would not load: the loader says why.
            if (GetLastError() != 0)
                detail = QString::fromStdString(GetLastErrorText()) + QStringLiteral("\n\n");
            throw;
        }
    } catch (const std::exception& e) {
        ShowErrorBox(this, QString::fromStdString(e.what()), detail + QStringLiteral("Nothing was printed."));
    } catch (...) {
        ShowErrorBox(this, QStringLiteral("The report could not be printed."));
    }
}
