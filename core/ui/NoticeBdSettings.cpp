// The board window's placement, kept per user under "Software\Zarvo Software\Palvane\NoticeBoard\Settings"
// (the registry on Windows, the user's settings file elsewhere).
#include "core/ui/NoticeBdForm.h"

#include <QScreen>
#include <QSettings>

namespace {

constexpr const char* SettingsGroup = "NoticeBoard/Settings";

QSettings UserSettings() {
    return QSettings(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Zarvo Software"),
                     QStringLiteral("Palvane"));
}

} // namespace

void TNoticeBdForm::ReadSettings() {
    QSettings settings = UserSettings();
    // Reading never creates the key: with no group nothing is applied.
    if (!settings.childGroups().contains(QStringLiteral("NoticeBoard"))) return;
    settings.beginGroup(QLatin1String(SettingsGroup));
    const QString state = settings.value(QStringLiteral("WindowState")).toString();
    if (state == QLatin1String("Minimized")) {
        setWindowState(windowState() | Qt::WindowMinimized);
        return;
    }
    if (state == QLatin1String("Maximized")) {
        setWindowState(Qt::WindowMaximized);
        return;
    }
    setWindowState(Qt::WindowNoState);
    QRect placement(pos(), size());
    bool ok = false;
    if (const int top = settings.value(QStringLiteral("Top")).toInt(&ok); ok) {
        placement.moveTop(top);
        FPlacementRestored = true;
    }
    if (const int left = settings.value(QStringLiteral("Left")).toInt(&ok); ok) placement.moveLeft(left);
    if (const int height = settings.value(QStringLiteral("Height")).toInt(&ok); ok)
        placement.setHeight(height);
    if (const int width = settings.value(QStringLiteral("Width")).toInt(&ok); ok) placement.setWidth(width);
    resize(placement.size());
    move(placement.topLeft());
}

void TNoticeBdForm::WriteSettings() {
    QSettings settings = UserSettings();
    settings.beginGroup(QLatin1String(SettingsGroup));
    const Qt::WindowStates state = windowState();
    settings.setValue(QStringLiteral("WindowState"), state & Qt::WindowMinimized ? QStringLiteral("Minimized")
                                                     : state & Qt::WindowMaximized
                                                         ? QStringLiteral("Maximized")
                                                         : QStringLiteral("Normal"));
    settings.setValue(QStringLiteral("Top"), y());
    settings.setValue(QStringLiteral("Left"), x());
    settings.setValue(QStringLiteral("Height"), height());
    settings.setValue(QStringLiteral("Width"), width());
    settings.sync();
}

void TNoticeBdForm::CenterInMainForm() {
    const QWidget* owner = parentWidget() ? parentWidget()->window() : nullptr;
    const QRect area = owner ? owner->frameGeometry() : screen()->availableGeometry();
    move(area.center() - QPoint(width() / 2, height() / 2));
}
