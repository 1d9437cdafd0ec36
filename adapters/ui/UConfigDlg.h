// The configuration dialog "Notice Board Configuration" (TconfigDlg): the notice board folder, the
// default filter and display, which adapters are active, an adapter's own configuration and its
// connection status. It edits a TNBConfig directly and saves it when OK is pressed; Cancel saves nothing
// (adapters marked configured through "Configure Source" stay marked in memory). GUI thread only.
#pragma once

#include <QDialog>
#include <QString>

#include <memory>
#include <string>
#include <vector>

class ISoundPlayer;
class TElidedPathEdit;
class TNBConfig;
struct TNotificationSettings;
class TZNB_Adapter_List;
class TZNB_Adapter_Obj;
namespace Ui {
class configDlg;
}

// Opens the configuration dialog the way the board's configure button, its Ctrl+Alt+C and the start-up
// prompt's Yes all do: the default-filter list given filters (the filter lister's entries) followed by
// "<Previous filter>", the default-display list displays followed by "<Previous display>", each after
// its built-in first item; the configured DefaultFilter and DefaultDisplay selected; the adapter list
// built from the configuration when it shows; shown modally and freed. Edits the global NBConfig and
// saves it on OK; does nothing while there is no NBConfig.
// owner: the board window, or null; the dialog is centred on owner's screen, and the outermost window
// above owner (the console's main window) is the window adapters parent their own dialogs to.
// adapters: the board's adapter list (not owned; null before the adapters are loaded, in which case
// "Configure Source" and "Update Status" only log that the adapter is not there).
// Returns when the dialog has closed. Nothing escapes: failures are logged or shown in the dialog.
void ShowConfigDialog(QWidget* owner, TZNB_Adapter_List* adapters, const std::vector<std::string>& filters,
                      const std::vector<std::string>& displays);

class TconfigDlg : public QDialog {
    Q_OBJECT
public:
    // config and adapters are not owned and must outlive the dialog; adapters may be null.
    TconfigDlg(TNBConfig& config, TZNB_Adapter_List* adapters, QWidget* parent = nullptr);
    ~TconfigDlg() override;

    // The opener's part: filters + "<Previous filter>" appended to the default-filter list and
    // displays + "<Previous display>" to the default-display list, the configured defaults selected.
    void AddDefaultItems(const std::vector<std::string>& filters, const std::vector<std::string>& displays);

    // The native id of the application's main window as adapters take it: the outermost window above
    // this dialog's parent, else the application's first visible main window, else 0.
    intptr_t MainWindowHandle() const;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void FormShow();
    void PopulateControls();
    void SaveConfig();
    void btnOKClick();
    void btnCancelClick();
    void btnBrowseClick();
    void rbOnPVOStartupClick();
    void clbSourceTypesClick();
    void btnConfigSourceClick();
    void BB_Adapter_StatusClick();

    // The "Notifications" page (UConfigDlgNotifications.cpp): filled from the configuration when the
    // dialog shows, read back into it by SaveConfig only.
    void ConnectNotificationsPage();
    void PopulateNotifications();
    TNotificationSettings NotificationsFromPage() const;
    void ShowSoundFile(); // the sound file of the severity cmbSoundSeverity shows
    void BrowseSound();
    void PlaySound(int Severity);
    void TestNotification();
    ISoundPlayer& SoundPlayer();

    // The text of the selected line; false when no line is selected.
    bool SelectedName(std::string& name) const;
    TZNB_Adapter_Obj* FindAdapter(const std::string& name) const;
    void EnableConfigSource();
    void PrepareFolder(const std::string& folder);
    void Log(const std::string& message) const;

    std::unique_ptr<Ui::configDlg> ui;
    TNBConfig& FConfig;
    TZNB_Adapter_List* FAdapters;
    TElidedPathEdit* FFolder; // keeps the full notice board folder; the edit shows it shortened
    bool FPopulating = false;
    ISoundPlayer* FOwnPlayer = nullptr; // for "Play" and "Test" while no board lends its own (child)
    // The sound files as edited, one per severity: the page's one file edit shows one of them.
    std::vector<std::string> FSoundFiles = std::vector<std::string>(4);
};
