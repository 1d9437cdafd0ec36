#include "support/ui/AccessibleNames.h"

#include <QLabel>

void NameBuddiesAfterTheirLabels(QWidget* Form) {
    for (QLabel* label : Form->findChildren<QLabel*>()) {
        QWidget* buddy = label->buddy();
        if (!buddy || !buddy->accessibleName().isEmpty()) continue;
        QString name = label->text().remove(QLatin1Char('&')).trimmed();
        while (name.endsWith(QLatin1Char(':')))
            name = name.chopped(1).trimmed();
        buddy->setAccessibleName(name);
    }
}
