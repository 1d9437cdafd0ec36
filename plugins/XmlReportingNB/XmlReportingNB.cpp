// The report library's entry point: reads the report XML, then prints it through the print dialog or
// writes it straight into a PDF file.
#include "ReportDocument.h"
#include "ReportPainter.h"
#include "xmlreporting.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QTemporaryFile>
#include <QThread>

#include <filesystem>
#include <memory>

namespace {

QString ShortString(const unsigned char* Text) {
    return Text ? QString::fromUtf8(reinterpret_cast<const char*>(Text + 1), Text[0]) : QString();
}

bool HaveDisplay() {
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
#else
    return true;
#endif
}

// A call from a program without a Qt application gets one for the length of the call: a GUI application
// on the offscreen platform to write a file, a widget application on the display for the print dialog.
class TCallApplication {
public:
    // Code is NBR_OK when the call can go on.
    TCallApplication(bool NeedDialog, int32_t& Code) {
        Code = NBR_OK;
        if (QCoreApplication* app = QCoreApplication::instance()) {
            const bool usable = QThread::currentThread() == app->thread() &&
                                (NeedDialog ? qobject_cast<QApplication*>(app) != nullptr
                                            : qobject_cast<QGuiApplication*>(app) != nullptr);
            if (!usable) Code = NBR_ERR_NO_GUI;
            return;
        }
        // Qt takes the options it knows out of the array, so each application gets a fresh one.
        if (NeedDialog) {
            if (!HaveDisplay()) {
                Code = NBR_ERR_NO_GUI;
                return;
            }
            FArgc = 1;
            FApp = std::make_unique<QApplication>(FArgc, FArgv);
        } else {
            FArgc = 3;
            FApp = std::make_unique<QGuiApplication>(FArgc, FArgv);
        }
    }

private:
    char FName[15] = "XmlReportingNB", FPlatformOption[10] = "-platform", FOffscreen[10] = "offscreen";
    char* FArgv[4] = {FName, FPlatformOption, FOffscreen, nullptr};
    int FArgc = 0;
    std::unique_ptr<QGuiApplication> FApp;
};

// Paints into a hidden temporary file beside Target and renames it over Target only when the whole report
// was written, so a failure never leaves half a file (nor touches an older one).
int32_t PrintToPdf(const TReportDocument& Doc, QPrinter& Printer, const QString& Target, QString& Error) {
    const QFileInfo target(Target);
    QTemporaryFile temp(target.absoluteDir().filePath(QStringLiteral(".%1.XXXXXX").arg(target.fileName())));
    if (!temp.open()) {
        Error = QStringLiteral("The file %1 cannot be written: %2").arg(Target, temp.errorString());
        return NBR_ERR_OUTPUT;
    }
    temp.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
    temp.close();
    Printer.setOutputFormat(QPrinter::PdfFormat);
    Printer.setOutputFileName(temp.fileName());
    if (!PaintReport(Doc, Printer, QDateTime::currentDateTime())) {
        Error = QStringLiteral("The file %1 could not be written.").arg(Target);
        return NBR_ERR_OUTPUT;
    }
    std::error_code failed;
    std::filesystem::rename(QFile::encodeName(temp.fileName()).toStdString(),
                            QFile::encodeName(target.absoluteFilePath()).toStdString(), failed);
    if (failed) {
        Error = QStringLiteral("The file %1 cannot be written: %2")
                    .arg(Target, QString::fromStdString(failed.message()));
        return NBR_ERR_OUTPUT;
    }
    return NBR_OK;
}

int32_t PrintWithDialog(const TReportDocument& Doc, QPrinter& Printer, QString& Error) {
    QPrintDialog dialog(&Printer, QApplication::activeWindow());
    if (dialog.exec() != QDialog::Accepted) return NBR_CANCELLED;
    if (Printer.outputFormat() == QPrinter::PdfFormat && !Printer.outputFileName().isEmpty())
        return PrintToPdf(Doc, Printer, Printer.outputFileName(), Error);
    if (!PaintReport(Doc, Printer, QDateTime::currentDateTime())) {
        Error = QStringLiteral("The printer %1 could not be used.").arg(Printer.printerName());
        return NBR_ERR_OUTPUT;
    }
    return NBR_OK;
}

int32_t Print(const char* XmlText, const QString& PdfFile) {
    const bool interactive = PdfFile.isEmpty();
    int32_t code = NBR_OK;
    const TCallApplication application(interactive, code);
    if (code != NBR_OK) return code;

    QString error;
    {
        const std::optional<TReportDocument> doc = ReadReportDocument(XmlText, error);
        if (!doc) {
            code = NBR_ERR_XML;
        } else {
            QPrinter printer(QPrinter::HighResolution);
            printer.setPageMargins(QMarginsF(12, 12, 12, 12), QPageLayout::Millimeter);
            printer.setDocName(doc->Title);
            printer.setPageOrientation(ReportWantsLandscape(*doc, printer) ? QPageLayout::Landscape
                                                                           : QPageLayout::Portrait);
            code = interactive ? PrintWithDialog(*doc, printer, error)
                               : PrintToPdf(*doc, printer, PdfFile, error);
        }
    }
    // The board does not look at the result, so whoever sits in front of the dialog hears why.
    if (interactive && code != NBR_OK && code != NBR_CANCELLED)
        QMessageBox::warning(QApplication::activeWindow(), QStringLiteral("Notice Board Report"),
                             QStringLiteral("The report could not be printed.\n\n%1").arg(error));
    return code;
}

} // namespace

extern "C" NBR_EXPORT int32_t NBR_CALL printFromXML(const char* xml_text, const unsigned char* text3,
                                                    const unsigned char* /*text4*/,
                                                    const unsigned char* /*text5*/) {
    if (!xml_text) return NBR_ERR_ARGUMENT;
    try {
        return Print(xml_text, ShortString(text3));
    } catch (...) {
        return NBR_ERR_INTERNAL;
    }
}
