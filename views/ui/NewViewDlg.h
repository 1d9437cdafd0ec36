// The new-display dialog "Notice Board - New Display" (TNB_NewViewDlg): a display name and where the new
// display's attributes come from (the default display or the one selected in the display list). Created,
// shown modally and freed by the display list. GUI thread only.
#pragma once

#include <QDialog>

#include <memory>
#include <string>

namespace Ui {
class NB_NewViewDlg;
}

class TNB_NewViewDlg : public QDialog {
    Q_OBJECT
public:
    explicit TNB_NewViewDlg(QWidget* parent = nullptr);
    ~TNB_NewViewDlg() override;

    // The name box, as typed (OK has let it pass ValidateViewName when the dialog closed with OK).
    std::string ViewName() const;
    // "D&efault display". Unchecking it leaves "&Current display" as it was, so both may be unchecked;
    // only a checked "D&efault display" means the default.
    bool CopyDefaultView() const;
    void SetCopyDefaultView(bool Checked);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void btnOKClick();

    std::unique_ptr<Ui::NB_NewViewDlg> ui;
};
