// What the board window adds for people who watch it all day: the quick search in the tool bar (Ctrl+F,
// Esc clears) with its "(N match)" in the first status panel, the live count per severity as badges at
// the right of the status bar, and beside each saved filter in cmbFilters how many notices it passes.
#include "core/Nb_utils.h"
#include "core/ui/NoticeBdForm.h"
#include "core/ui/NoticeBdGrid.h"
#include "core/ui/NoticeBdStatusBar.h"
#include "core/ui/QuickSearchBox.h"
#include "core/ui/SeverityBadges.h"
#include "ui_NoticeBdForm.h"
#include "views/ui/FilterComboCounts.h"

void TNoticeBdForm::SetupExtras() {
    FQuickSearch = new TQuickSearchBox(this);
    FQuickSearch->setAccessibleName(tr("Quick search"));
    FQuickSearch->setAccessibleDescription(tr("Shows only the notices whose texts contain every word typed"));
    // After the stretch, before the idle and busy marks: the box stays at the right whatever the width.
    const int marks = ui->layoutToolBar->indexOf(ui->BusyMarks);
    ui->layoutToolBar->insertWidget(marks < 0 ? ui->layoutToolBar->count() : marks, FQuickSearch);
    FQuickSearch->Attach(FGrid);
    FQuickSearch->InstallShortcut(this);
    connect(FQuickSearch, &TQuickSearchBox::StatusTextChanged, this, [this] { ShowStatusText(); });

    auto* badges = new TSeverityBadges(FBoard.cdsNoticeBd(), ui->StatusBar1);
    badges->setAccessibleName(tr("Notices by severity"));
    ui->StatusBar1->addPermanentWidget(badges);

    FFilterCounts = new TFilterComboCounts(ui->cmbFilters, FBoard.cdsNoticeBd(), FilterFolder);
}

void TNoticeBdForm::ShowStatusText() {
    const QString search = FGrid ? FGrid->QuickSearchStatusText() : QString();
    FStatusBar->SetPanelText(0, search.isEmpty() ? FStatusText : FStatusText + " " + search.toStdString());
}
