#include "core/ui/NoticeBdDetailPanel.h"

#include "core/Znb_fieldtext.h"
#include "ui_NoticeBdDetailPanel.h"

#include <QPlainTextEdit>
#include <QRegularExpression>

#include <cmath>

double DT_Scaling_Factor = 1.0;
double dp_col_0_left, dp_col_0_width, dp_col_1_left, dp_col_1_width, dp_col_2_left, dp_col_2_width,
    dp_col_3_left, dp_col_3_width, dp_col_4_left, dp_col_4_width, dp_col_5_left, dp_col_5_width,
    dp_col_5a_width, dp_col_6_left, dp_col_6_width, dp_col_6a_width, dp_col_7_left, dp_col_7_width;

namespace {

struct TColumnRatios {
    double* Left;
    double* Width;
};

const TColumnRatios kColumns[8] = {
    {&dp_col_0_left, &dp_col_0_width}, {&dp_col_1_left, &dp_col_1_width}, {&dp_col_2_left, &dp_col_2_width},
    {&dp_col_3_left, &dp_col_3_width}, {&dp_col_4_left, &dp_col_4_width}, {&dp_col_5_left, &dp_col_5_width},
    {&dp_col_6_left, &dp_col_6_width}, {&dp_col_7_left, &dp_col_7_width},
};

// The pixels between the "at" caption and column 6.
constexpr int kAtOffset = 42;

int Scaled(int W, double Ratio) {
    return static_cast<int>(W * Ratio);
}

} // namespace

TNoticeBdDetailPanel::TNoticeBdDetailPanel(TNoticeStore& Store, QWidget* Parent)
    : QFrame(Parent), ui(std::make_unique<Ui::TNoticeBdDetailPanel>()), FStore(Store) {
    ui->setupUi(this);
    // The ratios come from the designed form, whose width is the panel's designed width.
    static const bool ratiosTaken = [this] {
        const double designed = width();
        const QWidget* leads[8] = {ui->lblNoteId, ui->txtNoteId, ui->lblSeverity, ui->txtSeverity,
                                   ui->lblGroup,  ui->txtGroup,  ui->lblCount,    ui->txtCount};
        for (int c = 0; c < 8; ++c) {
            *kColumns[c].Left = leads[c]->x() / designed;
            *kColumns[c].Width = leads[c]->width() / designed;
        }
        dp_col_5a_width = ui->txtServer->width() / designed;
        dp_col_6a_width = ui->lblAt->width() / designed;
        return true;
    }();
    (void)ratiosTaken;
    for (QWidget* w : findChildren<QWidget*>())
        if (auto* label = qobject_cast<QLabel*>(w); label && !label->text().isEmpty())
            label->setAccessibleName(label->text());
    ui->memDetails->setAccessibleName(ui->lblDetails->text());
    // A value is named after its caption (txtSeverity after lblSeverity); the value itself is its
    // description (ShowValue), so that an empty one is still a named field.
    for (QLabel* value : findChildren<QLabel*>(QRegularExpression(QStringLiteral("^txt"))))
        if (auto* caption = findChild<QLabel*>(QStringLiteral("lbl") + value->objectName().mid(3)))
            value->setAccessibleName(
                caption->text().remove(QLatin1Char('&')).remove(QLatin1Char(':')).trimmed());
    ui->txtSourceType->setAccessibleName(tr("Source type")); // captioned only by the "at" before it
    FStore.AddListener(this);
    Refresh();
}

TNoticeBdDetailPanel::~TNoticeBdDetailPanel() {
    FStore.RemoveListener(this);
}

void TNoticeBdDetailPanel::SetDataSourceEnabled(bool Enabled) {
    FEnabled = Enabled;
    Refresh();
}

void TNoticeBdDetailPanel::ShowValue(QLabel* Label, const QString& Text) {
    // Messages refresh the panel many times a second while its row rarely changes: shortening a text is
    // the costly part, so an unchanged value at an unchanged width is left alone.
    const int room = Label->contentsRect().width() - 2 * Label->margin() - 4;
    if (Label->toolTip() == Text && Label->property("shownWidth").toInt() == room) return;
    Label->setProperty("shownWidth", room);
    // The whole value is the hint, so a value cut off by the column can still be read.
    Label->setToolTip(Text);
    Label->setAccessibleDescription(Text);
    Label->setText(Label->fontMetrics().elidedText(Text, Qt::ElideRight, std::max(room, 0)));
}

void TNoticeBdDetailPanel::Refresh() {
    const bool show = FEnabled && !FStore.IsEmpty() && FStore.RecNo() > 0;
    auto text = [&](TNoticeField Field) {
        return show ? QString::fromStdString(FieldDisplayText(FStore.ActiveRecord(), Field)) : QString();
    };
    ShowValue(ui->txtNoteId, text(nf_nb_internal_key));
    ShowValue(ui->txtSummary, text(nf_note_summary));
    ShowValue(ui->txtSeverity, text(nf_note_severity_str));
    ShowValue(ui->txtFirstRaised, text(nf_note_raised_date));
    ShowValue(ui->txtLastRaised, text(nf_note_last_raised_date));
    ShowValue(ui->txtGroup, text(nf_note_group_notified));
    ShowValue(ui->txtServer, text(nf_adpt_orig_server));
    ShowValue(ui->txtSourceType, text(nf_adpt_source_type));
    ShowValue(ui->txtAckDate, text(nf_ack_date));
    ShowValue(ui->txtCount, text(nf_note_count));
    ShowValue(ui->txtPvoNode, text(nf_note_pvo_node));
    const QString details = text(nf_note_text);
    if (ui->memDetails->toPlainText() != details) ui->memDetails->setPlainText(details);
}

void TNoticeBdDetailPanel::DetailPanelResize() {
    const int W = static_cast<int>(width() * DT_Scaling_Factor);
    const QList<QWidget*> columns[8] = {
        {ui->lblNoteId, ui->lblSummary, ui->lblDetails},
        {ui->txtNoteId, ui->txtSummary, ui->memDetails},
        {ui->lblSeverity, ui->lblFirstRaised, ui->lblLastRaised},
        {ui->txtSeverity, ui->txtFirstRaised, ui->txtLastRaised},
        {ui->lblGroup, ui->lblServer, ui->lblAckDate},
        {ui->txtGroup, ui->txtServer, ui->txtAckDate},
        {ui->lblCount, ui->txtSourceType, ui->lblPvoNode},
        {ui->txtCount, ui->txtPvoNode},
    };
    for (int c = 0; c < 8; ++c) {
        const int left = Scaled(W, *kColumns[c].Left);
        const int colWidth = Scaled(W, *kColumns[c].Width);
        for (QWidget* w : columns[c])
            w->setGeometry(left, w->y(), colWidth, w->height());
    }
    ui->txtServer->resize(Scaled(W, dp_col_5a_width), ui->txtServer->height());
    ui->lblAt->setGeometry(ui->lblCount->x() - kAtOffset, ui->lblAt->y(), Scaled(W, dp_col_6a_width),
                           ui->lblAt->height());
    // The memo fills the panel's height below its row.
    ui->memDetails->resize(ui->memDetails->width(), std::max(40, height() - ui->memDetails->y() - 6));
}

void TNoticeBdDetailPanel::resizeEvent(QResizeEvent* Event) {
    DetailPanelResize();
    Refresh(); // the cut-off texts depend on the widths
    QFrame::resizeEvent(Event);
}
