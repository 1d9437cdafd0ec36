#include "core/ui/NoticeBdForm.h"

#include "adapters/ZNB_Cfg.h"
#include "adapters/Znb_log.h"
#include "core/Znb_callback.h"
#include "core/ui/BoardAlerts.h"
#include "core/ui/NbIcons.h"
#include "core/ui/NoticeBdDetailPanel.h"
#include "core/ui/NoticeBdGrid.h"
#include "core/ui/NoticeBdStatusBar.h"
#include "core/ui/QtPrompt.h"
#include "reports/ui/ExportSource.h"
#include "ui_NoticeBdForm.h"
#include "views/FilterApply.h"

#include <QApplication>
#include <QCloseEvent>
#include <QTimer>

TNoticeBdForm::TNoticeBdForm(QWidget* Owner)
    : QMainWindow(Owner, Qt::Window), ui(std::make_unique<Ui::TNoticeBdForm>()) {
    ui->setupUi(this);
    setWindowIcon(NbIcon(TNbIcon::Application));
    FPrompt = std::make_unique<TQtPrompt>(this);
    FPrompt->SetConfigDialogOpener([this] { OpenConfigDialog(); });

    // This thread is the board's: adapters calling from their own threads are queued and heard here.
    InstallFilterLanguage(FBoard.cdsNoticeBd());
    FBoard.SetListener(this);
    SetNoticeBoard(&FBoard);
    SetNoticeWake([this] {
        if (!FWakePending.exchange(true))
            QMetaObject::invokeMethod(this, &TNoticeBdForm::ProcessQueuedNotices, Qt::QueuedConnection);
    });

    FGrid = new TNoticeBdGrid(FBoard.cdsNoticeBd(), ui->Splitter1);
    FGrid->setAccessibleName(QStringLiteral("Notices"));
    FDetailPanel = new TNoticeBdDetailPanel(FBoard.cdsNoticeBd(), ui->Splitter1);
    ui->Splitter1->setStretchFactor(0, 1);
    ui->Splitter1->setStretchFactor(1, 0);
    ui->Splitter1->setSizes({height() - FDetailPanel->height(), FDetailPanel->height()});
    FStatusBar = std::make_unique<TNoticeBdStatusBar>(*ui->StatusBar1, *ui->Img_Adapter_Status, *ui->Edit1);
    FStartup = std::make_unique<TAdapterStartup>(*NBConfig, *FStatusBar, NoticeCallback);
    FExportSource = std::make_unique<TGridExportSource<TNoticeBdGrid>>(*FGrid);

    // The display, bound to the grid, and the captions of the columns.
    FDisplay = std::make_unique<TDisplay>();
    FDisplay->SetGrid(FGrid);
    FGrid->SetDisplay(FDisplay.get());
    FGrid->AssignColumnHeaders();
    SetupListers();
    SetupToolBar();
    SetupActions();
    SetupExtras();
    FBoard.SetTotalCount(0);
    FDetailPanel->DetailPanelResize();

    Timer1 = new QTimer(this);
    Timer1->setObjectName(QStringLiteral("Timer1"));
    Timer1->setProperty("tag", 0);
    connect(Timer1, &QTimer::timeout, this, &TNoticeBdForm::Timer1Timer);

    connect(FGrid, &TNoticeBdGrid::MouseReleased, this, &TNoticeBdForm::UpdateButtons);
    connect(FGrid, &TNoticeBdGrid::KeyReleased, this, &TNoticeBdForm::UpdateButtons);
    connect(FGrid, &TNoticeBdGrid::SelectionChanged, this, &TNoticeBdForm::UpdateStatusBar);
    show();
}

TNoticeBdForm::~TNoticeBdForm() {
    // Nothing may reach the board from here on: no wake-ups, no adapters, no callback.
    SetNoticeWake({});
    FStartup->Shutdown_Adapters();
    if (NoticeBoard() == &FBoard) SetNoticeBoard(nullptr);
    FBoard.SetListener(nullptr);
    while (FHourglassDepth > 0)
        SetHourglass(false);
    // The grid and the detail panel read the store, which goes before the widgets would.
    FExportSource.reset();
    TearDownExtras();
    if (FDisplay) FDisplay->SetGrid(nullptr);
    delete FGrid;
    delete FDetailPanel;
}

void TNoticeBdForm::showEvent(QShowEvent* Event) {
    QMainWindow::showEvent(Event);
    if (!FShown) {
        FShown = true;
        FormShow();
    }
}

void TNoticeBdForm::FormShow() {
    ui->Edit1->setText(QStringLiteral("No Adapters Loaded"));
    ui->cmbFilters->setCurrentIndex(FFilterLister->GetInitialDefaultItemIndex());
    cmbFiltersClick();
    ui->cmbDisplays->setCurrentIndex(FDisplayLister->GetInitialDefaultItemIndex());
    cmbDisplaysClick();
    UpdateButtons();
    FDetailPanel->SetDataSourceEnabled(true);
    FStartup->Init_Adapters();
    Timer1->setInterval(2000);
    Timer1->setProperty("tag", 0);
    Timer1->start();
    ReadSettings();
    // A maximised or minimised window has no place of its own to centre.
    if (!FPlacementRestored && !(windowState() & (Qt::WindowMaximized | Qt::WindowMinimized)))
        CenterInMainForm();
}

void TNoticeBdForm::Timer1Timer() {
    Timer1->stop();
    if (Timer1->property("tag").toInt() == 0) {
        FStartup->Start_Adapters();
        Timer1->setProperty("tag", 1);
        Timer1->setInterval(30000);
    } else {
        FStartup->Set_Adapters_Status();
    }
    Timer1->start();
}

void TNoticeBdForm::closeEvent(QCloseEvent* Event) {
    if (!FClosed) FormClose();
    Event->accept();
}

void TNoticeBdForm::FormClose() {
    FClosed = true;
    try {
        NBConfig->SaveMRU();
    } catch (const std::exception& e) {
        LogException("FormClose", e);
    }
    FGrid->SetDisplay(nullptr);
    FDisplay->SetGrid(nullptr);
    FDisplayLister.reset();
    FFilterLister.reset();
    FDisplay.reset();
    FBoard.cdsNoticeBd().EmptyDataSet();
    Timer1->stop();
    // Disconnects and unloads every adapter, then closes the start-up mutex they were handed.
    FStartup->Shutdown_Adapters();
    WriteSettings();
    setAttribute(Qt::WA_DeleteOnClose);
}

void TNoticeBdForm::ProcessQueuedNotices() {
    FWakePending = false;
    ProcessPendingNotices();
}

void TNoticeBdForm::SetHourglass(bool on) {
    if (on) {
        ++FHourglassDepth;
        QApplication::setOverrideCursor(Qt::WaitCursor);
    } else if (FHourglassDepth > 0) {
        --FHourglassDepth;
        QApplication::restoreOverrideCursor();
    }
}

void TNoticeBdForm::ShowBusyImages(bool busy) {
    ui->Image1->setVisible(!busy);
    ui->Image2->setVisible(busy);
}

void TNoticeBdForm::ReloadGrid() {
    FGrid->ScheduleRefresh();
}

void TNoticeBdForm::SetStatusText(const std::string& Text) {
    FStatusText = Text;
    ShowStatusText();
}

void TNoticeBdForm::UpdateStatusBar() {
    FBoard.UpdateStatusBar();
}

void TNoticeBdForm::LogException(const char* Routine, const std::exception& Error) const {
    ZS_Log(NBLogFileName(), std::string(Routine) + " : Exception occurred : " + Error.what());
}
