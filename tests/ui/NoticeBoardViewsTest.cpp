// The display list, the new-display dialog and the board's displays button, with real files in a temporary
// notice board folder: what the list shows, "<Default>", Add copying the default or the selected display,
// Properties, Delete and its failure message, name checks, and the board's combo refilled and the chosen
// display applied after OK.
#include "views/ui/NoticeBoardViews.h"
#include "core/Nb_utils.h"
#include "core/ui/NoticeBdGrid.h"
#include "support/FilterDialogBench.h"
#include "support/ModalDriver.h"
#include "support/WidgetShots.h"
#include "views/ui/NBViewEditor.h"
#include "views/ui/NewViewDlg.h"

#include <QtTest>
#include <QtWidgets>

#include <filesystem>

namespace {

// Summary and node shown, summary sorted; no grid lines, no striping, red rows, blue lines.
const char* const Narrow =
    "[Grid]\nVersion=1\nnote_summary=0,200,1,asc,0,-1\nnote_pvo_node=1,80,1,none,-1,-1\n"
    "note_severity=2,60,0,none,-1,-1\nadpt_source_id=3,60,0,none,-1,-1\n"
    "[General]\nAutoColWidths=0\nAltRowColors=0\nShowGrid=0\nShowGroupPanel=1\n"
    "AltRowColor=00FF00\nGridColor=0000FF\nGridLineColor=FF0000\n";

QString Captions(QWidget* w, std::initializer_list<const char*> names) {
    QString captions;
    for (const char* name : names) {
        QObject* o = w->findChild<QObject*>(name);
        if (auto* label = qobject_cast<QLabel*>(o)) captions += label->text() + "|";
        if (auto* button = qobject_cast<QAbstractButton*>(o)) captions += button->text() + "|";
        if (auto* box = qobject_cast<QGroupBox*>(o)) captions += box->title() + "|";
    }
    return captions;
}

} // namespace

class NoticeBoardViewsTest : public QObject {
    Q_OBJECT
private slots:
    void init() { Bench = std::make_unique<TFilterDialogBench>(); }
    void cleanup() {
        Dlg.reset();
        Bench.reset();
    }

    void formListsTheFolderUnderDefault() {
        WriteDisplay("a", Narrow);
        WriteDisplay("b", Narrow);
        WriteTextFile(Bench->Board / "notes.nbf", "not a display");
        Open();
        QCOMPARE(Dlg->windowTitle(), QString("Notice Board Displays"));
        QCOMPARE(Captions(Dlg.get(), {"lblCurrentDisplayCaption", "lblSelectDisplay", "btnOK", "btnCancel",
                                      "btnAdd", "btnProperties", "btnDelete"}),
                 QString("Currently applied display:|Select a display to apply :|OK|Cancel|A&dd|&Properties|"
                         "De&lete|"));
        QStringList items = Items(List());
        QCOMPARE(items.takeFirst(), QString("<Default>"));
        items.sort();
        QCOMPARE(items, QStringList({"a", "b"}));
        QCOMPARE(Dlg->SelectedIndex(), 0);
        QVERIFY(List()->hasFocus());
        Dlg->SetCurrentDisplayName("a");
        Select("a");
        SaveShot(Dlg.get(), "noticeboardviews");
    }

    // Also a file that lists as "<Default>" further down: neither line opens an editor or deletes.
    void defaultIsNeitherEditedNorDeleted() {
        WriteDisplay("<Default>", Narrow);
        WriteDisplay("a", Narrow);
        Open();
        for (int row : {0, int(Items(List()).lastIndexOf("<Default>"))}) {
            Dlg->SelectIndex(row);
            QVERIFY(!W<QPushButton>("btnProperties")->isEnabled());
            QVERIFY(!W<QPushButton>("btnDelete")->isEnabled());
            const auto opened = WhenModal(
                "frmNBViewEditor", [](QWidget* e) { ClickButton(e, "btnCancel"); }, 200);
            DoubleClickRow(List(), row);
            QVERIFY(!*opened);
        }
        QVERIFY(HasDisplay("<Default>"));
        Select("a");
        QVERIFY(W<QPushButton>("btnProperties")->isEnabled());
        QVERIFY(W<QPushButton>("btnDelete")->isEnabled());
        const auto opened = WhenModal("frmNBViewEditor", [](QWidget* e) { ClickButton(e, "btnCancel"); });
        DoubleClickRow(List(), Items(List()).indexOf("a"));
        QVERIFY(*opened);
    }

    void newDisplayDialogChecksTheName() {
        TNB_NewViewDlg dlg;
        dlg.show();
        QVERIFY(QTest::qWaitForWindowActive(&dlg));
        QCOMPARE(dlg.windowTitle(), QString("Notice Board - New Display"));
        QCOMPARE(
            Captions(&dlg, {"lblNewViewName", "gbCopyFrom", "rbCopyDefaultView", "rbCopyCurrentView", "btnOK",
                            "btnCancel"}),
            QString("&Display name| Copy attributes from |D&efault display|&Current display|OK|Cancel|"));
        auto* edit = Child<QLineEdit>(&dlg, "EditNewViewName");
        auto* ok = Child<QPushButton>(&dlg, "btnOK");
        QVERIFY(edit->hasFocus());
        QVERIFY(dlg.CopyDefaultView());
        QVERIFY(!ok->isEnabled());
        QTest::keyClicks(edit, "   ");
        QVERIFY(!ok->isEnabled());

        const char* const invalid =
            "Error - The Display name contains an invalid character. Valid characters "
            "are: 'a..z, A..Z, 0..9, _, -'";
        const struct {
            QString Name;
            const char* Message; // none: accepted
        } cases[] = {
            {QString(33, 'x'), "Error - Display names are restricted to 32 characters"},
            {"my view", invalid},
            {QString(32, 'x'), nullptr},
        };
        for (const auto& c : cases) {
            Bench->Prompt.Messages.clear();
            edit->setText(c.Name);
            QVERIFY(ok->isEnabled());
            Child<QPushButton>(&dlg, "btnCancel")->setFocus();
            ok->click();
            if (!c.Message) {
                QVERIFY2(dlg.result() == QDialog::Accepted, qPrintable(c.Name));
                QVERIFY(Bench->Prompt.Messages.empty());
                dlg.setResult(QDialog::Rejected);
                dlg.show();
                continue;
            }
            QVERIFY2(dlg.isVisible(), qPrintable(c.Name));
            QCOMPARE(Bench->Prompt.Messages.size(), size_t(1));
            QCOMPARE(Bench->Prompt.Messages[0], std::string(c.Message));
            QVERIFY(edit->hasFocus());
        }
        SaveShot(&dlg, "newviewdlg");
    }

    // "D&efault display" is preset from the list's selection; the other button is left alone.
    void addCopiesTheDefaultOrTheSelectedDisplay() {
        WriteDisplay("narrow", Narrow);
        Open();
        TDisplay made;
        QStringList fields;
        QString title;
        bool defaultChecked = false, currentChecked = true;
        const auto addAs = [&](const QString& name, bool checkDefault) {
            WhenModal("NB_NewViewDlg", [&, name, checkDefault](QWidget* dlg) {
                defaultChecked = Child<QRadioButton>(dlg, "rbCopyDefaultView")->isChecked();
                currentChecked = Child<QRadioButton>(dlg, "rbCopyCurrentView")->isChecked();
                QTest::keyClicks(Child<QLineEdit>(dlg, "EditNewViewName"), name);
                if (checkDefault) Child<QRadioButton>(dlg, "rbCopyDefaultView")->click();
                WhenModal("frmNBViewEditor", [&](QWidget* w) {
                    auto* editor = static_cast<TfrmNBViewEditor*>(w);
                    made.Assign(editor->Display());
                    title = editor->windowTitle();
                    fields = CheckedFields(editor);
                    ClickButton(editor, "btnOK");
                });
                ClickButton(dlg, "btnOK");
            });
            QVERIFY(ClickButton(Dlg.get(), "btnAdd"));
        };

        addAs("fromDefault", false); // "<Default>" is selected
        QVERIFY(defaultChecked);
        QCOMPARE(title, QString("Notice Board Display Editor - fromDefault"));
        QCOMPARE(made.GridColor, clWindow);
        QVERIFY(made.ShowGrid);
        QCOMPARE(fields, QStringList({"Count", "Date Raised", "Severity", "Source ID", "Summary"}));
        QVERIFY(HasDisplay("fromDefault"));
        QCOMPARE(List()->currentItem()->text(), QString("fromDefault"));

        Select("narrow");
        addAs("fromNarrow", false);
        QVERIFY(!defaultChecked);
        QVERIFY(!currentChecked);
        QCOMPARE(made.GridColor, TColor(0x0000FF));
        QCOMPARE(made.GridLineColor, TColor(0xFF0000));
        QVERIFY(!made.ShowGrid);
        QCOMPARE(fields, QStringList({"Count", "Date Raised", "PVO Node", "Summary"}));
        const std::string saved = ReadTextFile(Bench->Board / "fromNarrow.nbd");
        QVERIFY(saved.find("GridColor=0000FF") != std::string::npos);
        QVERIFY(saved.find("note_summary=") != std::string::npos);

        Select("narrow");
        addAs("defaultAnyway", true);
        QCOMPARE(made.GridColor, clWindow);

        // Cancel in either dialog writes nothing.
        WhenModal("NB_NewViewDlg", [](QWidget* dlg) {
            QTest::keyClicks(Child<QLineEdit>(dlg, "EditNewViewName"), "never");
            WhenModal("frmNBViewEditor", [](QWidget* e) { ClickButton(e, "btnCancel"); });
            ClickButton(dlg, "btnOK");
        });
        QVERIFY(ClickButton(Dlg.get(), "btnAdd"));
        WhenModal("NB_NewViewDlg", [](QWidget* dlg) { ClickButton(dlg, "btnCancel"); });
        QVERIFY(ClickButton(Dlg.get(), "btnAdd"));
        QVERIFY(!HasDisplay("never"));
    }

    // The file's settings in the editor; OK saves under the name in the box, a new name keeps the old file.
    void propertiesLoadsTheDisplayAndARenameKeepsTheOldFile() {
        WriteDisplay("narrow", Narrow);
        Open();
        Select("narrow");
        QString name;
        uint32_t options = 0;
        bool groupPanel = true;
        WhenModal("frmNBViewEditor", [&](QWidget* w) {
            auto* editor = static_cast<TfrmNBViewEditor*>(w);
            name = Child<QLineEdit>(editor, "edtViewName")->text();
            options = editor->PreviewGrid().Options();
            groupPanel = Child<QCheckBox>(editor, "cbShowGroupPanel")->isChecked();
            Child<QCheckBox>(editor, "cbShowGrid")->click();
            Child<QLineEdit>(editor, "edtViewName")->setText("renamed");
            ClickButton(editor, "btnOK");
        });
        QVERIFY(ClickButton(Dlg.get(), "btnProperties"));
        QCOMPARE(name, QString("narrow"));
        QCOMPARE(options & (goRowIndicator | goFocusRect), uint32_t(goRowIndicator | goFocusRect));
        QVERIFY(!groupPanel); // a loaded display never shows the group panel
        QCOMPARE(ReadTextFile(Bench->Board / "narrow.nbd"), std::string(Narrow));
        QVERIFY(ReadTextFile(Bench->Board / "renamed.nbd").find("ShowGrid=1") != std::string::npos);
        // The list was read before the save: the new name shows from the next refresh on.
        QCOMPARE(Items(List()).indexOf("renamed"), -1);
    }

    void deleteRemovesTheFileOrSaysWhyNot() {
        for (const char* name : {"a", "b"})
            WriteDisplay(name, Narrow);
        std::filesystem::create_directory(Bench->Board / "dir.nbd");
        Open();
        Select("dir");
        const int row = Dlg->SelectedIndex();
        QVERIFY(ClickButton(Dlg.get(), "btnDelete"));
        QCOMPARE(Bench->Prompt.Messages, std::vector<std::string>{"Failed to delete the display file: " +
                                                                  Bench->Board.Path() + "dir.nbd"});
        QVERIFY(std::filesystem::is_directory(Bench->Board / "dir.nbd"));
        QCOMPARE(List()->count(), 4);
        QCOMPARE(Dlg->SelectedIndex(), row);

        Bench->Prompt.Messages.clear();
        Dlg->SelectIndex(1);
        const QString next = List()->item(2)->text();
        const std::string removed = List()->item(1)->text().toStdString();
        QVERIFY(ClickButton(Dlg.get(), "btnDelete"));
        QVERIFY(!HasDisplay(removed));
        QCOMPARE(List()->count(), 3);
        QCOMPARE(Dlg->SelectedIndex(), 1);
        QCOMPARE(List()->item(1)->text(), next);
        QVERIFY(Bench->Prompt.Messages.empty());
        QVERIFY(Bench->Prompt.Questions.empty());
    }

    // The board's side: the preview starts from the owner's grid and the chosen display is applied once;
    // Cancel applies nothing. (Refilling the combo is shared with the filters button and tested there.)
    void boardButtonAppliesTheChosenDisplayAndRefillsTheCombo() {
        WriteDisplay("a", Narrow);
        WriteDisplay("b", Narrow);
        QWidget board;
        auto* grid = new TNoticeBdGrid(Bench->Notices, &board);
        TGridLayout layout = grid->Layout();
        layout.Column(nf_ack_code).Visible = true; // a column the display file leaves as it finds it
        grid->SetLayout(layout);
        TFIleLister lister;
        lister.SetFilePattern("*.nbd");
        lister.SetFolderPath(Bench->Board.Path());
        lister.SetDefaultString("<Default>");
        QComboBox combo;
        for (const std::string& item : lister.Items)
            combo.addItem(QString::fromStdString(item));
        combo.setCurrentText("a");
        const int aIndex = combo.currentIndex();
        QStringList applied;
        const auto apply = [&] { applied << combo.currentText(); };
        int shownIndex = -2;
        QString shownName;
        bool previewTookBoardColumns = false;
        WhenModal("frmNoticeBoardViews", [&](QWidget* w) {
            auto* dlg = static_cast<TfrmNoticeBoardViews*>(w);
            shownIndex = dlg->SelectedIndex();
            shownName = Child<QLabel>(dlg, "lblCurrentDisplay")->text();
            WhenModal("frmNBViewEditor", [&](QWidget* e) {
                auto& preview = static_cast<TfrmNBViewEditor*>(e)->PreviewGrid();
                previewTookBoardColumns = preview.Layout().Column(nf_ack_code).Visible;
                ClickButton(e, "btnCancel");
            });
            ClickButton(dlg, "btnProperties");
            dlg->SelectIndex(Items(Child<QListWidget>(dlg, "lbViews")).indexOf("b"));
            ClickButton(dlg, "btnOK");
        });
        btnViewsClick(&board, Bench->Notices, combo, lister, apply);
        QCOMPARE(shownIndex, aIndex);
        QCOMPARE(shownName, QString("a"));
        QVERIFY(previewTookBoardColumns);
        QCOMPARE(applied, QStringList{"b"});

        WhenModal("frmNoticeBoardViews", [](QWidget* dlg) { ClickButton(dlg, "btnCancel"); });
        btnViewsClick(&board, Bench->Notices, combo, lister, apply);
        QCOMPARE(applied.size(), 1);
        QCOMPARE(combo.currentText(), QString("b"));
    }

private:
    void Open() {
        Dlg = std::make_unique<TfrmNoticeBoardViews>(Bench->Notices, nullptr);
        Dlg->show();
        QVERIFY(QTest::qWaitForWindowActive(Dlg.get()));
    }
    void WriteDisplay(const std::string& Name, const std::string& Text) const {
        WriteTextFile(Bench->Board / (Name + ".nbd"), Text);
    }
    bool HasDisplay(const std::string& Name) const { return FileExists(Bench->Board / (Name + ".nbd")); }
    template <typename T> T* W(const char* name) const { return Child<T>(Dlg.get(), name); }
    QListWidget* List() const { return W<QListWidget>("lbViews"); }
    void Select(const QString& name) { Dlg->SelectIndex(Items(List()).indexOf(name)); }
    static QStringList CheckedFields(QWidget* editor) {
        QStringList checked;
        auto* list = Child<QListWidget>(editor, "clbVisibleFields");
        for (int i = 0; i < list->count(); ++i)
            if (list->item(i)->checkState() == Qt::Checked) checked << list->item(i)->text();
        return checked;
    }

    std::unique_ptr<TFilterDialogBench> Bench;
    std::unique_ptr<TfrmNoticeBoardViews> Dlg;
};

QTEST_MAIN(NoticeBoardViewsTest)
#include "NoticeBoardViewsTest.moc"
