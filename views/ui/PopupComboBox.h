// A combo box that says when its list is about to drop down, so that a form can change the items offered
// at that moment (the line editor's boolean operators on a first line). GUI thread only.
#pragma once

#include <QComboBox>

class TPopupComboBox : public QComboBox {
    Q_OBJECT
public:
    using QComboBox::QComboBox;

    void showPopup() override {
        emit popupAboutToShow();
        QComboBox::showPopup();
    }

signals:
    void popupAboutToShow();
};
