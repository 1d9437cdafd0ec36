// The field-name box of the filter line editor: an editable combo box listing the notice fields by their
// names, in the column table's order, each shown with its grid caption beside it ("note_summary  Summary"),
// and completing what is typed from names and captions alike ("sev" or "Severity" offer note_severity and
// note_severity_str; taking a completion puts the field name in the box). GUI thread only.
#pragma once

#include <QCompleter>
#include <QStyledItemDelegate>

class QComboBox;

// Fills Box (made editable) with the 18 field names and installs the caption display and the completer;
// both are owned by Box. The items' text is the field name; the caption is their tool tip and
// FieldCaptionRole.
void SetupFieldNameBox(QComboBox* Box);

inline constexpr int FieldCaptionRole = Qt::UserRole + 1;
// "name caption": what completion matches against.
inline constexpr int FieldSearchRole = Qt::UserRole + 2;

// Paints an item's text as usual and its caption after it, right-aligned in a quieter colour.
class TFieldCaptionDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

// Matches FieldSearchRole anywhere, ignoring letter case, and completes to the field name.
class TFieldNameCompleter : public QCompleter {
    Q_OBJECT
public:
    using QCompleter::QCompleter;
    QString pathFromIndex(const QModelIndex& index) const override;
};
