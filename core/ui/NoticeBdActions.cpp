// The board window's commands: the six actions and their keys, Ctrl+Alt+Shift+S, the tool bar's buttons,
// the filter and display lists, and the button refresh.
#include "core/ui/NoticeBdForm.h"
#include "ui_NoticeBdForm.h"

#include "adapters/ZNB_Cfg.h"
#include "adapters/ui/UConfigDlg.h"
#include "core/Nb_utils.h"
#include "core/ui/NoteActionProgress.h"
#include "core/ui/NoticeBdDetailPanel.h"
#include "core/ui/NoticeBdGrid.h"
#include "reports/ui/Nb_xport2xls.h"
#include "reports/ui/Ufrmnbprint.h"
#include "support/StrUtils.h"
#include "support/ui/Znb_summary.h"
#include "views/FilterApply.h"
#include "views/ui/FilterComboCounts.h"
#include "views/ui/NoticeBoardFilters.h"
#include "views/ui/NoticeBoardViews.h"

#include <QAction>
#include <QApplication>
#include <QShortcut>

bool DetailsHidden = false;

namespace {

QAction* NewAction(QWidget* Window, const char* Name, const QString& Text, const QKeySequence& Key) {
    auto* action = new QAction(Text, Window);
    action->setObjectName(QString::fromLatin1(Name));
    action->setShortcut(Key);
    action->setShortcutContext(Qt::WindowShortcut);
    Window->addAction(action);
    return action;
}

} // namespace

void TNoticeBdForm::SetupActions() {
    QAction* filters = NewAction(this, "Act_Filters", tr("Filters"), QKeySequence(Qt::Key_F6));
    QAction* displays = NewAction(this, "Act_Displays", tr("Displays"), QKeySequence(Qt::CTRL | Qt::Key_D));
    QAction* details = NewAction(this, "Act_Hide_Details", tr("Hide or Show Notice Detail"),
                                 QKeySequence(Qt::CTRL | Qt::Key_H));
    QAction* configure =
        NewAction(this, "Act_Configure", tr("Configure"), QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_C));
    QAction* print = NewAction(this, "Act_Print", tr("Print"), QKeySequence(Qt::CTRL | Qt::Key_P));
    QAction* selectAll =
        NewAction(this, "Act_SelectAll", tr("Select All"), QKeySequence(Qt::CTRL | Qt::Key_A));

    connect(filters, &QAction::triggered, this, &TNoticeBdForm::btnFiltersClick);
    connect(ui->btnFilters, &QAbstractButton::clicked, this, &TNoticeBdForm::btnFiltersClick);
    connect(displays, &QAction::triggered, this, &TNoticeBdForm::btnViewsClick);
    connect(ui->btnViews, &QAbstractButton::clicked, this, &TNoticeBdForm::btnViewsClick);
    connect(details, &QAction::triggered, this, &TNoticeBdForm::Act_Hide_DetailsExecute);
    connect(ui->btnDetails, &QAbstractButton::clicked, this, &TNoticeBdForm::Act_Hide_DetailsExecute);
    connect(configure, &QAction::triggered, this, &TNoticeBdForm::btnConfigClick);
    connect(ui->btnConfig, &QAbstractButton::clicked, this, &TNoticeBdForm::btnConfigClick);
    connect(print, &QAction::triggered, this, &TNoticeBdForm::Act_PrintExecute);
    connect(ui->btnPrint, &QAbstractButton::clicked, this, &TNoticeBdForm::Act_PrintExecute);
    connect(ui->btnExport, &QAbstractButton::clicked, this, &TNoticeBdForm::btnExportClick);
    connect(selectAll, &QAction::triggered, this, &TNoticeBdForm::Act_SelectAllExecute);
    connect(ui->btnAckNote, &QAbstractButton::clicked, this, &TNoticeBdForm::btnAckNoteClick);
    connect(ui->btnDelNote, &QAbstractButton::clicked, this, &TNoticeBdForm::btnDelNoteClick);
    connect(ui->cmbFilters, &QComboBox::activated, this, &TNoticeBdForm::cmbFiltersClick);
    connect(ui->cmbDisplays, &QComboBox::activated, this, &TNoticeBdForm::cmbDisplaysClick);

    auto* summary = new QShortcut(QKeySequence(Qt::CTRL | Qt::ALT | Qt::SHIFT | Qt::Key_S), this);
    summary->setObjectName(QStringLiteral("SummaryShortcut"));
    summary->setContext(Qt::WindowShortcut);
    connect(summary, &QShortcut::activated, this, &TNoticeBdForm::ShowSummary);

    // The flag outlives a board that was closed and opened again.
    FDetailPanel->setVisible(!DetailsHidden);
    ui->btnDetails->setChecked(DetailsHidden);
}

// The acknowledge button follows the current notice only, however many rows are selected: the selection
// merely repeats the test on the current row. Users know the button this way, so it stays so.
void TNoticeBdForm::UpdateButtons() {
    if (FBoard.Busy()) return;
    FBoard.SetBusy(true);
    const int selected = FGrid->SelectedCount();
    ui->btnDelNote->setEnabled(selected > 0);
    if (selected > 0) {
        const TNoticeStore& store = FBoard.cdsNoticeBd();
        bool qualifies = false;
        if (!store.IsEmpty() && store.RecNo() > 0) {
            const TNoticeRecord& row = store.ActiveRecord();
            qualifies = LowerCase(Trim(row.AsString(nf_adpt_source_type))) == "r/vista" &&
                        (row.IsNull(nf_ack_date) ||
                         row.AsDateTime(nf_note_last_raised_date) > row.AsDateTime(nf_ack_date));
        }
        ui->btnAckNote->setEnabled(qualifies);
    }
    FBoard.SetBusy(false);
}

void TNoticeBdForm::ApplyFilter(const std::string& FilterName) {
    ::ApplyFilter(FilterName, FilterFolder, FBoard.cdsNoticeBd());
}

void TNoticeBdForm::ApplyDisplay(const std::string& Name) {
    ::ApplyFilter(Name, FilterFolder, FBoard.cdsNoticeBd());
}

void TNoticeBdForm::cmbFiltersClick() {
    const std::string name = ui->cmbFilters->currentText().toStdString();
    try {
        ApplyFilter(name);
    } catch (const std::exception& e) {
        LogException("cmbFiltersClick", e);
    }
    FCurrentFilter = name;
    if (NBConfig) NBConfig->PreviousFilter = name;
    UpdateStatusBar();
}

void TNoticeBdForm::cmbDisplaysClick() {
    const std::string name = ui->cmbDisplays->currentText().toStdString();
    if (FDisplay) FDisplay->LoadFromFile(name);
    FCurrentDisplay = name;
    if (NBConfig) NBConfig->PreviousDisplay = name;
}

void TNoticeBdForm::btnFiltersClick() {
    if (!FFilterLister) return;
    ::btnFiltersClick(this, FBoard.cdsNoticeBd(), *ui->cmbFilters, *FFilterLister,
                      [this] { cmbFiltersClick(); });
    // The combo was refilled and filter files may have changed: count them again.
    if (FFilterCounts) FFilterCounts->Reload();
}

void TNoticeBdForm::btnViewsClick() {
    if (!FDisplayLister) return;
    ::btnViewsClick(this, FBoard.cdsNoticeBd(), *ui->cmbDisplays, *FDisplayLister,
                    [this] { cmbDisplaysClick(); });
}

void TNoticeBdForm::btnConfigClick() {
    OpenConfigDialog();
}

void TNoticeBdForm::OpenConfigDialog() {
    if (!FFilterLister || !FDisplayLister) return;
    ShowConfigDialog(this, FStartup->Adapters(), FFilterLister->Items, FDisplayLister->Items);
    ApplyNotificationSettings();
}

void TNoticeBdForm::Act_PrintExecute() {
    FGrid->RefreshNow();
    ShowPrintDialog(this, *FGrid, *FExportSource);
}

void TNoticeBdForm::btnExportClick() {
    FGrid->RefreshNow();
    ShowXLSExportDialog(this, *FExportSource);
}

void TNoticeBdForm::Act_Hide_DetailsExecute() {
    DetailsHidden = !DetailsHidden;
    FDetailPanel->setVisible(!DetailsHidden);
    ui->btnDetails->setChecked(DetailsHidden);
}

void TNoticeBdForm::Act_SelectAllExecute() {
    FGrid->selectAll();
    UpdateButtons();
}

void TNoticeBdForm::btnAckNoteClick() {
    try {
        TNoteActionProgress progress(this, tr("Acknowledging notices..."));
        ::btnAckNoteClick(FBoard.cdsNoticeBd(), FGrid->SelectedKeys(), FStartup->Adapters(), this, &progress);
    } catch (const std::exception& e) {
        LogException("btnAckNoteClick", e);
    }
}

void TNoticeBdForm::btnDelNoteClick() {
    try {
        TNoteActionProgress progress(this, tr("Deleting notices..."));
        ::btnDelNoteClick(FBoard.cdsNoticeBd(), FGrid->SelectedKeys(), FStartup->Adapters(), this, &progress);
    } catch (const std::exception& e) {
        LogException("btnDelNoteClick", e);
    }
}

void TNoticeBdForm::ShowSummary() {
    auto* summary = new TFM_Summary(nullptr);
    summary->show();
}
