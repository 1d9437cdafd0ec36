// The report library inside a host that has its own QApplication: the print dialog, its cancel, its
// "Print to File (PDF)" choice, and the message a user gets for a report that cannot be printed.
#include "platform/DynLib.h"
#include "xmlreporting.h"

#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QMessageBox>
#include <QPrintDialog>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include <functional>

namespace {

const char* const Report = R"(<?xml version="1.0" encoding="UTF-8"?>
<report version="1"><title>Dialog Report</title><fieldDefinitions>
<field name="note_summary" caption="Summary"  fieldDef="" width="120" ignore="N"/>
</fieldDefinitions><selectFields><note_summary/></selectFields><groupBy/><GroupByFields/>
<rows><row id="0"  note_summary="Disk full"/></rows></report>)";

// Calls printFromXML with empty texts (the board's call), while Act handles the modal window it opens.
int32_t PrintInteractively(const char* xml, const std::function<void(QWidget*)>& Act) {
    QWidget* seen = nullptr;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        if (QWidget* modal = QApplication::activeModalWidget(); modal && !seen) {
            seen = modal;
            Act(modal);
        }
    });
    poll.start(10);
    const TLibHandle library = PvLoadLib("XmlReportingNB");
    const auto print = reinterpret_cast<NBR_printFromXML_Fn>(GetProcAddress(library, "printFromXML"));
    const NBR_ShortString empty = {};
    const int32_t result = print ? print(xml, empty, empty, empty) : -1;
    FreeLibrary(library);
    return result;
}

} // namespace

class ReportPrintDialogTest : public QObject {
    Q_OBJECT

private slots:
    void CancellingTheDialogPrintsNothing() {
        bool wasPrintDialog = false;
        const int32_t result = PrintInteractively(Report, [&](QWidget* modal) {
            wasPrintDialog = qobject_cast<QPrintDialog*>(modal) != nullptr;
            QMetaObject::invokeMethod(modal, "reject", Qt::QueuedConnection);
        });
        QVERIFY(wasPrintDialog);
        QCOMPARE(result, int32_t(NBR_CANCELLED));
    }

    void PrintToFileWritesThePdf() {
        QTemporaryDir folder;
        const QString pdf = folder.filePath(QStringLiteral("chosen.pdf"));
        const int32_t result = PrintInteractively(Report, [&](QWidget* modal) {
            auto* dialog = qobject_cast<QPrintDialog*>(modal);
            QVERIFY(dialog);
            // The user picks the PDF printer and types a file name.
            for (QComboBox* printers : dialog->findChildren<QComboBox*>(QStringLiteral("printers")))
                printers->setCurrentIndex(printers->count() - 1);
            for (QLineEdit* name : dialog->findChildren<QLineEdit*>(QStringLiteral("filename")))
                name->setText(pdf);
            QMetaObject::invokeMethod(dialog, "accept", Qt::QueuedConnection);
        });
        QCOMPARE(result, int32_t(NBR_OK));
        QFile file(pdf);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(file.read(5) == "%PDF-");
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
    }

    void AReportThatCannotBePrintedIsExplained() {
        QString shown;
        const int32_t result = PrintInteractively("<report><rows></report>", [&](QWidget* modal) {
            if (auto* box = qobject_cast<QMessageBox*>(modal))
                shown = box->text() + "\n" + box->informativeText();
            QMetaObject::invokeMethod(modal, "reject", Qt::QueuedConnection);
        });
        QCOMPARE(result, int32_t(NBR_ERR_XML));
        QVERIFY2(shown.contains(QStringLiteral("not well-formed")), qPrintable(shown));
    }
};

QTEST_MAIN(ReportPrintDialogTest)
#include "ReportPrintDialogTest.moc"
