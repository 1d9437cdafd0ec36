// Where a report's parts go on paper: column widths fitted to the page, each cell's lines (wrapped or
// elided), group bands and rows assigned to pages, so that "Page n of m" is known before painting.
// Units are the printer's device pixels. Built and used on the printFromXML caller's thread.
#pragma once

#include "ReportDocument.h"

#include <QFont>
#include <QSizeF>
#include <QStringList>

#include <vector>

class QPaintDevice;

// The fonts and spacings of a report on one device.
struct TReportStyle {
    explicit TReportStyle(const QPaintDevice& Device);
    qreal Mm(qreal Millimetres) const { return Millimetres * Dpi / 25.4; }
    qreal Dpi;
    QFont Body, Bold, Title, Foot;
    qreal Pad, VPad, LineHeight, BoldLineHeight;
    qreal HeaderHeight, CaptionHeight, FooterHeight, BandHeight;
};

// Whether the columns at their widths from the XML are wider than a page of PageWidth device pixels.
bool ColumnsNeedWidth(const TReportDocument& Doc, qreal Dpi, qreal PageWidth);

// Column widths for a page of PageWidth: the XML widths scaled up when they leave room; when they are too
// wide, the widest columns are narrowed first, never below their captions while the captions fit at all.
std::vector<qreal> FitColumnWidths(const TReportDocument& Doc, const TReportStyle& Style,
                                   const QPaintDevice& Device, qreal PageWidth);

// Text cut to Width: lines broken at word boundaries, at most MaxLines, the last elided when text remains.
QStringList WrapText(const QString& Text, const QFont& Font, const QPaintDevice& Device, qreal Width,
                     int MaxLines);

struct TReportItem {
    enum TKind { Band, Row } Kind = Row;
    int RowIndex = 0;       // the row (a band shows the group values of this row)
    int Level = 0;          // bands: the group level, 0 outermost
    bool Continued = false; // bands: repeated at the top of a page inside a group
    qreal Top = 0, Height = 0;
};

struct TReportLayout {
    std::vector<qreal> Widths;                   // per column
    std::vector<std::vector<QStringList>> Lines; // per row, per column
    std::vector<std::vector<TReportItem>> Pages;
};

// Lays the document out on pages of PageSize (the printable area, device pixels).
TReportLayout LayOutReport(const TReportDocument& Doc, const TReportStyle& Style, const QPaintDevice& Device,
                           QSizeF PageSize);
