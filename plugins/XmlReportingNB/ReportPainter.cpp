#include "ReportPainter.h"

#include "ReportLayout.h"

#include <QFontMetricsF>
#include <QLocale>
#include <QPageLayout>
#include <QPainter>
#include <QPrinter>

namespace {

const QColor CaptionFill(0xd9, 0xde, 0xe5);
const QColor BandFill[2] = {QColor(0xc9, 0xd6, 0xe6), QColor(0xe3, 0xea, 0xf3)};
const QColor StripeFill(0xf4, 0xf6, 0xf9);
const QColor RuleColour(0x60, 0x60, 0x60);

class TPagePainter {
public:
    TPagePainter(QPainter& Painter, const TReportDocument& Doc, const TReportStyle& Style,
                 const TReportLayout& Layout, QSizeF Page)
        : P(Painter), Doc(Doc), S(Style), L(Layout), Page(Page) {}

    void Header(const QString& PrintedAt) {
        const QRectF line(0, 0, Page.width(), S.HeaderHeight - S.Mm(2));
        P.setFont(S.Body);
        P.setPen(Qt::black);
        const QString when = QStringLiteral("Printed %1").arg(PrintedAt);
        P.drawText(line, Qt::AlignRight | Qt::AlignBottom, when);
        P.setFont(S.Title);
        const qreal room = Page.width() - QFontMetricsF(S.Body, P.device()).horizontalAdvance(when) - S.Mm(5);
        P.drawText(line, Qt::AlignLeft | Qt::AlignBottom,
                   QFontMetricsF(S.Title, P.device()).elidedText(Doc.Title, Qt::ElideRight, room));
        Rule(S.HeaderHeight - S.Mm(1), S.Mm(0.35));
    }

    void Captions() {
        const qreal top = S.HeaderHeight;
        P.fillRect(QRectF(0, top, Page.width(), S.CaptionHeight), CaptionFill);
        P.setFont(S.Bold);
        P.setPen(Qt::black);
        qreal x = 0;
        for (size_t c = 0; c < Doc.Columns.size(); ++c) {
            const TReportField& f = Doc.Columns[c];
            const QRectF cell(x + S.Pad, top + S.VPad, L.Widths[c] - 2 * S.Pad, S.BoldLineHeight);
            P.drawText(cell, Align(f) | Qt::AlignVCenter,
                       QFontMetricsF(S.Bold, P.device()).elidedText(f.Caption, Qt::ElideRight, cell.width()));
            x += L.Widths[c];
        }
        Rule(top + S.CaptionHeight, S.Mm(0.2));
    }

    void Band(const TReportItem& Item) {
        const qreal indent = Item.Level * S.Mm(4);
        P.fillRect(QRectF(indent, Item.Top, Page.width() - indent, Item.Height), BandFill[Item.Level > 0]);
        const TReportField& f = Doc.Groups[size_t(Item.Level)];
        QString value = Doc.Rows[size_t(Item.RowIndex)][int(Doc.Columns.size()) + Item.Level];
        if (value.isEmpty()) value = QStringLiteral("(none)");
        QString text = f.Caption + QStringLiteral(": ") + value;
        if (Item.Continued) text += QStringLiteral(" (continued)");
        P.setFont(S.Bold);
        P.setPen(Qt::black);
        const QRectF cell(indent + S.Pad, Item.Top + S.VPad, Page.width() - indent - 2 * S.Pad,
                          S.BoldLineHeight);
        P.drawText(cell, Qt::AlignLeft | Qt::AlignVCenter,
                   QFontMetricsF(S.Bold, P.device()).elidedText(text, Qt::ElideRight, cell.width()));
    }

    void Row(const TReportItem& Item) {
        if (Item.RowIndex % 2 == 1) P.fillRect(QRectF(0, Item.Top, Page.width(), Item.Height), StripeFill);
        P.setFont(S.Body);
        P.setPen(Qt::black);
        qreal x = 0;
        const std::vector<QStringList>& cells = L.Lines[size_t(Item.RowIndex)];
        for (size_t c = 0; c < Doc.Columns.size(); ++c) {
            qreal y = Item.Top + S.VPad;
            for (const QString& line : cells[c]) {
                P.drawText(QRectF(x + S.Pad, y, L.Widths[c] - 2 * S.Pad, S.LineHeight),
                           Align(Doc.Columns[c]) | Qt::AlignVCenter, line);
                y += S.LineHeight;
            }
            x += L.Widths[c];
        }
    }

    void Empty() {
        QFont italic = S.Body;
        italic.setItalic(true);
        P.setFont(italic);
        P.drawText(QRectF(S.Pad, S.HeaderHeight + S.CaptionHeight + S.VPad, Page.width(), S.LineHeight),
                   Qt::AlignLeft | Qt::AlignVCenter, QStringLiteral("No rows."));
    }

    void Footer(int Number, int Count) {
        P.setFont(S.Foot);
        P.setPen(Qt::black);
        P.drawText(QRectF(0, Page.height() - S.FooterHeight, Page.width(), S.FooterHeight),
                   Qt::AlignHCenter | Qt::AlignBottom,
                   QStringLiteral("Page %1 of %2").arg(Number).arg(Count));
    }

private:
    static Qt::Alignment Align(const TReportField& F) { return F.Numeric ? Qt::AlignRight : Qt::AlignLeft; }

    void Rule(qreal Y, qreal Thickness) {
        P.fillRect(QRectF(0, Y - Thickness / 2, Page.width(), Thickness), RuleColour);
    }

    QPainter& P;
    const TReportDocument& Doc;
    const TReportStyle& S;
    const TReportLayout& L;
    QSizeF Page;
};

QSizeF PrintableSize(const QPrinter& Printer) {
    return Printer.pageLayout().paintRectPixels(Printer.resolution()).size();
}

} // namespace

bool ReportWantsLandscape(const TReportDocument& Doc, const QPrinter& Printer) {
    QPageLayout portrait = Printer.pageLayout();
    portrait.setOrientation(QPageLayout::Portrait);
    return ColumnsNeedWidth(Doc, Printer.resolution(),
                            portrait.paintRectPixels(Printer.resolution()).width());
}

bool PaintReport(const TReportDocument& Doc, QPrinter& Printer, const QDateTime& PrintedAt) {
    const TReportStyle style(Printer);
    const QSizeF page = PrintableSize(Printer);
    const TReportLayout layout = LayOutReport(Doc, style, Printer, page);
    const QString printedAt = QLocale().toString(PrintedAt, QLocale::ShortFormat);

    QPainter painter;
    if (!painter.begin(&Printer)) return false;
    painter.setRenderHint(QPainter::TextAntialiasing);
    TPagePainter pages(painter, Doc, style, layout, page);
    const int count = int(layout.Pages.size());
    for (int n = 0; n < count; ++n) {
        if (n > 0 && !Printer.newPage()) {
            painter.end();
            return false;
        }
        pages.Header(printedAt);
        pages.Captions();
        for (const TReportItem& item : layout.Pages[size_t(n)])
            item.Kind == TReportItem::Band ? pages.Band(item) : pages.Row(item);
        if (Doc.Rows.empty()) pages.Empty();
        pages.Footer(n + 1, count);
    }
    return painter.end();
}
