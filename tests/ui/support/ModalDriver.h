// Driving modal dialogs and message boxes from UI tests. A test arms an action, then runs the code that
// opens the dialog (and blocks in its exec); the action runs from the event loop as soon as the awaited
// window is the active modal one, and typically fills in fields and closes it. No sleeping: the event
// loop is polled by a short timer. GUI thread only.
#pragma once

#include <QPointer>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <memory>

class QComboBox;
class QListWidget;

// Runs action(w) once the application's active modal widget is w and w's objectName is objectName (any
// modal widget when objectName is empty). The action runs queued, outside the polling timer, so it may
// itself open (and drive) further modal dialogs. Gives up after timeoutMs. The returned flag turns true
// when the action has started; check it after the blocking call returned.
std::shared_ptr<bool> WhenModal(const QString& objectName, std::function<void(QWidget*)> action,
                                int timeoutMs = 10000);

// The first child of parent with this objectName and type, or nullptr.
template <typename T> T* Child(const QWidget* parent, const char* objectName) {
    return parent ? parent->findChild<T*>(QString::fromLatin1(objectName)) : nullptr;
}

// Clicks the button with this objectName in parent with the mouse (focus moves as for a user). False
// when there is no such button or it is disabled or hidden.
bool ClickButton(QWidget* parent, const char* objectName);

// The texts of a list's or a combo box's lines, in order.
QStringList Items(const QListWidget* list);
QStringList Items(const QComboBox* combo);

// A user's double-click on a list line: the first click of it selects the line.
void DoubleClickRow(QListWidget* list, int row);
