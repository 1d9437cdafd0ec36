// Long folder and file paths in narrow edit boxes: whole middle folders give way to one "..." the way
// desktop path boxes shorten them ("/home/.../Noticeboard/"), and an edit box can show the whole path
// while the user is in it and the shortened one otherwise. GUI thread only.
#pragma once

#include <QObject>
#include <QString>

class QFontMetrics;
class QLineEdit;

// path shortened to fit width pixels of fm. Returned unchanged when it fits. Otherwise the folders after
// the first are replaced by "...", nearest the start first, so that as much of the end stays readable as
// fits: "/home/.../Noticeboard/". The root, the first and the last component and a trailing separator
// are kept; when even "/home/.../Noticeboard/" is too wide the result is ".../Noticeboard/", and when
// that is too wide too, that text elided in its middle. Both "/" and "\" paths are understood.
QString ElidePath(const QString& path, const QFontMetrics& fm, int width);

// Gives a line edit two faces: the full path while it has the focus (so it can be edited), the path
// shortened to the edit's width otherwise (redone when the edit is resized). The full path is kept
// here, not in the edit. A child of the edit, so it lives as long as the edit.
class TElidedPathEdit : public QObject {
    Q_OBJECT
public:
    explicit TElidedPathEdit(QLineEdit* edit);

    // Sets the full path and shows it in the current face.
    void SetFullText(const QString& text);
    // The full path: what is in the edit while the user is in it, else the kept path.
    QString FullText() const;
    // The kept path only: while the user is in the edit, the path from before the typing (the edit's
    // text is kept when the user leaves it).
    QString KeptText() const { return FFullText; }
    // Also shows the kept path as the edit's tool tip, now and whenever it changes.
    void SetKeptTextAsToolTip(bool on);

    // Entering the edit: show the full path. Runs on every focus-in; callers that move the focus
    // before the window is active call it themselves.
    void ShowFull();
    // Leaving the edit: take its text as the full path and show it shortened. Runs on focus-out, except
    // when the focus only went to another window or a pop-up.
    void ShowShort();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    int AvailableWidth() const;
    void ShowShortened();
    void Keep(const QString& text);

    QLineEdit* FEdit;
    QString FFullText;
    bool FShowingFull = false;
    bool FToolTip = false;
};
