#include "support/ModalDriver.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDeadlineTimer>
#include <QListWidget>
#include <QTest>
#include <QTimer>

std::shared_ptr<bool> WhenModal(const QString& objectName, std::function<void(QWidget*)> action,
                                int timeoutMs) {
    auto started = std::make_shared<bool>(false);
    auto* timer = new QTimer(qApp);
    timer->setInterval(5);
    const QDeadlineTimer deadline(timeoutMs);
    QObject::connect(timer, &QTimer::timeout, timer, [=] {
        QWidget* modal = QApplication::activeModalWidget();
        const bool found =
            modal && modal->isVisible() && (objectName.isEmpty() || modal->objectName() == objectName);
        if (!found && !deadline.hasExpired()) return;
        timer->stop();
        timer->deleteLater();
        if (!found) return;
        *started = true;
        // Queued, so that an action that blocks in another dialog does not block inside this timer.
        QMetaObject::invokeMethod(
            qApp,
            [action, target = QPointer<QWidget>(modal)] {
                if (target) action(target);
            },
            Qt::QueuedConnection);
    });
    timer->start();
    return started;
}

bool ClickButton(QWidget* parent, const char* objectName) {
    auto* button = Child<QAbstractButton>(parent, objectName);
    if (!button || !button->isEnabled() || !button->isVisible()) return false;
    QTest::mouseClick(button, Qt::LeftButton);
    return true;
}

QStringList Items(const QListWidget* list) {
    QStringList items;
    for (int i = 0; i < list->count(); ++i)
        items << list->item(i)->text();
    return items;
}

QStringList Items(const QComboBox* combo) {
    QStringList items;
    for (int i = 0; i < combo->count(); ++i)
        items << combo->itemText(i);
    return items;
}

void DoubleClickRow(QListWidget* list, int row) {
    const QPoint at = list->visualItemRect(list->item(row)).center();
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, at);
}
