// The host's side of the package: loads "noticeboard" through the platform loader, finds its exports by
// their plain names and runs its initialisation and finalisation. One per console; GUI thread only.
#pragma once

#include "noticeboard.h"
#include "platform/DynLib.h"

#include <string>

class TPackageLoader {
public:
    TPackageLoader() = default;
    ~TPackageLoader(); // Unload
    TPackageLoader(const TPackageLoader&) = delete;
    TPackageLoader& operator=(const TPackageLoader&) = delete;

    // Loads the package (a bare name is looked for beside the executable, then in its plugins/ folder),
    // finds every export the console uses and runs Initialize. False with ErrorText() set when the library
    // cannot be loaded or lacks an export; nothing stays loaded then.
    bool Load(const std::string& Name = "noticeboard");
    bool Loaded() const { return FHandle != nullptr; }
    const std::string& ErrorText() const { return FError; }
    // The file the package was loaded from (for the about box).
    const std::string& FileName() const { return FFileName; }

    // Sets the package's FilterFolder (a trailing separator is added when missing) and shows the board
    // owned by Owner. Only while loaded.
    void ShowBoard(void* Owner, const std::string& Folder);

    // Runs Finalize and releases the library. The board window must be gone.
    void Unload();

private:
    void* Find(const char* Name);

    TLibHandle FHandle = nullptr;
    std::string FError;
    std::string FFileName;
    noticeboard::DoShowNoticeBoard_Fn FShow = nullptr;
    noticeboard::Finalize_Fn FFinalize = nullptr;
    std::string* FFilterFolder = nullptr;
};
