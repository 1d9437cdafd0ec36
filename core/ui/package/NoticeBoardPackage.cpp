// The package entry: DoShowNoticeBoard and the unit table that Initialize and Finalize run.
//
// zpnbd.ini is read beside the host's executable. The environment variable NOTICEBOARD_INI_FOLDER, when set
// and not empty, names another folder to read it from (and to place the default notice board folder in):
// the window tests use it so that each runs on a configuration of its own.
#include "noticeboard.h"

#include "adapters/TAdapterStartup.h"
#include "adapters/ZNB_Cfg.h"
#include "adapters/Znb_log.h"
#include "core/Znb_callback.h"
#include "core/Znb_data.h"
#include "core/ui/NoticeBdForm.h"
#include "core/ui/QtPrompt.h"
#include "support/Productintegrationutils.h"

#include <QPointer>
#include <QWidget>

#include <cstdlib>
#include <iterator>

namespace {

// The one board window; null while none is open (it deletes itself when closed).
QPointer<TNoticeBdForm> NoticeBdForm;

std::string IniFolder() {
    const char* folder = std::getenv("NOTICEBOARD_INI_FOLDER");
    return folder ? std::string(folder) : std::string();
}

void LogFailure(const char* Routine, const char* Message) {
    ZS_Log(NBLogFileName(), std::string(Routine) + " : Exception occurred : " + Message);
}

// Units, in initialisation order. The board window goes first on the way out: it still needs the rest.
void FinalizeBoardWindow() {
    delete NoticeBdForm.data();
}
void FinalizeCallback() {
    SetNoticeWake({});
    SetNoticeBoard(nullptr);
}
void FinalizeConfig() {
    NBConfig.reset();
}
void FinalizeNodeStats() {
    PVO_Node_Stats.reset();
}

const noticeboard::TPackageUnitInfo Units[] = {
    {"Productintegrationutils", nullptr, &Productintegrationutils::Finalize},
    {"ZNB_Cfg", nullptr, &FinalizeConfig},
    {"Znb_data", nullptr, &FinalizeNodeStats},
    {"Znb_callback", nullptr, &FinalizeCallback},
    {"Znb_main", nullptr, &FinalizeBoardWindow},
};
const noticeboard::TPackageInfoTable UnitTable = {static_cast<int32_t>(std::size(Units)), Units};

bool Initialized = false;

} // namespace

namespace noticeboard {

extern "C" {

void Initialize() {
    if (Initialized) return;
    Initialized = true;
    for (const TPackageUnitInfo& unit : Units)
        if (unit.Initialization) unit.Initialization();
}

void Finalize() {
    if (!Initialized) return;
    Initialized = false;
    for (int i = UnitTable.UnitCount - 1; i >= 0; --i)
        if (Units[i].Finalization) Units[i].Finalization();
}

const TPackageInfoTable* GetPackageInfoTable() {
    return &UnitTable;
}

void NB_CALL DoShowNoticeBoard(void* Owner) {
    Initialize();
    if (NoticeBdForm) {
        if (NoticeBdForm->isMinimized()) NoticeBdForm->showNormal();
        NoticeBdForm->raise();
        NoticeBdForm->activateWindow();
        return;
    }
    auto* owner = static_cast<QWidget*>(Owner);
    try {
        {
            // Reading the configuration may have to tell the user that the folder could not be made.
            TQtPrompt prompt(owner);
            Prepare_NBConfig(IniFolder());
        }
        NoticeBdForm = new TNoticeBdForm(owner);
        NBConfig->ConfigPrompt();
        NBConfig->Save();
    } catch (const std::exception& e) {
        LogFailure("DoShowNoticeBoard", e.what());
    } catch (...) {
        LogFailure("DoShowNoticeBoard", "unknown exception");
    }
}

} // extern "C"

} // namespace noticeboard
