#include "core/ui/NoteActionProgress.h"

#include <QApplication>
#include <QProgressDialog>

#include <climits>

namespace {
// QProgressDialog counts in int; a selection beyond that is shown in proportion.
int ProgressValue(size_t Value, size_t Total) {
    if (Total <= size_t(INT_MAX)) return int(Value);
    return int(double(Value) / double(Total) * INT_MAX);
}
} // namespace

TNoteActionProgress::TNoteActionProgress(QWidget* Owner, const QString& Label)
    : FOwner(Owner), FLabel(Label) {}

TNoteActionProgress::~TNoteActionProgress() = default;

void TNoteActionProgress::Start(size_t Total) {
    FDialog = std::make_unique<QProgressDialog>(FLabel, QObject::tr("Cancel"), 0, ProgressValue(Total, Total),
                                                FOwner);
    FDialog->setObjectName("NoteActionProgress");
    FDialog->setWindowTitle(QApplication::applicationDisplayName());
    FDialog->setAccessibleName(FLabel);
    FDialog->setWindowModality(Qt::WindowModal);
    // Short actions finish before the dialog would show: no flash of a window.
    FDialog->setMinimumDuration(500);
    FDialog->setAutoReset(false);
    FDialog->setAutoClose(false);
    FDialog->setProperty("total", qulonglong(Total));
    FDialog->setValue(0);
}

bool TNoteActionProgress::Step(size_t Done) {
    if (!FDialog) return true;
    // A window-modal dialog processes events in setValue, so Cancel is seen here, and notices that
    // adapters post meanwhile keep arriving.
    FDialog->setValue(ProgressValue(Done, FDialog->property("total").toULongLong()));
    return !FDialog->wasCanceled();
}

void TNoteActionProgress::Finish() {
    FDialog.reset();
}
