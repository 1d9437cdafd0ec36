#include "core/ui/NbIcons.h"

#include <array>
#include <mutex>

// The window layer is a static library: its compiled resources are only linked, and registered, when
// something calls their initialiser, which Q_INIT_RESOURCE does. It must be called outside any namespace.
static void RegisterIconResources() {
    Q_INIT_RESOURCE(icons);
}

namespace {

constexpr std::array<const char*, NbIconCount> kFiles = {
    "filters",
    "displays",
    "print",
    "export",
    "configure",
    "details",
    "acknowledge",
    "delete",
    "adapter_failed",
    "adapter_failing",
    "adapter_ok",
    "idle",
    "busy",
    "folder",
    "refresh",
    "close",
    "noticeboard",
    "severity_normal",
    "severity_warning",
    "severity_fatal",
    "severity_critical",
};

void EnsureResources() {
    static std::once_flag once;
    std::call_once(once, RegisterIconResources);
}

} // namespace

QString NbIconPath(TNbIcon Icon) {
    EnsureResources();
    return QStringLiteral(":/icons/%1.svg").arg(QLatin1String(kFiles[size_t(Icon)]));
}

QIcon NbIcon(TNbIcon Icon) {
    return QIcon(NbIconPath(Icon));
}

QIcon NbSeverityIcon(int Severity) {
    if (Severity < 1 || Severity > 4) return QIcon();
    return NbIcon(TNbIcon(int(TNbIcon::SeverityNormal) + Severity - 1));
}

QIcon NbAdapterStatusIcon(int ImageIndex) {
    if (ImageIndex < 0 || ImageIndex > 2) return QIcon();
    return NbIcon(TNbIcon(int(TNbIcon::AdapterFailed) + ImageIndex));
}
