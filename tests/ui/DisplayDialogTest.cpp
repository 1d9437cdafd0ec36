// The shared confirmation form: its controls, and every way of closing it with the check box on and off.
#include "adapters/ui/DisplayDialog.h"
#include "support/MessageBoxAnswer.h"
#include "support/WidgetShots.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QtTest>

namespace {

const char* const kQuestion =
    "Duskmere and R/Vista are installed but not configured - Do you wish to configure them?";

enum class TClose { Yes, No, Escape, TitleBar };

void CloseBy(TDisplayDialog* d, TClose how) {
    switch (how) {
    case TClose::Yes:
        QTest::mouseClick(d->findChild<QPushButton*>("btnYes"), Qt::LeftButton);
        break;
    case TClose::No:
        QTest::mouseClick(d->findChild<QPushButton*>("btnNo"), Qt::LeftButton);
        break;
    case TClose::Escape:
        QTest::keyClick(d, Qt::Key_Escape);
        break;
    case TClose::TitleBar:
        d->close();
        break;
    }
}

} // namespace

class DisplayDialogTest : public QObject {
    Q_OBJECT
private slots:
    void FormShowsTheQuestionModallyOverItsParent() {
        QWidget owner;
        bool checked = false;
        QString prompt, box, yes, no, title;
        QWidget* parent = nullptr;
        WhenVisible<TDisplayDialog>([&](TDisplayDialog* d) {
            prompt = d->findChild<QLabel*>("lblPrompt")->text();
            box = d->findChild<QCheckBox*>("cbDontShowAgain")->text();
            yes = d->findChild<QPushButton*>("btnYes")->text();
            no = d->findChild<QPushButton*>("btnNo")->text();
            title = d->windowTitle();
            parent = d->parentWidget();
            SaveShot(d, QStringLiteral("displaydialog"));
            CloseBy(d, TClose::No);
        });
        ShowDisplayDialog(&owner, kQuestion, checked);
        QCOMPARE(prompt, QString::fromLatin1(kQuestion));
        QCOMPARE(box, QStringLiteral("Don't show me this message again"));
        QCOMPARE(yes, QStringLiteral("&Yes"));
        QCOMPARE(no, QStringLiteral("&No"));
        QCOMPARE(title, QStringLiteral("Confirm"));
        QCOMPARE(parent, &owner);
    }

    void AnswerAndCheckBoxForEveryWayOfClosing() {
        const struct {
            TClose how;
            bool tick;
            bool yes;
        } cases[] = {
            {TClose::Yes, false, true},      {TClose::Yes, true, true},     {TClose::No, false, false},
            {TClose::No, true, false},       {TClose::Escape, true, false}, {TClose::TitleBar, false, false},
            {TClose::TitleBar, true, false},
        };
        for (const auto& c : cases) {
            const QByteArray label = QByteArray::number(int(c.how)) + (c.tick ? " ticked" : " clear");
            WhenVisible<TDisplayDialog>([&](TDisplayDialog* d) {
                if (c.tick) QTest::mouseClick(d->findChild<QCheckBox*>("cbDontShowAgain"), Qt::LeftButton);
                CloseBy(d, c.how);
            });
            bool dontShowAgain = !c.tick; // the form must overwrite it
            QCOMPARE(ShowDisplayDialog(nullptr, "Shut down?", dontShowAgain), c.yes);
            QVERIFY2(dontShowAgain == c.tick, label.constData());
        }
    }
};

QTEST_MAIN(DisplayDialogTest)
#include "DisplayDialogTest.moc"
