// The progress bar of an acknowledge or delete on many notices: a window-modal progress dialog over the
// board that appears only when the action has taken longer than half a second, with a Cancel button that
// stops the notices not yet handed to their adapters. Created on the stack around one action on the GUI
// thread; the dialog goes with this object.
#pragma once

#include "core/Znb_noteactions.h"

#include <QString>

#include <memory>

class QProgressDialog;
class QWidget;

class TNoteActionProgress : public INoteActionProgress {
public:
    // Label: what is being done, e.g. "Acknowledging notices...". Owner: the board window (not owned).
    TNoteActionProgress(QWidget* Owner, const QString& Label);
    ~TNoteActionProgress() override;

    void Start(size_t Total) override;
    bool Step(size_t Done) override;
    void Finish() override;

    // The dialog while the action runs (null before Start and after Finish); for tests.
    QProgressDialog* Dialog() const { return FDialog.get(); }

private:
    QWidget* FOwner;
    QString FLabel;
    std::unique_ptr<QProgressDialog> FDialog;
};
