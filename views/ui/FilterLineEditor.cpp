#include "views/ui/FilterLineEditor.h"

#include "ui_FilterLineEditor.h"

#include "core/TNoticeStore.h"
#include "core/ui/NbColors.h"
#include "support/NBPrompt.h"
#include "support/StrUtils.h"
#include "support/ui/AccessibleNames.h"
#include "views/ui/FieldNameBox.h"
#include "views/ui/FilterEditor.h"
#include "views/ui/WaitCursor.h"

#include <QShowEvent>

#include <exception>
#include <optional>

namespace {

// A list given as one comma text: items split at commas (and blanks), an item in double quotes taken as
// it stands, so ",NOT" is an empty item and NOT.
QStringList CommaText(const QString& text) {
    QStringList items;
    if (text.isEmpty()) return items;
    qsizetype i = 0;
    const qsizetype n = text.size();
    for (;;) {
        QString item;
        if (text[i] == QLatin1Char('"')) {
            for (++i; i < n; ++i) {
                if (text[i] != QLatin1Char('"')) {
                    item += text[i];
                } else if (i + 1 < n && text[i + 1] == QLatin1Char('"')) {
                    item += text[++i];
                } else {
                    ++i;
                    break;
                }
            }
        } else {
            while (i < n && text[i] != QLatin1Char(',') && text[i] != QLatin1Char(' '))
                item += text[i++];
        }
        items << item;
        if (i >= n) break;
        ++i;
    }
    return items;
}

const QString AllBoolOps = QStringLiteral(",AND,OR,NOT,\"AND NOT\",\"OR NOT\"");
const QString FirstLineBoolOps = QStringLiteral(",NOT");
const QString Operators = QStringLiteral("=,<>,>=,<=,>,<,\"IS NULL\",\"IS NOT NULL\",LIKE,IN");

// Items are found as a string list finds them: ignoring letter case.
void SelectText(QComboBox* box, const std::string& text) {
    box->setCurrentIndex(box->findText(QString::fromStdString(text), Qt::MatchFixedString));
}

// The separators of the filter format cannot be part of a value.
std::string ColumnText(const QString& text) {
    std::string s = text.toStdString();
    std::erase_if(s, [](char c) { return c == '\x02' || c == '\x03'; });
    return s;
}

bool IsNullOperator(const QString& op) {
    return op.toUpper().contains(QLatin1String("NULL"));
}

} // namespace

TFilterLineEditor::TFilterLineEditor(TfrmFilterEditor& Editor, QWidget* parent)
    : QDialog(parent), ui(std::make_unique<Ui::FilterLineEditor>()), FEditor(Editor) {
    ui->setupUi(this);
    NameBuddiesAfterTheirLabels(this);
    FPopulating = true;
    ui->cbBoolOp->addItems(CommaText(AllBoolOps));
    ui->cbOperator->addItems(CommaText(Operators));
    ui->cbOperator->setCurrentIndex(0);
    ui->cbLeftPrnth->setCurrentIndex(1);
    ui->cbRightPrnth->setCurrentIndex(1);
    SetupFieldNameBox(ui->cbFieldName);
    FPopulating = false;
    ui->FilterCheck->SetExpressionVisible(false);
    ui->FilterCheck->SetDataSet(&FEditor.TestDataSet());

    connect(ui->cbBoolOp, &TPopupComboBox::popupAboutToShow, this, &TFilterLineEditor::cbBoolOpDropDown);
    connect(ui->cbBoolOp, &QComboBox::currentIndexChanged, this,
            [this] { ControlChange("boolop", ui->cbBoolOp->currentText().toStdString()); });
    connect(ui->cbLeftPrnth, &QComboBox::currentIndexChanged, this,
            [this] { ControlChange("LeftPar", ui->cbLeftPrnth->currentText().toStdString()); });
    connect(ui->cbFieldName, &QComboBox::currentTextChanged, this, [this](const QString& text) {
        ControlChange("fieldname", ColumnText(text));
        // The value follows the field's kind: quoted for a text field, bare otherwise.
        if (!FPopulating) StoreValue();
    });
    connect(ui->cbOperator, &QComboBox::currentIndexChanged, this, [this] {
        if (FPopulating) return;
        ControlChange("operator", ui->cbOperator->currentText().toStdString());
        UpdateValueBox(true);
        StoreValue(); // an operator without NULL takes the box's value again
    });
    connect(ui->EditValue, &QLineEdit::textChanged, this, [this] {
        if (!FPopulating) StoreValue();
    });
    connect(ui->cbRightPrnth, &QComboBox::currentIndexChanged, this,
            [this] { ControlChange("RightPar", ui->cbRightPrnth->currentText().toStdString()); });
    connect(ui->btnOK, &QPushButton::clicked, this, &TFilterLineEditor::btnOKClick);
    connect(ui->btnCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(ui->btnTest, &QPushButton::clicked, this, &TFilterLineEditor::btnTestClick);
}

TFilterLineEditor::~TFilterLineEditor() = default;

bool TFilterLineEditor::IsTextField(const std::string& FieldName) {
    for (const char* field : {"nb_internal_key", "note_raised_date", "note_last_raised_date", "note_count",
                              "note_severity", "ack_date"})
        if (FieldName == field) return false;
    return true;
}

void TFilterLineEditor::PopulateControls(const std::string& Data, int Row) {
    FPopulating = true;
    struct TDone {
        bool& Flag;
        ~TDone() { Flag = false; }
    } done{FPopulating};
    FFilter.SetAsData(Data);
    FFilter.SetRow(Row);
    RestrictBoolOps();
    SelectText(ui->cbBoolOp, FFilter.GetFieldByName("boolop"));
    SelectText(ui->cbLeftPrnth, FFilter.GetFieldByName("leftpar"));
    const std::string field = FFilter.GetFieldByName("fieldname");
    SelectText(ui->cbFieldName, field);
    ui->cbFieldName->setEditText(QString::fromStdString(field));
    SelectText(ui->cbOperator, FFilter.GetFieldByName("operator"));
    // A text field's value is shown without the quotes it is stored in: its first and last character.
    const QString value = QString::fromStdString(FFilter.GetFieldByName("value"));
    ui->EditValue->setText(IsTextField(field) ? value.mid(1, value.size() - 2) : value);
    SelectText(ui->cbRightPrnth, FFilter.GetFieldByName("rightpar"));
    UpdateValueBox(false);
    RefreshCheck();
}

void TFilterLineEditor::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (event->spontaneous()) return;
    // No owner window, so it would open in the middle of the screen: over the filter editor reads better.
    if (FEditor.isVisible()) move(FEditor.frameGeometry().center() - rect().center());
}

void TFilterLineEditor::cbBoolOpDropDown() {
    RestrictBoolOps();
}

// A first line has nothing before it to join: it offers only an empty operator or NOT. Done as the list
// drops down and also when the line is loaded, so the arrow keys on the closed list cannot pick AND either.
void TFilterLineEditor::RestrictBoolOps() {
    if (FFilter.GetCurrentRow() != 0) return;
    const QStringList items = CommaText(FirstLineBoolOps);
    QStringList current;
    for (int i = 0; i < ui->cbBoolOp->count(); ++i)
        current << ui->cbBoolOp->itemText(i);
    if (current == items) return;
    const bool populating = FPopulating;
    FPopulating = true; // replacing the items is no choice of the user's
    const QString chosen = ui->cbBoolOp->currentText();
    ui->cbBoolOp->clear();
    ui->cbBoolOp->addItems(items);
    ui->cbBoolOp->setCurrentIndex(ui->cbBoolOp->findText(chosen, Qt::MatchFixedString));
    FPopulating = populating;
}

void TFilterLineEditor::ControlChange(const char* Column, const std::string& Value) {
    if (FPopulating) return;
    FFilter.SetFieldByName(Column, Value);
    RefreshCheck();
}

void TFilterLineEditor::StoreValue() {
    const std::string field = ColumnText(ui->cbFieldName->currentText());
    const std::string text = ColumnText(ui->EditValue->text());
    // IS NULL and IS NOT NULL take no value, whatever the field.
    if (IsNullOperator(ui->cbOperator->currentText()))
        ControlChange("value", "");
    else
        ControlChange("value", IsTextField(field) ? "'" + text + "'" : text);
}

// Empty: the operator was just chosen, so a NULL test also empties the box (loading a line only sets the
// box's state; its value is already empty).
void TFilterLineEditor::UpdateValueBox(bool Empty) {
    const bool isNull = IsNullOperator(ui->cbOperator->currentText());
    if (isNull && Empty) ui->EditValue->clear();
    QPalette palette = ui->EditValue->palette();
    palette.setColor(QPalette::Base, isNull ? ui->EditValue->parentWidget()->palette().color(QPalette::Window)
                                            : ToQColor(clWindow));
    ui->EditValue->setPalette(palette);
    ui->EditValue->setEnabled(!isNull);
}

void TFilterLineEditor::btnOKClick() {
    TNoticeStore& test = FEditor.TestDataSet();
    std::optional<TWaitCursor> wait(std::in_place); // the test copy recounts every notice
    test.DisableControls();
    const std::string oldText = test.FilterText();
    const bool oldFiltered = test.Filtered();
    std::string failure;
    try {
        test.SetFiltered(false);
        test.SetFilterText(FFilter.GetFilterString());
        test.SetFiltered(true);
    } catch (const std::exception& e) {
        failure = e.what();
        if (failure.empty()) failure = "Unknown error";
    }
    try {
        test.SetFiltered(false);
        if (test.FilterText() != oldText) test.SetFilterText(oldText); // it compiled when it was set
        test.SetFiltered(oldFiltered);
    } catch (const std::exception&) {
    }
    test.EnableControls();
    wait.reset();
    if (failure.empty()) {
        accept();
        return;
    }
    // The dialog stays open for the line to be put right.
    NBPrompt().ShowMessage("Syntax error in filter line:\r\n" + failure, TMsgDlgType::mtError);
}

void TFilterLineEditor::btnTestClick() {
    std::string text;
    for (const std::string& item : FFilter.GetListBoxItems())
        text += item + "\r\n";
    NBPrompt().ShowMessage(text);
}

void TFilterLineEditor::RefreshCheck() {
    ui->FilterCheck->SetExpression(FFilter.GetFilterString());
}
