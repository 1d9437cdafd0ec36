#include "core/ui/QuickSearchBox.h"

#include "core/ui/NoticeBdGrid.h"

#include <QKeyEvent>
#include <QShortcut>

TQuickSearchBox::TQuickSearchBox(QWidget* Parent) : QLineEdit(Parent) {
    setObjectName(QStringLiteral("edtQuickSearch"));
    setPlaceholderText(tr("Find notices (Ctrl+F)"));
    setToolTip(tr("Show only the notices whose texts contain all the words typed (Esc clears)"));
    setClearButtonEnabled(true);
    // About 24 characters when there is room; a narrow board squeezes it to about 12.
    setMinimumWidth(fontMetrics().averageCharWidth() * 12);
    setMaximumWidth(fontMetrics().averageCharWidth() * 48);
    connect(this, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (!FGrid) return;
        FGrid->SetQuickSearchText(text);
        emit StatusTextChanged(FGrid->QuickSearchStatusText());
    });
}

void TQuickSearchBox::Attach(TNoticeBdGrid* Grid) {
    if (FGrid) FGrid->SetQuickSearchText(QString());
    FGrid = Grid;
    if (!FGrid) return;
    FGrid->SetQuickSearchText(text());
    emit StatusTextChanged(FGrid->QuickSearchStatusText());
}

QShortcut* TQuickSearchBox::InstallShortcut(QWidget* Window) {
    auto* shortcut = new QShortcut(QKeySequence::Find, Window);
    shortcut->setObjectName(QStringLiteral("QuickSearchShortcut"));
    shortcut->setContext(Qt::WindowShortcut);
    connect(shortcut, &QShortcut::activated, this, [this] {
        setFocus(Qt::ShortcutFocusReason);
        selectAll();
    });
    return shortcut;
}

void TQuickSearchBox::keyPressEvent(QKeyEvent* Event) {
    if (Event->key() == Qt::Key_Escape && !text().isEmpty()) {
        clear();
        Event->accept();
        return;
    }
    QLineEdit::keyPressEvent(Event);
}

void TQuickSearchBox::focusInEvent(QFocusEvent* Event) {
    QLineEdit::focusInEvent(Event);
    if (FGrid) FGrid->PrepareQuickSearch();
}
