#include "core/ui/SeverityBadges.h"

#include "core/Znb_const.h"
#include "core/ui/NbColors.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

namespace {

constexpr int Gap = 4;     // between badges
constexpr int Padding = 6; // left and right inside a badge

QString SeverityName(int Severity) {
    return QString::fromStdString(SeverityStrings[size_t(Severity - 1)]);
}

} // namespace

// Store changes reach the widget as a repaint request only; the counts are read when painting.
struct TSeverityBadges::TListener final : INoticeStoreListener {
    explicit TListener(TSeverityBadges& Badges) : Owner(Badges) {}
    TSeverityBadges& Owner;
    void DataSetChanged() override { Owner.CountsChanged(); }
    void RecordChanged(int32_t) override { Owner.CountsChanged(); }
};

TSeverityBadges::TSeverityBadges(TNoticeStore& Store, QWidget* Parent)
    : QWidget(Parent), FStore(Store), FCounts(Store), FListener(std::make_unique<TListener>(*this)) {
    setObjectName(QStringLiteral("SeverityBadges"));
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Preferred);
    FStore.AddListener(FListener.get());
}

TSeverityBadges::~TSeverityBadges() {
    FStore.RemoveListener(FListener.get());
}

void TSeverityBadges::CountsChanged() {
    if (FCounts.Revision() == FShown) return;
    FShown = FCounts.Revision();
    updateGeometry(); // a count with more digits needs a wider badge
    update();
}

QStringList TSeverityBadges::BadgeTexts(bool Compact) const {
    QStringList texts;
    for (int s = 4; s >= 1; --s)
        texts << (Compact ? QString::number(FCounts.Count(s))
                          : QStringLiteral("%1 %2").arg(SeverityName(s)).arg(FCounts.Count(s)));
    return texts;
}

int TSeverityBadges::WidthOf(const QStringList& Texts) const {
    const QFontMetrics fm = fontMetrics();
    int width = 0;
    for (const QString& text : Texts)
        width += fm.horizontalAdvance(text) + 2 * Padding + Gap;
    return width;
}

QSize TSeverityBadges::sizeHint() const {
    return QSize(WidthOf(BadgeTexts()), fontMetrics().height() + 4);
}

QSize TSeverityBadges::minimumSizeHint() const {
    return QSize(WidthOf(BadgeTexts(true)), fontMetrics().height() + 4);
}

void TSeverityBadges::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QFontMetrics fm = fontMetrics();
    const int h = std::min(height() - 2, fm.height() + 4);
    const int top = (height() - h) / 2;
    int x = 0;
    int severity = 4;
    const bool compact = width() < WidthOf(BadgeTexts());
    for (const QString& text : BadgeTexts(compact)) {
        const QRect badge(x, top, fm.horizontalAdvance(text) + 2 * Padding, h);
        const bool none = FCounts.Count(severity) == 0;
        QColor fill = SeverityColor(severity);
        if (none) fill.setAlpha(90); // an empty count steps back
        p.setPen(Qt::NoPen);
        p.setBrush(fill);
        p.drawRoundedRect(badge, h / 2.0, h / 2.0);
        p.setPen(Qt::white);
        p.drawText(badge, Qt::AlignCenter, text);
        x = badge.right() + 1 + Gap;
        --severity;
    }
    FShown = FCounts.Revision();
}

bool TSeverityBadges::event(QEvent* Event) {
    if (Event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(Event);
        QToolTip::showText(help->globalPos(),
                           tr("Notices by severity, whatever the filter: %1 in all\n%2")
                               .arg(FCounts.Total())
                               .arg(BadgeTexts().join(QStringLiteral(", "))),
                           this);
        return true;
    }
    return QWidget::event(Event);
}
