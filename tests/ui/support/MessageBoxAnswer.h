// Answers the message box a modal call is about to show: queue the answer, then make the call. The queued
// action runs inside the box's own event loop, notes what the box showed and presses the chosen button.
#pragma once

#include <QApplication>
#include <QList>
#include <QMessageBox>
#include <QString>
#include <QTimer>

// What the answered box showed. found stays false when no box appeared.
struct TSeenMessageBox {
    bool found = false;
    QString title;
    QString text;
    bool plainText = false; // shown as typed, not as markup
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QList<QMessageBox::StandardButton> buttons;
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
    QWidget* parent = nullptr;
};

// The visible top-level widget of type T (the last one listed when several are), or null.
template <class T> T* VisibleTopLevel() {
    T* found = nullptr;
    for (QWidget* w : QApplication::topLevelWidgets())
        if (auto* t = qobject_cast<T*>(w); t && t->isVisible()) found = t;
    return found;
}

// Queues action(window) for the visible top-level T. The action retries through the event queue (never a
// sleep) while the window is not up yet, and gives up quietly after attempts tries.
template <class T, class F> void WhenVisible(F action, int attempts = 200) {
    QTimer::singleShot(0, [action, attempts]() mutable {
        if (T* t = VisibleTopLevel<T>()) {
            action(t);
            return;
        }
        if (attempts > 0) WhenVisible<T>(std::move(action), attempts - 1);
    });
}

// Queues: find the visible message box, fill *seen, press button (QMessageBox::NoButton closes the window
// instead, as a user's click on the title bar's close does).
void AnswerNextMessageBox(QMessageBox::StandardButton button, TSeenMessageBox* seen);
