// The "Notifications" page of the configuration dialog: desktop notifications, a sound per severity,
// reminders, the tray icon and the row highlight, kept in the configuration's own section. One file edit
// serves the four severities: it shows the file of the severity picked beside it.
#include "adapters/ui/UConfigDlg.h"

#include "ui_UConfigDlg.h"

#include "adapters/ZNB_Cfg.h"
#include "core/Nb_utils.h"
#include "core/ui/AlertOutputs.h"
#include "core/ui/AlertSound.h"

#include <QFileDialog>
#include <QFileInfo>

void TconfigDlg::ConnectNotificationsPage() {
    connect(ui->edtSoundFile, &QLineEdit::textEdited, this, [this](const QString& Text) {
        FSoundFiles[static_cast<size_t>(ui->cmbSoundSeverity->currentIndex())] = Text.trimmed().toStdString();
    });
    connect(ui->cmbSoundSeverity, &QComboBox::currentIndexChanged, this, &TconfigDlg::ShowSoundFile);
    connect(ui->btnBrowseSound, &QToolButton::clicked, this, &TconfigDlg::BrowseSound);
    connect(ui->btnPlaySound, &QToolButton::clicked, this,
            [this] { PlaySound(ui->cmbSoundSeverity->currentIndex() + 1); });
    connect(ui->btnTestNotify, &QPushButton::clicked, this, &TconfigDlg::TestNotification);
}

void TconfigDlg::PopulateNotifications() {
    const TNotificationSettings& s = FConfig.Notifications;
    ui->cbDesktopNotify->setChecked(s.Desktop);
    ui->cbPlaySound->setChecked(s.Sound);
    ui->cmbMinSeverity->setCurrentIndex(s.MinSeverity - 1);
    ui->seRepeatMinutes->setValue(s.RepeatMinutes);
    ui->cbTrayIcon->setChecked(s.TrayIcon);
    ui->cbHighlightRows->setChecked(s.Highlight);
    FSoundFiles.assign(s.SoundFiles.begin(), s.SoundFiles.end());
    // The sound of the lowest severity announced is the one the user most likely wants to change.
    ui->cmbSoundSeverity->setCurrentIndex(s.MinSeverity - 1);
    ShowSoundFile();
}

void TconfigDlg::ShowSoundFile() {
    const int index = ui->cmbSoundSeverity->currentIndex();
    if (index >= 0)
        ui->edtSoundFile->setText(QString::fromStdString(FSoundFiles[static_cast<size_t>(index)]));
}

TNotificationSettings TconfigDlg::NotificationsFromPage() const {
    TNotificationSettings s = FConfig.Notifications;
    s.Desktop = ui->cbDesktopNotify->isChecked();
    s.Sound = ui->cbPlaySound->isChecked();
    s.MinSeverity = ui->cmbMinSeverity->currentIndex() + 1;
    s.RepeatMinutes = ui->seRepeatMinutes->value();
    s.TrayIcon = ui->cbTrayIcon->isChecked();
    s.Highlight = ui->cbHighlightRows->isChecked();
    for (size_t i = 0; i < s.SoundFiles.size(); ++i)
        s.SoundFiles[i] = FSoundFiles[i];
    return s;
}

void TconfigDlg::BrowseSound() {
    const int severity = ui->cmbSoundSeverity->currentIndex() + 1;
    const QFileInfo current(ui->edtSoundFile->text().trimmed());
    QFileDialog dialog(this, tr("%1 sound").arg(QString::fromStdString(Get_Severity_String(severity))),
                       current.path(), tr("Sound files (*.wav);;All files (*)"));
    dialog.setObjectName(QStringLiteral("SoundDialog"));
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setOptions(QFileDialog::DontUseNativeDialog);
    if (current.isFile()) dialog.selectFile(current.filePath());
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return;
    const QString chosen = QDir::toNativeSeparators(dialog.selectedFiles().front());
    ui->edtSoundFile->setText(chosen);
    FSoundFiles[static_cast<size_t>(severity - 1)] = chosen.toStdString();
}

void TconfigDlg::PlaySound(int Severity) {
    SoundPlayer().Play(SoundFileFor(FSoundFiles[static_cast<size_t>(Severity - 1)], Severity));
}

// Once, as the open board would announce a notice of the chosen lowest severity: its notification
// (only while the board is open: it owns the tray and the banner) and its sound.
void TconfigDlg::TestNotification() {
    const int severity = ui->cmbMinSeverity->currentIndex() + 1;
    if (INoticeNotifier* notifier = BoardAlertOutputs().Notifier)
        notifier->Notify(tr("%1 notice").arg(QString::fromStdString(Get_Severity_String(severity))),
                         tr("This is how the board tells of new trouble."), severity);
    PlaySound(severity);
}

ISoundPlayer& TconfigDlg::SoundPlayer() {
    if (ISoundPlayer* board = BoardAlertOutputs().Player) return *board;
    if (!FOwnPlayer) FOwnPlayer = new TQtSoundPlayer(this);
    return *FOwnPlayer;
}
