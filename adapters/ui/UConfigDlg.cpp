#include "adapters/ui/UConfigDlg.h"

#include "ui_UConfigDlg.h"

#include "adapters/ZNB_Cfg.h"
#include "adapters/Znb_log.h"
#include "core/ui/NbColors.h"
#include "core/ui/PathElide.h"
#include "support/Exception.h"
#include "support/NBPrompt.h"
#include "support/StrUtils.h"
#include "support/ui/AccessibleNames.h"

#include <QDir>
#include <QFileDialog>
#include <QScreen>
#include <QShowEvent>
#include <QTemporaryFile>

#include <algorithm>
#include <exception>
#include <filesystem>
#include <system_error>

namespace {

void SelectItem(QComboBox* combo, const std::string& text) {
    combo->setCurrentIndex(
        combo->findText(QString::fromStdString(text), Qt::MatchExactly | Qt::MatchCaseSensitive));
}

void AddItems(QComboBox* combo, const std::vector<std::string>& items, const char* last) {
    for (const std::string& item : items)
        combo->addItem(QString::fromStdString(item));
    combo->addItem(QString::fromLatin1(last));
}

} // namespace

void ShowConfigDialog(QWidget* owner, TZNB_Adapter_List* adapters, const std::vector<std::string>& filters,
                      const std::vector<std::string>& displays) {
    if (!NBConfig) return;
    try {
        TconfigDlg dialog(*NBConfig, adapters, owner);
        // The board's opener also empties the source-type list; showing the dialog rebuilds it anyway.
        dialog.AddDefaultItems(filters, displays);
        dialog.exec();
    } catch (const std::exception& e) {
        ZS_Log(NBConfig->LogFileName, std::string("ShowConfigDialog : Exception occurred : ") + e.what());
    }
}

TconfigDlg::TconfigDlg(TNBConfig& config, TZNB_Adapter_List* adapters, QWidget* parent)
    : QDialog(parent), ui(std::make_unique<Ui::configDlg>()), FConfig(config), FAdapters(adapters) {
    ui->setupUi(this);
    NameBuddiesAfterTheirLabels(this);
    FFolder = new TElidedPathEdit(ui->EditNBFolder);
    connect(ui->btnOK, &QPushButton::clicked, this, &TconfigDlg::btnOKClick);
    connect(ui->btnCancel, &QPushButton::clicked, this, &TconfigDlg::btnCancelClick);
    connect(ui->btnBrowse, &QPushButton::clicked, this, &TconfigDlg::btnBrowseClick);
    connect(ui->rbOnPVOStartup, &QRadioButton::toggled, this, &TconfigDlg::rbOnPVOStartupClick);
    connect(ui->rbOnNBShow, &QRadioButton::toggled, this, &TconfigDlg::rbOnPVOStartupClick);
    connect(ui->clbSourceTypes, &QListWidget::currentRowChanged, this, [this] {
        if (!FPopulating) clbSourceTypesClick();
    });
    connect(ui->btnConfigSource, &QPushButton::clicked, this, &TconfigDlg::btnConfigSourceClick);
    connect(ui->BB_Adapter_Status, &QPushButton::clicked, this, &TconfigDlg::BB_Adapter_StatusClick);
    ConnectNotificationsPage();
}

TconfigDlg::~TconfigDlg() = default;

void TconfigDlg::AddDefaultItems(const std::vector<std::string>& filters,
                                 const std::vector<std::string>& displays) {
    // Added after the built-in "<previous filter>" / "<previous display>", which stay selectable.
    AddItems(ui->cbDefFilter, filters, "<Previous filter>");
    AddItems(ui->cbDefDisplay, displays, "<Previous display>");
    SelectItem(ui->cbDefFilter, FConfig.DefaultFilter);
    SelectItem(ui->cbDefDisplay, FConfig.DefaultDisplay);
}

void TconfigDlg::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (event->spontaneous()) return;
    if (QScreen* s = screen()) move(s->availableGeometry().center() - rect().center());
    FormShow();
}

void TconfigDlg::FormShow() {
    ui->PageControl1->setCurrentIndex(0);
    PopulateControls();
    PopulateNotifications();
    ui->M_Adapter_Status->clear();
    ui->EditNBFolder->setFocus(Qt::OtherFocusReason);
    // The focus-in only comes once the window is active; the edit shows the full folder from the start.
    FFolder->ShowFull();
}

void TconfigDlg::PopulateControls() {
    FPopulating = true;
    ui->seDelaySecs->setValue(FConfig.ConnectDelay);
    FFolder->SetFullText(QString::fromStdString(FConfig.NBFolder));
    (FConfig.WhenToConnect == 0 ? ui->rbOnPVOStartup : ui->rbOnNBShow)->setChecked(true);
    rbOnPVOStartupClick(); // also when the radio button was already checked
    SelectItem(ui->cbDefFilter, FConfig.DefaultFilter);
    SelectItem(ui->cbDefDisplay, FConfig.DefaultDisplay);

    QListWidget* list = ui->clbSourceTypes;
    list->clear();
    for (int i = 0; i < FConfig.AdapterCount(); ++i) {
        const std::string& name = FConfig.AdapterName(i);
        auto* item = new QListWidgetItem(QString::fromStdString(name), list);
        // A greyed line can be neither picked nor ticked: its adapter cannot be loaded here.
        Qt::ItemFlags flags = Qt::ItemIsUserCheckable;
        if (FConfig.IsAdapterLoadable(name)) flags |= Qt::ItemIsEnabled | Qt::ItemIsSelectable;
        item->setFlags(flags);
        item->setCheckState(FConfig.IsAdapterEnabled(name) ? Qt::Checked : Qt::Unchecked);
    }
    if (list->count() > 0) list->setCurrentRow(0);
    EnableConfigSource();
    FPopulating = false;
}

void TconfigDlg::rbOnPVOStartupClick() {
    const bool enabled = ui->rbOnPVOStartup->isChecked();
    ui->seDelaySecs->setEnabled(enabled);
    QPalette palette = ui->seDelaySecs->palette();
    palette.setColor(QPalette::Base, ToQColor(enabled ? clWindow : clBtnFace));
    ui->seDelaySecs->setPalette(palette);
}

void TconfigDlg::btnBrowseClick() {
    QFileDialog dialog(this, QString(), FFolder->FullText());
    dialog.setObjectName(QStringLiteral("FolderDialog"));
    dialog.setFileMode(QFileDialog::Directory);
    // Qt's own picker everywhere: it always offers "Create New Folder".
    dialog.setOptions(QFileDialog::ShowDirsOnly | QFileDialog::DontUseNativeDialog);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return;
    FFolder->SetFullText(QDir::toNativeSeparators(dialog.selectedFiles().front()));
}

void TconfigDlg::btnOKClick() {
    const std::string folder = FFolder->FullText().toStdString();
    PrepareFolder(folder);
    try {
        SaveConfig();
    } catch (const std::exception& e) {
        // The ini file is replaced in one step, so a failed save leaves it as it was; the settings stay
        // in memory and reach the file with the next save that works.
        NBPrompt().ShowMessage(std::string("Error - The configuration could not be saved: ") + e.what(),
                               TMsgDlgType::mtError);
    }
    accept();
}

void TconfigDlg::btnCancelClick() {
    reject();
}

void TconfigDlg::SaveConfig() {
    FConfig.WhenToConnect = ui->rbOnPVOStartup->isChecked() ? 0 : 1;
    FConfig.ConnectDelay = ui->seDelaySecs->value();
    // As typed: Get adds the trailing separator when the file is next read.
    FConfig.NBFolder = FFolder->FullText().toStdString();
    FConfig.DefaultFilter = ui->cbDefFilter->currentText().toStdString();
    FConfig.DefaultDisplay = ui->cbDefDisplay->currentText().toStdString();
    const int lines = std::min(ui->clbSourceTypes->count(), FConfig.AdapterCount());
    for (int i = 0; i < lines; ++i) {
        const QListWidgetItem* item = ui->clbSourceTypes->item(i);
        FConfig.SetAdapterEnabled(item->text().toStdString(), item->checkState() == Qt::Checked);
    }
    FConfig.Notifications = NotificationsFromPage();
    FConfig.Save();
}

void TconfigDlg::PrepareFolder(const std::string& folder) {
    if (Trim(folder).empty()) return; // reading the file again falls back to the default folder
    namespace fs = std::filesystem;
    std::error_code ec;
    if (!fs::exists(fs::path(folder), ec)) {
        if (!NBPrompt().Confirm("The notice board folder \"" + folder +
                                "\" does not exist. Do you want to create it?"))
            return;
        fs::create_directories(fs::path(folder), ec);
        if (ec) {
            NBPrompt().ShowMessage("Error - The notice board folder \"" + folder +
                                       "\" could not be created: " + ec.message(),
                                   TMsgDlgType::mtError);
            return;
        }
    }
    // Filters, displays and the log are written there; find out now rather than at the first save.
    QTemporaryFile probe(QDir(QString::fromStdString(folder)).filePath(QStringLiteral(".znbwrite.XXXXXX")));
    if (!probe.open())
        NBPrompt().ShowMessage("Error - The notice board folder \"" + folder +
                                   "\" cannot be written: " + probe.errorString().toStdString(),
                               TMsgDlgType::mtError);
}

void TconfigDlg::Log(const std::string& message) const {
    ZS_Log(FConfig.LogFileName, message);
}
