#include "core/ui/AlertBanner.h"

#include "core/ui/NbIcons.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

// A pale wash of the severity mark's own colour, readable with the window text on top.
QColor Wash(int Severity) {
    static const QColor marks[] = {QColor(0x2f, 0x80, 0xed), QColor(0xf5, 0xa5, 0x24),
                                   QColor(0xf0, 0x62, 0x2d), QColor(0xc8, 0x10, 0x2e)};
    const QColor mark = Severity >= 1 && Severity <= 4 ? marks[Severity - 1] : QColor(Qt::gray);
    const QColor base(Qt::white);
    const double a = 0.18;
    return QColor::fromRgbF(base.redF() * (1 - a) + mark.redF() * a,
                            base.greenF() * (1 - a) + mark.greenF() * a,
                            base.blueF() * (1 - a) + mark.blueF() * a);
}

} // namespace

TAlertBanner::TAlertBanner(QWidget* Parent) : QFrame(Parent) {
    setObjectName(QStringLiteral("AlertBanner"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setAccessibleName(tr("Alert"));

    FIcon = new QLabel(this);
    FIcon->setObjectName(QStringLiteral("imgAlertSeverity"));
    FTitle = new QLabel(this);
    FTitle->setObjectName(QStringLiteral("lblAlertTitle"));
    QFont bold = FTitle->font();
    bold.setBold(true);
    FTitle->setFont(bold);
    FText = new QLabel(this);
    FText->setObjectName(QStringLiteral("lblAlertText"));
    FText->setTextFormat(Qt::PlainText);
    FText->setWordWrap(true);
    for (QLabel* label : {FTitle, FText}) {
        label->setCursor(Qt::PointingHandCursor);
        label->setAttribute(Qt::WA_TransparentForMouseEvents); // clicks reach the banner
    }
    FTitle->setTextFormat(Qt::PlainText);

    FMute = new QToolButton(this);
    FMute->setObjectName(QStringLiteral("btnAlertMute"));
    FMute->setText(tr("&Mute"));
    FMute->setPopupMode(QToolButton::InstantPopup);
    FMute->setAccessibleName(tr("Mute alerts"));
    FMute->hide();
    auto* close = new QToolButton(this);
    close->setObjectName(QStringLiteral("btnAlertClose"));
    close->setIcon(NbIcon(TNbIcon::Close));
    close->setAutoRaise(true);
    close->setToolTip(tr("Close"));
    close->setAccessibleName(tr("Close the alert"));
    connect(close, &QToolButton::clicked, this, &QWidget::hide);

    auto* texts = new QVBoxLayout;
    texts->setSpacing(1);
    texts->addWidget(FTitle);
    texts->addWidget(FText);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(6, 4, 4, 4);
    row->addWidget(FIcon, 0, Qt::AlignTop);
    row->addLayout(texts, 1);
    row->addWidget(FMute, 0, Qt::AlignTop);
    row->addWidget(close, 0, Qt::AlignTop);

    FTimer = new QTimer(this);
    FTimer->setObjectName(QStringLiteral("BannerTimer"));
    FTimer->setSingleShot(true);
    FTimer->setInterval(ShowMs);
    connect(FTimer, &QTimer::timeout, this, &QWidget::hide);
    hide();
}

void TAlertBanner::Notify(const QString& Title, const QString& Text, int Severity) {
    FSeverity = Severity;
    const int side = fontMetrics().height() * 3 / 2;
    FIcon->setPixmap(NbSeverityIcon(Severity).pixmap(side, side));
    FTitle->setText(Title);
    FText->setText(Text);
    FText->setVisible(!Text.isEmpty());
    QPalette p = palette();
    p.setColor(QPalette::Window, Wash(Severity));
    p.setColor(QPalette::WindowText, QColor(Qt::black));
    setPalette(p);
    show();
    FTimer->start();
}

void TAlertBanner::SetMuteMenu(QMenu* Menu) {
    FMute->setMenu(Menu);
    FMute->setVisible(Menu != nullptr);
}

QString TAlertBanner::Title() const {
    return FTitle->text();
}

QString TAlertBanner::Text() const {
    return FText->text();
}

void TAlertBanner::mouseReleaseEvent(QMouseEvent* Event) {
    QFrame::mouseReleaseEvent(Event);
    if (Event->button() == Qt::LeftButton && rect().contains(Event->position().toPoint())) emit Activated();
}
