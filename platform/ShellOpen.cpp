#include "platform/ShellOpen.h"

#include <QProcess>
#include <QString>

bool ShellOpen(const std::string& path) {
    if (path.empty()) return false;
    return QProcess::startDetached(QString::fromStdString(path), QStringList());
}
