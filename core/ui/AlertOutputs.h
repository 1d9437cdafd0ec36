// Where the board's alerts go out: a notifier that shows a message (the desktop's notification service
// through the tray icon, or the board's own banner) and a player for sounds. Interfaces, so that tests put
// recorders in their place. Both are called on the GUI thread and must not throw.
#pragma once

#include <QString>

class INoticeNotifier {
public:
    virtual ~INoticeNotifier() = default;
    // Shows Title and Text once, marked by Severity (1 Normal .. 4 Critical; another number: no mark).
    virtual void Notify(const QString& Title, const QString& Text, int Severity) = 0;
};

class ISoundPlayer {
public:
    virtual ~ISoundPlayer() = default;
    // Plays a sound file (a local path, or a resource path ":/...") once, from the start; a sound still
    // playing is cut off. A file that cannot be played is silent.
    virtual void Play(const QString& File) = 0;
};

// The outputs of the open board, for the configuration dialog's "Test" buttons: registered by the board's
// alerts while they live (not owned; null members while no board is open). GUI thread.
struct TAlertOutputs {
    INoticeNotifier* Notifier = nullptr;
    ISoundPlayer* Player = nullptr;
};
void SetBoardAlertOutputs(const TAlertOutputs& Outputs);
TAlertOutputs BoardAlertOutputs();
