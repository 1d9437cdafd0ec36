// The engine's prompt on screen: real message boxes with the type's icon and caption, Yes/No answers, the
// confirmation form, the configuration dialog opener, installation for the prompt's lifetime, and the
// configuration's adapter question answered through it end to end.
#include "core/ui/QtPrompt.h"
#include "adapters/ZNB_Cfg.h"
#include "adapters/ui/DisplayDialog.h"
#include "support/MessageBoxAnswer.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QtTest>

class QtPromptTest : public QObject {
    Q_OBJECT
private slots:
    void InstalledForItsLifetime() {
        INBPrompt& silent = NBPrompt();
        {
            TQtPrompt outer(nullptr);
            QCOMPARE(&NBPrompt(), static_cast<INBPrompt*>(&outer));
            {
                TQtPrompt inner(nullptr);
                QCOMPARE(&NBPrompt(), static_cast<INBPrompt*>(&inner));
            }
            QCOMPARE(&NBPrompt(), static_cast<INBPrompt*>(&outer));
        }
        QCOMPARE(&NBPrompt(), &silent);
    }

    void MessagesShowTextIconAndCaptionOverTheOwner() {
        QWidget owner;
        TQtPrompt prompt(&owner);
        const struct {
            TMsgDlgType type;
            QMessageBox::Icon icon;
            const char* title;
        } cases[] = {
            {TMsgDlgType::mtWarning, QMessageBox::Warning, "Warning"},
            {TMsgDlgType::mtError, QMessageBox::Critical, "Error"},
            {TMsgDlgType::mtInformation, QMessageBox::Information, "Information"},
            {TMsgDlgType::mtConfirmation, QMessageBox::Question, "Confirm"},
        };
        // Markup stays as typed: engine texts are plain.
        const std::string text = "Error - <b>name</b> & \"x\"\nsecond line";
        for (const auto& c : cases) {
            TSeenMessageBox seen;
            AnswerNextMessageBox(QMessageBox::Ok, &seen);
            NBPrompt().ShowMessage(text, c.type);
            QVERIFY(seen.found);
            QCOMPARE(seen.text, QString::fromStdString(text));
            QVERIFY(seen.plainText);
            QCOMPARE(seen.icon, c.icon);
            QCOMPARE(seen.title, QString::fromLatin1(c.title));
            QCOMPARE(seen.buttons, QList<QMessageBox::StandardButton>{QMessageBox::Ok});
            QCOMPARE(seen.parent, &owner);
        }
    }

    void ConfirmIsYesOnlyForYes() {
        TQtPrompt prompt(nullptr);
        const struct {
            QMessageBox::StandardButton press;
            bool want;
        } cases[] = {{QMessageBox::Yes, true}, {QMessageBox::No, false}, {QMessageBox::NoButton, false}};
        for (const auto& c : cases) {
            TSeenMessageBox seen;
            AnswerNextMessageBox(c.press, &seen);
            QCOMPARE(prompt.Confirm("Overwrite the file?"), c.want);
            QVERIFY(seen.found);
            QCOMPARE(seen.text, QStringLiteral("Overwrite the file?"));
            QCOMPARE(seen.icon, QMessageBox::Question);
            QCOMPARE(seen.buttons.size(), 2);
            QVERIFY(seen.buttons.contains(QMessageBox::Yes) && seen.buttons.contains(QMessageBox::No));
            QCOMPARE(seen.defaultButton, QMessageBox::Yes);
        }
    }

    // The configuration's question about unconfigured adapters, answered on screen: Yes opens the
    // configuration dialog, and the ticked box stops the question for good.
    void AdapterQuestionThroughTheForm() {
        QWidget owner;
        TQtPrompt prompt(&owner);
        int opened = 0;
        prompt.SetConfigDialogOpener([&] { ++opened; });
        TNBConfig config;
        config.AlwaysPrompt = true;
        config.SetAdapterLoadable("R/Vista", true);

        QString asked;
        QWidget* parent = nullptr;
        WhenVisible<TDisplayDialog>([&](TDisplayDialog* d) {
            asked = d->findChild<QLabel*>("lblPrompt")->text();
            parent = d->parentWidget();
            d->findChild<QCheckBox*>("cbDontShowAgain")->setChecked(true);
            d->findChild<QPushButton*>("btnYes")->click();
        });
        QVERIFY(config.ConfigPrompt());
        QCOMPARE(asked,
                 QStringLiteral("R/Vista is installed but not configured - Do you wish to configure it?"));
        QCOMPARE(parent, &owner);
        QCOMPARE(opened, 1);
        QVERIFY(!config.AlwaysPrompt);
    }
};

QTEST_MAIN(QtPromptTest)
#include "QtPromptTest.moc"
