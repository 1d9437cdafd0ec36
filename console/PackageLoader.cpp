#include "PackageLoader.h"

#include "support/StrUtils.h"

TPackageLoader::~TPackageLoader() {
    Unload();
}

void* TPackageLoader::Find(const char* Name) {
    void* address = GetProcAddress(FHandle, Name);
    if (!address && FError.empty()) FError = std::string("The notice board package lacks ") + Name + ".";
    return address;
}

bool TPackageLoader::Load(const std::string& Name) {
    Unload();
    FError.clear();
    FHandle = PvLoadLib(Name);
    if (!FHandle) {
        FError = "Cannot load the notice board package \"" + Name + "\": " + GetLastErrorText();
        return false;
    }
    for (const std::string& candidate : LibraryCandidates(Name)) {
        if (candidate.find('/') != std::string::npos && FileExists(candidate)) {
            FFileName = candidate;
            break;
        }
    }
    auto initialize = reinterpret_cast<noticeboard::Initialize_Fn>(Find("Initialize"));
    FShow = reinterpret_cast<noticeboard::DoShowNoticeBoard_Fn>(Find("DoShowNoticeBoard"));
    FFinalize = reinterpret_cast<noticeboard::Finalize_Fn>(Find("Finalize"));
    FFilterFolder = static_cast<std::string*>(Find("FilterFolder"));
    if (!initialize || !FShow || !FFinalize || !FFilterFolder) {
        FreeLibrary(FHandle);
        FHandle = nullptr;
        return false;
    }
    initialize();
    return true;
}

void TPackageLoader::ShowBoard(void* Owner, const std::string& Folder) {
    if (!FHandle) return;
    std::string folder = Folder;
    if (!folder.empty() && folder.back() != '/') folder += '/';
    *FFilterFolder = folder;
    FShow(Owner);
}

void TPackageLoader::Unload() {
    if (!FHandle) return;
    FFinalize();
    FreeLibrary(FHandle);
    FHandle = nullptr;
    FShow = nullptr;
    FFinalize = nullptr;
    FFilterFolder = nullptr;
}
