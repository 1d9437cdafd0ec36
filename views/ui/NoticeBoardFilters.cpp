#include "views/ui/NoticeBoardFilters.h"

#include "ui_NoticeBoardFilters.h"

#include "adapters/ZNB_Cfg.h"
#include "support/NBPrompt.h"
#include "support/StrUtils.h"
#include "support/ui/AccessibleNames.h"
#include "views/BoardFiles.h"
#include "views/FilterApply.h"
#include "views/ui/ChooserRefill.h"
#include "views/ui/FilterEditor.h"
#include "views/ui/ListSelection.h"

#include <QComboBox>

namespace {

constexpr const char* FilterExtension = ".nbf";

} // namespace

void btnFiltersClick(QWidget* owner, const TNoticeStore& Notices, QComboBox& cmbFilters, TFIleLister& Lister,
                     const std::function<void()>& ApplyChosenFilter) {
    TfrmNoticeBoardFilters dialog(Notices, owner);
    const int index = cmbFilters.currentIndex();
    dialog.SelectIndex(index);
    dialog.SetCurrentFilterName(cmbFilters.itemText(index).toStdString());
    dialog.UpdateButtons();
    if (dialog.exec() != QDialog::Accepted) return;
    ApplyChosenEntry(cmbFilters, Lister, dialog.SelectedIndex(), ApplyChosenFilter);
}

TfrmNoticeBoardFilters::TfrmNoticeBoardFilters(const TNoticeStore& Notices, QWidget* parent)
    : QDialog(parent), ui(std::make_unique<Ui::frmNoticeBoardFilters>()), FNotices(Notices) {
    ui->setupUi(this);
    NameBuddiesAfterTheirLabels(this);
    FLister.SetFilePattern("*.nbf");
    FLister.SetFolderPath(NBConfig ? NBConfig->NBFolder : std::string());
    FLister.SetDefaultString(NoFilterName);
    ReloadList();
    ui->lbFilters->setFocus(Qt::OtherFocusReason);
    SelectIndex(0);
    UpdateButtons();

    connect(ui->lbFilters, &QListWidget::itemSelectionChanged, this, &TfrmNoticeBoardFilters::UpdateButtons);
    connect(ui->lbFilters, &QListWidget::currentRowChanged, this, &TfrmNoticeBoardFilters::UpdateButtons);
    connect(ui->lbFilters, &QListWidget::itemDoubleClicked, this, &TfrmNoticeBoardFilters::lbFiltersDblClick);
    connect(ui->btnOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(ui->btnCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(ui->btnAdd, &QPushButton::clicked, this, &TfrmNoticeBoardFilters::btnAddClick);
    connect(ui->btnProperties, &QPushButton::clicked, this, &TfrmNoticeBoardFilters::btnPropertiesClick);
    connect(ui->btnDelete, &QPushButton::clicked, this, &TfrmNoticeBoardFilters::btnDeleteClick);
}

TfrmNoticeBoardFilters::~TfrmNoticeBoardFilters() = default;

void TfrmNoticeBoardFilters::SetCurrentFilterName(const std::string& Name) {
    ui->lblCurrentFilter->setText(QString::fromStdString(Name));
}

int TfrmNoticeBoardFilters::SelectedIndex() const {
    return SelectedRow(ui->lbFilters);
}

void TfrmNoticeBoardFilters::SelectIndex(int Index) {
    SetSelectedRow(ui->lbFilters, Index);
}

void TfrmNoticeBoardFilters::UpdateButtons() {
    const bool real = IsRealFilterSelected();
    ui->btnProperties->setEnabled(real);
    ui->btnDelete->setEnabled(real);
}

void TfrmNoticeBoardFilters::ReloadList() {
    ui->lbFilters->clear();
    for (const std::string& item : FLister.Items)
        ui->lbFilters->addItem(QString::fromStdString(item));
}

std::string TfrmNoticeBoardFilters::SelectedItem() const {
    const int index = SelectedIndex();
    return index >= 0 ? ui->lbFilters->item(index)->text().toStdString() : std::string();
}

bool TfrmNoticeBoardFilters::IsRealFilterSelected() const {
    return SelectedIndex() >= 1 && SelectedItem() != NoFilterName;
}

// Writes the editor's filter under the name now in its name box, then lists the folder again with that
// name selected. A name that could only be written outside the folder is not written at all.
void TfrmNoticeBoardFilters::SaveAndSelect(TfrmFilterEditor& Editor) {
    const std::string name = Editor.FilterName();
    std::string fileName;
    if (BoardFilePath(name, FilterExtension, fileName)) Editor.Filter().filterToFile(fileName);
    FLister.Refresh();
    ReloadList();
    int index = -1;
    for (int i = 0; i < ui->lbFilters->count() && index < 0; ++i)
        if (SameText(ui->lbFilters->item(i)->text().toStdString(), name)) index = i;
    SelectIndex(index);
    UpdateButtons();
}

void TfrmNoticeBoardFilters::btnAddClick() {
    TfrmFilterEditor editor(FNotices);
    if (editor.exec() == QDialog::Accepted) SaveAndSelect(editor);
}

// A changed name saves a new file and leaves the old one where it is.
void TfrmNoticeBoardFilters::btnPropertiesClick() {
    if (!IsRealFilterSelected()) return;
    const std::string item = SelectedItem();
    TfrmFilterEditor editor(FNotices);
    std::string fileName;
    if (BoardFilePath(item, FilterExtension, fileName)) editor.Filter().filterFromFile(fileName);
    editor.SetFilterName(item);
    if (editor.exec() == QDialog::Accepted) SaveAndSelect(editor);
}

void TfrmNoticeBoardFilters::lbFiltersDblClick() {
    if (SelectedIndex() > 0 && SelectedItem() != NoFilterName) btnPropertiesClick();
}

// Without asking. The line that moves into the removed one's place is selected, none after the last.
void TfrmNoticeBoardFilters::btnDeleteClick() {
    if (!IsRealFilterSelected()) return;
    const int i = SelectedIndex();
    std::string fileName;
    if (BoardFilePath(SelectedItem(), FilterExtension, fileName))
        DeleteBoardFile(fileName); // failure ignored
    RemoveRowSelectingNext(ui->lbFilters, i);
    UpdateButtons();
}
