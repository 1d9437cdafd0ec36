#include "platform/SystemSettings.h"

#include <QSettings>

namespace {

const char* const kOrganisation = "Zarvo Software";

QString Q(const std::string& s) {
    return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size()));
}

std::string& DefaultFolder() {
    static std::string folder; // empty until the first redirect remembers the platform's own
    return folder;
}

} // namespace

bool SystemSettingsKeyExists(const std::string& application, const std::string& key) {
    QSettings settings(QSettings::NativeFormat, QSettings::SystemScope, kOrganisation, Q(application));
    settings.beginGroup(Q(key));
    return !settings.allKeys().isEmpty();
}

bool SystemSettingsReadString(const std::string& application, const std::string& key, const std::string& name,
                              std::string& value) {
    QSettings settings(QSettings::NativeFormat, QSettings::SystemScope, kOrganisation, Q(application));
    settings.beginGroup(Q(key));
    const QVariant v = settings.value(Q(name));
    if (!v.isValid()) return false;
    value = v.toString().toStdString();
    return true;
}

void SetSystemSettingsFolder(const std::string& folder) {
    if (DefaultFolder().empty()) {
        // Remember where the system scope lives before the first redirect, to be able to go back.
        const QSettings probe(QSettings::NativeFormat, QSettings::SystemScope, kOrganisation, "probe");
        const QString file = probe.fileName();
        const QString suffix = QStringLiteral("/Zarvo Software/probe.conf");
        DefaultFolder() =
            file.endsWith(suffix) ? file.left(file.size() - suffix.size()).toStdString() : "/etc/xdg";
    }
    QSettings::setPath(QSettings::NativeFormat, QSettings::SystemScope,
                       Q(folder.empty() ? DefaultFolder() : folder));
}

std::string SystemSettingsFileName(const std::string& application) {
    const QSettings settings(QSettings::NativeFormat, QSettings::SystemScope, kOrganisation, Q(application));
    return settings.fileName().toStdString();
}
