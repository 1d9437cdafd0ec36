// The spreadsheet export dialog driven as a user drives it: what it shows, the board's export button
// ticking "Selected notices only", Browse, the rows written, failures that keep the dialog open, and the
// progress dialog of a long export with its Cancel.
#include "platform/Process.h"
#include "reports/ui/ExportToFile.h"
#include "reports/ui/Nb_xport2xls.h"
#include "support/MessageBoxAnswer.h"
#include "support/ModalDriver.h"
#include "support/PrintExportBench.h"
#include "support/WidgetShots.h"

#include <QtTest>
#include <QtWidgets>

#include <filesystem>
#include <memory>

class XlsExportDialogTest : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void showsTheFormWithTheDefaultFile();
    void exportButtonTicksSelectedOnlyForMoreThanOneSelectedRow_data();
    void exportButtonTicksSelectedOnlyForMoreThanOneSelectedRow();
    void browseStartsInTheExecutableFolderWithTheEditsFile();
    void writesAllOrTheSelectedRowsAndClosesOnceWritten();
    void failedExportIsShownAndTheDialogStaysOpen();
    void blankFileNameIsRefused();
    void longExportShowsItsProgressAndWritesEveryRow();
    void cancelledExportLeavesNoFileAndTheDialogOpen();

private:
    template <typename T> T* W(const char* name) const { return Child<T>(Dlg.get(), name); }
    void SetFile(const std::string& FileName) const {
        W<QLineEdit>("editFilename")->setText(QString::fromStdString(FileName));
    }
    // Many notices, for an export long enough to report progress several times.
    void AddNotices(int Count) const {
        for (int i = 0; i < Count; ++i)
            Grid->Add({"N" + std::to_string(i), "Notice " + std::to_string(i), "DB1", 1 + i % 4, 1, 0});
    }
    QProgressDialog* Progress() const { return Dlg->findChild<QProgressDialog*>("ExportProgress"); }

    std::unique_ptr<TTempFolder> Folder;
    std::unique_ptr<TFakeBoardGrid> Grid;
    std::unique_ptr<TfrmXLSExport> Dlg;
};

void XlsExportDialogTest::init() {
    Folder = std::make_unique<TTempFolder>();
    Grid = std::make_unique<TFakeBoardGrid>();
    FillThreeNotices(*Grid);
    Dlg = std::make_unique<TfrmXLSExport>(*Grid);
}

void XlsExportDialogTest::cleanup() {
    Dlg.reset();
    DrainQueuedAnswers();
    SetExportProgressDelay(500);
}

void XlsExportDialogTest::showsTheFormWithTheDefaultFile() {
    ShowActive(Dlg.get());
    QCOMPARE(Dlg->windowTitle(), QString("Notice Board - XLS Export"));
    QVERIFY(!(Dlg->windowFlags() & (Qt::WindowCloseButtonHint | Qt::WindowSystemMenuHint)));
    const QStringList captions = {W<QLabel>("Label1")->text(), W<QPushButton>("btnBrowse")->text(),
                                  W<QCheckBox>("cbSelected")->text(), W<QPushButton>("btnOK")->text(),
                                  W<QPushButton>("BTNcANCEL")->text()};
    QCOMPARE(captions.join("|"), QString("E&xport to:|&Browse...|&Selected notices only|OK|Cancel"));
    QCOMPARE(W<QLineEdit>("editFilename")->text(),
             QString::fromStdString(ExecutableFolder() + "noticeboard_export.xls"));
    QVERIFY(!W<QCheckBox>("cbSelected")->isChecked());
    for (QWidget* w : Dlg->findChildren<QWidget*>())
        if (w->isVisible() && (qobject_cast<QLabel*>(w) || qobject_cast<QAbstractButton*>(w)))
            QVERIFY2(w->width() >= w->sizeHint().width(), qPrintable(w->objectName()));
    QVERIFY(SaveShot(Dlg.get(), "frmXLSExport"));

    QVERIFY(ClickButton(Dlg.get(), "BTNcANCEL"));
    QCOMPARE(Dlg->result(), int(QDialog::Rejected));
}

void XlsExportDialogTest::exportButtonTicksSelectedOnlyForMoreThanOneSelectedRow_data() {
    QTest::addColumn<std::vector<TBookmark>>("selected");
    QTest::addColumn<bool>("ticked");
    QTest::newRow("none") << std::vector<TBookmark>{} << false;
    QTest::newRow("one") << std::vector<TBookmark>{2} << false;
    QTest::newRow("two") << std::vector<TBookmark>{3, 1} << true;
}

void XlsExportDialogTest::exportButtonTicksSelectedOnlyForMoreThanOneSelectedRow() {
    QFETCH(std::vector<TBookmark>, selected);
    QFETCH(bool, ticked);
    Grid->Selected = selected;
    bool seenTicked = !ticked, parentless = false;
    QWidget owner;
    WhenModal("frmXLSExport", [&](QWidget* dialog) {
        seenTicked = Child<QCheckBox>(dialog, "cbSelected")->isChecked();
        parentless = dialog->parentWidget() == nullptr;
        ClickButton(dialog, "BTNcANCEL");
    });
    QCOMPARE(ShowXLSExportDialog(&owner, *Grid), int(QDialog::Rejected));
    QCOMPARE(seenTicked, ticked);
    QVERIFY(parentless);
}

void XlsExportDialogTest::browseStartsInTheExecutableFolderWithTheEditsFile() {
    ShowActive(Dlg.get());
    SetFile("mine.xls");
    const QString chosen = QString::fromStdString(Folder->Path() + "chosen.xlsx");
    QStringList seen; // folder, file, filters, default suffix
    WhenModal("SaveXLSDialog", [&](QWidget* w) {
        auto* dialog = qobject_cast<QFileDialog*>(w);
        seen << dialog->directory().path() + "/" << dialog->selectedFiles().value(0)
             << dialog->nameFilters().join(';') << dialog->defaultSuffix();
        SaveAs(dialog, chosen);
    });
    QVERIFY(ClickButton(Dlg.get(), "btnBrowse"));
    QCOMPARE(seen.mid(0, 2), QStringList({QString::fromStdString(ExecutableFolder()),
                                          QString::fromStdString(ExecutableFolder() + "mine.xls")}));
    QVERIFY2(!seen.value(2).contains("xls"), qPrintable(seen.value(2)));
    QVERIFY(seen.value(3).isEmpty());
    QCOMPARE(W<QLineEdit>("editFilename")->text(), chosen);
}

void XlsExportDialogTest::writesAllOrTheSelectedRowsAndClosesOnceWritten() {
    const std::string file = Folder->Path() + "notices.csv";
    Grid->Selected = {3, 1};
    ShowActive(Dlg.get());
    SetFile(file);
    QVERIFY(ClickButton(Dlg.get(), "btnOK"));
    QCOMPARE(Dlg->result(), int(QDialog::Accepted));
    QCOMPARE(CsvRecords(file),
             QStringList({"PVO Node,Summary,Severity,Count", "DB1,\"Disk <C:> & \"\"D\"\" full\",Fatal,2",
                          "DB1,\"line1\nline2\",Normal,1", "DB2,Backup late,Critical,1"}));

    // The selected rows only, replacing the file after the question; No first keeps the dialog and file.
    ShowActive(Dlg.get());
    SetFile(file);
    W<QCheckBox>("cbSelected")->setChecked(true);
    TSeenMessageBox seen;
    AnswerNextMessageBox(QMessageBox::No, &seen);
    QVERIFY(ClickButton(Dlg.get(), "btnOK"));
    QVERIFY(seen.found);
    QVERIFY(Dlg->isVisible());
    QCOMPARE(CsvRecords(file).size(), 4);
    AnswerNextMessageBox(QMessageBox::Yes, nullptr);
    QVERIFY(ClickButton(Dlg.get(), "btnOK"));
    QVERIFY(!Dlg->isVisible());
    QCOMPARE(CsvRecords(file),
             QStringList({"PVO Node,Summary,Severity,Count", "DB1,\"Disk <C:> & \"\"D\"\" full\",Fatal,2",
                          "DB2,Backup late,Critical,1"}));
}

// The kinds of failure are the export's own suite's; here, how one reaches the user.
void XlsExportDialogTest::failedExportIsShownAndTheDialogStaysOpen() {
    const std::string file = Folder->Path() + "missing/n.xls";
    ShowActive(Dlg.get());
    SetFile(file);
    TSeenMessageBox seen;
    WhenVisible<QMessageBox>([](QMessageBox* box) { SaveShot(box, "frmXLSExport-missing-folder"); });
    AnswerNextMessageBox(QMessageBox::Ok, &seen);
    QVERIFY(ClickButton(Dlg.get(), "btnOK"));

    QCOMPARE(seen.icon, QMessageBox::Critical);
    QVERIFY2(seen.text.startsWith(QString::fromStdString("Cannot create file " + file)),
             qPrintable(seen.text));
    QVERIFY2(seen.text.contains("No such file or directory"), qPrintable(seen.text));
    QVERIFY(Dlg->isVisible());
    QVERIFY(ClickButton(Dlg.get(), "BTNcANCEL"));
}

void XlsExportDialogTest::blankFileNameIsRefused() {
    ShowActive(Dlg.get());
    SetFile("  ");
    TSeenMessageBox seen;
    AnswerNextMessageBox(QMessageBox::Ok, &seen);
    QVERIFY(ClickButton(Dlg.get(), "btnOK"));
    QCOMPARE(seen.text, QString("No file name was given. Choose the file to export to."));
    QVERIFY(Dlg->isVisible());
}

void XlsExportDialogTest::longExportShowsItsProgressAndWritesEveryRow() {
    AddNotices(10000);
    const std::string file = Folder->Path() + "long.csv";

    // A short wait before the progress shows only when the export is not nearly done.
    SetExportProgressDelay(0);
    bool progressSeen = false;
    Grid->OnRow = [&](int32_t) {
        if (progressSeen || !Progress() || !Progress()->isVisible()) return;
        progressSeen = true;
        SaveShot(Progress(), "ExportProgress");
    };
    ShowActive(Dlg.get());
    SetFile(file);
    QVERIFY(ClickButton(Dlg.get(), "btnOK"));
    QVERIFY(progressSeen);
    QCOMPARE(Dlg->result(), int(QDialog::Accepted));
    QCOMPARE(CsvRecords(file).size(), 1 + 10003);
    QVERIFY(!Progress()); // gone with its export

    // Quick exports never show it.
    SetExportProgressDelay(500);
    progressSeen = false;
    ShowActive(Dlg.get());
    SetFile(Folder->Path() + "short.csv");
    Grid->Selected = {1, 2};
    W<QCheckBox>("cbSelected")->setChecked(true);
    QVERIFY(ClickButton(Dlg.get(), "btnOK"));
    QVERIFY(!progressSeen);
    QCOMPARE(CsvRecords(Folder->Path() + "short.csv").size(), 3);
}

void XlsExportDialogTest::cancelledExportLeavesNoFileAndTheDialogOpen() {
    AddNotices(10000);
    const std::string file = Folder->Path() + "cancelled.xls";
    WriteTextFile(file, "old");
    SetExportProgressDelay(0);
    // The user presses Cancel as soon as the progress shows.
    Grid->OnRow = [&](int32_t) {
        if (QProgressDialog* progress = Progress(); progress && progress->isVisible())
            QTest::mouseClick(progress->findChild<QPushButton*>(), Qt::LeftButton);
    };
    ShowActive(Dlg.get());
    SetFile(file);
    TSeenMessageBox replace, other;
    AnswerNextMessageBox(QMessageBox::Yes, &replace);
    AnswerNextMessageBox(QMessageBox::Ok, &other); // a second box would be a fault
    QVERIFY(ClickButton(Dlg.get(), "btnOK"));
    QVERIFY(replace.found);
    DrainQueuedAnswers();
    QVERIFY(!other.found);
    QVERIFY(Dlg->isVisible());
    QCOMPARE(ReadTextFile(file), std::string("old"));
    QCOMPARE(int(std::distance(std::filesystem::directory_iterator(Folder->Path()),
                               std::filesystem::directory_iterator())),
             1);
}

QTEST_MAIN(XlsExportDialogTest)
#include "XlsExportDialogTest.moc"
