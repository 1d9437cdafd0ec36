// Rows the grid draws emphasised (new and changed notices): bold text over a tint of the selection colour
// that fades with the emphasis. The grid's delegate asks a provider per row while painting.
// GUI thread only.
#pragma once

#include <QColor>

#include <cstdint>

class QFont;
class QPainter;
class QRect;
class QString;

class INoticeRowEmphasis {
public:
    virtual ~INoticeRowEmphasis() = default;
    // 0 for a plain row, up to 1 for a row changed just now. Called for every painted row: keep it cheap.
    virtual double RowEmphasis(int32_t Key) const = 0;
};

// The background of an emphasised row that is not selected: Base with a share of Tint that grows with the
// emphasis (at most a third of the way, so the display's own colours still show).
QColor EmphasisBackground(const QColor& Base, const QColor& Tint, double Emphasis);

// A cell's text in bold, elided at the right to fit Cell (already inside the cell's margins), vertically
// centred, aligned right or left. Not cached: few rows are emphasised at a time.
void DrawEmphasisedText(QPainter& Painter, const QRect& Cell, const QString& Text, const QFont& Font,
                        bool AlignRight, const QColor& Pen);
