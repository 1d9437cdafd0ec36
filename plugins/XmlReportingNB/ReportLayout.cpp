#include "ReportLayout.h"

#include <QFontMetricsF>
#include <QPaintDevice>
#include <QTextLayout>

#include <algorithm>
#include <numeric>

namespace {

// Widths in the XML are pixels of a 96 dpi screen.
constexpr qreal XmlDpi = 96.0;
// A long text shows this many lines before it is cut.
constexpr int MaxTextLines = 3;

QFont ArialFont(qreal Points, bool Bold) {
    QFont font(QStringLiteral("Arial"));
    font.setPointSizeF(Points);
    font.setBold(Bold);
    return font;
}

} // namespace

TReportStyle::TReportStyle(const QPaintDevice& Device)
    : Dpi(Device.logicalDpiY()), Body(ArialFont(8, false)), Bold(ArialFont(8, true)),
      Title(ArialFont(14, true)), Foot(ArialFont(7, false)) {
    const QFontMetricsF body(Body, &Device), bold(Bold, &Device), title(Title, &Device), foot(Foot, &Device);
    Pad = Mm(1.2);
    VPad = Mm(0.6);
    LineHeight = body.lineSpacing();
    BoldLineHeight = bold.lineSpacing();
    HeaderHeight = title.lineSpacing() + Mm(3);
    CaptionHeight = BoldLineHeight + 2 * VPad;
    FooterHeight = foot.lineSpacing() + Mm(3);
    BandHeight = BoldLineHeight + 2 * VPad;
}

bool ColumnsNeedWidth(const TReportDocument& Doc, qreal Dpi, qreal PageWidth) {
    qreal total = 0;
    for (const TReportField& f : Doc.Columns)
        total += f.Width * Dpi / XmlDpi;
    return total > PageWidth;
}

std::vector<qreal> FitColumnWidths(const TReportDocument& Doc, const TReportStyle& Style,
                                   const QPaintDevice& Device, qreal PageWidth) {
    const size_t n = Doc.Columns.size();
    const QFontMetricsF bold(Style.Bold, &Device);
    std::vector<qreal> natural(n), minimum(n), widths(n);
    for (size_t i = 0; i < n; ++i) {
        const TReportField& f = Doc.Columns[i];
        minimum[i] = bold.horizontalAdvance(f.Caption) + 2 * Style.Pad;
        natural[i] = std::max(f.Width * Style.Dpi / XmlDpi, minimum[i]);
    }
    const qreal naturalTotal = std::accumulate(natural.begin(), natural.end(), qreal(0));
    const qreal minimumTotal = std::accumulate(minimum.begin(), minimum.end(), qreal(0));
    if (naturalTotal <= PageWidth) { // room to spare: every column grows in proportion
        for (size_t i = 0; i < n; ++i)
            widths[i] = natural[i] * PageWidth / naturalTotal;
    } else if (minimumTotal >= PageWidth) { // not even the captions fit: they share the page
        for (size_t i = 0; i < n; ++i)
            widths[i] = minimum[i] * PageWidth / minimumTotal;
    } else {
        // Too wide: the widest columns give up space first (no column is wider than a common limit, none
        // narrower than its caption), so dates and numbers keep their width while long texts wrap.
        const auto total = [&](qreal limit) {
            qreal sum = 0;
            for (size_t i = 0; i < n; ++i)
                sum += std::max(minimum[i], std::min(natural[i], limit));
            return sum;
        };
        qreal low = 0, high = *std::max_element(natural.begin(), natural.end());
        for (int step = 0; step < 50; ++step) {
            const qreal mid = (low + high) / 2;
            (total(mid) > PageWidth ? high : low) = mid;
        }
        for (size_t i = 0; i < n; ++i)
            widths[i] = std::max(minimum[i], std::min(natural[i], low));
        // What the search leaves over goes to the columns at the limit.
        const qreal left = PageWidth - total(low);
        size_t atLimit = 0;
        for (size_t i = 0; i < n; ++i)
            atLimit += natural[i] > low && minimum[i] < low;
        for (size_t i = 0; i < n && atLimit > 0; ++i)
            if (natural[i] > low && minimum[i] < low) widths[i] += left / qreal(atLimit);
    }
    return widths;
}

QStringList WrapText(const QString& Text, const QFont& Font, const QPaintDevice& Device, qreal Width,
                     int MaxLines) {
    const QFontMetricsF metrics(Font, &Device);
    if (metrics.horizontalAdvance(Text) <= Width || MaxLines <= 1)
        return {metrics.elidedText(Text, Qt::ElideRight, Width)};
    QStringList lines;
    QTextLayout layout(Text, Font, &Device);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(Width);
        if (lines.size() == MaxLines - 1) {
            lines << metrics.elidedText(Text.mid(line.textStart()).trimmed(), Qt::ElideRight, Width);
            break;
        }
        // A word longer than the column is broken by the layout; an unbreakable rest is elided.
        lines << metrics.elidedText(Text.mid(line.textStart(), line.textLength()).trimmed(), Qt::ElideRight,
                                    Width);
    }
    layout.endLayout();
    return lines;
}

TReportLayout LayOutReport(const TReportDocument& Doc, const TReportStyle& Style, const QPaintDevice& Device,
                           QSizeF PageSize) {
    TReportLayout out;
    out.Widths = FitColumnWidths(Doc, Style, Device, PageSize.width());
    const size_t columns = Doc.Columns.size(), groups = Doc.Groups.size();
    const qreal bodyTop = Style.HeaderHeight + Style.CaptionHeight;
    const qreal bodyBottom = PageSize.height() - Style.FooterHeight;
    out.Lines.reserve(Doc.Rows.size());
    out.Pages.emplace_back();
    qreal y = bodyTop;
    const auto place = [&](TReportItem Item) {
        Item.Top = y;
        y += Item.Height;
        out.Pages.back().push_back(Item);
    };
    for (size_t r = 0; r < Doc.Rows.size(); ++r) {
        const QStringList& values = Doc.Rows[r];
        std::vector<QStringList> cells(columns);
        qsizetype lines = 1;
        for (size_t c = 0; c < columns; ++c) {
            const qreal width = std::max<qreal>(1, out.Widths[c] - 2 * Style.Pad);
            cells[c] = WrapText(values[int(c)], Style.Body, Device, width,
                                Doc.Columns[c].Numeric ? 1 : MaxTextLines);
            lines = std::max(lines, cells[c].size());
        }
        const qreal rowHeight = lines * Style.LineHeight + 2 * Style.VPad;
        // Rows come as the grid sorted them: a band starts wherever a group value changes.
        size_t changed = groups;
        for (size_t g = 0; g < groups && changed == groups; ++g)
            if (r == 0 || values[int(columns + g)] != Doc.Rows[r - 1][int(columns + g)]) changed = g;
        if (y + (groups - changed) * Style.BandHeight + rowHeight > bodyBottom && !out.Pages.back().empty()) {
            out.Pages.emplace_back();
            y = bodyTop;
            for (size_t g = 0; g < changed; ++g)
                place({TReportItem::Band, int(r), int(g), true, 0, Style.BandHeight});
        }
        for (size_t g = changed; g < groups; ++g)
            place({TReportItem::Band, int(r), int(g), false, 0, Style.BandHeight});
        place({TReportItem::Row, int(r), 0, false, 0, rowHeight});
        out.Lines.push_back(std::move(cells));
    }
    return out;
}
