// The display editor "Display Properties" (TfrmNBViewEditor): on the left a preview grid (cfgGrid) over the
// editor's own copy of the board's notices, on the right the display's name, a check list of the visible
// fields and its colours and options, each change shown in the preview at once. The editor only edits
// its TDisplay and the preview's columns; the display list binds, loads and saves the display. Created,
// shown modally and freed by the display list. GUI thread only.
#pragma once

#include "core/TNoticeStore.h"
#include "views/Displayu.h"

#include <QDialog>

#include <array>
#include <memory>
#include <string>
#include <utility>

class QLineEdit;
class QToolButton;
class TNoticeBdGrid;
namespace Ui {
class frmNBViewEditor;
}

class TfrmNBViewEditor : public QDialog {
    Q_OBJECT
public:
    // Notices: the board's store, copied now (the preview dataset, sharing the board's rows until either
    // changes; the board's filter stays in effect, so the preview shows what the board's grid shows).
    // ViewOf: the board's grid, whose columns and row order the preview takes (null: the column table's
    // defaults in key order); only read here. Neither is used afterwards.
    TfrmNBViewEditor(const TNoticeStore& Notices, const TNoticeBdGrid* ViewOf, QWidget* parent = nullptr);
    // The same with the preview starting in StartLayout's columns and order (ViewOf's when null): for a
    // display about to be loaded whose order is known, so that the preview sorts at most once.
    TfrmNBViewEditor(const TNoticeStore& Notices, const TNoticeBdGrid* ViewOf, const TGridLayout* StartLayout,
                     QWidget* parent = nullptr);
    ~TfrmNBViewEditor() override;

    // The display being edited, owned by the editor; not bound to the preview until the opener binds it.
    TDisplay& Display() { return FDisplay; }
    // The preview grid (cfgGrid), a child of the editor; it draws its rows by Display()'s colours.
    TNoticeBdGrid& PreviewGrid() const { return *cfgGrid; }
    const TNoticeStore& PreviewDataSet() const { return FPreviewData; }

    // The name box (edtViewName).
    std::string ViewName() const;
    void SetViewName(const std::string& Name);

    // Refills the visible-fields list from the preview's columns: every caption, checked when its column
    // shows, sorted by caption.
    void UpdateVisibleFieldEditor();
    // Puts the display's colours into the swatches and its options into the check boxes (which pass them
    // on to the preview, as a click would).
    void SynchControls();

private:
    void clbVisibleFieldsClickCheck();
    void NoteColumnsChangedInGrid();
    void ChooseColour(QLineEdit* Swatch, TColor& Target, void (TNoticeBdGrid::*ShowIn)(TColor));
    void SetOption(uint32_t Option, bool On);
    // Severity 1 to 4: its swatch and its "..." button.
    std::array<std::pair<QLineEdit*, QToolButton*>, 4> SeverityChoosers() const;

    std::unique_ptr<Ui::frmNBViewEditor> ui;
    TNoticeStore FPreviewData;
    TDisplay FDisplay;
    TNoticeBdGrid* cfgGrid = nullptr;
    bool FFillingFields = false;
};
