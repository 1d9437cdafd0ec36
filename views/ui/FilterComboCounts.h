// The counts beside the board's filter combo (cmbFilters): each entry reads "Name (N)", N being how many
// of the board's notices the filter passes, in the list and in the closed combo, kept current as notices
// arrive (views/FilterCounts.h: counted once a slice at a time, then row by row). The combo's own item
// texts stay the plain names, so currentText and itemText, which the board's cmbFiltersClick applies,
// are unchanged. A name reads plain while its first count runs and when its filter does not compile.
//
// Owned by the combo (a Qt child, objectName "FilterComboCounts"); the store must outlive it. GUI (board)
// thread only. Nothing throws but std::bad_alloc.
#pragma once

#include "views/FilterCounts.h"

#include <QObject>
#include <QString>

#include <memory>
#include <string>

class QComboBox;
class QTimer;

class TFilterComboCounts : public QObject {
    Q_OBJECT
public:
    // Starts counting the combo's entries, whose filter files are in Folder (the board's FilterFolder,
    // with its trailing separator).
    TFilterComboCounts(QComboBox* Combo, TNoticeStore& Store, const std::string& Folder);
    ~TFilterComboCounts() override;

    // The combo's entries or the filter files changed (the board refilled the combo after the filters
    // dialog): counts every entry again.
    void Reload();
    void SetFolder(const std::string& Folder);

    // "Name (N)", or the plain name while it has no count.
    Q_INVOKABLE QString DecoratedText(int Index) const;
    const TFilterCounts& Counts() const { return FCounts; }
    // Finishes the first counts at once (tests, tools).
    void CountNow();

protected:
    bool eventFilter(QObject* Watched, QEvent* Event) override;

private:
    struct TListener;
    void CountSlice();
    void CountsMayHaveChanged();
    void PaintClosedCombo();

    QComboBox* FCombo;
    TNoticeStore& FStore;
    std::string FFolder;
    TFilterCounts FCounts;
    std::unique_ptr<TListener> FListener;
    QTimer* FTimer; // "FilterCountTimer": the first count's slices between the window's events
    uint64_t FShown = 0;
};
