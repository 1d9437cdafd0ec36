// The "Adapters" page of the configuration dialog: the adapter's own configuration and its status.
#include "adapters/ui/UConfigDlg.h"

#include "ui_UConfigDlg.h"

#include "adapters/ZNBA_Interface.h"
#include "adapters/ZNB_Cfg.h"
#include "core/ui/PathElide.h"
#include "platform/DynLib.h"
#include "support/StrUtils.h"

#include <QApplication>
#include <QMainWindow>
#include <QStringList>

#include <cstring>
#include <vector>

namespace {

const int32_t kStatusBufferSize = 4096;

// Adapter and load texts end their lines in CR LF; the memo wants plain line ends.
QString MemoText(const std::string& text) {
    QString s = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    s.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    s.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return s;
}

QString StateText(int32_t state) {
    switch (state) {
    case ZNA_STATE_ALL_FAILED:
        return QStringLiteral("All Connections have failed");
    case ZNA_STATE_SOME_FAILED:
        return QStringLiteral("One or more Connections have failed");
    case ZNA_STATE_ALL_OK:
        return QStringLiteral("All Connections are OK");
    default:
        return QString();
    }
}

// Which file the adapter's library came from and what loading it reported, so that a user looking at a
// silent or missing adapter sees why.
QString LoadReport(const TZNB_Adapter_Obj& adapter) {
    const QString library = adapter.Loaded ? QString::fromStdString(LibraryFileName(adapter.DLL_Handle))
                                           : QString::fromStdString(adapter.DLL_Name) + " (not loaded)";
    return "Library : " + library + "\n" + MemoText(adapter.Message);
}

} // namespace

intptr_t TconfigDlg::MainWindowHandle() const {
    QWidget* top = parentWidget();
    while (top && top->parentWidget())
        top = top->parentWidget();
    if (!top) {
        for (QWidget* w : QApplication::topLevelWidgets())
            if (w->isVisible() && qobject_cast<QMainWindow*>(w)) {
                top = w;
                break;
            }
    }
    return top ? static_cast<intptr_t>(top->winId()) : 0;
}

bool TconfigDlg::SelectedName(std::string& name) const {
    const QListWidgetItem* item = ui->clbSourceTypes->currentItem();
    if (!item) return false;
    name = item->text().toStdString();
    return true;
}

TZNB_Adapter_Obj* TconfigDlg::FindAdapter(const std::string& name) const {
    return FAdapters ? FAdapters->Get_Adapter(name) : nullptr;
}

void TconfigDlg::EnableConfigSource() {
    const QListWidgetItem* item = ui->clbSourceTypes->currentItem();
    ui->btnConfigSource->setEnabled(item && (item->flags() & Qt::ItemIsEnabled));
}

void TconfigDlg::clbSourceTypesClick() {
    EnableConfigSource();
    BB_Adapter_StatusClick();
}

void TconfigDlg::btnConfigSourceClick() {
    std::string name;
    if (!SelectedName(name)) return;
    TZNB_Adapter_Obj* adapter = FindAdapter(name);
    if (!adapter) {
        Log("Adapter Config : Could not find adapter specified");
        return;
    }
    if (!adapter->ZNA_Set_Config) return;
    // Kept by the adapter object until the library is unloaded: the adapter may hold on to them.
    int32_t nameSize = 0, folderSize = 0, configSize = 0;
    const std::string folder = FFolder->FullText().toStdString();
    const char* adapterName = adapter->Keep_Text(name, nameSize);
    const char* folderText =
        adapter->Keep_Text(folder.empty() ? folder : IncludeTrailingPathDelimiter(folder), folderSize);
    const char* configText = adapter->Keep_Text(std::string(), configSize);
    try {
        const int32_t result = adapter->Call_Set_Config(MainWindowHandle(), adapterName, folderText,
                                                        folderSize, configText, configSize);
        if (result != 0) Log("Adapter Config :  Result = " + IntToStr(result));
    } catch (const EAdapterError& e) {
        Log("btnConfigSourceClick : Exception occurred : " + e.Message());
        return;
    }
    // Marked configured whatever the adapter answered, so the start-up prompt stops asking; relied upon.
    FConfig.SetAdapterConfigured(name, true);
}

void TconfigDlg::BB_Adapter_StatusClick() {
    ui->M_Adapter_Status->clear();
    std::string name;
    if (!SelectedName(name)) return;
    TZNB_Adapter_Obj* adapter = FindAdapter(name);
    if (!adapter) {
        Log("Adapter Status : Could not find adapter specified");
        return;
    }
    QStringList lines;
    if (!adapter->ZNA_Status) {
        Log("Adapter Status : Adapter Status function not found.");
    } else {
        // Zeroed and read no further than its own end, whatever the adapter wrote or claims in size.
        std::vector<char> buffer(kStatusBufferSize, '\0');
        int32_t size = kStatusBufferSize;
        int32_t state = 0;
        try {
            const int32_t result = adapter->Call_Status(&state, buffer.data(), &size);
            if (result == 0) {
                const std::string info(buffer.data(), ::strnlen(buffer.data(), buffer.size()));
                lines << "Status : " + StateText(state) << QStringLiteral(" ")
                      << "Adapter Info : \n" + MemoText(info);
            } else {
                lines << "Adapter Status function returned : " + QString::number(result);
            }
        } catch (const EAdapterError& e) {
            Log("BB_Adapter_StatusClick : Exception occurred : " + e.Message());
            lines << QString::fromStdString(e.Message());
        }
    }
    if (!lines.isEmpty()) lines << QString();
    lines << LoadReport(*adapter);
    ui->M_Adapter_Status->setPlainText(lines.join(QLatin1Char('\n')));
}
