// What the print and export dialog tests share: the board's notice grid as the dialogs see it (the
// report's fake grid, with real notices in a real store and columns, selection and node walk set by the
// test, that is also the export source the dialogs write), a CSV file read back, and showing a dialog as
// the active window. Header-only; GUI thread.
#pragma once

#include "adapters/TempFolder.h"
#include "reports/ReportGridFake.h"
#include "reports/ui/ExportSource.h"

#include "core/Znb_const.h"

#include <QCoreApplication>
#include <QDialog>
#include <QFileDialog>
#include <QLineEdit>
#include <QStringList>
#include <QTest>

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

class TFakeBoardGrid : public TFakeReportGrid, public IExportSource {
public:
    // Runs before every row the export reads, with the row's index (a test presses Cancel there).
    std::function<void(int32_t)> OnRow;

    std::vector<TExportColumn> ExportColumns() const override {
        std::vector<TExportColumn> columns;
        for (const std::vector<TReportColumn>* list : {&Groups, &Visible})
            for (const TReportColumn& c : *list) {
                TExportColumn column;
                FindNoticeField(c.FieldName, column.Field);
                column.Caption = c.Caption;
                columns.push_back(column);
            }
        return columns;
    }

    // All rows in key order, or the selected ones in that order.
    std::unique_ptr<IExportRows> ExportRows(bool SelectedOnly) const override {
        auto rows = std::make_unique<TRows>();
        rows->OnRow = OnRow;
        for (int32_t i = 1; i <= Store.RecordCount(); ++i) {
            const TNoticeRecord* row = Store.RowAt(i);
            const TBookmark key = row->AsInteger(nf_nb_internal_key);
            if (!SelectedOnly || std::find(Selected.begin(), Selected.end(), key) != Selected.end())
                rows->Rows.push_back(row);
        }
        return rows;
    }

    int SelectedCount() const override { return TFakeReportGrid::SelectedCount(); }

private:
    struct TRows : IExportRows {
        std::vector<const TNoticeRecord*> Rows;
        std::function<void(int32_t)> OnRow;
        int32_t Count() const override { return int32_t(Rows.size()); }
        const TNoticeRecord* Row(int32_t Index) const override {
            if (OnRow) OnRow(Index);
            return Rows[size_t(Index)];
        }
    };
};

// Three notices: two on node DB1, one on DB2; Summary, Severity and Count shown, grouped by node, the
// node walk as the grid shows them (a heading before each node's rows).
inline void FillThreeNotices(TFakeBoardGrid& Grid) {
    Grid.Add({"S1", "Disk <C:> & \"D\" full", "DB1", 3, 2, 0});
    Grid.Add({"S2", "line1\nline2", "DB1", 1, 1, 0});
    Grid.Add({"S3", "Backup late", "DB2", 4, 1, 0});
    Grid.Visible = {TFakeReportGrid::Column(nf_note_summary, "Summary"),
                    TFakeReportGrid::Column(nf_note_severity, "Severity"),
                    TFakeReportGrid::Column(nf_note_count, "Count")};
    Grid.Groups = {TFakeReportGrid::Column(nf_note_pvo_node, "PVO Node")};
    Grid.AddGroupNode(1);
    Grid.AddRowNode(1);
    Grid.AddRowNode(2);
    Grid.AddGroupNode(3);
    Grid.AddRowNode(3);
}

// The records of a CSV export, without its byte order mark; each record as written (quotes included).
inline QStringList CsvRecords(const std::string& FileName) {
    QString text = QString::fromStdString(ReadTextFile(FileName));
    if (text.startsWith(QChar(0xFEFF))) text.remove(0, 1);
    if (text.endsWith(QStringLiteral("\r\n"))) text.chop(2);
    return text.isEmpty() ? QStringList() : text.split(QStringLiteral("\r\n"));
}

// Shows Dialog (not modally) as the active window, so that focus moves as for a user.
inline void ShowActive(QDialog* Dialog) {
    Dialog->show();
    Dialog->activateWindow();
    if (!QTest::qWaitForWindowActive(Dialog)) qWarning("the dialog did not become active");
}

// Types FileName into a file dialog's name box and presses its Save button (what the user sees of the
// dialog's accept).
inline void SaveAs(QFileDialog* Dialog, const QString& FileName) {
    if (auto* name = Dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))) name->setText(FileName);
    static_cast<QDialog*>(Dialog)->accept();
}

// Lets queued answers that found no window run out, so that none is left for the next test.
inline void DrainQueuedAnswers() {
    for (int i = 0; i < 400; ++i)
        QCoreApplication::processEvents();
}
