#include "core/ui/PathElide.h"

#include <QEvent>
#include <QFocusEvent>
#include <QFontMetrics>
#include <QLineEdit>
#include <QStringList>
#include <QStyle>
#include <QStyleOptionFrame>

namespace {

const QString kEllipsis = QStringLiteral("...");

bool Fits(const QString& text, const QFontMetrics& fm, int width) {
    return fm.horizontalAdvance(text) <= width;
}

} // namespace

QString ElidePath(const QString& path, const QFontMetrics& fm, int width) {
    if (Fits(path, fm, width)) return path;

    // A path written with backslashes only is a Windows path; anything else splits at "/".
    const QChar sep = path.contains(QLatin1Char('\\')) && !path.contains(QLatin1Char('/')) ? QLatin1Char('\\')
                                                                                           : QLatin1Char('/');
    qsizetype rootLength = 0;
    while (rootLength < path.size() && path.at(rootLength) == sep)
        ++rootLength;
    const QString root = path.left(rootLength);
    const QString trailing = path.endsWith(sep) && path.size() > rootLength ? QString(sep) : QString();
    const QStringList parts = path.mid(rootLength).split(sep, Qt::SkipEmptyParts);
    const qsizetype n = parts.size();

    // Drop the folders after the first one by one, so the end of the path stays as long as it fits.
    for (qsizetype drop = 1; drop + 1 < n; ++drop) {
        const QString candidate =
            root + parts.front() + sep + kEllipsis + sep + parts.mid(1 + drop).join(sep) + trailing;
        if (Fits(candidate, fm, width)) return candidate;
    }
    const QString lastOnly = n > 0 ? kEllipsis + sep + parts.back() + trailing : path;
    if (n > 1 && Fits(lastOnly, fm, width)) return lastOnly;
    return fm.elidedText(n > 1 ? lastOnly : path, Qt::ElideMiddle, width);
}

TElidedPathEdit::TElidedPathEdit(QLineEdit* edit) : QObject(edit), FEdit(edit) {
    FEdit->installEventFilter(this);
}

void TElidedPathEdit::SetFullText(const QString& text) {
    Keep(text);
    if (FShowingFull)
        FEdit->setText(FFullText);
    else
        ShowShortened();
}

QString TElidedPathEdit::FullText() const {
    return FShowingFull ? FEdit->text() : FFullText;
}

void TElidedPathEdit::ShowFull() {
    if (FShowingFull) return;
    FShowingFull = true;
    FEdit->setText(FFullText);
}

void TElidedPathEdit::ShowShort() {
    if (!FShowingFull) return;
    Keep(FEdit->text());
    FShowingFull = false;
    ShowShortened();
}

void TElidedPathEdit::SetKeptTextAsToolTip(bool on) {
    FToolTip = on;
    if (FToolTip) FEdit->setToolTip(FFullText);
}

void TElidedPathEdit::Keep(const QString& text) {
    FFullText = text;
    if (FToolTip) FEdit->setToolTip(FFullText);
}

void TElidedPathEdit::ShowShortened() {
    FEdit->setText(ElidePath(FFullText, FEdit->fontMetrics(), AvailableWidth()));
    FEdit->setCursorPosition(0);
}

int TElidedPathEdit::AvailableWidth() const {
    // The text area as QLineEdit itself computes it: the style's contents rectangle, less the text
    // margins, the edit's fixed 2-pixel side margins and one pixel for the cursor.
    QStyleOptionFrame opt;
    opt.initFrom(FEdit);
    opt.rect = FEdit->rect();
    opt.lineWidth =
        FEdit->hasFrame() ? FEdit->style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &opt, FEdit) : 0;
    opt.midLineWidth = 0;
    opt.state |= QStyle::State_Sunken;
    const QRect contents = FEdit->style()->subElementRect(QStyle::SE_LineEditContents, &opt, FEdit);
    const QMargins margins = FEdit->textMargins();
    return contents.width() - margins.left() - margins.right() - 2 * 2 - 1;
}

bool TElidedPathEdit::eventFilter(QObject* watched, QEvent* event) {
    if (watched == FEdit) {
        switch (event->type()) {
        case QEvent::FocusIn:
            ShowFull();
            break;
        case QEvent::FocusOut: {
            // Switching to another window or opening a pop-up is not leaving the edit.
            const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
            if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason) ShowShort();
            break;
        }
        case QEvent::Resize:
        case QEvent::FontChange:
        case QEvent::StyleChange:
            if (!FShowingFull) ShowShortened();
            break;
        default:
            break;
        }
    }
    return QObject::eventFilter(watched, event);
}
