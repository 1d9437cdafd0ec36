// The filter editor driven as a user drives it: its lines through the line editor, the delete rule, the
// syntax check, the name check on leaving the name box, and the live check and count below the lines.
#include "views/ui/FilterEditor.h"
#include "core/ui/QtPrompt.h"
#include "support/FilterDialogBench.h"
#include "support/MessageBoxAnswer.h"
#include "support/ModalDriver.h"
#include "support/WidgetShots.h"
#include "views/ui/FilterCheckView.h"

#include <QtTest>
#include <QtWidgets>

#include <vector>

namespace {

using B = TFilterDialogBench;

const std::string Severe = B::Line("", "(", "note_severity", ">=", "3", ")");
const std::string Disks = B::Line("AND", "(", "note_summary", "LIKE", "'Disk%'", ")");

} // namespace

class FilterEditorTest : public QObject {
    Q_OBJECT
private slots:
    void init() { Bench = std::make_unique<TFilterDialogBench>(); }
    void cleanup() {
        Editor.reset();
        Bench.reset();
    }

    void formShowsTheFilterAndItsExpression() {
        Open(B::Data({Severe, Disks}));
        QCOMPARE(Editor->windowTitle(), QString("Filter"));
        QString captions;
        for (const char* b : {"btnOK", "btnCancel", "btnAdd", "btnEdit", "btnDelete", "btnCheckSyntax"})
            captions += W<QPushButton>(b)->text() + "|";
        QCOMPARE(captions, QString("OK|Cancel|A&dd...|&Edit...|De&lete|Check &Syntax|"));
        QCOMPARE(W<QLabel>("lblName")->text(), QString("Name"));
        QCOMPARE(W<QLabel>("lblConditions")->text(), QString("&Filter conditions:"));
        QCOMPARE(Items(W<QListWidget>("lbConditions")),
                 QStringList({" ( note_severity >= 3 )", "AND ( note_summary LIKE 'Disk%' )"}));
        Check()->Settle();
        QCOMPARE(W<QPlainTextEdit>("memFilterExpression")->toPlainText(),
                 QString("( note_severity >= 3 )\nAND ( note_summary LIKE 'Disk%' )"));
        QCOMPARE(Check()->PassCount(), 2); // Disk slow and Disk gone
        QVERIFY2(Check()->Verdict().contains("passes 2 of 5 notices"), qPrintable(Check()->Verdict()));
        Editor->SetFilterName("Severe-disks");
        SaveShot(Editor.get(), "filtereditor");
    }

    void linesAreAddedAndEditedThroughTheLineEditor() {
        Open(B::Data({Severe}));
        auto* list = W<QListWidget>("lbConditions");
        // Add: a copy with one more line goes to the line editor; OK takes it back.
        WhenModal("FilterLineEditor", [](QWidget* line) {
            Child<QComboBox>(line, "cbBoolOp")->setCurrentText("OR");
            Child<QComboBox>(line, "cbFieldName")->setCurrentText("note_count");
            QTest::keyClicks(Child<QLineEdit>(line, "EditValue"), "7");
            ClickButton(line, "btnOK");
        });
        QVERIFY(ClickButton(Editor.get(), "btnAdd"));
        QCOMPARE(Items(list).last(), QString("OR ( note_count = 7 )"));
        QCOMPARE(list->currentRow(), 1);
        WhenModal("FilterLineEditor", [](QWidget* line) { ClickButton(line, "btnCancel"); });
        QVERIFY(ClickButton(Editor.get(), "btnAdd"));
        QCOMPARE(Editor->Filter().GetRowCount(), 2);

        // Edit works on the line last clicked; the selection stays where it was.
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(0)).center());
        QCOMPARE(Editor->Filter().GetCurrentRow(), 0);
        WhenModal("FilterLineEditor", [](QWidget* line) {
            Child<QLineEdit>(line, "EditValue")->setText("4");
            ClickButton(line, "btnOK");
        });
        QVERIFY(ClickButton(Editor.get(), "btnEdit"));
        QCOMPARE(Items(list), QStringList({" ( note_severity >= 4 )", "OR ( note_count = 7 )"}));
        QCOMPARE(list->currentRow(), 0);
        // A double-click edits too; Cancel keeps the line as it was.
        const auto edited = WhenModal("FilterLineEditor", [](QWidget* line) {
            Child<QComboBox>(line, "cbFieldName")->setCurrentText("note_summary");
            ClickButton(line, "btnCancel");
        });
        DoubleClickRow(list, 1);
        QVERIFY(*edited);
        QCOMPARE(Items(list).last(), QString("OR ( note_count = 7 )"));
    }

    // The next selection is fixed on the list before the removal: i - 1 for the last line, else i + 1.
    void deleteSelectsByTheIndexFixedBeforehand() {
        std::vector<std::string> lines;
        for (int i = 1; i <= 5; ++i)
            lines.push_back(B::Line(i == 1 ? "" : "OR", "(", "note_count", "=", std::to_string(i), ")"));
        Open(B::Data({lines[0], lines[1], lines[2], lines[3], lines[4]}));
        auto* list = W<QListWidget>("lbConditions");
        list->setCurrentRow(1); // as a click: line 1 becomes the filter's current line
        QVERIFY(ClickButton(Editor.get(), "btnDelete"));
        QCOMPARE(Items(list).size(), 4);
        QCOMPARE(list->currentRow(), 2); // "count = 4", one past the line that moved up
        QCOMPARE(Editor->Filter().GetCurrentRow(), 1);
        QCOMPARE(Editor->Filter().GetFilterString().find("= 2"), std::string::npos);
        list->setCurrentRow(3);
        QVERIFY(ClickButton(Editor.get(), "btnDelete"));
        QCOMPARE(list->currentRow(), 2);
        while (list->count() > 1) {
            list->setCurrentRow(0);
            QVERIFY(ClickButton(Editor.get(), "btnDelete"));
        }
        list->setCurrentRow(0);
        QVERIFY(ClickButton(Editor.get(), "btnDelete"));
        QCOMPARE(list->count(), 0);
        QCOMPARE(Editor->Filter().GetRowCount(), 0);
        QVERIFY(!W<QPushButton>("btnDelete")->isEnabled());
        QVERIFY(!W<QPushButton>("btnEdit")->isEnabled());
    }

    void checkSyntaxReportsTheLanguageMessage() {
        Open(B::Data({Severe, Disks}));
        QVERIFY(ClickButton(Editor.get(), "btnCheckSyntax"));
        QCOMPARE(Bench->Prompt.Messages.back(), std::string("Filter syntax OK"));
        QVERIFY(Editor->TestDataSet().Filtered());
        QCOMPARE(Editor->TestDataSet().RecordCount(), 2);
        Editor->Filter().SetRow(1);
        Editor->Filter().SetFieldByName("fieldname", "note_sumary");
        QVERIFY(ClickButton(Editor.get(), "btnCheckSyntax"));
        QCOMPARE(Bench->Prompt.Messages.back(),
                 std::string("Bad filter syntax.\r\nReason:\r\nUnknown field name "
                             "'note_sumary' at line 2, column 7"));
        QCOMPARE(Bench->Prompt.MessageTypes.back(), TMsgDlgType::mtError);
        QCOMPARE(Bench->Notices.Filtered(), false); // the board's own store is never touched
    }

    // On screen the message's CR LF pairs are line breaks: three lines for a bad filter.
    void syntaxMessageBoxShowsItsLines() {
        Open(B::Data({B::Line("", "(", "note_severity", ">=", "", ")")}));
        TQtPrompt prompt(Editor.get());
        QString text;
        int lines = 0;
        WhenVisible<QMessageBox>([&](QMessageBox* box) {
            text = box->text();
            auto* label = box->findChild<QLabel*>("qt_msgbox_label");
            lines = label->heightForWidth(4000) / label->fontMetrics().lineSpacing(); // unwrapped
            SaveShot(box, "filtereditor-badsyntax");
            box->button(QMessageBox::Ok)->click();
        });
        QVERIFY(ClickButton(Editor.get(), "btnCheckSyntax"));
        QVERIFY2(text.startsWith("Bad filter syntax.\r\nReason:\r\n") &&
                     text.endsWith("found ')' at line 1, column 21"),
                 qPrintable(text));
        QCOMPARE(lines, 3);
    }

    // The rules themselves are the name checks' own suite's; these rows are the kinds of answer a user meets.
    void nameIsCheckedOnLeavingTheBox_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QStringList>("messages");
        const QString invalid = "Error - Name contains an invalid character: \"%1\"";
        QTest::newRow("space") << "My Filter"
                               << QStringList{"Error - Name cannot contain spaces", invalid.arg(" ")};
        QTest::newRow("32") << QString(32, 'A') << QStringList{};
        QTest::newRow("path") << "../x" << QStringList{invalid.arg("."), invalid.arg("."), invalid.arg("/")};
    }
    void nameIsCheckedOnLeavingTheBox() {
        QFETCH(QString, typed);
        QFETCH(QStringList, messages);
        Open(B::Data({Severe}));
        auto* name = W<QLineEdit>("edtFilterName");
        name->setFocus(Qt::MouseFocusReason);
        name->insert(typed); // as pasted: key clicks carry Latin-1 only
        QTest::keyClick(name, Qt::Key_Tab);
        QCoreApplication::processEvents(); // the check runs from the event loop
        QCOMPARE(Shown(), messages);
        QCOMPARE(name->hasFocus(), !messages.isEmpty());
        // A click on OK is one more try: the same messages once more, and the editor stays open.
        Bench->Prompt.Messages.clear();
        QVERIFY(ClickButton(Editor.get(), "btnOK"));
        QCOMPARE(Shown(), messages);
        QCOMPARE(Editor->isVisible(), !messages.isEmpty());
    }

    void okChecksANameNeverTypedAndCancelChecksNothing() {
        Open(B::Data({}));
        QVERIFY(ClickButton(Editor.get(), "btnOK"));
        QCOMPARE(Shown(), QStringList{"Error - name cannot be blank"});
        QVERIFY(Editor->isVisible());
        QVERIFY(W<QLineEdit>("edtFilterName")->hasFocus());
        QTest::keyClicks(W<QLineEdit>("edtFilterName"), "bad name");
        Bench->Prompt.Messages.clear();
        QVERIFY(ClickButton(Editor.get(), "btnCancel"));
        QCOMPARE(Shown(), QStringList{});
        QCOMPARE(Editor->result(), int(QDialog::Rejected));
    }

    void liveCheckMarksThePlaceOfAnError() {
        Open(B::Data({Severe, B::Line("AND", "(", "note_sumary", "=", "'x'", ")")}));
        Check()->Settle();
        QCOMPARE(Check()->State(), TFilterCheckView::TState::Fails);
        QCOMPARE(Check()->Verdict(),
                 QString::fromUtf8("\u2717 Unknown field name 'note_sumary' at line 2, column 7"));
        auto* expression = W<QPlainTextEdit>("memFilterExpression");
        QCOMPARE(expression->extraSelections().size(), 1);
        const QTextCursor mark = expression->extraSelections()[0].cursor;
        QCOMPARE(mark.selectedText(), QString("n"));
        QCOMPARE(mark.selectionStart(), int(strlen("( note_severity >= 3 )\nAND ( ")));
        QVERIFY(W<QLabel>("lblFilterCheck")->palette().color(QPalette::WindowText).red() > 150);
        SaveShot(Editor.get(), "filtereditor-error");
        W<QListWidget>("lbConditions")->setCurrentRow(1);
        QVERIFY(ClickButton(Editor.get(), "btnDelete"));
        Check()->Settle();
        QCOMPARE(Check()->State(), TFilterCheckView::TState::Passes);
        QVERIFY(expression->extraSelections().isEmpty());
        QVERIFY(W<QLabel>("lblFilterCheck")->palette().color(QPalette::WindowText).green() > 100);
    }

    // With many notices the count runs a slice at a time from the event loop.
    void countRunsInSlicesBetweenEvents() {
        for (int i = 0; i < 20000; ++i) {
            Bench->Notices.Append();
            Bench->Notices.Buffer().SetString(nf_adpt_orig_key, "bulk" + std::to_string(i));
            Bench->Notices.Buffer().SetInteger(nf_note_severity, 1 + i % 4);
            Bench->Notices.Post();
        }
        Open(B::Data({Severe}));
        Check()->Settle();
        QCOMPARE(Check()->PassCount(), 10003);
        Check()->SetPause(0);
        Check()->SetSliceBudget(0);
        Check()->SetExpression("( note_severity = 4 )");
        int slices = 0;
        for (int spins = 0; spins < 1000 && Check()->State() != TFilterCheckView::TState::Passes; ++spins) {
            QCoreApplication::processEvents();
            if (Check()->State() == TFilterCheckView::TState::Counting) ++slices;
        }
        QCOMPARE(Check()->PassCount(), 5002);
        QVERIFY2(slices >= 3, qPrintable(QString::number(slices)));
    }

private:
    void Open(const std::string& data) {
        Editor = std::make_unique<TfrmFilterEditor>(Bench->Notices);
        Editor->Filter().SetAsData(data);
        Editor->show();
        QVERIFY(QTest::qWaitForWindowActive(Editor.get()));
    }
    template <typename T> T* W(const char* name) const { return Child<T>(Editor.get(), name); }
    TFilterCheckView* Check() const { return W<TFilterCheckView>("FilterCheck"); }
    QStringList Shown() const {
        QStringList shown;
        for (const std::string& m : Bench->Prompt.Messages)
            shown << QString::fromStdString(m);
        return shown;
    }

    std::unique_ptr<TFilterDialogBench> Bench;
    std::unique_ptr<TfrmFilterEditor> Editor;
};

QTEST_MAIN(FilterEditorTest)
#include "FilterEditorTest.moc"
