// The save dialog "Export Filename" (object name SaveXLSDialog) of the print and export dialogs: Qt's own
// file dialog, so that it looks alike on every desktop and tests can answer it with a queued action. It
// never asks about replacing a file (the dialogs' OK does that), and it refuses a file in a folder that
// does not exist, saying so, and stays open. Created by the dialog that browses, as its child, for one
// run. GUI thread only.
#pragma once

#include <QFileDialog>

class TSaveXlsDialog final : public QFileDialog {
    Q_OBJECT
public:
    explicit TSaveXlsDialog(QWidget* Parent);

    // Opens in Folder (its nearest existing parent folder when it is missing) with FileName filled in, and
    // blocks until the user has answered. Returns the chosen file with the platform's separators, or an
    // empty text when the user cancelled.
    QString Run(const QString& Folder, const QString& FileName);

public slots:
    void accept() override;
};
