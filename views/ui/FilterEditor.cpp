#include "views/ui/FilterEditor.h"

#include "ui_FilterEditor.h"

#include "support/NBPrompt.h"
#include "support/ui/AccessibleNames.h"
#include "views/FilterApply.h"
#include "views/NameChecks.h"
#include "views/ui/FilterLineEditor.h"
#include "views/ui/ListSelection.h"
#include "views/ui/WaitCursor.h"

#include <QApplication>
#include <QFocusEvent>
#include <QScrollBar>

#include <exception>

namespace {

void ShowError(const std::exception& e) {
    NBPrompt().ShowMessage(e.what(), TMsgDlgType::mtError);
}

} // namespace

TfrmFilterEditor::TfrmFilterEditor(const TNoticeStore& Notices, QWidget* parent)
    : QDialog(parent), ui(std::make_unique<Ui::frmFilterEditor>()) {
    ui->setupUi(this);
    NameBuddiesAfterTheirLabels(this);
    {
        const TWaitCursor wait;
        cdsTestFilter.CopyFrom(Notices);
    }
    // The copy starts unfiltered: the board's own filter is no part of what is being tried here.
    cdsTestFilter.SetFiltered(false);
    cdsTestFilter.SetFilterText("");
    InstallFilterLanguage(cdsTestFilter);
    ui->FilterCheck->SetDataSet(&cdsTestFilter);

    ui->edtFilterName->installEventFilter(this);
    connect(ui->edtFilterName, &QLineEdit::textChanged, this,
            [this] { FNameVerdict = TNameVerdict::Unchecked; });
    connect(ui->lbConditions, &QListWidget::currentRowChanged, this, [this](int row) {
        if (!FSelecting && row >= 0) lbConditionsClick(row);
        UpdateButtons();
    });
    connect(ui->lbConditions, &QListWidget::itemSelectionChanged, this, &TfrmFilterEditor::UpdateButtons);
    connect(ui->lbConditions, &QListWidget::itemDoubleClicked, this, &TfrmFilterEditor::btnEditClick);
    connect(ui->btnAdd, &QPushButton::clicked, this, &TfrmFilterEditor::btnAddClick);
    connect(ui->btnEdit, &QPushButton::clicked, this, &TfrmFilterEditor::btnEditClick);
    connect(ui->btnDelete, &QPushButton::clicked, this, &TfrmFilterEditor::btnDeleteClick);
    connect(ui->btnCheckSyntax, &QPushButton::clicked, this, &TfrmFilterEditor::btnCheckSyntaxClick);
    connect(ui->btnOK, &QPushButton::clicked, this, &TfrmFilterEditor::btnOKClick);
    connect(ui->btnCancel, &QPushButton::clicked, this, &QDialog::reject);
}

TfrmFilterEditor::~TfrmFilterEditor() = default;

std::string TfrmFilterEditor::FilterName() const {
    return ui->edtFilterName->text().toStdString();
}

void TfrmFilterEditor::SetFilterName(const std::string& Name) {
    ui->edtFilterName->setText(QString::fromStdString(Name));
    FNameVerdict = TNameVerdict::Unchecked;
}

TFilterCheckView* TfrmFilterEditor::CheckView() const {
    return ui->FilterCheck;
}

void TfrmFilterEditor::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (event->spontaneous()) return;
    // No owner window: placed over the window it was opened from rather than in the middle of the screen.
    if (QWidget* opener = QApplication::activeWindow(); opener && opener != this)
        move(opener->frameGeometry().center() - rect().center());
    FormShow();
}

void TfrmFilterEditor::FormShow() {
    LoadList();
    // The line Edit works on is shown selected.
    if (FFilter.GetRowCount() > 0) SelectRow(FFilter.GetCurrentRow(), false);
    ui->lbConditions->setFocus(Qt::OtherFocusReason);
}

void TfrmFilterEditor::LoadList() {
    FSelecting = true;
    ui->lbConditions->clear();
    for (const std::string& item : FFilter.GetListBoxItems())
        ui->lbConditions->addItem(QString::fromStdString(item));
    FSelecting = false;
    UpdateButtons();
    RefreshCheck();
}

void TfrmFilterEditor::SelectRow(int Row, bool SetCurrentLine) {
    FSelecting = true;
    SetSelectedRow(ui->lbConditions, Row);
    FSelecting = false;
    if (SetCurrentLine && Row >= 0 && Row < FFilter.GetRowCount()) FFilter.SetRow(Row);
    UpdateButtons();
}

void TfrmFilterEditor::RefreshCheck() {
    ui->FilterCheck->SetExpression(FFilter.GetFilterString());
}

// Edit needs a line and Delete a selected one; with neither they could only report an error.
void TfrmFilterEditor::UpdateButtons() {
    ui->btnEdit->setEnabled(FFilter.GetRowCount() > 0);
    ui->btnDelete->setEnabled(SelectedRow(ui->lbConditions) >= 0);
}

void TfrmFilterEditor::lbConditionsClick(int Row) {
    try {
        FFilter.SetRow(Row);
    } catch (const std::exception& e) {
        ShowError(e);
    }
}

bool TfrmFilterEditor::EditLine(const std::string& Data, int Row, std::string& Result) {
    TFilterLineEditor editor(*this);
    try {
        editor.PopulateControls(Data, Row);
    } catch (const std::exception& e) {
        ShowError(e);
        return false;
    }
    if (editor.exec() != QDialog::Accepted) return false;
    Result = editor.GetAsData();
    return true;
}

void TfrmFilterEditor::btnAddClick() {
    if (!SettleNameCheck()) return;
    TFilter copy;
    copy.SetAsData(FFilter.GetAsData());
    copy.Append();
    std::string data;
    if (!EditLine(copy.GetAsData(), copy.GetRowCount() - 1, data)) return;
    FFilter.SetAsData(data);
    LoadList();
    SelectRow(ui->lbConditions->count() - 1, true);
}

void TfrmFilterEditor::btnEditClick() {
    if (!SettleNameCheck()) return;
    const int scroll = ui->lbConditions->verticalScrollBar()->value();
    const int selected = SelectedRow(ui->lbConditions);
    std::string data;
    if (!EditLine(FFilter.GetAsData(), FFilter.GetCurrentRow(), data)) return;
    FFilter.SetAsData(data);
    LoadList();
    SelectRow(selected, false);
    ui->lbConditions->verticalScrollBar()->setValue(scroll);
}

void TfrmFilterEditor::btnDeleteClick() {
    const int i = SelectedRow(ui->lbConditions);
    if (i < 0) return;
    // Counted on the list as it was: in the shortened list i + 1 is the line after the one that moved up.
    // Kept as it is, and so is the filter's current line (the next click in the list sets it).
    const int next = i == ui->lbConditions->count() - 1 ? i - 1 : i + 1;
    FSelecting = true;
    delete ui->lbConditions->takeItem(i);
    FSelecting = false;
    FFilter.Delete(i);
    if (next >= 0) SelectRow(next, false);
    UpdateButtons();
    RefreshCheck();
}

void TfrmFilterEditor::btnCheckSyntaxClick() {
    if (!SettleNameCheck()) return;
    std::string failure;
    try {
        const TWaitCursor wait; // the test copy recounts every notice
        cdsTestFilter.SetFiltered(false);
        cdsTestFilter.SetFilterText(FFilter.GetFilterString());
        cdsTestFilter.SetFiltered(true);
    } catch (const std::exception& e) {
        failure = std::string("Bad filter syntax.\r\nReason:\r\n") + e.what();
    }
    if (failure.empty())
        NBPrompt().ShowMessage("Filter syntax OK");
    else
        NBPrompt().ShowMessage(failure, TMsgDlgType::mtError);
}

// OK is one more way of leaving the name box: a name never checked (a new filter whose name was not
// typed, or one put there by the opener) is checked now, and the editor stays open while it fails.
void TfrmFilterEditor::btnOKClick() {
    if (FNameCheckQueued)
        SettleNameCheck();
    else if (FNameVerdict == TNameVerdict::Unchecked)
        CheckName();
    if (FNameVerdict != TNameVerdict::Passed) {
        ui->edtFilterName->setFocus(Qt::OtherFocusReason);
        return;
    }
    accept();
}

bool TfrmFilterEditor::eventFilter(QObject* watched, QEvent* event) {
    if (watched == ui->edtFilterName && event->type() == QEvent::FocusOut && isVisible()) {
        const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
        // Another window (a message box, another program) taking the focus is not leaving the box, and
        // Cancel must close a dialog whose name is still wrong.
        const bool leaves = reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason &&
                            QApplication::focusWidget() != ui->btnCancel;
        if (leaves && !FNameCheckQueued) {
            // Checked from the event loop: message boxes opened inside a focus change would take the mouse
            // press that caused it. The buttons settle a queued check first.
            FNameCheckQueued = true;
            QMetaObject::invokeMethod(this, &TfrmFilterEditor::edtFilterNameExit, Qt::QueuedConnection);
        }
    }
    return QDialog::eventFilter(watched, event);
}

void TfrmFilterEditor::edtFilterNameExit() {
    if (!FNameCheckQueued || !isVisible()) return;
    SettleNameCheck();
}

bool TfrmFilterEditor::SettleNameCheck() {
    if (!FNameCheckQueued) return true;
    FNameCheckQueued = false;
    return CheckName();
}

// ValidateFileName shows one message per failed check; a failed name keeps the focus in the name box.
bool TfrmFilterEditor::CheckName() {
    const bool ok = ValidateFileName(FilterName());
    FNameVerdict = ok ? TNameVerdict::Passed : TNameVerdict::Failed;
    if (!ok) ui->edtFilterName->setFocus(Qt::OtherFocusReason);
    return ok;
}
