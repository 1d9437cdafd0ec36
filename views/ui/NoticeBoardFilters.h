// The filter list "Notice Board Filters" (TfrmNoticeBoardFilters): the filter files of the notice board
// folder under "<No Filter>", with Add, Properties (both through the filter editor) and Delete; and
// btnFiltersClick, the board's way of opening it and applying the filter chosen. Filter files are written
// and deleted as FilterFolder + name + ".nbf"; the list is read from NBConfig's NBFolder (the host sets
// both to the same folder). GUI thread only.
#pragma once

#include "views/Filelisteru.h"

#include <QDialog>

#include <functional>
#include <memory>
#include <string>

class QComboBox;
class TNoticeStore;
class TfrmFilterEditor;
namespace Ui {
class frmNoticeBoardFilters;
}

// The board's filters button and F6. Opens the filter list over owner with the entry of cmbFilters'
// current index selected and its text as the current filter; when the list closes with OK, refreshes
// Lister (the board's filter-file lister), refills cmbFilters with its entries without signals, selects
// in it the index chosen in the list and calls ApplyChosenFilter (the board's cmbFiltersClick), which reads
// cmbFilters' current text. Cancel changes nothing. Notices: the board's store, copied by filter editors.
// Returns when the dialog has closed; an exception from ApplyChosenFilter is shown in an error box.
void btnFiltersClick(QWidget* owner, const TNoticeStore& Notices, QComboBox& cmbFilters, TFIleLister& Lister,
                     const std::function<void()>& ApplyChosenFilter);

class TfrmNoticeBoardFilters : public QDialog {
    Q_OBJECT
public:
    // Notices is not owned and must outlive the dialog. Lists the folder at once and selects "<No Filter>".
    explicit TfrmNoticeBoardFilters(const TNoticeStore& Notices, QWidget* parent = nullptr);
    ~TfrmNoticeBoardFilters() override;

    // The name shown under "Currently applied filter :".
    void SetCurrentFilterName(const std::string& Name);
    // The list's selection: -1 for none; an index outside the list selects nothing.
    int SelectedIndex() const;
    void SelectIndex(int Index);
    // "&Properties" and "De&lete" are enabled exactly when a real filter (not "<No Filter>") is selected.
    void UpdateButtons();

    const TFIleLister& Lister() const { return FLister; }

private:
    void ReloadList();
    std::string SelectedItem() const;
    bool IsRealFilterSelected() const;
    void SaveAndSelect(TfrmFilterEditor& Editor);
    void btnAddClick();
    void btnPropertiesClick();
    void btnDeleteClick();
    void lbFiltersDblClick();

    std::unique_ptr<Ui::frmNoticeBoardFilters> ui;
    const TNoticeStore& FNotices;
    TFIleLister FLister;
};
