// The filter list and the board's filters button, with real files in a temporary notice board folder:
// what the list shows, Add and Properties writing files, Delete, "<No Filter>", and the board's combo
// refilled and the chosen filter applied after OK.
#include "views/ui/NoticeBoardFilters.h"
#include "core/Nb_utils.h"
#include "core/TNoticeStore.h"
#include "support/FilterDialogBench.h"
#include "support/ModalDriver.h"
#include "support/WidgetShots.h"
#include "views/FilterApply.h"

#include <QtTest>
#include <QtWidgets>

namespace {

using B = TFilterDialogBench;

const std::string Severe = B::Data({B::Line("", "(", "note_severity", ">=", "3", ")")});

// Types into the editor's name box as a user does: all of it replaced.
void TypeName(QWidget* editor, const QString& name) {
    auto* edit = Child<QLineEdit>(editor, "edtFilterName");
    edit->setFocus(Qt::MouseFocusReason);
    edit->selectAll();
    QTest::keyClicks(edit, name);
}

} // namespace

class NoticeBoardFiltersTest : public QObject {
    Q_OBJECT
private slots:
    void init() { Bench = std::make_unique<TFilterDialogBench>(); }
    void cleanup() {
        Dlg.reset();
        Bench.reset();
    }

    void formListsTheFolderUnderNoFilter() {
        Bench->WriteFilter("a", Severe);
        Bench->WriteFilter("b", Severe);
        WriteTextFile(Bench->Board / "notes.txt", "not a filter");
        Open();
        QCOMPARE(Dlg->windowTitle(), QString("Notice Board Filters"));
        QString captions;
        for (const char* l : {"lblCurrentFilterCaption", "lblSelectFilter"})
            captions += W<QLabel>(l)->text() + "|";
        for (const char* b : {"btnOK", "btnCancel", "btnAdd", "btnProperties", "btnDelete"})
            captions += W<QPushButton>(b)->text() + "|";
        QCOMPARE(captions,
                 QString("Currently applied filter :|Select a filter to apply :|OK|Cancel|A&dd|&Properties|"
                         "De&lete|"));
        QStringList items = Items(List());
        QCOMPARE(items.takeFirst(), QString("<No Filter>"));
        items.sort();
        QCOMPARE(items, QStringList({"a", "b"}));
        QCOMPARE(Dlg->SelectedIndex(), 0);
        QVERIFY(List()->hasFocus());
        Dlg->SetCurrentFilterName("a");
        Select("a");
        SaveShot(Dlg.get(), "noticeboardfilters");
    }

    // Also a file that lists as "<No Filter>" further down.
    void noFilterIsNeitherEditedNorDeleted() {
        Bench->WriteFilter("<No Filter>", Severe);
        Bench->WriteFilter("a", Severe);
        Open();
        for (int row : {0, int(Items(List()).lastIndexOf("<No Filter>"))}) {
            Dlg->SelectIndex(row);
            QVERIFY(!W<QPushButton>("btnProperties")->isEnabled());
            QVERIFY(!W<QPushButton>("btnDelete")->isEnabled());
            const auto opened = WhenModal(
                "frmFilterEditor", [](QWidget* e) { ClickButton(e, "btnCancel"); }, 200);
            DoubleClickRow(List(), row);
            QVERIFY(!*opened); // an editor would have blocked the double-click until the action closed it
        }
        QVERIFY(Bench->HasFilter("<No Filter>"));
        Select("a");
        QVERIFY(W<QPushButton>("btnProperties")->isEnabled());
        QVERIFY(W<QPushButton>("btnDelete")->isEnabled());
        const auto opened = WhenModal("frmFilterEditor", [](QWidget* e) { ClickButton(e, "btnCancel"); });
        DoubleClickRow(List(), Items(List()).indexOf("a"));
        QVERIFY(*opened); // while a real filter's line does open it
    }

    void addWritesTheNewFilterAndSelectsIt() {
        Open();
        WhenModal("frmFilterEditor", [](QWidget* editor) {
            TypeName(editor, "Severe");
            WhenModal("FilterLineEditor", [](QWidget* line) {
                Child<QComboBox>(line, "cbFieldName")->setCurrentText("note_severity");
                Child<QComboBox>(line, "cbOperator")->setCurrentText(">=");
                QTest::keyClicks(Child<QLineEdit>(line, "EditValue"), "3");
                ClickButton(line, "btnOK");
            });
            ClickButton(editor, "btnAdd");
            ClickButton(editor, "btnOK");
        });
        QVERIFY(ClickButton(Dlg.get(), "btnAdd"));
        QCOMPARE(Bench->ReadFilter("Severe"), Severe);
        QCOMPARE(List()->currentItem()->text(), QString("Severe"));
        QVERIFY(W<QPushButton>("btnProperties")->isEnabled());
        WhenModal("frmFilterEditor", [](QWidget* editor) {
            TypeName(editor, "Other");
            ClickButton(editor, "btnCancel");
        });
        QVERIFY(ClickButton(Dlg.get(), "btnAdd"));
        QVERIFY(!Bench->HasFilter("Other"));
    }

    void propertiesLoadsTheFileAndARenameLeavesTheOldOne() {
        const std::string data = "1" + Severe.substr(1); // the header flag goes round unchanged
        Bench->WriteFilter("a", data);
        Open();
        Select("a");
        QString shownName, shownLine;
        WhenModal("frmFilterEditor", [&](QWidget* editor) {
            shownName = Child<QLineEdit>(editor, "edtFilterName")->text();
            shownLine = Child<QListWidget>(editor, "lbConditions")->item(0)->text();
            TypeName(editor, "a2");
            ClickButton(editor, "btnOK");
        });
        QVERIFY(ClickButton(Dlg.get(), "btnProperties"));
        QCOMPARE(shownName, QString("a"));
        QCOMPARE(shownLine, QString(" ( note_severity >= 3 )"));
        QCOMPARE(Bench->ReadFilter("a"), data);
        QCOMPARE(Bench->ReadFilter("a2"), data);
        QCOMPARE(List()->currentItem()->text(), QString("a2"));
    }

    // Without a question; the line that moves up is selected, nothing after the last line.
    void deleteRemovesTheFileAndSelectsTheNext() {
        for (const char* name : {"a", "b", "c"})
            Bench->WriteFilter(name, Severe);
        Open();
        const QString second = List()->item(3)->text();
        Dlg->SelectIndex(2);
        const std::string removed = List()->item(2)->text().toStdString();
        QVERIFY(ClickButton(Dlg.get(), "btnDelete"));
        QVERIFY(!Bench->HasFilter(removed));
        QCOMPARE(List()->count(), 3);
        QCOMPARE(Dlg->SelectedIndex(), 2);
        QCOMPARE(List()->item(2)->text(), second);
        QVERIFY(ClickButton(Dlg.get(), "btnDelete"));
        QCOMPARE(Dlg->SelectedIndex(), -1);
        QVERIFY(!W<QPushButton>("btnDelete")->isEnabled());
        Dlg->SelectIndex(1);
        QVERIFY(ClickButton(Dlg.get(), "btnDelete"));
        QCOMPARE(Items(List()), QStringList{"<No Filter>"});
        QVERIFY(Bench->Prompt.Questions.empty());
        QVERIFY(Bench->Prompt.Messages.empty());
        for (const char* name : {"a", "b", "c"})
            QVERIFY(!Bench->HasFilter(name));
    }

    void boardButtonAppliesTheChosenFilterAndRefillsTheCombo() {
        Bench->WriteFilter("a", B::Data({B::Line("", "(", "note_summary", "LIKE", "'Disk%'", ")")}));
        Bench->WriteFilter("sev", Severe);
        TFIleLister lister;
        lister.SetFilePattern("*.nbf");
        lister.SetFolderPath(Bench->Board.Path());
        lister.SetDefaultString(NoFilterName);
        QComboBox combo;
        for (const std::string& item : lister.Items)
            combo.addItem(QString::fromStdString(item));
        combo.setCurrentText("a");
        const int aIndex = combo.currentIndex();
        int applied = 0, signalled = 0;
        connect(&combo, &QComboBox::currentIndexChanged, this, [&] { ++signalled; });
        const auto apply = [&] {
            ++applied;
            ApplyFilter(combo.currentText().toStdString(), FilterFolder, Bench->Notices);
        };

        Bench->WriteFilter("new1", Severe); // not in the board's combo yet: there after OK
        int shownIndex = -2;
        QString shownName;
        WhenModal("frmNoticeBoardFilters", [&](QWidget* w) {
            auto* dlg = static_cast<TfrmNoticeBoardFilters*>(w);
            shownIndex = dlg->SelectedIndex();
            shownName = Child<QLabel>(dlg, "lblCurrentFilter")->text();
            auto* list = Child<QListWidget>(dlg, "lbFilters");
            dlg->SelectIndex(Items(list).indexOf("sev"));
            ClickButton(dlg, "btnOK");
        });
        btnFiltersClick(nullptr, Bench->Notices, combo, lister, apply);
        QCOMPARE(shownIndex, aIndex);
        QCOMPARE(shownName, QString("a"));
        QCOMPARE(applied, 1);
        QCOMPARE(signalled, 0);
        QCOMPARE(combo.currentText(), QString("sev"));
        QVERIFY(combo.findText("new1") > 0);
        QCOMPARE(combo.count(), int(lister.Items.size()));
        QCOMPARE(Bench->Notices.RecordCount(), 3);

        WhenModal("frmNoticeBoardFilters", [&](QWidget* dlg) {
            Bench->WriteFilter("new2", Severe);
            ClickButton(dlg, "btnCancel");
        });
        btnFiltersClick(nullptr, Bench->Notices, combo, lister, apply);
        QCOMPARE(applied, 1);
        QCOMPARE(combo.findText("new2"), -1);
        QCOMPARE(combo.currentText(), QString("sev"));
    }

private:
    void Open() {
        Dlg = std::make_unique<TfrmNoticeBoardFilters>(Bench->Notices);
        Dlg->show();
        QVERIFY(QTest::qWaitForWindowActive(Dlg.get()));
    }
    template <typename T> T* W(const char* name) const { return Child<T>(Dlg.get(), name); }
    QListWidget* List() const { return W<QListWidget>("lbFilters"); }
    void Select(const QString& name) { Dlg->SelectIndex(Items(List()).indexOf(name)); }

    std::unique_ptr<TFilterDialogBench> Bench;
    std::unique_ptr<TfrmNoticeBoardFilters> Dlg;
};

QTEST_MAIN(NoticeBoardFiltersTest)
#include "NoticeBoardFiltersTest.moc"
