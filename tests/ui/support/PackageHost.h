// A host for window tests that drive the board the way a console does: the package "noticeboard" loaded
// through the platform loader, its exports looked up by name, the board shown over a QMainWindow owner.
// Each host works in a temporary folder of its own: zpnbd.ini is read from there (the package's
// NOTICEBOARD_INI_FOLDER), the notice board folder is its "Noticeboard" subfolder, and the user's and the
// machine's settings are redirected into it. The recording test adapter (ZNBA_TestRecorder) is loaded
// too, so tests can push messages through the callback the board handed it and read what the board
// called. GUI thread only; the package stays loaded for the whole test run.
#pragma once

#include <QMainWindow>
#include <QString>
#include <QTemporaryDir>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class TPackageHost {
public:
    TPackageHost();
    ~TPackageHost(); // closes the board, forgets the adapter's record

    bool Loaded() const { return FPackage != nullptr && FRecorder != nullptr; }
    const QString& ErrorText() const { return FError; }

    // An export of the package by its plain name; null when the package does not export it.
    void* Symbol(const char* Name) const;

    // The temporary folder (with zpnbd.ini) and the notice board folder inside it (trailing "/").
    QString Folder() const { return FDir.path(); }
    QString BoardFolder() const { return FDir.path() + "/Noticeboard/"; }

    // zpnbd.ini with the adapter "R/Vista" served by Library (loadable, enabled, configured) and no
    // start-up question; Extra is appended as it is.
    void WriteIni(const std::string& Library = "ZNBA_TestRecorder", const std::string& Extra = "");
    void WriteRawIni(const std::string& Text);
    // A file in the notice board folder.
    void WriteBoardFile(const QString& Name, const std::string& Text);

    // Sets FilterFolder (BoardFolder() unless given) and calls DoShowNoticeBoard(Owner). Returns the board
    // window, or null when none appeared.
    QMainWindow* ShowBoard();
    QMainWindow* ShowBoard(const std::string& Folder);
    QMainWindow* Board() const;
    // Closes the board window and lets the deferred deletion run. True when it went.
    bool CloseBoard();

    // The board's Timer1 and one of its ticks (the timer's own timeout, emitted at once).
    void Tick();
    // Recorder adapter: hand an XML text to the stored callback; everything it was called with.
    int32_t Send(const std::string& Xml);
    std::string Calls() const;
    void ResetCalls();

    // The status bar panel, the log file's text.
    QString PanelText(int Index) const;
    std::string LogText() const;

    QMainWindow Owner;

private:
    QTemporaryDir FDir;
    QString FError;
    void* FPackage = nullptr;
    void* FRecorder = nullptr;
};

// One notice of an XML test message, R/Vista by default. Dates in the message's ISO form; empty: absent.
struct TBoardNotice {
    TBoardNotice(std::string AKey, int ASeverity = 1, std::string ASourceType = "R/Vista",
                 std::string ARaised = "2026-11-21T10:00:00", std::string ALastRaised = "2026-11-21T10:00:00",
                 std::string AAckDate = "", std::string ANode = "NODE1")
        : Key(std::move(AKey)), Severity(ASeverity), SourceType(std::move(ASourceType)),
          Raised(std::move(ARaised)), LastRaised(std::move(ALastRaised)), AckDate(std::move(AAckDate)),
          Node(std::move(ANode)) {}
    std::string Key;
    int Severity;
    std::string SourceType;
    std::string Raised;
    std::string LastRaised;
    std::string AckDate;
    std::string Node;
};
std::string BoardMessage(const std::vector<TBoardNotice>& Notices, const std::string& Command = "post");
