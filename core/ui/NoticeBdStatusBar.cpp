#include "core/ui/NoticeBdStatusBar.h"

#include "core/ui/NbIcons.h"

#include <QLabel>
#include <QLineEdit>
#include <QStatusBar>

namespace {

// A panel's size does not depend on its text (it has a fixed width and one line), so its size hints are
// not worked out from the text: the totals change with nearly every message, and the status bar is laid
// out again each time.
class TStatusPanel final : public QLabel {
public:
    using QLabel::QLabel;
    QSize sizeHint() const override { return {width(), fontMetrics().height() + 2 * frameWidth() + 2}; }
    QSize minimumSizeHint() const override { return sizeHint(); }
};

} // namespace

TNoticeBdStatusBar::TNoticeBdStatusBar(QStatusBar& Bar, QLabel& StatusImage, QLineEdit& StatusCaption)
    : FBar(Bar), FImage(StatusImage), FCaption(StatusCaption) {
    NewPanel(200);
    NewPanel(500);
}

QLabel* TNoticeBdStatusBar::NewPanel(int width) {
    auto* panel = new TStatusPanel(&FBar);
    panel->setObjectName(QStringLiteral("Panel%1").arg(FPanels.size()));
    panel->setFrameShape(QFrame::StyledPanel);
    panel->setFrameShadow(QFrame::Sunken);
    panel->setTextFormat(Qt::PlainText);
    panel->setFixedWidth(width);
    panel->setAccessibleName(QStringLiteral("Status panel %1").arg(FPanels.size() + 1));
    FBar.addWidget(panel);
    FPanels.push_back(panel);
    return panel;
}

QLabel* TNoticeBdStatusBar::Panel(int index) const {
    return index >= 0 && index < PanelCount() ? FPanels[index] : nullptr;
}

int TNoticeBdStatusBar::PanelWidth(int index) const {
    const QLabel* panel = Panel(index);
    return panel ? panel->width() : 0;
}

void TNoticeBdStatusBar::AddPanel() {
    NewPanel(DefaultPanelWidth);
}

void TNoticeBdStatusBar::SetPanelWidth(int index, int width) {
    if (QLabel* panel = Panel(index)) panel->setFixedWidth(std::max(width, 0));
}

void TNoticeBdStatusBar::SetPanelText(int index, const std::string& text) {
    if (QLabel* panel = Panel(index)) {
        const QString value = QString::fromStdString(text);
        if (panel->text() == value) return;
        panel->setText(value);
        panel->setToolTip(value); // a narrow panel cuts its text off
    }
}

void TNoticeBdStatusBar::SetStatusImage(int imageIndex) {
    const QIcon icon = NbAdapterStatusIcon(imageIndex);
    if (icon.isNull()) return;
    FImageIndex = imageIndex;
    FImage.setPixmap(icon.pixmap(16, 16));
    FImage.setProperty("imageIndex", imageIndex);
}

void TNoticeBdStatusBar::SetStatusCaption(const std::string& text) {
    FCaption.setText(QString::fromStdString(text));
    FCaption.setCursorPosition(0);
}
