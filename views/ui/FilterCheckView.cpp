#include "views/ui/FilterCheckView.h"

#include "core/FilterExpression.h"
#include "core/TNoticeStore.h"

#include <QElapsedTimer>
#include <QFontDatabase>
#include <QLabel>
#include <QLocale>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QTextBlock>
#include <QVBoxLayout>

namespace {

const QColor PassColour(0x2e, 0x7d, 0x32);
const QColor FailColour(0xc6, 0x28, 0x28);
const QColor BusyColour(0x6d, 0x6d, 0x6d);

// Rows examined between two looks at the clock.
constexpr int32_t RowsPerStep = 4096;

// Line breaks as the text box shows them; the filter language counts CR LF, CR and LF each as one.
std::string ShownText(const std::string& text) {
    std::string shown;
    shown.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r') {
            shown += '\n';
            if (i + 1 < text.size() && text[i + 1] == '\n') ++i;
        } else {
            shown += text[i];
        }
    }
    return shown;
}

QString Notices(int32_t n) {
    return QLocale().toString(n) + (n == 1 ? QStringLiteral(" notice") : QStringLiteral(" notices"));
}

} // namespace

TFilterCheckView::TFilterCheckView(QWidget* parent) : QWidget(parent) {
    FExpression = new QPlainTextEdit(this);
    FExpression->setObjectName(QStringLiteral("memFilterExpression"));
    FExpression->setReadOnly(true);
    FExpression->setLineWrapMode(QPlainTextEdit::NoWrap);
    FExpression->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    FExpression->setFocusPolicy(Qt::ClickFocus);
    FExpression->setPlaceholderText(tr("The conditions of the filter appear here."));
    FExpression->setMinimumHeight(FExpression->fontMetrics().lineSpacing() * 4 + 12);
    FVerdict = new QLabel(this);
    FVerdict->setObjectName(QStringLiteral("lblFilterCheck"));
    FVerdict->setWordWrap(true);
    FVerdict->setTextFormat(Qt::PlainText);
    FVerdict->setTextInteractionFlags(Qt::TextSelectableByMouse);
    // The verdict's text changes as the filter is edited; a screen reader hears it as the description.
    FExpression->setAccessibleName(tr("Filter expression"));
    FVerdict->setAccessibleName(tr("Filter check"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(FExpression, 1);
    layout->addWidget(FVerdict);

    FDebounce.setSingleShot(true);
    FDebounce.setInterval(DebounceMs);
    connect(&FDebounce, &QTimer::timeout, this, &TFilterCheckView::Check);
    FSlice.setSingleShot(true);
    FSlice.setInterval(0);
    connect(&FSlice, &QTimer::timeout, this, &TFilterCheckView::CountSlice);
}

void TFilterCheckView::SetDataSet(const TNoticeStore* Store) {
    FCount.Reset();
    FSlice.stop();
    FStore = Store;
    if (FState != TState::Idle) {
        FState = TState::Pending;
        FDebounce.start();
    }
}

void TFilterCheckView::SetExpression(const std::string& Text) {
    FText = Text;
    const QString shown = QString::fromStdString(ShownText(Text));
    FExpression->setPlainText(shown);
    FExpression->setExtraSelections({});
    setToolTip(FExpression->isVisible() ? QString() : shown);
    // The verdict of the previous text stays until this one is judged, so typing does not flicker.
    FCount.Reset();
    FSlice.stop();
    FState = TState::Pending;
    FDebounce.start();
}

void TFilterCheckView::SetExpressionVisible(bool Visible) {
    FExpression->setVisible(Visible);
    setToolTip(Visible ? QString() : FExpression->toPlainText());
}

void TFilterCheckView::Settle() {
    if (FState == TState::Pending) {
        FDebounce.stop();
        Check();
    }
    while (FState == TState::Counting)
        CountSlice();
}

QString TFilterCheckView::Verdict() const {
    return FVerdict->text();
}

void TFilterCheckView::Check() {
    FSlice.stop();
    try {
        static const TNoticeStore NoNotices;
        FCount.Start(FStore ? *FStore : NoNotices, FText);
    } catch (const std::exception& e) {
        FCount.Reset();
        FState = TState::Fails;
        ShowFailure(QString::fromStdString(e.what()));
        return;
    }
    FState = TState::Counting;
    CountSlice();
}

void TFilterCheckView::CountSlice() {
    if (FState != TState::Counting) return;
    QElapsedTimer clock;
    clock.start();
    while (!FCount.Step(RowsPerStep)) {
        if (clock.elapsed() >= FSliceBudget) {
            SetVerdict(tr("\u2713 The filter is valid; counting the notices it passes\u2026 %1%")
                           .arg(int(FCount.Progress() * 100)),
                       BusyColour);
            FSlice.start(); // the rest after the events that queued up meanwhile
            return;
        }
    }
    FState = TState::Passes;
    ShowPasses();
}

void TFilterCheckView::ShowPasses() {
    const int32_t passed = FCount.Passed(), total = FCount.Total();
    QString text;
    if (FText.find_first_not_of(" \t\r\n") == std::string::npos)
        text = tr("\u2713 No conditions: every notice passes (%1).").arg(Notices(total));
    else if (!FStore)
        text = tr("\u2713 The filter is valid.");
    else
        text = tr("\u2713 The filter is valid and passes %1 of %2.")
                   .arg(QLocale().toString(passed), Notices(total));
    SetVerdict(text, PassColour);
}

void TFilterCheckView::ShowFailure(const QString& Message) {
    SetVerdict(QStringLiteral("\u2717 ") + Message, FailColour);
    static const QRegularExpression place(QStringLiteral(" at line (\\d+), column (\\d+)$"));
    const QRegularExpressionMatch m = place.match(Message);
    if (m.hasMatch()) MarkPlace(m.captured(1).toInt(), m.captured(2).toInt());
}

// Marks the character the filter language names. Its columns count bytes of the text as given (a CR of
// CR LF included), so the place is found in the original text and translated to the shown one.
void TFilterCheckView::MarkPlace(int Line, int Column) {
    size_t start = 0;
    for (int line = 1; line < Line; ++line) {
        const size_t end = FText.find_first_of("\r\n", start);
        if (end == std::string::npos) return;
        start = end + ((FText[end] == '\r' && end + 1 < FText.size() && FText[end + 1] == '\n') ? 2 : 1);
    }
    size_t lineEnd = FText.find_first_of("\r\n", start);
    if (lineEnd == std::string::npos) lineEnd = FText.size();
    const size_t offset = std::min(start + size_t(std::max(Column, 1) - 1), lineEnd);
    // Position in the shown text: the characters before the line, then those of the line before the place.
    const int before = QString::fromStdString(ShownText(FText.substr(0, start))).size();
    const int within = QString::fromUtf8(FText.data() + start, qsizetype(offset - start)).size();
    QTextCursor cursor(FExpression->document());
    cursor.setPosition(before + within);
    // Past the end of its line (a missing operand) the last character of the line is marked instead.
    if (cursor.atBlockEnd() && !cursor.atBlockStart()) cursor.movePosition(QTextCursor::Left);
    cursor.movePosition(QTextCursor::Right, QTextCursor::KeepAnchor);
    QTextEdit::ExtraSelection mark;
    mark.cursor = cursor;
    mark.format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
    mark.format.setUnderlineColor(FailColour);
    QColor background = FailColour;
    background.setAlpha(60);
    mark.format.setBackground(background);
    FExpression->setExtraSelections({mark});
    cursor.clearSelection();
    FExpression->setTextCursor(cursor); // scrolls the place into view
    FExpression->ensureCursorVisible();
}

void TFilterCheckView::SetVerdict(const QString& Text, const QColor& Colour) {
    FVerdict->setText(Text);
    FVerdict->setAccessibleDescription(Text);
    QPalette palette = FVerdict->palette();
    palette.setColor(QPalette::WindowText, Colour);
    FVerdict->setPalette(palette);
}
