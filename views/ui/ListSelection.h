// The selected line of a single-selection list as the filter and display dialogs count it: one index, -1
// when no line is selected; setting an index outside the list selects nothing. GUI thread only.
#pragma once

#include <QListWidget>

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
