#include "MessageBoxAnswer.h"

#include <QAbstractButton>
#include <QPushButton>

void AnswerNextMessageBox(QMessageBox::StandardButton button, TSeenMessageBox* seen) {
    WhenVisible<QMessageBox>([button, seen](QMessageBox* box) {
        if (seen) {
            seen->found = true;
            seen->title = box->windowTitle();
            seen->text = box->text();
            seen->plainText = box->textFormat() == Qt::PlainText;
            seen->icon = box->icon();
            seen->buttons.clear();
            for (QAbstractButton* b : box->buttons())
                seen->buttons << box->standardButton(b);
            seen->defaultButton =
                box->defaultButton() ? box->standardButton(box->defaultButton()) : QMessageBox::NoButton;
            seen->parent = box->parentWidget();
        }
        if (button == QMessageBox::NoButton)
            box->close();
        else if (QAbstractButton* b = box->button(button))
            b->click();
        else
            box->close();
    });
}
