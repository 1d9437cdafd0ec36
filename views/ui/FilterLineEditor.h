// The filter line editor "Filter Line Editor" (TFilterLineEditor): the six columns of one filter line
// (boolean operator, left parentheses, field name, operator, value, right parentheses), written into its
// own copy of the whole filter as each control changes. OK checks the whole filter on the filter editor's
// test copy of the notices and stays open, with an error box, when it does not compile.
// Created, shown modally and freed by the filter editor; it has no owner window. GUI thread only.
#pragma once

#include "views/Ufilter.h"

#include <QDialog>

#include <memory>
#include <string>

class TfrmFilterEditor;
namespace Ui {
class FilterLineEditor;
}

class TFilterLineEditor : public QDialog {
    Q_OBJECT
public:
    // Editor: the filter editor that opens this one; its test dataset judges the filter on OK. It must
    // outlive this dialog.
    explicit TFilterLineEditor(TfrmFilterEditor& Editor, QWidget* parent = nullptr);
    ~TFilterLineEditor() override;

    // Loads Data (a whole filter) and shows line Row in the controls. Raises EFilterError
    // "Tried to access non-existent row" for a row the filter does not have.
    void PopulateControls(const std::string& Data, int Row);

    // The filter held here, with the edited line.
    const TFilter& Filter() const { return FFilter; }
    std::string GetAsData() const { return FFilter.GetAsData(); }

    // The value a column takes for a field: text fields hold their value in single quotes.
    static bool IsTextField(const std::string& FieldName);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void cbBoolOpDropDown();
    void RestrictBoolOps();
    void ControlChange(const char* Column, const std::string& Value);
    void StoreValue();
    void UpdateValueBox(bool Empty);
    void btnOKClick();
    void btnTestClick();
    void RefreshCheck();

    std::unique_ptr<Ui::FilterLineEditor> ui;
    TfrmFilterEditor& FEditor;
    TFilter FFilter;
    bool FPopulating = false;
};
