#include "support/ui/NodeSeverityChart.h"

#include "core/Znb_const.h"
#include "core/ui/NbColors.h"

#include <QPainter>

#include <algorithm>

namespace {

constexpr int Margin = 8;
constexpr int Gap = 4;     // between rows, and between a label and its bar
constexpr int Swatch = 10; // legend colour squares

} // namespace

TNodeSeverityChart::TNodeSeverityChart(QWidget* Parent) : QWidget(Parent) {
    setObjectName(QStringLiteral("NodeSeverityChart"));
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
}

void TNodeSeverityChart::SetCounts(const QStringList& Nodes, const QStringList& Columns,
                                   const std::vector<std::vector<int>>& Counts) {
    FNodes = Nodes;
    FColumns = Columns;
    FCounts = Counts;
    FCounts.resize(size_t(FNodes.size()));
    for (auto& row : FCounts)
        row.resize(size_t(FColumns.size()), 0);
    FSeverity.assign(size_t(FColumns.size()), 0);
    for (qsizetype c = 0; c < FColumns.size(); ++c)
        for (int s = 1; s <= 4; ++s)
            if (FColumns[c].compare(QString::fromStdString(SeverityStrings[size_t(s - 1)]),
                                    Qt::CaseInsensitive) == 0)
                FSeverity[size_t(c)] = s;
    updateGeometry();
    update();
}

int TNodeSeverityChart::Total(int Node) const {
    int total = 0;
    for (int n : FCounts[size_t(Node)])
        total += std::max(0, n);
    return total;
}

QSize TNodeSeverityChart::sizeHint() const {
    const int line = fontMetrics().height() + Gap;
    return QSize(260, 2 * Margin + line * int(FNodes.size() + 1));
}

QSize TNodeSeverityChart::minimumSizeHint() const {
    return QSize(200, 2 * Margin + 2 * (fontMetrics().height() + Gap));
}

void TNodeSeverityChart::paintEvent(QPaintEvent*) {
    QPainter p(this);
    const QFontMetrics fm = fontMetrics();
    const int line = fm.height() + Gap;
    // The legend: one swatch and text per column.
    int x = Margin;
    for (qsizetype c = 0; c < FColumns.size(); ++c) {
        p.fillRect(QRect(x, Margin + (fm.height() - Swatch) / 2, Swatch, Swatch),
                   SeverityColor(FSeverity[size_t(c)]));
        x += Swatch + 3;
        p.setPen(palette().color(QPalette::Text));
        p.drawText(QPoint(x, Margin + fm.ascent()), FColumns[c]);
        x += fm.horizontalAdvance(FColumns[c]) + 2 * Gap;
    }
    if (FNodes.isEmpty()) return;
    int labels = 0, most = 1, digits = 0;
    for (qsizetype n = 0; n < FNodes.size(); ++n) {
        labels = std::max(labels, fm.horizontalAdvance(FNodes[n]));
        most = std::max(most, Total(int(n)));
    }
    digits = fm.horizontalAdvance(QString::number(most));
    labels = std::min(labels, width() / 3);
    const int barLeft = Margin + labels + Gap;
    const int barSpace = std::max(1, width() - barLeft - Gap - digits - Margin);
    for (qsizetype n = 0; n < FNodes.size(); ++n) {
        const int top = Margin + line * int(n + 1);
        p.setPen(palette().color(QPalette::Text));
        p.drawText(QRect(Margin, top, labels, fm.height()), Qt::AlignLeft | Qt::AlignVCenter,
                   fm.elidedText(FNodes[n], Qt::ElideRight, labels));
        // Each segment ends where the running total ends, so rounding never leaves gaps between them.
        int sum = 0, left = barLeft;
        for (size_t c = 0; c < size_t(FColumns.size()); ++c) {
            sum += std::max(0, FCounts[size_t(n)][c]);
            const int right = barLeft + int(int64_t(sum) * barSpace / most);
            if (right > left)
                p.fillRect(QRect(left, top + 1, right - left, fm.height() - 2), SeverityColor(FSeverity[c]));
            left = right;
        }
        p.setPen(palette().color(QPalette::Text));
        p.drawText(QPoint(left + Gap, top + fm.ascent()), QString::number(Total(int(n))));
    }
}
