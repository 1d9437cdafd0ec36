#include "core/ui/AlertTray.h"

#include "core/Nb_utils.h"
#include "core/ui/NbIcons.h"

#include <QPainter>
#include <QSystemTrayIcon>

namespace {

QString SeverityText(int Severity) {
    return Severity >= 1 && Severity <= 4 ? QString::fromStdString(Get_Severity_String(Severity)) : QString();
}

} // namespace

QString AlertTrayToolTip(int Live, int WorstSeverity, int Trouble, int Threshold, const QString& MuteText) {
    QString tip = QObject::tr("Notice Board");
    if (Live == 0) {
        tip += QLatin1Char('\n') + QObject::tr("No notices");
    } else {
        tip +=
            QLatin1Char('\n') + (Live == 1 ? QObject::tr("1 notice") : QObject::tr("%1 notices").arg(Live));
        if (WorstSeverity >= 1) tip += QObject::tr(", the worst %1").arg(SeverityText(WorstSeverity));
    }
    if (Trouble > 0)
        tip += QLatin1Char('\n') +
               QObject::tr("%1 unacknowledged at %2 or above").arg(Trouble).arg(SeverityText(Threshold));
    if (!MuteText.isEmpty()) tip += QLatin1Char('\n') + MuteText;
    return tip;
}

QIcon AlertTrayIcon(int WorstSeverity) {
    QIcon icon;
    const QIcon board = NbIcon(TNbIcon::Application);
    const QIcon mark = NbSeverityIcon(WorstSeverity);
    for (const int side : {16, 22, 24, 32, 48, 64}) {
        QPixmap pixmap(side, side);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        board.paint(&painter, QRect(0, 0, side, side));
        if (!mark.isNull()) {
            const int badge = side * 5 / 8;
            mark.paint(&painter, QRect(side - badge, side - badge, badge, badge));
        }
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

TAlertTray::TAlertTray(QObject* Parent) : QObject(Parent), FTray(new QSystemTrayIcon(this)) {
    FTray->setObjectName(QStringLiteral("TrayIcon"));
    SetState(0, 0, 0, 3, QString());
    connect(FTray, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason Reason) {
        if (Reason == QSystemTrayIcon::Trigger || Reason == QSystemTrayIcon::DoubleClick) emit Activated();
    });
    connect(FTray, &QSystemTrayIcon::messageClicked, this, &TAlertTray::MessageClicked);
}

TAlertTray::~TAlertTray() = default;

bool TAlertTray::CanNotify() {
    return QSystemTrayIcon::isSystemTrayAvailable() && QSystemTrayIcon::supportsMessages();
}

void TAlertTray::SetVisible(bool Visible) {
    FTray->setVisible(Visible);
}

bool TAlertTray::IsVisible() const {
    return FTray->isVisible();
}

void TAlertTray::SetState(int Live, int WorstSeverity, int Trouble, int Threshold, const QString& MuteText) {
    if (WorstSeverity != FIconSeverity) {
        FIconSeverity = WorstSeverity;
        FTray->setIcon(AlertTrayIcon(WorstSeverity));
    }
    const QString tip = AlertTrayToolTip(Live, WorstSeverity, Trouble, Threshold, MuteText);
    if (tip != FTray->toolTip()) FTray->setToolTip(tip);
}

void TAlertTray::SetMenu(QMenu* Menu) {
    FTray->setContextMenu(Menu);
}

QString TAlertTray::ToolTip() const {
    return FTray->toolTip();
}

void TAlertTray::Notify(const QString& Title, const QString& Text, int Severity) {
    const QIcon mark = NbSeverityIcon(Severity);
    if (mark.isNull())
        FTray->showMessage(Title, Text, QSystemTrayIcon::Information, MessageMs);
    else
        FTray->showMessage(Title, Text, mark, MessageMs);
}
