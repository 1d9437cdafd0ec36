#include "views/ui/NBViewEditor.h"

#include "ui_NBViewEditor.h"

#include "core/ui/NbColors.h"
#include "core/ui/NoticeBdGrid.h"
#include "support/ui/AccessibleNames.h"
#include "views/ui/WaitCursor.h"

#include <QColorDialog>
#include <QGroupBox>
#include <QListWidget>
#include <QToolButton>

#include <array>
#include <utility>

namespace {

void ShowSwatch(QLineEdit* Swatch, TColor Color) {
    QPalette palette = Swatch->palette();
    palette.setColor(QPalette::Base, ToQColor(Color));
    Swatch->setPalette(palette);
}

} // namespace

TfrmNBViewEditor::TfrmNBViewEditor(const TNoticeStore& Notices, const TNoticeBdGrid* ViewOf, QWidget* parent)
    : TfrmNBViewEditor(Notices, ViewOf, nullptr, parent) {}

TfrmNBViewEditor::TfrmNBViewEditor(const TNoticeStore& Notices, const TNoticeBdGrid* ViewOf,
                                   const TGridLayout* StartLayout, QWidget* parent)
    : QDialog(parent), ui(std::make_unique<Ui::frmNBViewEditor>()) {
    ui->setupUi(this);
    NameBuddiesAfterTheirLabels(this);
    {
        const TWaitCursor wait;
        FPreviewData.CopyFrom(Notices);
        if (!ViewOf)
            cfgGrid = new TNoticeBdGrid(FPreviewData, this);
        else
            cfgGrid =
                new TNoticeBdGrid(FPreviewData, *ViewOf, StartLayout ? *StartLayout : ViewOf->Layout(), this);
    }
    cfgGrid->setObjectName(QStringLiteral("cfgGrid"));
    cfgGrid->setAccessibleName(tr("Preview"));
    cfgGrid->AssignColumnHeaders();
    cfgGrid->SetDisplay(&FDisplay);
    ui->PreviewLayout->addWidget(cfgGrid);
    setTabOrder(cfgGrid, ui->edtViewName);

    connect(ui->clbVisibleFields, &QListWidget::itemChanged, this, [this] {
        if (!FFillingFields) clbVisibleFieldsClickCheck();
    });
    connect(cfgGrid, &TNoticeBdGrid::LayoutChangedByUser, this, &TfrmNBViewEditor::NoteColumnsChangedInGrid);
    connect(ui->cbAltRowColors, &QCheckBox::toggled, this, [this](bool on) {
        FDisplay.SetAltRowColors(on);
        cfgGrid->viewport()->update();
    });
    connect(ui->cbShowGrid, &QCheckBox::toggled, this, [this](bool on) {
        cfgGrid->SetShowGridLines(on);
        FDisplay.ShowGrid = on;
    });
    connect(ui->cbAutoColWidths, &QCheckBox::toggled, this, [this](bool on) {
        SetOption(goAutoWidth, on);
        FDisplay.SetAutoColumnWidths(on);
    });
    connect(ui->cbShowGroupPanel, &QCheckBox::toggled, this, [this](bool on) {
        cfgGrid->SetShowGroupPanel(on);
        FDisplay.ShowGroupPanel = on;
    });
    connect(ui->btnNormalColor, &QToolButton::clicked, this,
            [this] { ChooseColour(ui->edtNormalColor, FDisplay.GridColor, &TNoticeBdGrid::SetGridColor); });
    // Alternate rows are drawn from the display itself; the grid has no colour of its own for them.
    connect(ui->btnAltColor, &QToolButton::clicked, this,
            [this] { ChooseColour(ui->edtAltColor, FDisplay.AltColor, nullptr); });
    connect(ui->btnGridlineColor, &QToolButton::clicked, this, [this] {
        ChooseColour(ui->edtGridlineColor, FDisplay.GridLineColor, &TNoticeBdGrid::SetGridLineColor);
    });
    // Whole rows in their severity's colour, a setting of this system's own (off in a display that never
    // had it); its colours can be chosen while it is on.
    connect(ui->gbSeverityColors, &QGroupBox::toggled, this, [this](bool on) {
        FDisplay.SeverityRowColors = on;
        cfgGrid->viewport()->update();
    });
    const auto severities = SeverityChoosers();
    for (size_t i = 0; i < severities.size(); ++i) {
        QLineEdit* swatch = severities[i].first;
        connect(severities[i].second, &QToolButton::clicked, this,
                [this, swatch, i] { ChooseColour(swatch, FDisplay.SeverityColors[i], nullptr); });
    }
    connect(ui->btnOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(ui->btnCancel, &QPushButton::clicked, this, &QDialog::reject);
}

// The preview reads the copy and the display, which are members: it goes first, not with the children.
TfrmNBViewEditor::~TfrmNBViewEditor() {
    delete cfgGrid;
}

std::string TfrmNBViewEditor::ViewName() const {
    return ui->edtViewName->text().toStdString();
}

void TfrmNBViewEditor::SetViewName(const std::string& Name) {
    ui->edtViewName->setText(QString::fromStdString(Name));
}

void TfrmNBViewEditor::UpdateVisibleFieldEditor() {
    FFillingFields = true;
    QListWidget* list = ui->clbVisibleFields;
    list->setSortingEnabled(false);
    list->clear();
    const TGridLayout layout = cfgGrid->Layout();
    for (const TNoticeField field : layout.FieldsInPositionOrder()) {
        auto* item = new QListWidgetItem(cfgGrid->ColumnCaption(field), list);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        item->setCheckState(layout.Column(field).Visible ? Qt::Checked : Qt::Unchecked);
    }
    list->sortItems();
    FFillingFields = false;
}

// Each column takes the check of the entry carrying its caption.
void TfrmNBViewEditor::clbVisibleFieldsClickCheck() {
    TGridLayout layout = cfgGrid->Layout();
    bool changed = false;
    for (int f = 0; f < NoticeFieldCount; ++f) {
        const QList<QListWidgetItem*> entries =
            ui->clbVisibleFields->findItems(cfgGrid->ColumnCaption(TNoticeField(f)), Qt::MatchExactly);
        if (entries.isEmpty()) continue;
        bool& visible = layout.Column(TNoticeField(f)).Visible;
        const bool checked = entries.first()->checkState() == Qt::Checked;
        changed = changed || visible != checked;
        visible = checked;
    }
    if (changed) cfgGrid->SetLayout(layout);
}

// A column shown or hidden through the preview's own column menu is ticked or unticked in the list too.
void TfrmNBViewEditor::NoteColumnsChangedInGrid() {
    const TGridLayout layout = cfgGrid->Layout();
    FFillingFields = true;
    for (int f = 0; f < NoticeFieldCount; ++f) {
        const auto state = layout.Column(TNoticeField(f)).Visible ? Qt::Checked : Qt::Unchecked;
        for (QListWidgetItem* entry :
             ui->clbVisibleFields->findItems(cfgGrid->ColumnCaption(TNoticeField(f)), Qt::MatchExactly))
            if (entry->checkState() != state) entry->setCheckState(state);
    }
    FFillingFields = false;
}

std::array<std::pair<QLineEdit*, QToolButton*>, 4> TfrmNBViewEditor::SeverityChoosers() const {
    return {std::pair{ui->edtSeverity1Color, ui->btnSeverity1Color},
            std::pair{ui->edtSeverity2Color, ui->btnSeverity2Color},
            std::pair{ui->edtSeverity3Color, ui->btnSeverity3Color},
            std::pair{ui->edtSeverity4Color, ui->btnSeverity4Color}};
}

void TfrmNBViewEditor::SynchControls() {
    ShowSwatch(ui->edtNormalColor, FDisplay.GridColor);
    ShowSwatch(ui->edtAltColor, FDisplay.AltColor);
    ShowSwatch(ui->edtGridlineColor, FDisplay.GridLineColor);
    ui->cbShowGroupPanel->setChecked(FDisplay.ShowGroupPanel);
    ui->cbAutoColWidths->setChecked(FDisplay.AutoColWidths);
    ui->cbAltRowColors->setChecked(FDisplay.AltRowColors);
    ui->cbShowGrid->setChecked(FDisplay.ShowGrid);
    const auto severities = SeverityChoosers();
    for (size_t i = 0; i < severities.size(); ++i)
        ShowSwatch(severities[i].first, FDisplay.SeverityColors[i]);
    ui->gbSeverityColors->setChecked(FDisplay.SeverityRowColors);
}

void TfrmNBViewEditor::ChooseColour(QLineEdit* Swatch, TColor& Target,
                                    void (TNoticeBdGrid::*ShowIn)(TColor)) {
    QColorDialog chooser(Swatch->palette().color(QPalette::Base), this);
    chooser.setObjectName(QStringLiteral("ColorDialog"));
    if (chooser.exec() != QDialog::Accepted) return;
    Target = FromQColor(chooser.selectedColor());
    ShowSwatch(Swatch, Target);
    if (ShowIn) (cfgGrid->*ShowIn)(Target);
    cfgGrid->viewport()->update();
}

void TfrmNBViewEditor::SetOption(uint32_t Option, bool On) {
    const uint32_t options = cfgGrid->Options();
    cfgGrid->SetOptions(On ? options | Option : options & ~Option);
}
