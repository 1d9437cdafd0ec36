// The board window's tool bar: icons, hints and accessible names of its controls, the idle and busy
// marks, and the filter and display lists with the listers behind them.
#include "core/ui/NbIcons.h"
#include "core/ui/NoticeBdForm.h"
#include "ui_NoticeBdForm.h"

#include "adapters/ZNB_Cfg.h"
#include "support/StrUtils.h"
#include "views/FilterApply.h"

#include <QSignalBlocker>

namespace {

constexpr const char* PreviousFilterItem = "<Previous filter>";
constexpr const char* PreviousDisplayItem = "<Previous display>";

// The entry a list starts on: the configured default, or the last one used when the configuration says
// "<Previous ...>". An empty default starts on the list's pseudo-entry, and so does a default whose file
// has gone (the fallback).
void ChooseInitialEntry(TFIleLister& Lister, const std::string& Default, const std::string& Previous,
                        const char* PreviousItem) {
    Lister.PreferredItem = SameText(Default, PreviousItem) ? Previous : Default;
    Lister.FallbackItem = Lister.DefaultString();
}

void Fill(QComboBox& Combo, const TFIleLister& Lister) {
    const QSignalBlocker blocker(&Combo);
    Combo.clear();
    for (const std::string& item : Lister.Items)
        Combo.addItem(QString::fromStdString(item));
}

void Decorate(QAbstractButton* Button, TNbIcon Icon) {
    Button->setIcon(NbIcon(Icon));
    Button->setAccessibleName(Button->text().remove('&'));
    Button->setAccessibleDescription(Button->toolTip());
}

} // namespace

void TNoticeBdForm::SetupToolBar() {
    Decorate(ui->btnFilters, TNbIcon::Filters);
    Decorate(ui->btnViews, TNbIcon::Displays);
    Decorate(ui->btnPrint, TNbIcon::Print);
    Decorate(ui->btnExport, TNbIcon::Export);
    Decorate(ui->btnConfig, TNbIcon::Configure);
    Decorate(ui->btnDetails, TNbIcon::Details);
    Decorate(ui->btnAckNote, TNbIcon::Acknowledge);
    Decorate(ui->btnDelNote, TNbIcon::Delete);
    ui->btnAckNote->setEnabled(false);
    ui->btnDelNote->setEnabled(false);
    ui->cmbFilters->setAccessibleName(QStringLiteral("Filter"));
    ui->cmbDisplays->setAccessibleName(QStringLiteral("Display"));
    ui->Edit1->setAccessibleName(QStringLiteral("Adapter status"));
    ui->Img_Adapter_Status->setAccessibleName(ui->Img_Adapter_Status->toolTip());
    ui->Image1->setPixmap(NbIcon(TNbIcon::Idle).pixmap(16, 16));
    ui->Image1->setAccessibleName(ui->Image1->toolTip());
    ui->Image2->setPixmap(NbIcon(TNbIcon::Busy).pixmap(16, 16));
    ui->Image2->setAccessibleName(ui->Image2->toolTip());
    ui->Image2->setVisible(false);
    // The marks share one spot outside any layout: they swap twice for every message, and the tool bar
    // is not laid out again for that.
}

void TNoticeBdForm::SetupListers() {
    const std::string folder = NBConfig->NBFolder;
    FDisplayLister = std::make_unique<TFIleLister>();
    FDisplayLister->SetDefaultString(TDisplay::DefaultName);
    FDisplayLister->SetFilePattern("*.nbd");
    FDisplayLister->SetFolderPath(folder);
    ChooseInitialEntry(*FDisplayLister, NBConfig->DefaultDisplay, NBConfig->PreviousDisplay,
                       PreviousDisplayItem);
    Fill(*ui->cmbDisplays, *FDisplayLister);

    FFilterLister = std::make_unique<TFIleLister>();
    FFilterLister->SetDefaultString(NoFilterName);
    FFilterLister->SetFilePattern("*.nbf");
    FFilterLister->SetFolderPath(folder);
    ChooseInitialEntry(*FFilterLister, NBConfig->DefaultFilter, NBConfig->PreviousFilter, PreviousFilterItem);
    Fill(*ui->cmbFilters, *FFilterLister);
}
