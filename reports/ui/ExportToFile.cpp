#include "reports/ui/ExportToFile.h"

#include "support/StrUtils.h"

#include <QMessageBox>
#include <QWidget>

#include <exception>
#include <memory>

namespace {

int ProgressDelayMs = 500;

} // namespace

int ExportProgressDelay() {
    return ProgressDelayMs;
}

void SetExportProgressDelay(int Milliseconds) {
    ProgressDelayMs = Milliseconds;
}

bool ConfirmReplaceFile(QWidget* Parent, const std::string& FileName) {
    if (!FileExists(FileName)) return true;
    QMessageBox box(QMessageBox::Warning, QStringLiteral("Warning"),
                    QString::fromStdString("The file " + FileName + " already exists.\r\n" +
                                           "Do you want to replace this file?"),
                    QMessageBox::Yes | QMessageBox::No, Parent);
    box.setTextFormat(Qt::PlainText); // a file name is never markup
    box.setDefaultButton(QMessageBox::Yes);
    box.setEscapeButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}

void ShowErrorBox(QWidget* Parent, const QString& Text, const QString& Detail) {
    QMessageBox box(QMessageBox::Critical, QStringLiteral("Error"),
                    Detail.isEmpty() ? Text : Text + QStringLiteral("\n\n") + Detail, QMessageBox::Ok,
                    Parent);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

bool ExportToFile(QWidget* Parent, const IExportSource& Source, const std::string& FileName,
                  bool SelectedOnly) {
    if (Trim(FileName).empty()) {
        ShowErrorBox(Parent, QStringLiteral("No file name was given. Choose the file to export to."));
        return false;
    }
    try {
        const std::unique_ptr<IExportRows> rows = Source.ExportRows(SelectedOnly);
        TExportProgress progress(Parent, QString::fromStdString(ExtractFileName(FileName)));
        ExportGrid(Source.ExportColumns(), *rows, FileName, &progress);
        return true;
    } catch (const EExportCancelled&) {
        return false; // the user's own choice: nothing to tell
    } catch (const std::exception& e) {
        ShowErrorBox(Parent, QString::fromStdString(e.what()));
    } catch (...) {
        ShowErrorBox(Parent,
                     QString::fromStdString("The notices could not be exported to " + FileName + "."));
    }
    return false;
}

TExportProgress::TExportProgress(QWidget* Parent, const QString& FileName)
    : FDialog(QStringLiteral("Exporting notices to %1").arg(FileName), QStringLiteral("Cancel"), 0, 0,
              Parent) {
    FDialog.setObjectName(QStringLiteral("ExportProgress"));
    FDialog.setWindowTitle(QStringLiteral("Notice Board - Export"));
    FDialog.setWindowModality(Qt::WindowModal);
    FDialog.setMinimumDuration(ExportProgressDelay());
    FDialog.setAutoClose(true);
}

bool TExportProgress::Progress(int32_t Done, int32_t Total) {
    if (FDialog.wasCanceled()) return false;
    if (FDialog.maximum() != Total) FDialog.setMaximum(Total);
    // Once the dialog is up this runs the event loop, and Cancel may be pressed in it.
    FDialog.setValue(Done);
    return !FDialog.wasCanceled();
}
