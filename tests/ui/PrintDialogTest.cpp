// The print dialog driven as a user drives it: what it shows, the file name edit's two faces and its Enter
// key, Browse, the question before a file is replaced, the report handed to the report library, the
// failures of printing, and the board's print action.
#include "core/ui/NbColors.h"
#include "platform/DynLib.h"
#include "platform/Process.h"
#include "reports/ui/TArialTextMeasurer.h"
#include "reports/ui/Ufrmnbprint.h"
#include "support/MessageBoxAnswer.h"
#include "support/ModalDriver.h"
#include "support/PrintExportBench.h"
#include "support/WidgetShots.h"

#include <QPrintDialog>
#include <QtTest>
#include <QtWidgets>

#include <filesystem>
#include <memory>

namespace {

// The recording report library, held loaded by the test so that what it received outlives the dialog's
// unload.
class TRecorder {
public:
    TRecorder() : FLibrary(PvLoadLib("XmlReportingNB_Recorder.dll")) {}
    ~TRecorder() { FreeLibrary(FLibrary); }
    bool Loaded() const { return FLibrary != nullptr; }
    std::string Xml() const { return reinterpret_cast<const char* (*)()>(Get("RecordedXml"))(); }
    int Calls() const { return reinterpret_cast<int (*)()>(Get("RecordedCalls"))(); }
    int TextLength(int Index) const {
        return reinterpret_cast<const unsigned char* (*)(int)>(Get("RecordedText"))(Index)[0];
    }

private:
    void* Get(const char* name) const { return GetProcAddress(FLibrary, name); }
    TLibHandle FLibrary;
};

// Chooses "File" and gives the edit FileName as a user does: type it, then leave the edit.
void ChooseFileIn(QWidget* Dialog, const QString& FileName) {
    Child<QRadioButton>(Dialog, "rbExport")->click();
    auto* edit = Child<QLineEdit>(Dialog, "EditExportFilename");
    edit->setFocus(Qt::TabFocusReason);
    edit->selectAll();
    QTest::keyClicks(edit, FileName);
    Child<QCheckBox>(Dialog, "cbSelected")->setFocus(Qt::TabFocusReason);
}

QString ExpectedHint() {
    return QString::fromStdString(ExecutableFolder() + "NoticeBoard/nb_export.xls");
}

} // namespace

class PrintDialogTest : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void showsPrinterChosenAndTheDefaultFileShortened();
    void fileChoiceEnablesTheFileControls();
    void fileNameEditShowsTheWholePathOnlyWhileFocusedAndEnterUsesTheHint();
    void browseOffersTheHintAndTakesTheChosenFile();
    void browseRefusesAFileInAMissingFolder();
    void existingFileIsReplacedOnlyOnYes();
    void printerHandsTheFilledTemplateToTheLibrary();
    void selectedOnlyWithoutSelectionPrintsColumnsButNoRows();
    void printFailuresAreShownAndTheDialogCloses_data();
    void printFailuresAreShownAndTheDialogCloses();
    void printActionPrintsThroughTheReportLibrary();
    void printActionExportsTheBoardGridNotThePrintedOne();

private:
    template <typename T> T* W(const char* name) const { return Child<T>(Dlg.get(), name); }
    void ChooseFile(const QString& FileName) { ChooseFileIn(Dlg.get(), FileName); }

    std::unique_ptr<TTempFolder> Folder;
    std::unique_ptr<TFakeBoardGrid> Grid;
    std::unique_ptr<TfrmNBPrint> Dlg;
};

void PrintDialogTest::init() {
    Folder = std::make_unique<TTempFolder>();
    Grid = std::make_unique<TFakeBoardGrid>();
    FillThreeNotices(*Grid);
    Dlg = std::make_unique<TfrmNBPrint>(*Grid, *Grid);
}

void PrintDialogTest::cleanup() {
    Dlg.reset();
    DrainQueuedAnswers();
    QVERIFY(!QApplication::overrideCursor());
}

void PrintDialogTest::showsPrinterChosenAndTheDefaultFileShortened() {
    ShowActive(Dlg.get());
    QCOMPARE(Dlg->windowTitle(), QString("Print"));
    QCOMPARE(W<QGroupBox>("GroupBox1")->title(), QString("Print to"));
    const QStringList captions = {W<QRadioButton>("rbPrinter")->text(), W<QRadioButton>("rbExport")->text(),
                                  W<QLabel>("Label1")->text(),          W<QPushButton>("btnBrowse")->text(),
                                  W<QCheckBox>("cbSelected")->text(),   W<QPushButton>("btnOK")->text(),
                                  W<QPushButton>("btnCancel")->text()};
    QCOMPARE(captions.join("|"),
             QString("&Printer|&File (*.xls format)|File&name:|&Browse|&Selected notices only|OK|Cancel"));

    QVERIFY(W<QRadioButton>("rbPrinter")->isChecked());
    QVERIFY(!W<QCheckBox>("cbSelected")->isChecked());
    auto* edit = W<QLineEdit>("EditExportFilename");
    QVERIFY(!edit->isEnabled() && !W<QPushButton>("btnBrowse")->isEnabled());
    QCOMPARE(edit->palette().color(QPalette::Base), ToQColor(clBtnFace));
    QCOMPARE(edit->toolTip(), ExpectedHint());
    QCOMPARE(Dlg->ExportFileName(), ExpectedHint());
    QVERIFY2(edit->text().contains("...") && edit->text().endsWith("/nb_export.xls"),
             qPrintable(edit->text()));
    QCOMPARE(Dlg->TemplateFileName(), ExecutableFolder() + "r_base_template.xml");

    for (QWidget* w : Dlg->findChildren<QWidget*>())
        if (w->isVisible() && (qobject_cast<QLabel*>(w) || qobject_cast<QAbstractButton*>(w)))
            QVERIFY2(w->width() >= w->sizeHint().width(), qPrintable(w->objectName()));
    QVERIFY(SaveShot(Dlg.get(), "frmNBPrint-printer"));
}

void PrintDialogTest::fileChoiceEnablesTheFileControls() {
    ShowActive(Dlg.get());
    auto* edit = W<QLineEdit>("EditExportFilename");
    W<QRadioButton>("rbExport")->click();
    QVERIFY(edit->isEnabled() && W<QPushButton>("btnBrowse")->isEnabled());
    QCOMPARE(edit->palette().color(QPalette::Base), ToQColor(clWindow));
    QVERIFY(SaveShot(Dlg.get(), "frmNBPrint-file"));
    W<QRadioButton>("rbPrinter")->click();
    QVERIFY(!edit->isEnabled() && !W<QPushButton>("btnBrowse")->isEnabled());
    QCOMPARE(edit->palette().color(QPalette::Base), ToQColor(clBtnFace));

    // Showing the dialog again starts over with the printer and the default file.
    ChooseFile(QString::fromStdString(Folder->Path() + "x.xls"));
    Dlg->hide();
    ShowActive(Dlg.get());
    QVERIFY(W<QRadioButton>("rbPrinter")->isChecked());
    QCOMPARE(Dlg->ExportFileName(), ExpectedHint());
}

void PrintDialogTest::fileNameEditShowsTheWholePathOnlyWhileFocusedAndEnterUsesTheHint() {
    const QString before = QString::fromStdString(Folder->Path() + "a_long_folder_name/before.csv");
    const std::string typed = Folder->Path() + "typed.csv";
    std::filesystem::create_directory(Folder->Path() + "a_long_folder_name");
    ShowActive(Dlg.get());
    ChooseFile(before);
    auto* edit = W<QLineEdit>("EditExportFilename");
    QCOMPARE(edit->toolTip(), before);
    QVERIFY2(edit->text().contains("...") && edit->text().endsWith("/before.csv"), qPrintable(edit->text()));

    // Back in the edit: the whole path; typed over and confirmed with Enter, the hint still counts.
    edit->setFocus(Qt::MouseFocusReason);
    QCOMPARE(edit->text(), before);
    edit->selectAll();
    QTest::keyClicks(edit, QString::fromStdString(typed));
    QTest::keyClick(edit, Qt::Key_Return);
    QCOMPARE(Dlg->result(), int(QDialog::Accepted));
    QCOMPARE(CsvRecords(before.toStdString()).size(), 4); // the header and three notices
    QVERIFY(!FileExists(typed));
}

void PrintDialogTest::browseOffersTheHintAndTakesTheChosenFile() {
    const QString start = QString::fromStdString(Folder->Path() + "start.xls");
    const QString chosen = QString::fromStdString(Folder->Path() + "chosen");
    ShowActive(Dlg.get());
    ChooseFile(start);
    QStringList seen; // title, folder, file, filters, default suffix, cursor
    const auto answered = WhenModal("SaveXLSDialog", [&](QWidget* w) {
        auto* dialog = qobject_cast<QFileDialog*>(w);
        seen << dialog->windowTitle() << dialog->directory().path() + "/" << dialog->selectedFiles().value(0)
             << dialog->nameFilters().join(';') << dialog->defaultSuffix()
             << (QApplication::overrideCursor() ? "waiting" : "ordinary"); // the user chooses with the latter
        SaveAs(dialog, chosen);                                            // typed without an extension
    });
    QVERIFY(ClickButton(Dlg.get(), "btnBrowse"));
    QVERIFY(*answered);
    QCOMPARE(seen, QStringList({"Export Filename", QString::fromStdString(Folder->Path()), start,
                                "XLS format (*.xls);All (*)", "xls", "ordinary"}));
    QCOMPARE(Dlg->ExportFileName(), chosen + ".xls");
    QCOMPARE(W<QLineEdit>("EditExportFilename")->toolTip(), chosen + ".xls");
    QVERIFY(!Dlg->findChild<QFileDialog*>()); // freed
}

void PrintDialogTest::browseRefusesAFileInAMissingFolder() {
    ShowActive(Dlg.get());
    W<QRadioButton>("rbExport")->click();
    TSeenMessageBox seen;
    bool stayedOpen = false;
    WhenModal("SaveXLSDialog", [&](QWidget* w) {
        auto* dialog = qobject_cast<QFileDialog*>(w);
        AnswerNextMessageBox(QMessageBox::Ok, &seen);
        SaveAs(dialog, QString::fromStdString(Folder->Path() + "missing/x.xls"));
        stayedOpen = dialog->isVisible();
        dialog->reject();
    });
    QVERIFY(ClickButton(Dlg.get(), "btnBrowse"));
    QVERIFY(seen.found);
    QCOMPARE(seen.text, QString::fromStdString("The folder " + Folder->Path() + "missing does not exist.\n" +
                                               "Check the path and try again."));
    QVERIFY(stayedOpen);
    QCOMPARE(Dlg->ExportFileName(), ExpectedHint());
}

void PrintDialogTest::existingFileIsReplacedOnlyOnYes() {
    const std::string file = Folder->Path() + "old.csv";
    WriteTextFile(file, "old");
    ShowActive(Dlg.get());
    ChooseFile(QString::fromStdString(file));

    TSeenMessageBox seen;
    WhenVisible<QMessageBox>([](QMessageBox* box) { SaveShot(box, "frmNBPrint-replace"); });
    AnswerNextMessageBox(QMessageBox::No, &seen);
    QVERIFY(ClickButton(Dlg.get(), "btnOK"));
    QCOMPARE(seen.text, QString::fromStdString("The file " + file + " already exists.\r\n" +
                                               "Do you want to replace this file?"));
    QCOMPARE(seen.icon, QMessageBox::Warning);
    QCOMPARE(seen.buttons, QList<QMessageBox::StandardButton>({QMessageBox::Yes, QMessageBox::No}));
    QVERIFY(seen.plainText);
    QVERIFY(Dlg->isVisible());
    QCOMPARE(ReadTextFile(file), std::string("old"));

    AnswerNextMessageBox(QMessageBox::Yes, nullptr);
    QVERIFY(ClickButton(Dlg.get(), "btnOK"));
    QVERIFY(!Dlg->isVisible());
    QCOMPARE(Dlg->result(), int(QDialog::Accepted));
    QCOMPARE(CsvRecords(file).value(0), QString("PVO Node,Summary,Severity,Count"));
}

void PrintDialogTest::printerHandsTheFilledTemplateToTheLibrary() {
    TRecorder recorder;
    QVERIFY2(recorder.Loaded(), GetLastErrorText().c_str());
    const int callsBefore = recorder.Calls();
    // Written with LF line ends and none after the last line: the report has CR LF throughout.
    const std::string templ = Folder->Path() + "template.xml";
    WriteTextFile(templ, "<report>\n<title>:report_title</title>\n<fields>\n:field_definitions\n</fields>\n"
                         "<select>:select_fields</select>\n<groupBy/>\n<GroupByFields/>\n<rows>\n:xml_data\n"
                         "</rows>\n</report>");
    Dlg->SetTemplateFileName(templ);
    Dlg->SetReportLibrary("XmlReportingNB_Recorder.dll");
    ShowActive(Dlg.get());
    QVERIFY(ClickButton(Dlg.get(), "btnOK"));
    QCOMPARE(Dlg->result(), int(QDialog::Accepted));
    QCOMPARE(recorder.Calls(), callsBefore + 1);
    QCOMPARE(recorder.TextLength(0) + recorder.TextLength(1) + recorder.TextLength(2), 0);

    // Widths: the widest of caption and values, each followed by three blanks, in 11-pixel Arial.
    TArialTextMeasurer arial;
    const auto width = [&](std::initializer_list<std::string> texts) {
        int widest = 0;
        for (const std::string& t : texts)
            widest = std::max(widest, arial.TextWidth(t + "   "));
        return std::to_string(widest);
    };
    const std::string expected =
        "<report>\r\n<title>Notice Board Report</title>\r\n<fields>\r\n"
        "<field name=\"note_summary\" caption=\"Summary\"  fieldDef=\"\" width=\"" +
        width({"Summary", "Disk <C:> & \"D\" full", "line1\nline2", "Backup late"}) +
        "\" ignore=\"N\"/>\r\n"
        "<field name=\"note_severity\" caption=\"Severity\"  fieldDef=\"\" width=\"" +
        width({"Severity", "Fatal", "Normal", "Critical"}) +
        "\" ignore=\"N\"/>\r\n"
        "<field name=\"note_count\" caption=\"Count\"  fieldDef=\"numeric\" width=\"" +
        width({"Count", "2", "1"}) +
        "\" ignore=\"N\"/>\r\n"
        "<field name=\"note_pvo_node\" caption=\"PVO Node\"  fieldDef=\"\" width=\"" +
        width({"PVO Node", "DB1", "DB2"}) +
        "\" ignore=\"N\"/>\r\n</fields>\r\n"
        "<select><note_summary/>\r\n<note_severity/>\r\n<note_count/></select>\r\n"
        "<groupBy><field name=\"note_pvo_node\" groupByBand=\"maingroupbyband\"/></groupBy>\r\n"
        "<GroupByFields><note_pvo_node/></GroupByFields>\r\n<rows>\r\n"
        "<row id=\"0\"  note_summary=\"Disk &lt;C:&gt; &amp; &quot;D&quot; full\" note_severity=\"Fatal\" "
        "note_count=\"2\" note_pvo_node=\"DB1\"/>\r\n"
        "<row id=\"0\"  note_summary=\"line1\r\nline2\" note_severity=\"Normal\" note_count=\"1\" "
        "note_pvo_node=\"DB1\"/>\r\n"
        "<row id=\"0\"  note_summary=\"Backup late\" note_severity=\"Critical\" note_count=\"1\" "
        "note_pvo_node=\"DB2\"/>\r\n</rows>\r\n</report>\r\n";
    QCOMPARE(recorder.Xml(), expected);
}

void PrintDialogTest::selectedOnlyWithoutSelectionPrintsColumnsButNoRows() {
    TRecorder recorder;
    QVERIFY(recorder.Loaded());
    Dlg->SetReportLibrary("XmlReportingNB_Recorder.dll");
    ShowActive(Dlg.get());
    W<QCheckBox>("cbSelected")->setChecked(true);
    QVERIFY(ClickButton(Dlg.get(), "btnOK"));
    const std::string xml = recorder.Xml(); // the shipped template
    QVERIFY2(xml.find("<rows>\r\n\r\n  </rows>") != std::string::npos, xml.c_str());
    for (const char* field : {"note_summary", "note_severity", "note_count", "note_pvo_node"})
        QVERIFY(xml.find(std::string("<field name=\"") + field + "\" caption=") != std::string::npos);
    QVERIFY(xml.find("<title>Notice Board Report</title>") != std::string::npos);
}

void PrintDialogTest::printFailuresAreShownAndTheDialogCloses_data() {
    QTest::addColumn<QString>("templateFile");
    QTest::addColumn<QString>("library");
    QTest::addColumn<QString>("message"); // the start of the box's text
    QTest::newRow("missing template") << "missing.xml"
                                      << "XmlReportingNB_Recorder.dll"
                                      << "Cannot open file \"%1missing.xml\". No such file or directory";
    QTest::newRow("missing library") << ""
                                     << "NoSuchReportLibrary.dll"
                                     << "Unable to Load DLLNoSuchReportLibrary.dll\n\n";
    QTest::newRow("no printFromXML") << ""
                                     << "XmlReportingNB_NoEntry.dll"
                                     << "";
}

void PrintDialogTest::printFailuresAreShownAndTheDialogCloses() {
    QFETCH(QString, templateFile);
    QFETCH(QString, library);
    QFETCH(QString, message);
    TRecorder recorder;
    const int callsBefore = recorder.Calls();
    if (!templateFile.isEmpty()) Dlg->SetTemplateFileName(Folder->Path() + templateFile.toStdString());
    Dlg->SetReportLibrary(library.toStdString());
    ShowActive(Dlg.get());
    TSeenMessageBox seen;
    WhenVisible<QMessageBox>([](QMessageBox* box) {
        SaveShot(box, "frmNBPrint-" + QString(QTest::currentDataTag()).replace(' ', '-'));
    });
    AnswerNextMessageBox(QMessageBox::Ok, &seen);
    QVERIFY(ClickButton(Dlg.get(), "btnOK"));

    QVERIFY(seen.found);
    QCOMPARE(seen.icon, QMessageBox::Critical);
    message.replace("%1", QString::fromStdString(Folder->Path()));
    QVERIFY2(seen.text.startsWith(message), qPrintable(seen.text));
    if (message.isEmpty()) QVERIFY2(seen.text.contains("printFromXML"), qPrintable(seen.text));
    QVERIFY(seen.text.endsWith("\nNothing was printed."));
    QCOMPARE(seen.parent, Dlg.get());
    QCOMPARE(recorder.Calls(), callsBefore);
    QVERIFY(!Dlg->isVisible());
    QCOMPARE(Dlg->result(), int(QDialog::Accepted));
}

void PrintDialogTest::printActionPrintsThroughTheReportLibrary() {
    // The shipped template and library: the library's own print dialog comes up, and is cancelled.
    QWidget owner;
    bool printDialogSeen = false, parentless = false;
    WhenModal("frmNBPrint", [&](QWidget* dialog) {
        parentless = dialog->parentWidget() == nullptr;
        WhenVisible<QPrintDialog>([&](QPrintDialog* print) {
            printDialogSeen = true;
            print->reject();
        });
        ClickButton(dialog, "btnOK");
    });
    QCOMPARE(ShowPrintDialog(&owner, *Grid, *Grid), int(QDialog::Accepted));
    QVERIFY(parentless);
    QVERIFY(printDialogSeen);
}

void PrintDialogTest::printActionExportsTheBoardGridNotThePrintedOne() {
    TFakeBoardGrid board;
    board.Add({"B1", "On the board", "DB9", 2, 1, 0});
    board.Visible = {TFakeReportGrid::Column(nf_note_summary, "Summary")};
    const std::string file = Folder->Path() + "board.csv";
    WhenModal("frmNBPrint", [&](QWidget* dialog) {
        ChooseFileIn(dialog, QString::fromStdString(file));
        ClickButton(dialog, "btnOK");
    });
    QCOMPARE(ShowPrintDialog(nullptr, *Grid, board), int(QDialog::Accepted));
    QCOMPARE(CsvRecords(file), QStringList({"Summary", "On the board"}));
}

QTEST_MAIN(PrintDialogTest)
#include "PrintDialogTest.moc"
