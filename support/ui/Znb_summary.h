// The per-node summary window: the board's node counters (PVO_Node_Stats) as a table, one row per console
// node and one column per severity text. A diagnostic window opened from the board window's key combination.
//
// Ownership: created without a parent each time it is opened and shown without being modal; it deletes
// itself when closed (nobody else frees it). It reads PVO_Node_Stats at every refresh and keeps no pointer
// to it, so it may outlive the board; with no counters it shows an empty table. The "C&hart" button shows
// beside the table a bar per node stacked by severity (NodeSeverityChart), widening the window; hidden at
// first, so the window opens as it always did.
// GUI thread (the board's thread). Nothing throws.
#pragma once

#include <QDialog>
#include <memory>

namespace Ui {
class TFM_Summary;
}
class TNodeSeverityChart;
class TStringGrid;

class TFM_Summary : public QDialog {
    Q_OBJECT
public:
    explicit TFM_Summary(QWidget* parent = nullptr);
    ~TFM_Summary() override;

    // Copies the counters into the grid: the column names across the fixed row, the node names down the
    // fixed column, each counter at their crossing. Runs on show and on "&Update".
    void Refresh();

    TStringGrid* Grid() const;
    TNodeSeverityChart* Chart() const;
    // Shows or hides the chart (as the "C&hart" button does); the window widens by the chart's width.
    void ShowChart(bool Show);

protected:
    void showEvent(QShowEvent* event) override;

private:
    std::unique_ptr<Ui::TFM_Summary> ui;
    QSize FTableSize; // the window without the chart
};
