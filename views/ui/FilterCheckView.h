// The live check under a filter being edited: the whole expression as the notice store will read it, and a
// verdict line, green with how many of the notices it passes when it compiles, red with the filter
// language's message (its line and column marked in the expression) when it does not. The check waits for
// a pause in the edits; the count then runs in slices of a few milliseconds between the window's other
// events, so a million notices never freeze the dialog. GUI thread only.
#pragma once

#include "views/FilterPassCount.h"

#include <QTimer>
#include <QWidget>

#include <cstdint>
#include <string>

class QLabel;
class QPlainTextEdit;
class TNoticeStore;

class TFilterCheckView : public QWidget {
    Q_OBJECT
public:
    enum class TState { Idle, Pending, Counting, Passes, Fails };

    // Pause after the last change before the check runs, and the longest a count slice may take.
    static constexpr int DebounceMs = 250;
    static constexpr int SliceMs = 8;

    explicit TFilterCheckView(QWidget* parent = nullptr);

    // The notices counted (not owned). It must outlive the view, or be replaced first, and its rows must
    // not change while it is set: a dialog's private copy of the board's notices. Null counts nothing.
    void SetDataSet(const TNoticeStore* Store);
    // Shows Text at once and checks it after the pause; each call restarts the pause.
    void SetExpression(const std::string& Text);
    // The line editor shows only the verdict; the expression is then its tool tip.
    void SetExpressionVisible(bool Visible);
    // Runs a pending check and finishes its count now.
    void Settle();
    // The pause (DebounceMs unless set) and the longest a count slice may take (SliceMs unless set; 0
    // counts one step of rows per slice).
    void SetPause(int Ms) { FDebounce.setInterval(Ms); }
    void SetSliceBudget(int Ms) { FSliceBudget = Ms; }

    TState State() const { return FState; }
    int32_t PassCount() const { return FCount.Passed(); }
    QString Verdict() const;

private:
    void Check();
    void CountSlice();
    void ShowPasses();
    void ShowFailure(const QString& Message);
    void MarkPlace(int Line, int Column);
    void SetVerdict(const QString& Text, const QColor& Colour);

    QPlainTextEdit* FExpression;
    QLabel* FVerdict;
    QTimer FDebounce;
    QTimer FSlice;
    TFilterPassCount FCount;
    const TNoticeStore* FStore = nullptr;
    std::string FText;
    TState FState = TState::Idle;
    int FSliceBudget = SliceMs;
};
