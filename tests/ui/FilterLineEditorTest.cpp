// The filter line editor driven as a user drives it: its lists, the first line's operators, the value box
// under IS NULL, how values are stored for text and other fields, the field-name box, and OK checking the
// whole filter on the filter editor's copy of the notices.
#include "views/ui/FilterLineEditor.h"
#include "core/Znb_const.h"
#include "core/ui/NbColors.h"
#include "support/FilterDialogBench.h"
#include "support/ModalDriver.h"
#include "support/WidgetShots.h"
#include "views/ui/FilterCheckView.h"
#include "views/ui/FilterEditor.h"

#include <QAbstractItemView>
#include <QtTest>
#include <QtWidgets>

namespace {

using B = TFilterDialogBench;

} // namespace

class FilterLineEditorTest : public QObject {
    Q_OBJECT
private slots:
    void init() {
        Bench = std::make_unique<TFilterDialogBench>();
        Editor = std::make_unique<TfrmFilterEditor>(Bench->Notices);
    }
    void cleanup() {
        Line.reset();
        Editor.reset();
        Bench.reset();
    }

    void formShowsItsControlsAndLists() {
        Open(B::Data({B::Line("", "(", "", "=", "", ")")}), 0);
        QCOMPARE(Line->windowTitle(), QString("Filter Line Editor"));
        QCOMPARE(W<QPushButton>("btnCancel")->text(), QString("Cancel"));
        QString captions;
        for (const char* label :
             {"lblBoolOp", "lblLeftPrnth", "lblFieldName", "lblOperator", "lblValue", "lblRightPrnth"})
            captions += W<QLabel>(label)->text() + "|";
        QCOMPARE(captions, QString("&Boolean operator:|&Left parentheses:|&Field name:|&Operator:|&Value:|"
                                   "&Right parentheses:|"));
        QCOMPARE(Items(W<QComboBox>("cbOperator")),
                 QStringList({"=", "<>", ">=", "<=", ">", "<", "IS NULL", "IS NOT NULL", "LIKE", "IN"}));
        QCOMPARE(Items(W<QComboBox>("cbLeftPrnth")),
                 QStringList({"", "(", "((", "(((", "((((", "(((((", "(((((("}));
        QCOMPARE(Items(W<QComboBox>("cbRightPrnth")),
                 QStringList({"", ")", "))", ")))", "))))", ")))))", "))))))"}));
        QStringList fields;
        for (const NoticeBdColRec& c : NoticeBdColumnArray)
            fields << c.FieldName;
        QCOMPARE(Items(W<QComboBox>("cbFieldName")), fields);
        for (QWidget* w : Line->findChildren<QWidget*>())
            if (w->isVisible() && (qobject_cast<QLabel*>(w) || qobject_cast<QAbstractButton*>(w)))
                QVERIFY2(w->width() >= w->minimumSizeHint().width(), qPrintable(w->objectName()));
    }

    void firstLineOffersOnlyAnEmptyOperatorOrNot() {
        const std::string two = B::Data(
            {B::Line("", "(", "note_count", ">", "1", ")"), B::Line("OR", "(", "note_count", "<", "9", ")")});
        Open(two, 0);
        auto* ops = W<QComboBox>("cbBoolOp");
        ops->showPopup();
        QCOMPARE(Items(ops), QStringList({"", "NOT"}));
        ops->hidePopup();
        QCOMPARE(ops->currentText(), QString(""));
        Open(two, 1);
        ops = W<QComboBox>("cbBoolOp");
        ops->showPopup();
        QCOMPARE(Items(ops), QStringList({"", "AND", "OR", "NOT", "AND NOT", "OR NOT"}));
        ops->hidePopup();
        QCOMPARE(ops->currentText(), QString("OR"));
        ops->setCurrentIndex(4);
        QCOMPARE(Line->Filter().GetData(1, 0), std::string("AND NOT"));
    }

    void isNullEmptiesAndDisablesTheValueBox() {
        Open(B::Data({B::Line("", "(", "note_summary", "=", "'Disk'", ")")}), 0);
        auto* value = W<QLineEdit>("EditValue");
        auto* op = W<QComboBox>("cbOperator");
        QCOMPARE(value->text(), QString("Disk"));
        QVERIFY(value->isEnabled());
        op->setCurrentText("IS NULL");
        QCOMPARE(value->text(), QString(""));
        QVERIFY(!value->isEnabled());
        QCOMPARE(value->palette().color(QPalette::Base), Line->palette().color(QPalette::Window));
        QCOMPARE(Line->Filter().GetFilterString(), std::string("( note_summary IS NULL  )"));
        op->setCurrentText("=");
        QVERIFY(value->isEnabled());
        QCOMPARE(value->palette().color(QPalette::Base), ToQColor(clWindow));
        QTest::keyClicks(value, "CPU high");
        QCOMPARE(Line->Filter().GetFilterString(), std::string("( note_summary = 'CPU high' )"));
        // A saved IS NOT NULL line opens with the box already greyed.
        Open(B::Data({B::Line("", "(", "ack_date", "IS NOT NULL", "", ")")}), 0);
        QVERIFY(!W<QLineEdit>("EditValue")->isEnabled());
    }

    // Text fields hold their value in single quotes (inner quotes as typed); the six number and date
    // fields hold it bare. The value follows a later change of field.
    void valuesAreQuotedForTextFieldsOnly() {
        Open(B::Data({B::Line("", "(", "", "=", "", ")")}), 0);
        auto* value = W<QLineEdit>("EditValue");
        auto* field = W<QComboBox>("cbFieldName");
        QTest::keyClicks(value, "10");
        for (const NoticeBdColRec& c : NoticeBdColumnArray) {
            field->setCurrentText(c.FieldName);
            const bool bare = std::string("nb_internal_key note_raised_date note_last_raised_date note_count "
                                          "note_severity ack_date")
                                  .find(c.FieldName) != std::string::npos;
            QCOMPARE(Line->Filter().GetData(0, 4), std::string(bare ? "10" : "'10'"));
            QCOMPARE(Line->Filter().GetData(0, 2), std::string(c.FieldName));
        }
        field->setCurrentText("note_summary");
        value->setText("it's");
        QCOMPARE(Line->Filter().GetData(0, 4), std::string("'it's'"));
        // Loading shows a text field's value without its first and last character, whatever they are.
        const std::string saved = B::Data({B::Line("", "(", "note_summary", "=", "x", ")"),
                                           B::Line("AND", "", "note_count", "=", "7", "")});
        Open(saved, 0);
        QCOMPARE(W<QLineEdit>("EditValue")->text(), QString(""));
        Open(saved, 1);
        QCOMPARE(W<QLineEdit>("EditValue")->text(), QString("7"));
    }

    void fieldBoxCompletesNamesAndCaptions() {
        Open(B::Data({B::Line("", "(", "", "=", "", ")")}), 0);
        auto* field = W<QComboBox>("cbFieldName");
        QCompleter* completer = field->completer();
        QVERIFY(completer);
        const auto offered = [&](const QString& typed) {
            completer->setCompletionPrefix(typed);
            QStringList names;
            for (int i = 0; i < completer->completionCount(); ++i) {
                completer->setCurrentRow(i);
                names << completer->currentCompletion();
            }
            return names;
        };
        QCOMPARE(offered("sev"), QStringList({"note_severity", "note_severity_str"}));
        QCOMPARE(offered("acknowledged"), QStringList({"ack_date"})); // by its caption, "Date Acknowledged"
        QCOMPARE(offered("PVO"), QStringList({"note_pvo_node"}));
        field->lineEdit()->setFocus();
        QTest::keyClicks(field->lineEdit(), "summ");
        QVERIFY(completer->popup()->isVisible());
        QTest::keyClick(completer->popup(), Qt::Key_Down);
        QTest::keyClick(completer->popup(), Qt::Key_Return);
        QCOMPARE(field->currentText(), QString("note_summary"));
        QCOMPARE(Line->Filter().GetData(0, 2), std::string("note_summary"));
        // Each name shows its caption beside it, in the list and in the completions.
        const QModelIndex summary = field->model()->index(6, 0);
        QCOMPARE(summary.data(Qt::ToolTipRole).toString(), QString("Summary"));
        QStyleOptionViewItem option;
        option.initFrom(field->view());
        const int nameOnly = option.fontMetrics.horizontalAdvance("note_summary");
        QVERIFY(field->view()->itemDelegate()->sizeHint(option, summary).width() >
                nameOnly + option.fontMetrics.horizontalAdvance("Summary"));
        field->showPopup();
        SaveShot(field->view()->window(), "filterlineeditor-fields");
        field->hidePopup();
    }

    // OK tries the whole filter on the editor's copy of the notices: a bad one keeps the dialog open with
    // the language's message; the copy's own filter text and switch come back either way.
    void okChecksTheWholeFilterAndStaysOpenOnAnError() {
        TNoticeStore& test = Editor->TestDataSet();
        test.SetFilterText("note_severity = 4");
        test.SetFiltered(true);
        const std::string data = B::Data({B::Line("", "(", "note_severity", ">=", "3", ")"),
                                          B::Line("AND", "(", "note_summary", "LIKE", "'Disk%'", ")")});
        Open(data, 1);
        W<QComboBox>("cbFieldName")->setCurrentText("note_sumary");
        QVERIFY(ClickButton(Line.get(), "btnOK"));
        QVERIFY(Line->isVisible());
        QCOMPARE(Line->result(), int(QDialog::Rejected));
        QCOMPARE(Bench->Prompt.Messages.size(), size_t(1));
        QCOMPARE(Bench->Prompt.Messages[0],
                 std::string(
                     "Syntax error in filter line:\r\nUnknown field name 'note_sumary' at line 2, column 7"));
        QCOMPARE(Bench->Prompt.MessageTypes[0], TMsgDlgType::mtError);
        QCOMPARE(test.FilterText(), std::string("note_severity = 4"));
        QVERIFY(test.Filtered());
        QVERIFY(!test.ControlsDisabled());
        QCOMPARE(test.RecordCount(), 2);

        W<QComboBox>("cbFieldName")->setCurrentText("note_summary");
        QVERIFY(ClickButton(Line.get(), "btnOK"));
        QVERIFY(!Line->isVisible());
        QCOMPARE(Line->result(), int(QDialog::Accepted));
        QCOMPARE(Bench->Prompt.Messages.size(), size_t(1));
        QCOMPARE(test.FilterText(), std::string("note_severity = 4"));
        QCOMPARE(Line->GetAsData(), data);
    }

    void verdictFollowsTheEditsOfTheLine() {
        Open(B::Data({B::Line("", "(", "note_severity", ">=", "3", ")")}), 0);
        auto* check = W<TFilterCheckView>("FilterCheck");
        check->Settle();
        QCOMPARE(check->State(), TFilterCheckView::TState::Passes);
        QCOMPARE(check->PassCount(), 3);
        QVERIFY2(check->Verdict().contains("passes 3 of 5 notices"), qPrintable(check->Verdict()));
        W<QLineEdit>("EditValue")->setText("");
        QCOMPARE(check->State(), TFilterCheckView::TState::Pending);
        check->Settle();
        QCOMPARE(check->State(), TFilterCheckView::TState::Fails);
        QVERIFY2(check->Verdict().contains("at line 1, column"), qPrintable(check->Verdict()));
        SaveShot(Line.get(), "filterlineeditor-error");
    }

private:
    void Open(const std::string& data, int row) {
        Line = std::make_unique<TFilterLineEditor>(*Editor);
        Line->PopulateControls(data, row);
        Line->show();
        QVERIFY(QTest::qWaitForWindowExposed(Line.get()));
    }
    template <typename T> T* W(const char* name) const { return Child<T>(Line.get(), name); }

    std::unique_ptr<TFilterDialogBench> Bench;
    std::unique_ptr<TfrmFilterEditor> Editor;
    std::unique_ptr<TFilterLineEditor> Line;
};

QTEST_MAIN(FilterLineEditorTest)
#include "FilterLineEditorTest.moc"
