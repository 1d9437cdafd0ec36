#include "WidgetShots.h"

#include <QDir>
#include <QPixmap>
#include <QWidget>

QString ShotDir() {
    return qEnvironmentVariable("NB_SCREENSHOT_DIR");
}

bool SaveShot(const QImage& image, const QString& name) {
    const QString dir = ShotDir();
    if (dir.isEmpty()) return true;
    QDir().mkpath(dir);
    return image.save(QDir(dir).filePath(name + QStringLiteral(".png")));
}

bool SaveShot(QWidget* widget, const QString& name) {
    if (ShotDir().isEmpty()) return true;
    return SaveShot(widget->grab().toImage(), name);
}
