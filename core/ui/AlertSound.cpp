#include "core/ui/AlertSound.h"

#include <QFileInfo>
#include <QSoundEffect>
#include <QUrl>

// The sounds are resources of the static window library; see NbIcons.cpp for why this is needed.
static void RegisterSoundResources() {
    Q_INIT_RESOURCE(sounds);
}

QString DefaultSoundFile(int Severity) {
    static const bool registered = (RegisterSoundResources(), true);
    (void)registered;
    static const char* const names[] = {"normal", "warning", "fatal", "critical"};
    const int index = Severity >= 1 && Severity <= 4 ? Severity - 1 : 0;
    return QStringLiteral(":/sounds/%1.wav").arg(QLatin1String(names[index]));
}

QString SoundFileFor(const std::string& UserFile, int Severity) {
    const QString file = QString::fromStdString(UserFile).trimmed();
    if (!file.isEmpty() && QFileInfo(file).isFile()) return file;
    return DefaultSoundFile(Severity);
}

TQtSoundPlayer::TQtSoundPlayer(QObject* Parent) : QObject(Parent) {}

TQtSoundPlayer::~TQtSoundPlayer() = default;

void TQtSoundPlayer::Play(const QString& File) {
    if (!FEffect) {
        FEffect = new QSoundEffect(this);
        // A file loads in the background: the sound asked for plays once it is ready.
        connect(FEffect, &QSoundEffect::statusChanged, this, [this] {
            if (FEffect->status() == QSoundEffect::Ready && FPlayWhenReady) FEffect->play();
            if (FEffect->status() != QSoundEffect::Loading) FPlayWhenReady = false;
        });
    }
    const QUrl url =
        File.startsWith(QLatin1Char(':')) ? QUrl(QLatin1String("qrc") + File) : QUrl::fromLocalFile(File);
    FEffect->stop();
    if (FEffect->source() != url) FEffect->setSource(url);
    FPlayWhenReady = FEffect->status() != QSoundEffect::Ready;
    if (!FPlayWhenReady) FEffect->play();
}
