// The steps the print and export dialogs share when they write the notice grid to a spreadsheet file: the
// question before an existing file is replaced, the export itself with a progress dialog that can cancel,
// and the message boxes that tell the user what went wrong. GUI (board) thread only; every call that shows
// a window blocks in its modal loop. Nothing here throws.
#pragma once

#include "reports/GridExport.h"
#include "reports/ui/ExportSource.h"

#include <QProgressDialog>
#include <QString>

#include <string>

class QWidget;

// True when FileName is not an existing file, or when the user answered Yes to the warning box
// "The file <name> already exists.\r\nDo you want to replace this file?" (Yes and No buttons). Any other
// answer, closing the box included, is false. The box is modal over Parent (may be null).
bool ConfirmReplaceFile(QWidget* Parent, const std::string& FileName);

// Writes Source's columns and rows (all, or the selected ones) to FileName through ExportGrid; the file
// name's ending picks the format (.xls unless it ends in .xlsx or .csv). The file appears only when
// complete. Returns true when it was written. False when the name is blank or the export failed (the
// reason was shown in an error box over Parent; no file was left behind and an old file is unchanged),
// or when the user cancelled it in the progress dialog (nothing shown).
bool ExportToFile(QWidget* Parent, const IExportSource& Source, const std::string& FileName,
                  bool SelectedOnly);

// An error box over Parent: the error icon, the title "Error", Text as typed (never read as markup) and,
// when not empty, Detail below it after a blank line.
void ShowErrorBox(QWidget* Parent, const QString& Text, const QString& Detail = QString());

// How long an export runs, in milliseconds, before its progress dialog appears (500 unless changed). A
// process-wide setting for tests, which set 0 to see the dialog at once.
int ExportProgressDelay();
void SetExportProgressDelay(int Milliseconds);

// The progress of one export as a window-modal progress dialog over Parent (object name
// "ExportProgress"): invisible until the export has run ExportProgressDelay() milliseconds and is not
// about to end, then the rows written so far and a Cancel button. While it is up, each report runs the
// event loop, so the window repaints and Cancel can be pressed. Lives for one export.
class TExportProgress final : public IExportProgress {
public:
    TExportProgress(QWidget* Parent, const QString& FileName);
    TExportProgress(const TExportProgress&) = delete;
    TExportProgress& operator=(const TExportProgress&) = delete;

    // False once Cancel was pressed.
    bool Progress(int32_t Done, int32_t Total) override;

private:
    QProgressDialog FDialog;
};
