// The display editor on its own: its controls, the preview over a private copy of the notices in the
// board grid's order, the visible-fields list, the check boxes and colour choosers acting on the display
// and the preview at once, and SynchControls.
#include "views/ui/NBViewEditor.h"
#include "core/ui/NbColors.h"
#include "core/ui/NoticeBdGrid.h"
#include "support/FilterDialogBench.h"
#include "support/ModalDriver.h"
#include "support/WidgetShots.h"
#include "views/FilterApply.h"

#include <QtTest>
#include <QtWidgets>

namespace {

QStringList Entries(QWidget* editor, bool checkedOnly) {
    QStringList entries;
    auto* list = Child<QListWidget>(editor, "clbVisibleFields");
    for (int i = 0; i < list->count(); ++i)
        if (!checkedOnly || list->item(i)->checkState() == Qt::Checked) entries << list->item(i)->text();
    return entries;
}

void SetEntry(QWidget* editor, const QString& caption, bool checked) {
    auto* list = Child<QListWidget>(editor, "clbVisibleFields");
    list->findItems(caption, Qt::MatchExactly).first()->setCheckState(checked ? Qt::Checked : Qt::Unchecked);
}

// The middle of a row's source cell, which the bench's notices leave empty.
QRect SourceCell(TNoticeBdGrid& grid, int row) {
    return grid.visualRect(grid.model()->index(row, nf_adpt_source_id));
}

QColor RowColour(TNoticeBdGrid& grid, int row) {
    return grid.viewport()->grab().toImage().pixelColor(SourceCell(grid, row).center());
}

} // namespace

class NBViewEditorTest : public QObject {
    Q_OBJECT
private slots:
    void init() {
        Bench = std::make_unique<TFilterDialogBench>();
        Board = std::make_unique<TNoticeBdGrid>(Bench->Notices);
        Board->AssignColumnHeaders();
    }
    void cleanup() {
        Editor.reset();
        Board.reset();
        Bench.reset();
    }

    void formShowsEveryControlAndAPreviewLikeTheBoard() {
        Open();
        QCOMPARE(Editor->windowTitle(), QString("Display Properties"));
        QString captions;
        for (const char* name :
             {"lblViewName", "lblVisibleFields", "lblNormalColor", "lblAltColor", "lblGridlineColor",
              "btnNormalColor", "btnAltColor", "btnGridlineColor", "cbAltRowColors", "cbShowGrid",
              "cbAutoColWidths", "cbShowGroupPanel", "btnOK", "btnCancel", "btnHelp"})
            captions += Child<QAbstractButton>(Editor.get(), name)
                            ? Child<QAbstractButton>(Editor.get(), name)->text() + "|"
                            : Child<QLabel>(Editor.get(), name)->text() + "|";
        QCOMPARE(captions,
                 QString("Name|&Visible fields|Odd-numbered row color:|Even-numbered row color:|"
                         "Gridline color:|...|...|...|Use &alternating row colors|Show table &grid "
                         "lines|Size &column widths automatically|Sho&w group panel|OK|Cancel|Help|"));
        QCOMPARE(Child<QGroupBox>(Editor.get(), "gbAttributes")->title(), QString("Attributes"));

        TNoticeBdGrid* preview = Child<TNoticeBdGrid>(Editor.get(), "cfgGrid");
        QCOMPARE(preview, &Editor->PreviewGrid());
        QCOMPARE(preview->model()->rowCount(), 5);
        QCOMPARE(preview->model()->headerData(nf_note_summary, Qt::Horizontal).toString(),
                 QString("Summary"));
        // Sorted by summary as the board's grid is; severities read as the board shows them.
        QCOMPARE(preview->model()->index(0, nf_note_summary).data().toString(), QString("Backup failed"));
        QCOMPARE(preview->model()->index(0, nf_note_severity).data().toString(), QString("Critical"));
        QCOMPARE(preview->View().RebuildCount(), 0u); // the order was taken over, not sorted again
        SaveShot(Editor.get(), "nbvieweditor");
    }

    // The preview is the editor's own: the board changes under it, and it changes without the board.
    void thePreviewIsAPrivateCopy() {
        InstallFilterLanguage(Bench->Notices);
        Bench->Notices.SetFilterText("note_severity >= 3");
        Bench->Notices.SetFiltered(true);
        Open();
        QCOMPARE(Editor->PreviewGrid().model()->rowCount(), 3); // what the board's grid shows
        Bench->Notices.First();
        Bench->Notices.Delete();
        Bench->Notices.SetFiltered(false);
        QCOMPARE(Editor->PreviewDataSet().TotalCount(), 5);
        QCOMPARE(Editor->PreviewDataSet().RecordCount(), 3);
        QCOMPARE(Bench->Notices.TotalCount(), 4);
    }

    void visibleFieldsListTheCaptionsSortedAndSwitchColumns() {
        Open();
        Editor->UpdateVisibleFieldEditor();
        const QStringList all = Entries(Editor.get(), false);
        QCOMPARE(all.size(), NoticeFieldCount);
        QStringList sorted = all;
        sorted.sort();
        QCOMPARE(all, sorted);
        QCOMPARE(Entries(Editor.get(), true),
                 QStringList({"Count", "Date Raised", "Severity", "Source ID", "Summary"}));

        SetEntry(Editor.get(), "Summary", false);
        SetEntry(Editor.get(), "PVO Node", true);
        const TGridLayout layout = Editor->PreviewGrid().Layout();
        QVERIFY(!layout.Column(nf_note_summary).Visible);
        QVERIFY(layout.Column(nf_note_pvo_node).Visible);
        QVERIFY(layout.Column(nf_note_count).Visible);
        QCOMPARE(Editor->PreviewGrid().VisibleColumnCount(), 5);
        QVERIFY2(!Board->Layout().Column(nf_note_pvo_node).Visible, "the board's grid is not touched");
        // Filling again reads the preview's columns.
        Editor->UpdateVisibleFieldEditor();
        QCOMPARE(Entries(Editor.get(), true),
                 QStringList({"Count", "Date Raised", "PVO Node", "Severity", "Source ID"}));
    }

    void checkBoxesFollowTheDisplayAndSetIt() {
        Open();
        TDisplay& d = Editor->Display();
        TNoticeBdGrid& grid = Editor->PreviewGrid();
        d.SetGrid(&grid);
        const struct {
            const char* Box;
            bool TDisplay::*Field;
        } boxes[] = {{"cbAltRowColors", &TDisplay::AltRowColors},
                     {"cbShowGrid", &TDisplay::ShowGrid},
                     {"cbAutoColWidths", &TDisplay::AutoColWidths},
                     {"cbShowGroupPanel", &TDisplay::ShowGroupPanel}};
        for (const bool value : {true, false, true}) {
            for (const auto& b : boxes)
                d.*b.Field = value;
            Editor->SynchControls();
            for (const auto& b : boxes) {
                QCOMPARE(Child<QCheckBox>(Editor.get(), b.Box)->isChecked(), value);
                QCOMPARE(d.*b.Field, value);
            }
            QCOMPARE((grid.Options() & goAutoWidth) != 0, value);
        }
        for (const auto& b : boxes) {
            Child<QCheckBox>(Editor.get(), b.Box)->toggle(); // as a click does
            QVERIFY2(!(d.*b.Field), b.Box);
        }
        QCOMPARE(grid.Options() & goAutoWidth, 0u);
        // Striping shows in the preview at once.
        d.GridColor = RGBColor(200, 255, 200);
        d.AltColor = RGBColor(255, 200, 200);
        grid.SetGridColor(d.GridColor);
        QCOMPARE(RowColour(grid, 1), QColor(200, 255, 200));
        Child<QCheckBox>(Editor.get(), "cbAltRowColors")->click();
        QCOMPARE(RowColour(grid, 1), QColor(255, 200, 200));
    }

    // Each "..." starts from its swatch; a chosen colour goes to the swatch, the display and the preview;
    // cancelling the chooser changes nothing.
    void colourChoosersSetSwatchDisplayAndPreview() {
        Open();
        TDisplay& d = Editor->Display();
        TNoticeBdGrid& grid = Editor->PreviewGrid();
        d.SetGrid(&grid);
        CreateDefaultView(d);
        Editor->SynchControls();
        const struct {
            const char* Button;
            const char* Swatch;
            TColor TDisplay::*Field;
            int Row; // a row painted in that colour, -1: none
        } choosers[] = {{"btnNormalColor", "edtNormalColor", &TDisplay::GridColor, 0},
                        {"btnAltColor", "edtAltColor", &TDisplay::AltColor, 1},
                        {"btnGridlineColor", "edtGridlineColor", &TDisplay::GridLineColor, -1}};
        int n = 0;
        for (const auto& c : choosers) {
            const QColor chosen(40 + 60 * n++, 90, 200);
            auto* swatch = Child<QLineEdit>(Editor.get(), c.Swatch);
            const TColor before = d.*c.Field;
            QCOMPARE(swatch->palette().color(QPalette::Base), ToQColor(before));
            QColor offered;
            WhenModal("ColorDialog", [&](QWidget* w) {
                offered = static_cast<QColorDialog*>(w)->currentColor();
                static_cast<QColorDialog*>(w)->reject();
            });
            QVERIFY(ClickButton(Editor.get(), c.Button));
            QCOMPARE(offered, ToQColor(before));
            QCOMPARE(d.*c.Field, before);

            WhenModal("ColorDialog", [&](QWidget* w) {
                static_cast<QColorDialog*>(w)->setCurrentColor(chosen);
                static_cast<QColorDialog*>(w)->accept();
            });
            QVERIFY(ClickButton(Editor.get(), c.Button));
            QCOMPARE(d.*c.Field, FromQColor(chosen));
            QCOMPARE(swatch->palette().color(QPalette::Base), chosen);
            if (c.Row >= 0) QCOMPARE(RowColour(grid, c.Row), chosen);
        }
        const QRect cell = grid.visualRect(grid.model()->index(0, nf_note_summary));
        QCOMPARE(grid.viewport()->grab().toImage().pixelColor(cell.center().x(), cell.bottom()),
                 QColor(160, 90, 200));
    }

    // Rows in their severity's colour: off as the display says, its colours choosable only while on, and
    // what is chosen goes to the display and the preview's rows of that severity.
    void severityColoursFollowTheDisplayAndPaintItsRows() {
        Open();
        TDisplay& d = Editor->Display();
        TNoticeBdGrid& grid = Editor->PreviewGrid();
        d.SetGrid(&grid);
        CreateDefaultView(d); // severities 1, 2, 3, 4, 4 from the top
        Editor->SynchControls();
        auto* group = Child<QGroupBox>(Editor.get(), "gbSeverityColors");
        QVERIFY(!group->isChecked());
        QVERIFY(!Child<QToolButton>(Editor.get(), "btnSeverity4Color")->isEnabled());
        QCOMPARE(Child<QLineEdit>(Editor.get(), "edtSeverity2Color")->palette().color(QPalette::Base),
                 ToQColor(d.SeverityColors[1]));
        const QColor striped = RowColour(grid, 0);

        group->setChecked(true); // as a click on its title does
        QVERIFY(d.SeverityRowColors);
        QCOMPARE(RowColour(grid, 0), ToQColor(d.SeverityColors[0]));
        const QColor chosen(30, 140, 220);
        WhenModal("ColorDialog", [&](QWidget* w) {
            static_cast<QColorDialog*>(w)->setCurrentColor(chosen);
            static_cast<QColorDialog*>(w)->accept();
        });
        QVERIFY(ClickButton(Editor.get(), "btnSeverity4Color"));
        QCOMPARE(d.SeverityColors[3], FromQColor(chosen));
        QCOMPARE(RowColour(grid, 3), chosen);
        QCOMPARE(RowColour(grid, 4), chosen);
        SaveShot(Editor.get(), QStringLiteral("display-editor-severity-colours"));

        group->setChecked(false);
        QVERIFY(!d.SeverityRowColors);
        QCOMPARE(RowColour(grid, 0), striped);
    }

private:
    void Open() {
        TGridLayout layout = Board->Layout();
        layout.Column(nf_note_summary).Sort = TSortDirection::sdAscending;
        layout.Column(nf_note_summary).SortIndex = 0;
        Board->SetLayout(layout);
        Editor = std::make_unique<TfrmNBViewEditor>(Bench->Notices, Board.get());
        Editor->show();
        QVERIFY(QTest::qWaitForWindowExposed(Editor.get()));
    }

    std::unique_ptr<TFilterDialogBench> Bench;
    std::unique_ptr<TNoticeBdGrid> Board;
    std::unique_ptr<TfrmNBViewEditor> Editor;
};

QTEST_MAIN(NBViewEditorTest)
#include "NBViewEditorTest.moc"
