// The board's sounds: the sound played for a severity (the user's file when it exists, else the board's
// own, compiled in from resources/sounds) and a player on Qt Multimedia. GUI thread.
#pragma once

#include "core/ui/AlertOutputs.h"

#include <QObject>
#include <QString>

#include <string>

class QSoundEffect;

// The board's own sound of a severity (":/sounds/<severity>.wav"); severities out of 1..4 take Normal's.
QString DefaultSoundFile(int Severity);
// UserFile when it names a file that exists, else DefaultSoundFile(Severity).
QString SoundFileFor(const std::string& UserFile, int Severity);

// Plays WAV files through QSoundEffect; one sound at a time. Owned by its Qt parent. A device or file
// that fails leaves the sound silent and the board unaffected.
class TQtSoundPlayer : public QObject, public ISoundPlayer {
    Q_OBJECT
public:
    explicit TQtSoundPlayer(QObject* Parent = nullptr);
    ~TQtSoundPlayer() override;
    void Play(const QString& File) override;

private:
    QSoundEffect* FEffect = nullptr; // made at the first sound: opening the audio device costs
    bool FPlayWhenReady = false;
};
