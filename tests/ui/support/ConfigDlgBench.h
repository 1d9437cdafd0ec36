// The configuration dialog's test bench: a temporary executable folder with a zpnbd.ini that lists the
// test adapters of bin/plugins/ (by full path) after the two built-in ones, the global NBConfig read from
// it, a scripted prompt, and the adapter list the board would have loaded. GUI thread; one bench at a
// time (it owns the global NBConfig and the installed prompt while it lives).
#pragma once

#include "adapters/ScriptedPrompt.h"
#include "adapters/TempFolder.h"
#include "adapters/ZNBA_Interface.h"
#include "adapters/ui/UConfigDlg.h"
#include "support/ModalDriver.h"

#include <QPointer>

#include <memory>
#include <string>

class TConfigDlgBench {
public:
    // Configured adapters, in list order: DuskMere and R/Vista (built-in, not loadable), then Recorder
    // (the recording adapter, the only one enabled), BadConfig, Bare (no ZNA_Set_Config nor ZNA_Status),
    // Garbage (status errors), Overflow (status text without NUL), Throws, Missing (no such library) and
    // Unlisted (loadable, but with no adapter object in the list).
    TConfigDlgBench();
    ~TConfigDlgBench();

    // Creates Dlg over NBConfig and the adapter list and shows it (not modally) as the active window.
    void Open(QWidget* parent = nullptr);
    template <typename T> T* W(const char* name) const { return Child<T>(Dlg.get(), name); }
    // Shows the "Adapters" page of dlg and selects the line of that adapter.
    static void Select(QWidget* dlg, const QString& name);
    // Replaces the folder edit's text by typing, leaving the focus in the edit.
    void TypeFolder(const QString& folder) const;

    std::string Folder() const { return Exe.Path() + "Noticeboard/"; }
    std::string Ini() const { return Exe.Path() + "zpnbd.ini"; }
    std::string Log() const;
    static std::string LibraryPath(const std::string& library);
    // An extra export of a loaded test adapter (ZNBA_Test_Calls, ZNBA_Test_SetState ...).
    template <typename Fn> Fn Export(const char* adapter, const char* name) const {
        return reinterpret_cast<Fn>(ExportAddress(adapter, name));
    }
    std::string RecorderCalls() const { return Export<const char* (*)()>("Recorder", "ZNBA_Test_Calls")(); }

    TTempFolder Exe;
    TScriptedPrompt Prompt;
    TZNB_Adapter_List Adapters;
    QPointer<TconfigDlg> Dlg; // deleted by the bench, or with the parent it was opened with

private:
    void* ExportAddress(const char* adapter, const char* name) const;
};
