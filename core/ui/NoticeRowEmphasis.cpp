#include "core/ui/NoticeRowEmphasis.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>
#include <QRect>
#include <QString>

#include <algorithm>

QColor EmphasisBackground(const QColor& Base, const QColor& Tint, double Emphasis) {
    const double a = std::clamp(Emphasis, 0.0, 1.0) / 3;
    return QColor::fromRgbF(static_cast<float>(Base.redF() * (1 - a) + Tint.redF() * a),
                            static_cast<float>(Base.greenF() * (1 - a) + Tint.greenF() * a),
                            static_cast<float>(Base.blueF() * (1 - a) + Tint.blueF() * a));
}

void DrawEmphasisedText(QPainter& Painter, const QRect& Cell, const QString& Text, const QFont& Font,
                        bool AlignRight, const QColor& Pen) {
    if (Text.isEmpty() || Cell.width() <= 0) return;
    QFont bold(Font);
    bold.setBold(true);
    const QFontMetrics fm(bold);
    Painter.setFont(bold);
    Painter.setPen(Pen);
    Painter.drawText(Cell,
                     Qt::TextSingleLine | Qt::AlignVCenter | (AlignRight ? Qt::AlignRight : Qt::AlignLeft),
                     fm.elidedText(Text, Qt::ElideRight, Cell.width()));
}
