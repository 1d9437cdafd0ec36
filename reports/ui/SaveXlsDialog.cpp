#include "reports/ui/SaveXlsDialog.h"

#include <QDir>
#include <QFileInfo>
#include <QMessageBox>

namespace {

// Folder itself when it exists, else the closest folder above it that does (empty when none does).
QString ExistingFolder(const QString& Folder) {
    if (Folder.isEmpty()) return QString();
    QDir dir(QDir::cleanPath(QDir(Folder).absolutePath()));
    while (!dir.exists())
        if (!dir.cdUp()) return QString();
    return dir.path();
}

} // namespace

TSaveXlsDialog::TSaveXlsDialog(QWidget* Parent) : QFileDialog(Parent, QStringLiteral("Export Filename")) {
    setObjectName(QStringLiteral("SaveXLSDialog"));
    setAcceptMode(QFileDialog::AcceptSave);
    setFileMode(QFileDialog::AnyFile);
    setOptions(QFileDialog::DontUseNativeDialog | QFileDialog::DontConfirmOverwrite);
}

QString TSaveXlsDialog::Run(const QString& Folder, const QString& FileName) {
    const QString folder = ExistingFolder(Folder);
    if (!folder.isEmpty()) setDirectory(folder);
    const QFileInfo file(FileName);
    // A full name in a folder that is gone would take the dialog there; offer the name in the folder shown.
    if (file.isAbsolute() && !file.absoluteDir().exists())
        selectFile(file.fileName());
    else
        selectFile(FileName);
    if (exec() != QDialog::Accepted || selectedFiles().isEmpty()) return QString();
    return QDir::toNativeSeparators(selectedFiles().front());
}

void TSaveXlsDialog::accept() {
    const QStringList files = selectedFiles();
    if (!files.isEmpty()) {
        const QFileInfo chosen(files.front());
        if (!chosen.isDir() && !chosen.absoluteDir().exists()) {
            QMessageBox box(QMessageBox::Warning, windowTitle(),
                            QStringLiteral("The folder %1 does not exist.\nCheck the path and try again.")
                                .arg(QDir::toNativeSeparators(chosen.absolutePath())),
                            QMessageBox::Ok, this);
            box.setTextFormat(Qt::PlainText);
            box.exec();
            return;
        }
    }
    QFileDialog::accept();
}
