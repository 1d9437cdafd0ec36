// The selected line of a single-selection list as the filter and display dialogs count it: one index, -1
// when no line is selected; setting an index outside the list selects nothing. GUI thread only.
#pragma once

#include <QListWidget>
#include <QScrollBar>

#include <algorithm>

inline int SelectedRow(const QListWidget* List) {
    const int row = List->currentRow();
    return row >= 0 && List->item(row)->isSelected() ? row : -1;
}

inline void SetSelectedRow(QListWidget* List, int Row) {
    if (Row >= 0 && Row < List->count()) {
        List->setCurrentRow(Row, QItemSelectionModel::ClearAndSelect);
        return;
    }
    List->clearSelection();
    List->setCurrentRow(-1);
}

// Removes a line the way the filter and display lists do after a delete: the scroll position stays, the
// line that moves into the removed one's place is selected, and nothing is selected after the last line.
inline void RemoveRowSelectingNext(QListWidget* List, int Row) {
    QScrollBar* scroll = List->verticalScrollBar();
    const int top = scroll->value();
    delete List->takeItem(Row);
    scroll->setValue(top);
    const int last = List->count() - 1;
    SetSelectedRow(List, std::min(Row > 0 ? Row - 1 : 0, last) + 1);
}
