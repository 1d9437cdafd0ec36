// Paints the notice grid's cells, leanly: one background fill, the text elided to the cell and, when asked,
// a focus rectangle (the grid draws the grid lines across the rows and columns in one go). Texts are laid
// out once: their widths and their laid-out glyphs (QStaticText) are kept for the texts painted lately, so
// repainting a screen does no text shaping. Row colours follow the board's custom-draw
// rule: a selected row keeps the grid's own selection colours; otherwise, with alternate rows on and no
// group columns, odd rows (counted from 0 among the grid's rows) take the alternate colour and even rows
// the grid colour; else every row takes the grid colour. With the display's severity colours on, a row of
// severity 1 to 4 takes its severity's colour instead. Words of the quick search are marked in the cells.
// Selection comes from the grid's key set, never from Qt's selection model. Group headings get their
// background here; the grid paints their text across the whole row. Owned by the grid (Qt parent); board
// thread only.
#pragma once

#include <QAbstractItemDelegate>
#include <QColor>
#include <QFont>
#include <QHash>
#include <QStaticText>
#include <QStringList>

#include <array>

class TNoticeGridModel;
class TKeySelection;
class TNoticeRecord;
class INoticeRowEmphasis;

class TNoticeGridDelegate : public QAbstractItemDelegate {
    Q_OBJECT
public:
    struct TColors {
        QColor Background;    // the grid colour (even rows, or every row)
        QColor AltBackground; // odd rows when AltRows
        bool AltRows = false; // alternate rows on and nothing grouped
        QColor Line;
        bool Lines = false;
        bool FocusRect = false;
        QColor Text, Highlight, HighlightedText, Heading;
        bool SeverityRows = false;                // rows in the colour of their severity
        std::array<QColor, 4> SeverityBackground; // severity 1 to 4
        QColor Mark;                              // behind a quick-search word
    };

    TNoticeGridDelegate(const TNoticeGridModel& Model, const TKeySelection& Selection, QObject* Parent);

    // Called by the grid before each paint: the colours to use, and the row cache is dropped.
    void Prepare(const TColors& Colors);
    const TColors& Colors() const { return FColors; }
    // The background of a data row that is not selected.
    QColor RowBackground(int Row) const;
    // The words to mark in the cells (letter case ignored); none by default.
    void SetMarkedWords(const QStringList& Words);
    // Rows drawn emphasised (core/ui/NoticeRowEmphasis.h); not owned, null for none.
    void SetEmphasis(const INoticeRowEmphasis* Emphasis) { FEmphasis = Emphasis; }

    void paint(QPainter* Painter, const QStyleOptionViewItem& Option,
               const QModelIndex& Index) const override;
    QSize sizeHint(const QStyleOptionViewItem& Option, const QModelIndex& Index) const override;

private:
    struct TRowCache {
        int Row = -1;
        const TNoticeRecord* Record = nullptr;
        bool Heading = false;
        bool Selected = false;
        double Emphasis = 0;
    };
    const TRowCache& RowState(int Row) const;
    // The width of a text in the cells' font, and its layout, from the caches.
    int TextWidth(const QString& Text, const QFontMetrics& Metrics) const;
    const QStaticText& Laid(const QString& Text) const;
    void PaintMarks(QPainter* Painter, const QString& Text, int X, const QRect& Cell,
                    const QFontMetrics& Metrics) const;

    const TNoticeGridModel& FModel;
    const TKeySelection& FSelection;
    TColors FColors;
    QStringList FMarked;
    const INoticeRowEmphasis* FEmphasis = nullptr;
    mutable TRowCache FCache; // the table paints row by row, cell by cell
    mutable QFont FFont;      // the font the text caches hold
    mutable QHash<QString, int> FWidths;
    mutable QHash<QString, QStaticText> FLaid;
};
