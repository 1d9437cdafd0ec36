#include "support/ui/Znb_summary.h"

#include "core/Znb_data.h"
#include "core/ui/NbIcons.h"
#include "support/ui/AccessibleNames.h"
#include "support/ui/NodeSeverityChart.h"
#include "support/ui/StringGrid.h"
#include "ui_Znb_summary.h"

#include <QPushButton>

namespace {
QString Q(const std::string& text) {
    return QString::fromStdString(text);
}
} // namespace

TFM_Summary::TFM_Summary(QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint | Qt::WindowTitleHint |
                          Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint),
      ui(std::make_unique<Ui::TFM_Summary>()) {
    ui->setupUi(this);
    NameBuddiesAfterTheirLabels(this);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowIcon(NbIcon(TNbIcon::Application));
    ui->BB_Update->setIcon(NbIcon(TNbIcon::Refresh));
    ui->BB_Close->setIcon(NbIcon(TNbIcon::Close));
    connect(ui->BB_Update, &QPushButton::clicked, this, &TFM_Summary::Refresh);
    connect(ui->BB_Close, &QPushButton::clicked, this, &QWidget::close);
    connect(ui->BB_Chart, &QPushButton::toggled, this, &TFM_Summary::ShowChart);
    // A dialog border does not resize; the form's size is the initial one unless the captions need more.
    setFixedSize(size().expandedTo(minimumSizeHint()));
    FTableSize = size();
}

TNodeSeverityChart* TFM_Summary::Chart() const {
    return ui->NodeSeverityChart;
}

void TFM_Summary::ShowChart(bool Show) {
    if (ui->BB_Chart->isChecked() != Show) ui->BB_Chart->setChecked(Show); // comes back here
    if (ui->NodeSeverityChart->isHidden() == !Show) return;
    ui->NodeSeverityChart->setVisible(Show);
    const int chart = ui->NodeSeverityChart->minimumWidth();
    setFixedSize(FTableSize.width() + (Show ? chart : 0), FTableSize.height());
}

TFM_Summary::~TFM_Summary() = default;

TStringGrid* TFM_Summary::Grid() const {
    return ui->StringGrid1;
}

void TFM_Summary::showEvent(QShowEvent* event) {
    Refresh();
    QDialog::showEvent(event);
}

void TFM_Summary::Refresh() {
    TStringGrid* grid = ui->StringGrid1;
    TStats_Obj* stats = PVO_Node_Stats.get();
    if (!stats) {
        grid->ClearCells();
        ui->NodeSeverityChart->SetCounts({}, {}, {});
        return;
    }
    // Copies: Get_Count creates any name it does not find, and the loops run over the names as they were
    // when the refresh began.
    const std::vector<std::string> columns = stats->ColumnNames();
    const std::vector<std::string> rows = stats->RowNames();
    grid->SetColCount(int(columns.size()) + 1);
    for (size_t c = 0; c < columns.size(); ++c)
        grid->SetCell(int(c) + 1, 0, Q(columns[c]));
    // The row count stays as designed: rows past the visible ones are filled but not shown, and the
    // window is relied upon to look that way.
    QStringList nodes, severities;
    std::vector<std::vector<int>> counts(rows.size(), std::vector<int>(columns.size()));
    for (size_t r = 0; r < rows.size(); ++r) {
        grid->SetCell(0, int(r) + 1, Q(rows[r]));
        nodes << Q(rows[r]);
        for (size_t c = 0; c < columns.size(); ++c) {
            counts[r][c] = stats->Get_Count(rows[r], columns[c]);
            grid->SetCell(int(c) + 1, int(r) + 1, QString::number(counts[r][c]));
        }
    }
    for (const std::string& c : columns)
        severities << Q(c);
    ui->NodeSeverityChart->SetCounts(nodes, severities, counts); // beside the table, from the same values
}
