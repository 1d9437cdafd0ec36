// The board window for benchmarks: a configuration of its own in a temporary folder (no adapters, no
// start-up question), the user's and the machine's settings kept there too, and the window itself
// (TNoticeBdForm, which makes its own board and hears the notice callback) at 1200 x 800. Header-only;
// GUI thread. UseBenchSettings goes right after the QApplication is made.
#pragma once

#include "WidgetBench.h"

#include "adapters/ZNB_Cfg.h"
#include "core/Nb_utils.h"
#include "core/ui/NoticeBdForm.h"

#include <QSettings>
#include <QTemporaryDir>

#include <fstream>
#include <string>

inline QTemporaryDir& BenchFolder() {
    static QTemporaryDir dir;
    return dir;
}

inline void UseBenchSettings() {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, BenchFolder().path() + "/user");
    QSettings::setPath(QSettings::NativeFormat, QSettings::SystemScope, BenchFolder().path() + "/system");
}

// Closing the window (WA_DeleteOnClose) frees it; NBConfig stays until the caller resets it.
inline TNoticeBdForm* OpenBoardWindow() {
    const std::string folder = BenchFolder().path().toStdString() + "/";
    std::ofstream(folder + "zpnbd.ini") << "[AdapterConfig]\nAlwaysPrompt=0\n";
    Prepare_NBConfig(folder);
    FilterFolder = NBConfig->NBFolder;
    auto* form = new TNoticeBdForm(nullptr);
    form->resize(1200, 800);
    return form;
}
