#include "views/ui/NoticeBoardViews.h"

#include "ui_NoticeBoardViews.h"

#include "adapters/ZNB_Cfg.h"
#include "core/Nb_utils.h"
#include "core/ui/NoticeBdGrid.h"
#include "support/NBPrompt.h"
#include "support/StrUtils.h"
#include "support/ui/AccessibleNames.h"
#include "views/BoardFiles.h"
#include "views/ui/ChooserRefill.h"
#include "views/ui/ListSelection.h"
#include "views/ui/NBViewEditor.h"
#include "views/ui/NewViewDlg.h"

#include <exception>
#include <optional>

namespace {

constexpr const char* DisplayExtension = ".nbd";
constexpr int AddHelpContext = 2000124;
constexpr int PropertiesHelpContext = 2000125;

// The board's grid, when owner holds one over Notices: the previews start from its columns and order.
const TNoticeBdGrid* BoardGrid(QWidget* owner, const TNoticeStore& Notices) {
    const auto* grid = owner ? owner->findChild<TNoticeBdGrid*>(QStringLiteral("NoticeBdGrid")) : nullptr;
    return grid && &grid->Store() == &Notices ? grid : nullptr;
}

} // namespace

void btnViewsClick(QWidget* owner, const TNoticeStore& Notices, QComboBox& cmbDisplays, TFIleLister& Lister,
                   const std::function<void()>& ApplyChosenDisplay) {
    TfrmNoticeBoardViews dialog(Notices, BoardGrid(owner, Notices), owner);
    const int index = cmbDisplays.currentIndex();
    dialog.SelectIndex(index);
    dialog.SetCurrentDisplayName(cmbDisplays.itemText(index).toStdString());
    dialog.UpdateButtons();
    if (dialog.exec() != QDialog::Accepted) return;
    ApplyChosenEntry(cmbDisplays, Lister, dialog.SelectedIndex(), ApplyChosenDisplay);
}

TfrmNoticeBoardViews::TfrmNoticeBoardViews(const TNoticeStore& Notices, const TNoticeBdGrid* MainGrid,
                                           QWidget* parent)
    : QDialog(parent), ui(std::make_unique<Ui::frmNoticeBoardViews>()), FNotices(Notices),
      FMainGrid(MainGrid) {
    ui->setupUi(this);
    NameBuddiesAfterTheirLabels(this);
    FLister.SetFilePattern("*.nbd");
    FLister.SetFolderPath(NBConfig ? NBConfig->NBFolder : std::string());
    FLister.SetDefaultString(TDisplay::DefaultName);
    ReloadList();
    ui->lbViews->setFocus(Qt::OtherFocusReason);
    SelectIndex(0);
    UpdateButtons();

    connect(ui->lbViews, &QListWidget::itemSelectionChanged, this, &TfrmNoticeBoardViews::UpdateButtons);
    connect(ui->lbViews, &QListWidget::currentRowChanged, this, &TfrmNoticeBoardViews::UpdateButtons);
    connect(ui->lbViews, &QListWidget::itemDoubleClicked, this, &TfrmNoticeBoardViews::lbViewsDblClick);
    connect(ui->btnOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(ui->btnCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(ui->btnAdd, &QPushButton::clicked, this, &TfrmNoticeBoardViews::btnAddClick);
    connect(ui->btnProperties, &QPushButton::clicked, this, &TfrmNoticeBoardViews::btnPropertiesClick);
    connect(ui->btnDelete, &QPushButton::clicked, this, &TfrmNoticeBoardViews::btnDeleteClick);
}

TfrmNoticeBoardViews::~TfrmNoticeBoardViews() = default;

void TfrmNoticeBoardViews::SetCurrentDisplayName(const std::string& Name) {
    ui->lblCurrentDisplay->setText(QString::fromStdString(Name));
}

int TfrmNoticeBoardViews::SelectedIndex() const {
    return SelectedRow(ui->lbViews);
}

void TfrmNoticeBoardViews::SelectIndex(int Index) {
    SetSelectedRow(ui->lbViews, Index);
}

void TfrmNoticeBoardViews::UpdateButtons() {
    const bool real = IsRealDisplaySelected();
    ui->btnProperties->setEnabled(real);
    ui->btnDelete->setEnabled(real);
}

void TfrmNoticeBoardViews::ReloadList() {
    ui->lbViews->clear();
    for (const std::string& item : FLister.Items)
        ui->lbViews->addItem(QString::fromStdString(item));
}

void TfrmNoticeBoardViews::SelectName(const std::string& Name) {
    int index = -1;
    for (int i = 0; i < ui->lbViews->count() && index < 0; ++i)
        if (SameText(ui->lbViews->item(i)->text().toStdString(), Name)) index = i;
    SelectIndex(index);
}

std::string TfrmNoticeBoardViews::SelectedItem() const {
    const int index = SelectedIndex();
    return index >= 0 ? ui->lbViews->item(index)->text().toStdString() : std::string();
}

bool TfrmNoticeBoardViews::IsRealDisplaySelected() const {
    return SelectedIndex() >= 1 && SelectedItem() != TDisplay::DefaultName;
}

// Binds the editor's display to its preview and names it; the caller loads the display, then the
// controls are filled from it.
void TfrmNoticeBoardViews::PrepareEditor(TfrmNBViewEditor& Editor, const std::string& Name) {
    Editor.Display().SetGrid(&Editor.PreviewGrid());
    Editor.SetViewName(Name);
}

// Saves the editor's display under the name now in its name box. A name that could only be written
// outside the folder is not written at all; a failed write is shown.
bool TfrmNoticeBoardViews::SaveDisplay(TfrmNBViewEditor& Editor) {
    const std::string name = Editor.ViewName();
    std::string guarded;
    if (!BoardFilePath(name, DisplayExtension, guarded)) return false;
    try {
        Editor.Display().SetGrid(&Editor.PreviewGrid());
        Editor.Display().SaveToFile(name);
        return true;
    } catch (const std::exception& e) {
        NBPrompt().ShowMessage(e.what(), TMsgDlgType::mtError);
        return false;
    }
}

void TfrmNoticeBoardViews::btnAddClick() {
    const std::string selected = SelectedItem();
    TNB_NewViewDlg newView(this);
    newView.SetCopyDefaultView(LowerCase(selected) == LowerCase(TDisplay::DefaultName));
    if (newView.exec() != QDialog::Accepted) return;
    const std::string name = newView.ViewName();

    // A copy of the default display starts the preview in its order, so the preview sorts at most once.
    std::optional<TGridLayout> defaults;
    if (newView.CopyDefaultView() && FMainGrid) defaults = DefaultViewLayout(FMainGrid->WidthUnit());
    TfrmNBViewEditor editor(FNotices, FMainGrid, defaults ? &*defaults : nullptr, this);
    editor.setProperty("helpContext", AddHelpContext);
    editor.setWindowTitle(QString::fromStdString("Notice Board Display Editor - " + name));
    PrepareEditor(editor, name);
    if (newView.CopyDefaultView())
        CreateDefaultView(editor.Display());
    else
        editor.Display().LoadFromFile(selected);
    editor.UpdateVisibleFieldEditor();
    editor.SynchControls();
    if (editor.exec() != QDialog::Accepted) return;
    SaveDisplay(editor);
    FLister.Refresh();
    ReloadList();
    SelectName(editor.ViewName());
    UpdateButtons();
}

void TfrmNoticeBoardViews::btnPropertiesClick() {
    if (!IsRealDisplaySelected()) return;
    const std::string item = SelectedItem();
    TfrmNBViewEditor editor(FNotices, FMainGrid, this);
    editor.setProperty("helpContext", PropertiesHelpContext);
    PrepareEditor(editor, item);
    TNoticeBdGrid& preview = editor.PreviewGrid();
    preview.SetOptions(preview.Options() | goRowIndicator | goFocusRect);
    editor.Display().LoadFromFile(item);
    editor.UpdateVisibleFieldEditor();
    editor.SynchControls();
    if (editor.exec() != QDialog::Accepted) return;
    // The list is read before the display is saved, so a renamed display shows from the next refresh on
    // (its old file stays); relied upon as the list has always behaved.
    FLister.Refresh();
    ReloadList();
    SelectName(editor.ViewName());
    SaveDisplay(editor);
    UpdateButtons();
}

void TfrmNoticeBoardViews::lbViewsDblClick() {
    if (SelectedIndex() > 0 && SelectedItem() != TDisplay::DefaultName) btnPropertiesClick();
}

// Without asking; a file that cannot be deleted is reported and stays in the list.
void TfrmNoticeBoardViews::btnDeleteClick() {
    if (!IsRealDisplaySelected()) return;
    const int i = SelectedIndex();
    const std::string item = SelectedItem();
    std::string guarded;
    if (BoardFilePath(item, DisplayExtension, guarded) && DeleteBoardFile(guarded))
        RemoveRowSelectingNext(ui->lbViews, i);
    else
        NBPrompt().ShowMessage("Failed to delete the display file: " + FilterFolder + item + DisplayExtension,
                               TMsgDlgType::mtError);
    UpdateButtons();
}
