// The tool bar's quick-search box (edtQuickSearch): what is typed narrows the notice grid at once (see
// TNoticeBdGrid::SetQuickSearchText); Esc clears it; Ctrl+F, through a shortcut the window installs,
// puts the focus in it. Getting the focus folds the grid's texts ahead, so the first letter answers fast.
//
// Owned by its parent (the tool bar); the grid is not owned and must outlive the attachment (the box
// detaches itself when the grid is destroyed). GUI thread only. Nothing throws.
#pragma once

#include <QLineEdit>
#include <QPointer>

class QShortcut;
class TNoticeBdGrid;

class TQuickSearchBox : public QLineEdit {
    Q_OBJECT
public:
    // objectName "edtQuickSearch", placeholder "Find notices (Ctrl+F)", a clear button, room for about
    // 24 characters.
    explicit TQuickSearchBox(QWidget* Parent = nullptr);

    // Edits narrow Grid from now on (null: none). The grid takes the box's current text.
    void Attach(TNoticeBdGrid* Grid);
    TNoticeBdGrid* Grid() const { return FGrid; }

    // Ctrl+F anywhere in Window focuses the box and selects its text. The shortcut (objectName
    // "QuickSearchShortcut") is a child of Window.
    QShortcut* InstallShortcut(QWidget* Window);

signals:
    // The status bar's note after every edit: "(N match)" while a search narrows, else empty. Rows come
    // and go with notice messages too: the window reads TNoticeBdGrid::QuickSearchStatusText after each.
    void StatusTextChanged(const QString& Text);

protected:
    void keyPressEvent(QKeyEvent* Event) override;
    void focusInEvent(QFocusEvent* Event) override;

private:
    QPointer<TNoticeBdGrid> FGrid;
};
