// What the notice grid shows and hands on: row colours by the display, group headings and the node walk
// the report reads, the clipboard text and the export's columns and rows, and a layout kept in a display
// file.
#include "support/NoticeGridBench.h"

#include "adapters/ZNB_Cfg.h"
#include "core/ui/NbColors.h"
#include "core/ui/NoticeGridHeader.h"

#include <QClipboard>
#include <QMenu>
#include <QTemporaryDir>
#include <QtTest>

namespace {

std::vector<TTestNotice> OnNodes(int count, int nodes) {
    std::vector<TTestNotice> notices;
    for (int i = 0; i < count; ++i) {
        TTestNotice n;
        n.Key = "K" + std::to_string(i);
        n.Severity = i % 4 + 1;
        n.Summary = "S" + std::to_string(100 + i);
        n.Node = "NODE" + std::to_string(i % nodes);
        notices.push_back(n);
    }
    return notices;
}

TGridLayout GroupedBy(TGridLayout layout, TNoticeField field) {
    layout.Column(field).GroupIndex = 0;
    layout.Column(field).Sort = TSortDirection::sdAscending;
    return layout;
}

} // namespace

class NoticeBdGridDisplayTest : public QObject {
    Q_OBJECT
private slots:
    void RowColoursFollowTheDisplay() {
        TNoticeGridBench b;
        b.Post(OnNodes(6, 2));
        b.Display.GridColor = RGBColor(200, 255, 200);
        b.Display.AltColor = RGBColor(255, 200, 200);
        b.Display.Apply();
        b.ClickRow(2);
        const QImage shot = b.Grid->viewport()->grab().toImage();
        const QColor even(200, 255, 200), odd(255, 200, 200);
        QCOMPARE(RowColour(*b.Grid, 0), even);
        QCOMPARE(RowColour(*b.Grid, 1), odd);
        QCOMPARE(RowColour(*b.Grid, 2), b.Grid->palette().color(QPalette::Active, QPalette::Highlight));
        QCOMPARE(RowColour(*b.Grid, 3), odd);
        // Grid lines in the display's colour, at the bottom of each row.
        const QRect cell = b.Grid->visualRect(b.Grid->model()->index(0, nf_note_summary));
        QCOMPARE(shot.pixelColor(cell.center().x(), cell.bottom()), ToQColor(clSilver));

        b.Display.AltRowColors = false; // striping off: every row in the grid colour
        b.Grid->RefreshGrid();
        QCOMPARE(RowColour(*b.Grid, 1), even);
        b.Display.AltRowColors = true; // grouped: no striping either
        b.Grid->SetLayout(GroupedBy(b.Grid->Layout(), nf_note_pvo_node));
        QCOMPARE(RowColour(*b.Grid, 1), even);
        QCOMPARE(RowColour(*b.Grid, 2), even);
    }

    void GroupHeadingsCollapseExpandAndWalk() {
        TNoticeGridBench b;
        b.Post(OnNodes(9, 3));
        b.Grid->SetLayout(GroupedBy(b.Grid->Layout(), nf_note_pvo_node));
        QCOMPARE(b.Grid->model()->rowCount(), 12);
        QCOMPARE(b.Cell(4, nf_note_summary), QString("PVO Node: NODE1 (3)"));
        QVERIFY(b.Grid->horizontalHeader()->isSectionHidden(nf_note_pvo_node));
        QCOMPARE(b.Grid->GroupColumnCount(), 1);
        QCOMPARE(b.Grid->GroupColumn(0).FieldName, std::string("note_pvo_node"));
        QCOMPARE(b.Grid->GroupColumn(0).Caption, std::string("PVO Node"));
        QCOMPARE(b.Grid->VisibleColumnCount(), 5);

        b.ClickRow(4);
        QCOMPARE(b.Grid->CurrentKey(), 0); // a heading
        QTest::keyClick(b.Grid.get(), Qt::Key_Left);
        QCOMPARE(b.Grid->model()->rowCount(), 9);
        QCOMPARE(b.RowKeys()[5], 0); // NODE2's heading follows at once
        QTest::keyClick(b.Grid.get(), Qt::Key_Right);
        QCOMPARE(b.Grid->model()->rowCount(), 12);
        const QRect cell = b.Grid->visualRect(b.Grid->model()->index(0, nf_note_summary));
        QTest::mouseDClick(b.Grid->viewport(), Qt::LeftButton, {}, cell.center());
        QCOMPARE(b.Grid->model()->rowCount(), 9);
        QTest::mouseClick(b.Grid->viewport(), Qt::LeftButton, {}, QPoint(8, cell.center().y())); // its arrow
        QCOMPARE(b.Grid->model()->rowCount(), 12);
        QTest::mouseClick(b.Grid->viewport(), Qt::LeftButton, {}, QPoint(8, cell.center().y()));
        QCOMPARE(b.Grid->model()->rowCount(), 9);

        // A collapsed group keeps its state while its rows change, and shows its new count.
        b.Post({OnNodes(12, 3)[9]}); // a fourth notice on NODE0
        QCOMPARE(b.Grid->model()->rowCount(), 9);
        QCOMPARE(b.Cell(0, nf_note_summary), QString("PVO Node: NODE0 (4)"));
        b.Grid->SetAllGroupsExpanded(false);
        QCOMPARE(b.RowKeys(), (std::vector<int32_t>{0, 0, 0}));
        b.Grid->SetAllGroupsExpanded(true);
        QCOMPARE(b.Grid->model()->rowCount(), 13);

        // The walk the report reads skips the headings, which carry their group flag.
        int headings = 0, rows = 0;
        b.Grid->WalkNodes([&](const TGridNode& node) {
            (node.IsGroup ? headings : rows)++;
            return true;
        });
        QCOMPARE(headings, 3);
        QCOMPARE(rows, 10);
    }

    void CopyAndExportReadTheRowsInDisplayOrder() {
        TNoticeGridBench b;
        b.Post(OnNodes(4, 2));
        const std::vector<int32_t> rows = b.RowKeys();
        b.ClickRow(2);
        b.ClickRow(0, Qt::ControlModifier);
        const QString header = "Severity\tSource ID\tSummary\tDate Raised\tCount\n";
        const auto line = [&](int row) {
            return QStringList{b.Cell(row, nf_note_severity), b.Cell(row, nf_adpt_source_id),
                               b.Cell(row, nf_note_summary), b.Cell(row, nf_note_raised_date),
                               b.Cell(row, nf_note_count)}
                       .join('\t') +
                   '\n';
        };
        QCOMPARE(b.Grid->SelectionAsText(), header + line(0) + line(2));
        QTest::keyClick(b.Grid.get(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), header + line(0) + line(2));

        const std::vector<TExportColumn> columns = b.Grid->ExportColumns();
        QCOMPARE(columns.size(), size_t(5));
        QCOMPARE(columns[0].Caption + "|" + columns[4].Caption, std::string("Severity|Count"));
        const auto all = b.Grid->ExportRows(false);
        QCOMPARE(all->Count(), 4);
        for (int i = 0; i < 4; ++i)
            QCOMPARE(all->Row(i)->AsInteger(nf_nb_internal_key), rows[size_t(i)]);
        const auto selected = b.Grid->ExportRows(true);
        QCOMPARE(selected->Count(), 2);
        QCOMPARE(selected->Row(0)->AsInteger(nf_nb_internal_key), rows[0]);
        QCOMPARE(selected->Row(1)->AsInteger(nf_nb_internal_key), rows[2]);

        // Grouped, the export puts the group column first.
        b.Grid->SetLayout(GroupedBy(b.Grid->Layout(), nf_note_pvo_node));
        QCOMPARE(b.Grid->ExportColumns()[0].Caption, std::string("PVO Node"));
        QCOMPARE(b.Grid->ExportColumns().size(), size_t(6));
    }

    void ColumnsShareTheWidthAndTheMenuListsEveryCaption() {
        TNoticeGridBench b(800, 300);
        QHeaderView* header = b.Grid->horizontalHeader();
        const auto shownWidth = [&] {
            int sum = 0;
            for (int f = 0; f < NoticeFieldCount; ++f)
                sum += header->isSectionHidden(f) ? 0 : header->sectionSize(f);
            return sum;
        };
        QCOMPARE(shownWidth(), b.Grid->viewport()->width());
        // In proportion to the column table's widths: summary 100, source 50.
        QVERIFY(qAbs(header->sectionSize(nf_note_summary) - 2 * header->sectionSize(nf_adpt_source_id)) <= 2);
        // None narrower than its caption.
        QVERIFY(header->sectionSize(nf_note_severity) >
                header->fontMetrics().horizontalAdvance(b.Grid->ColumnCaption(nf_note_severity)));
        // A column the user widens keeps its size; the others share the rest.
        header->resizeSection(nf_adpt_source_id, 300);
        QVERIFY(qAbs(header->sectionSize(nf_adpt_source_id) - 300) <= 2);
        QCOMPARE(shownWidth(), b.Grid->viewport()->width());
        b.Grid->resize(1000, 300);
        QCOMPARE(shownWidth(), b.Grid->viewport()->width());

        auto* columns = static_cast<TNoticeGridHeader*>(header);
        const auto menu = columns->ColumnMenu(nf_note_summary, b.Grid->Layout());
        QStringList captions, grouping; // grouping: "-" for disabled
        for (QAction* action : menu->actions())
            if (action->isCheckable())
                captions << action->text() + (action->isChecked() ? "+" : "");
            else if (!action->isSeparator())
                grouping << action->text() + (action->isEnabled() ? "" : "-");
        QCOMPARE(captions.size(), NoticeFieldCount);
        QCOMPARE(captions.first(), QString("Key"));
        QVERIFY(captions.contains("Summary+") && captions.contains("Details"));
        QCOMPARE(grouping.join('|'),
                 QString("&Group by this column|&Ungroup-|&Expand All Groups-|&Collapse All Groups-"));
    }

    void LayoutKeptInADisplayFileComesBackTheSame() {
        QTemporaryDir folder;
        NBConfig = std::make_unique<TNBConfig>(folder.path().toStdString() + "/");
        NBConfig->NBFolder = folder.path().toStdString() + "/";
        TNoticeGridBench b;
        b.Post(OnNodes(8, 2));
        auto* header = static_cast<TNoticeGridHeader*>(b.Grid->horizontalHeader());
        QSignalSpy user(b.Grid.get(), &TNoticeBdGrid::LayoutChangedByUser);
        header->moveSection(header->visualIndex(nf_note_summary), 0);
        header->ColumnMenu(nf_note_count, b.Grid->Layout())->findChild<QAction*>("note_count")->trigger();
        header->ColumnMenu(nf_adpt_orig_server, b.Grid->Layout())
            ->findChild<QAction*>("adpt_orig_server")
            ->trigger();
        header->resizeSection(nf_note_summary, 300);
        b.ClickHeader(nf_note_raised_date);
        header->ColumnMenu(nf_note_pvo_node, b.Grid->Layout())
            ->findChild<QAction*>("GroupByColumn")
            ->trigger();
        QCOMPARE(user.count(), 6);
        QVERIFY(header->isSectionHidden(nf_note_count) && !header->isSectionHidden(nf_adpt_orig_server));
        b.Display.SaveToFile("Mine");

        TNoticeGridBench other;
        other.Display.LoadFromFile("Mine");
        QCOMPARE(other.Grid->Layout(), b.Grid->Layout());
        QHeaderView* again = other.Grid->horizontalHeader();
        for (int visual = 0; visual < NoticeFieldCount; ++visual) {
            const int f = header->logicalIndex(visual);
            QCOMPARE(again->logicalIndex(visual), f);
            QCOMPARE(again->isSectionHidden(f), header->isSectionHidden(f));
            if (!header->isSectionHidden(f)) QCOMPARE(again->sectionSize(f), header->sectionSize(f));
        }
        QCOMPARE(other.Grid->View().GroupColumns(), b.Grid->View().GroupColumns());
        QCOMPARE(other.Grid->View().SortColumns(), b.Grid->View().SortColumns());
        header->ColumnMenu(nf_note_summary, b.Grid->Layout())->findChild<QAction*>("UngroupAll")->trigger();
        QVERIFY(b.Grid->View().GroupColumns().empty());
        QCOMPARE(user.count(), 7);
        NBConfig.reset();
    }
};

QTEST_MAIN(NoticeBdGridDisplayTest)
#include "NoticeBdGridDisplayTest.moc"
