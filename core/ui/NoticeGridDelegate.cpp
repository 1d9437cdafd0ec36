#include "core/ui/NoticeGridDelegate.h"

#include "core/ui/NoticeGridModel.h"
#include "core/ui/NoticeGridSelection.h"
#include "core/ui/NoticeRowEmphasis.h"

#include <QPainter>

#include <QStyle>
#include <QStyleOptionFocusRect>
#include <algorithm>

namespace {

constexpr int TextMargin = 3;         // pixels between a cell's edge and its text
constexpr qsizetype CacheSize = 4096; // texts kept laid out: several screens' worth

} // namespace

TNoticeGridDelegate::TNoticeGridDelegate(const TNoticeGridModel& Model, const TKeySelection& Selection,
                                         QObject* Parent)
    : QAbstractItemDelegate(Parent), FModel(Model), FSelection(Selection) {}

void TNoticeGridDelegate::Prepare(const TColors& Colors) {
    FColors = Colors;
    FCache = TRowCache{};
}

QColor TNoticeGridDelegate::RowBackground(int Row) const {
    if (FColors.SeverityRows) {
        const TNoticeRecord* record = RowState(Row).Record;
        const int severity =
            record && !record->IsNull(nf_note_severity) ? record->AsInteger(nf_note_severity) : 0;
        if (severity >= 1 && severity <= 4) return FColors.SeverityBackground[size_t(severity - 1)];
    }
    return FColors.AltRows && (Row & 1) ? FColors.AltBackground : FColors.Background;
}

void TNoticeGridDelegate::SetMarkedWords(const QStringList& Words) {
    FMarked = Words;
}

// Marks each occurrence of a word in the text as painted from X; a word cut off by the elision is marked
// as far as it shows.
void TNoticeGridDelegate::PaintMarks(QPainter* Painter, const QString& Text, int X, const QRect& Cell,
                                     const QFontMetrics& Metrics) const {
    for (const QString& word : FMarked) {
        for (qsizetype at = Text.indexOf(word, 0, Qt::CaseInsensitive); at >= 0;
             at = Text.indexOf(word, at + word.size(), Qt::CaseInsensitive)) {
            const int left = X + Metrics.horizontalAdvance(Text.left(at));
            const int width = Metrics.horizontalAdvance(Text.mid(at, word.size()));
            const QRect mark = QRect(left, Cell.top() + 1, width, Cell.height() - 2).intersected(Cell);
            Painter->fillRect(mark, FColors.Mark);
        }
    }
}

const TNoticeGridDelegate::TRowCache& TNoticeGridDelegate::RowState(int Row) const {
    if (FCache.Row == Row) return FCache;
    FCache.Row = Row;
    FCache.Heading = FModel.Info(Row).Heading;
    FCache.Record = FCache.Heading ? nullptr : FModel.Record(Row);
    FCache.Selected = FCache.Record && FSelection.Contains(FCache.Record->AsInteger(nf_nb_internal_key));
    FCache.Emphasis =
        FCache.Record && FEmphasis ? FEmphasis->RowEmphasis(FCache.Record->AsInteger(nf_nb_internal_key)) : 0;
    return FCache;
}

int TNoticeGridDelegate::TextWidth(const QString& Text, const QFontMetrics& Metrics) const {
    const auto it = FWidths.constFind(Text);
    if (it != FWidths.constEnd()) return *it;
    if (FWidths.size() >= CacheSize) FWidths.clear();
    return *FWidths.insert(Text, Metrics.horizontalAdvance(Text));
}

const QStaticText& TNoticeGridDelegate::Laid(const QString& Text) const {
    const auto it = FLaid.constFind(Text);
    if (it != FLaid.constEnd()) return *it;
    if (FLaid.size() >= CacheSize) FLaid.clear();
    QStaticText laid(Text);
    laid.setTextFormat(Qt::PlainText);
    laid.prepare(QTransform(), FFont);
    return *FLaid.insert(Text, laid);
}

void TNoticeGridDelegate::paint(QPainter* Painter, const QStyleOptionViewItem& Option,
                                const QModelIndex& Index) const {
    const TRowCache& row = RowState(Index.row());
    const QRect& r = Option.rect;
    if (row.Heading) {
        Painter->fillRect(r, FColors.Heading); // the grid writes the heading across the row
    } else {
        QColor back = row.Selected ? FColors.Highlight : RowBackground(Index.row());
        if (row.Emphasis > 0 && !row.Selected)
            back = EmphasisBackground(back, FColors.Highlight, row.Emphasis);
        Painter->fillRect(r, back);
        if (row.Record) {
            const TNoticeField field = TNoticeField(Index.column());
            QString text = TNoticeGridModel::CellText(*row.Record, field);
            const int width = r.width() - 2 * TextMargin - (FColors.Lines ? 1 : 0);
            if (row.Emphasis > 0) {
                DrawEmphasisedText(*Painter, QRect(r.left() + TextMargin, r.top(), width, r.height()), text,
                                   Option.font, field == nf_note_count || field == nf_nb_internal_key,
                                   row.Selected ? FColors.HighlightedText : FColors.Text);
            } else if (!text.isEmpty() && width > 0) {
                if (Option.font != FFont) {
                    FFont = Option.font;
                    FWidths.clear();
                    FLaid.clear();
                }
                const QFontMetrics& fm = Option.fontMetrics;
                // Long texts (a memo) are cut before measuring: no cell shows more characters than
                // three per average character width.
                const int most = width * 3 / std::max(1, fm.averageCharWidth()) + 4;
                if (text.size() > most) text.truncate(most);
                int advance = TextWidth(text, fm);
                if (advance > width) {
                    text = fm.elidedText(text, Qt::ElideRight, width);
                    advance = TextWidth(text, fm);
                }
                const bool right = field == nf_note_count || field == nf_nb_internal_key;
                const int x = right ? r.right() - TextMargin - (FColors.Lines ? 1 : 0) - advance + 1
                                    : r.left() + TextMargin;
                if (!FMarked.isEmpty() && !row.Selected) PaintMarks(Painter, text, x, r, fm);
                Painter->setPen(row.Selected ? FColors.HighlightedText : FColors.Text);
                Painter->setFont(FFont);
                Painter->drawStaticText(x, r.top() + (r.height() - fm.height()) / 2, Laid(text));
            }
        }
    }
    if (FColors.FocusRect && (Option.state & QStyle::State_HasFocus)) {
        QStyleOptionFocusRect focus;
        focus.QStyleOption::operator=(Option);
        focus.rect = r.adjusted(1, 1, -1, -1);
        focus.backgroundColor = row.Selected ? FColors.Highlight : RowBackground(Index.row());
        const QWidget* widget = Option.widget;
        QStyle* style = widget ? widget->style() : nullptr;
        if (style) style->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, Painter, widget);
    }
}

QSize TNoticeGridDelegate::sizeHint(const QStyleOptionViewItem& Option, const QModelIndex& Index) const {
    const QString text = Index.data().toString();
    return QSize(Option.fontMetrics.horizontalAdvance(text) + 2 * TextMargin + 1,
                 Option.fontMetrics.height() + 4);
}
