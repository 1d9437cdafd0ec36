#include "support/ConfigDlgBench.h"

#include "adapters/ZNB_Cfg.h"
#include "platform/DynLib.h"

#include <QLineEdit>
#include <QListWidget>
#include <QTabWidget>
#include <QTest>

namespace {

const char* const kAdapters[][2] = {
    {"Recorder", "ZNBA_TestRecorder"},       {"BadConfig", "ZNBA_TestBadSetConfig"},
    {"Bare", "ZNBA_TestNoConfigNoStatus"},   {"Garbage", "ZNBA_TestGarbageStatus"},
    {"Overflow", "ZNBA_TestStatusOverflow"}, {"Throws", "ZNBA_TestThrows"},
    {"Missing", "ZNBA_NoSuchAdapter"},       {"Unlisted", "ZNBA_TestRecorder"},
};

} // namespace

TConfigDlgBench::TConfigDlgBench() {
    std::string ini =
        "[Noticeboard]\nWhenToConnect=1\nConnectDelay=20\nNBFolder=" + Folder() +
        "\nDefaultFilter=Errors\nDefaultDisplay=<Previous display>\n[AdapterConfig]\nAlwaysPrompt=1\n"
        "[Kept]\nByHand=yes\n[Adapters]\nCount=8\n";
    for (int i = 0; i < 8; ++i)
        ini += "Adapter_" + std::to_string(i) + "=" + kAdapters[i][0] + "\n";
    for (const auto& a : kAdapters)
        ini += std::string("[Adapter_") + a[0] + "]\nDLL_Name=" + LibraryPath(a[1]) +
               "\nEnabled=" + (std::string(a[0]) == "Recorder" ? "1" : "0") + "\n";
    WriteTextFile(Ini(), ini);
    NBConfig = std::make_unique<TNBConfig>(Exe.Path());
    NBConfig->Get();
    for (const auto& a : kAdapters)
        if (std::string(a[0]) != "Unlisted")
            Adapters.Objects(Adapters.Add_Adapter(a[0], LibraryPath(a[1])))->Load_DLL(LibraryPath(a[1]));
    Export<void (*)()>("Recorder", "ZNBA_Test_Reset")();
}

TConfigDlgBench::~TConfigDlgBench() {
    delete Dlg.data();
    NBConfig.reset();
}

void TConfigDlgBench::Open(QWidget* parent) {
    delete Dlg.data();
    Dlg = new TconfigDlg(*NBConfig, &Adapters, parent);
    Dlg->show();
    Dlg->activateWindow();
    if (!QTest::qWaitForWindowActive(Dlg.data())) qWarning("the dialog did not become active");
}

void TConfigDlgBench::Select(QWidget* dlg, const QString& name) {
    Child<QTabWidget>(dlg, "PageControl1")->setCurrentIndex(1);
    auto* list = Child<QListWidget>(dlg, "clbSourceTypes");
    list->setCurrentItem(list->findItems(name, Qt::MatchExactly).value(0));
}

void TConfigDlgBench::TypeFolder(const QString& folder) const {
    auto* edit = W<QLineEdit>("EditNBFolder");
    edit->setFocus(Qt::TabFocusReason);
    edit->selectAll();
    QTest::keyClicks(edit, folder);
}

std::string TConfigDlgBench::Log() const {
    return ReadTextFile(NBConfig->LogFileName);
}

std::string TConfigDlgBench::LibraryPath(const std::string& library) {
    return std::string(NB_PLUGIN_DIR) + "/" + library + ".so";
}

void* TConfigDlgBench::ExportAddress(const char* adapter, const char* name) const {
    return GetProcAddress(Adapters.Get_Adapter(adapter)->DLL_Handle, name);
}
