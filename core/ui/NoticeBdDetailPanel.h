// The board window's detail panel: the current notice's fields under their captions, laid out in eight
// columns that keep their proportions to the panel's width (DetailPanelResize). A cut-off value is read in
// full in its tool tip.
//
// Owned by its parent (the board window's splitter); the store must outlive it. It shows nothing until the
// window switches its data source on (FormShow), then follows the store's current row and its changes.
// Board (GUI) thread only. Nothing throws.
#pragma once

#include "core/TNoticeStore.h"

#include <QFrame>

#include <memory>
#include <vector>

class QLabel;
namespace Ui {
class TNoticeBdDetailPanel;
}

// The scale applied to the panel's width before the column ratios (1: the ratios are of the panel's own
// width).
extern double DT_Scaling_Factor;
// The columns' left edges and widths as fractions of the scaled width, taken from the designed form when
// the first panel is built. 5a: the narrower data text of column 5; 6a: the control placed 42 pixels left
// of column 6.
extern double dp_col_0_left, dp_col_0_width, dp_col_1_left, dp_col_1_width, dp_col_2_left, dp_col_2_width,
    dp_col_3_left, dp_col_3_width, dp_col_4_left, dp_col_4_width, dp_col_5_left, dp_col_5_width,
    dp_col_5a_width, dp_col_6_left, dp_col_6_width, dp_col_6a_width, dp_col_7_left, dp_col_7_width;

class TNoticeBdDetailPanel : public QFrame, private INoticeStoreListener {
    Q_OBJECT
public:
    TNoticeBdDetailPanel(TNoticeStore& Store, QWidget* Parent = nullptr);
    ~TNoticeBdDetailPanel() override;

    // Start (or stop) showing the store's current row.
    void SetDataSourceEnabled(bool Enabled);
    bool DataSourceEnabled() const { return FEnabled; }

    // Reads the current row again.
    void Refresh();

    // Lays the columns out for the panel's present width.
    void DetailPanelResize();

protected:
    void resizeEvent(QResizeEvent* Event) override;

private:
    void DataSetChanged() override { Refresh(); }
    void RecordChanged(int32_t) override { Refresh(); }
    void CurrentChanged() override { Refresh(); }
    void ShowValue(QLabel* Label, const QString& Text);

    std::unique_ptr<Ui::TNoticeBdDetailPanel> ui;
    TNoticeStore& FStore;
    bool FEnabled = false;
};
