// The board's filter and display choosers after their list dialog closed with OK: the lister is read again,
// the combo box refilled with its entries (without signals: refilling is no choice of the user's), the
// entry chosen in the dialog selected, and the board's apply step run once. GUI thread only.
#pragma once

#include "support/NBPrompt.h"
#include "views/Filelisteru.h"

#include <QComboBox>
#include <QSignalBlocker>

#include <exception>
#include <functional>
#include <string>

// An exception from Apply is shown in an error box.
inline void ApplyChosenEntry(QComboBox& Combo, TFIleLister& Lister, int ChosenIndex,
                             const std::function<void()>& Apply) {
    Lister.Refresh();
    {
        const QSignalBlocker quiet(Combo);
        Combo.clear();
        for (const std::string& item : Lister.Items)
            Combo.addItem(QString::fromStdString(item));
        Combo.setCurrentIndex(ChosenIndex);
    }
    try {
        Apply();
    } catch (const std::exception& e) {
        NBPrompt().ShowMessage(e.what(), TMsgDlgType::mtError);
    }
}
