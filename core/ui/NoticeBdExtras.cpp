// What the board window adds for people who watch it all day: the quick search in the tool bar (Ctrl+F,
// Esc clears) with its "(N match)" in the first status panel, the live count per severity as badges at
// the right of the status bar, beside each saved filter in cmbFilters how many notices it passes, and the
// alerts (desktop notification or banner, sound, tray icon, highlight of changed rows) as the
// configuration's Notifications page sets them.
#include "adapters/ZNB_Cfg.h"
#include "core/Nb_utils.h"
#include "core/ui/AlertBanner.h"
#include "core/ui/BoardAlerts.h"
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

    FBadges = new TSeverityBadges(FBoard.cdsNoticeBd(), ui->StatusBar1);
    FBadges->setAccessibleName(tr("Notices by severity"));
    ui->StatusBar1->addPermanentWidget(FBadges);

    FFilterCounts = new TFilterComboCounts(ui->cmbFilters, FBoard.cdsNoticeBd(), FilterFolder);

    FAlerts = std::make_unique<TBoardAlerts>(this, FBoard.cdsNoticeBd(), FBadges->Counts(), FGrid,
                                             NBConfig ? NBConfig->Notifications : TNotificationSettings{});
    // The banner (shown only when the desktop has no notification service) sits above the grid.
    ui->layoutMain->insertWidget(ui->layoutMain->indexOf(ui->Splitter1), FAlerts->Banner());
}

void TNoticeBdForm::TearDownExtras() {
    // The window's children outlive its members, the board among them.
    FAlerts.reset();
    delete FFilterCounts;
    FFilterCounts = nullptr;
    delete FBadges;
    FBadges = nullptr;
}

void TNoticeBdForm::ApplyNotificationSettings() {
    if (FAlerts && NBConfig) FAlerts->ApplySettings(NBConfig->Notifications);
}

void TNoticeBdForm::ShowStatusText() {
    const QString search = FGrid ? FGrid->QuickSearchStatusText() : QString();
    FStatusBar->SetPanelText(0, search.isEmpty() ? FStatusText : FStatusText + " " + search.toStdString());
}
