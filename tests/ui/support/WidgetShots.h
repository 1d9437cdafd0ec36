// Screenshots of windows for a person to look at. Saved only when NB_SCREENSHOT_DIR names a folder (run
// the suite under xvfb-run with QT_QPA_PLATFORM=xcb for real window decorations and fonts); otherwise the
// calls do nothing, so ordinary test runs write no files.
#pragma once

#include <QImage>
#include <QString>

class QWidget;

// The folder, or empty when screenshots are off.
QString ShotDir();

// Saves the widget as it looks now (QWidget::grab) as <folder>/<name>.png. True when written or off.
bool SaveShot(QWidget* widget, const QString& name);
bool SaveShot(const QImage& image, const QString& name);
