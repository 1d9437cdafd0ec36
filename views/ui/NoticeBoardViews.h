// The display list "Notice Board Displays" (TfrmNoticeBoardViews): the display files of the notice board
// folder under "<Default>", with Add (through the new-display dialog and the display editor), Properties
// (the display editor) and Delete; and btnViewsClick, the board's way of opening it and applying the
// display chosen. Displays are saved through TDisplay (NBConfig's NBFolder) and deleted as FilterFolder +
// name + ".nbd" (the host sets both to the same folder). GUI thread only.
#pragma once

#include "views/Filelisteru.h"

#include <QDialog>

#include <functional>
#include <memory>
#include <string>

class QComboBox;
class TNoticeBdGrid;
class TNoticeStore;
class TfrmNBViewEditor;
namespace Ui {
class frmNoticeBoardViews;
}

// The board's displays button and Ctrl+D. Opens the display list over owner with the entry of cmbDisplays'
// current index selected and its text as the current display; when the list closes with OK, refreshes
// Lister (the board's display-file lister), refills cmbDisplays with its entries without signals, selects
// in it the index chosen in the list and calls ApplyChosenDisplay (the board's cmbDisplaysClick), which
// reads cmbDisplays' current text. Cancel changes nothing. Notices: the board's store, copied by the
// display editors for their previews, which start from the columns and row order of the grid named
// "NoticeBdGrid" among owner's children when that grid shows Notices. Returns when the dialog has closed;
// an exception from ApplyChosenDisplay is shown in an error box.
void btnViewsClick(QWidget* owner, const TNoticeStore& Notices, QComboBox& cmbDisplays, TFIleLister& Lister,
                   const std::function<void()>& ApplyChosenDisplay);

class TfrmNoticeBoardViews : public QDialog {
    Q_OBJECT
public:
    // Notices and MainGrid (the board's grid, may be null) are not owned and must outlive the dialog.
    // Lists the folder at once and selects "<Default>".
    TfrmNoticeBoardViews(const TNoticeStore& Notices, const TNoticeBdGrid* MainGrid,
                         QWidget* parent = nullptr);
    ~TfrmNoticeBoardViews() override;

    // The name shown beside "Currently applied display:".
    void SetCurrentDisplayName(const std::string& Name);
    // The list's selection: -1 for none; an index outside the list selects nothing.
    int SelectedIndex() const;
    void SelectIndex(int Index);
    // "&Properties" and "De&lete" are enabled exactly when a real display (not "<Default>") is selected.
    void UpdateButtons();

    const TFIleLister& Lister() const { return FLister; }

private:
    void ReloadList();
    void SelectName(const std::string& Name);
    std::string SelectedItem() const;
    bool IsRealDisplaySelected() const;
    void PrepareEditor(TfrmNBViewEditor& Editor, const std::string& Name);
    bool SaveDisplay(TfrmNBViewEditor& Editor);
    void btnAddClick();
    void btnPropertiesClick();
    void btnDeleteClick();
    void lbViewsDblClick();

    std::unique_ptr<Ui::frmNoticeBoardViews> ui;
    const TNoticeStore& FNotices;
    const TNoticeBdGrid* FMainGrid;
    TFIleLister FLister;
};
