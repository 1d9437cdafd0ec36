// The status bar's severity badges (SeverityBadges): the live count of the board's notices per severity,
// whatever the filter, as four coloured badges ("Critical 12", "Fatal 3", "Warning 40", "Normal 7"), most
// severe first. Counts come from an engine counter (core/TSeverityCounts.h) kept by the store's row feed;
// the widget repaints when the store tells its views of a change (after each notice message).
//
// Owned by its parent (the status bar); the store must outlive it. GUI (board) thread only. Nothing throws.
#pragma once

#include "core/TSeverityCounts.h"

#include <QWidget>

#include <memory>

class TSeverityBadges : public QWidget {
    Q_OBJECT
public:
    explicit TSeverityBadges(TNoticeStore& Store, QWidget* Parent = nullptr);
    ~TSeverityBadges() override;

    const TSeverityCounts& Counts() const { return FCounts; }
    // The badge texts, most severe first ("Critical 12"; "12" when Compact: the colour names it).
    QStringList BadgeTexts(bool Compact = false) const;

    // With names; a narrow window squeezes the badges to their counts (minimumSizeHint).
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* Event) override;
    bool event(QEvent* Event) override;

private:
    struct TListener;
    void CountsChanged();
    int WidthOf(const QStringList& Texts) const;

    TNoticeStore& FStore;
    TSeverityCounts FCounts;
    std::unique_ptr<TListener> FListener;
    uint64_t FShown = 0; // the counts' revision last painted or announced
};
