// The filter editor "Filter" (TfrmFilterEditor): one filter's name and its lines, with Add, Edit and Delete
// of lines (each through a filter line editor), a syntax check on a private copy of the board's notices,
// and below the lines the whole expression as the store will read it, checked and counted as it changes.
// The editor only edits its TFilter; the filter list writes the file when the editor closes with OK.
// Created, shown modally and freed by the filter list; it has no owner window. GUI thread only.
#pragma once

#include "core/TNoticeStore.h"
#include "views/Ufilter.h"

#include <QDialog>

#include <memory>
#include <string>

class TFilterCheckView;
namespace Ui {
class frmFilterEditor;
}

class TfrmFilterEditor : public QDialog {
    Q_OBJECT
public:
    // Notices: the board's store. The editor takes its own copy now (cdsTestFilter), unfiltered, with the
    // filter language installed; the board's store is not used afterwards.
    explicit TfrmFilterEditor(const TNoticeStore& Notices, QWidget* parent = nullptr);
    ~TfrmFilterEditor() override;

    // The filter being edited, owned by the editor. Load it before the editor is shown.
    TFilter& Filter() { return FFilter; }
    // The name box. A name put here by the opener is checked like a typed one when OK is pressed.
    std::string FilterName() const;
    void SetFilterName(const std::string& Name);

    // The copy of the board's notices on which filters are tried (cdsTestFilter).
    TNoticeStore& TestDataSet() { return cdsTestFilter; }
    TFilterCheckView* CheckView() const;

protected:
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void FormShow();
    void LoadList();
    void SelectRow(int Row, bool SetCurrentLine);
    void RefreshCheck();
    void UpdateButtons();
    bool EditLine(const std::string& Data, int Row, std::string& Result);
    void lbConditionsClick(int Row);
    void btnAddClick();
    void btnEditClick();
    void btnDeleteClick();
    void btnCheckSyntaxClick();
    void btnOKClick();
    void edtFilterNameExit();
    bool CheckName();
    bool SettleNameCheck();

    enum class TNameVerdict { Unchecked, Passed, Failed };

    std::unique_ptr<Ui::frmFilterEditor> ui;
    TNoticeStore cdsTestFilter;
    TFilter FFilter;
    bool FSelecting = false;       // the list's selection is being set by the editor, not the user
    bool FNameCheckQueued = false; // the name box was left; the check runs from the event loop
    TNameVerdict FNameVerdict = TNameVerdict::Unchecked;
};
