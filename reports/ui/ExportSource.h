// What the print and export dialogs read of the board's notice grid to write a spreadsheet file: its
// columns as they are shown, its rows (all, or the selected ones) and how many rows are selected. The board
// window hands its grid over through TGridExportSource; tests hand a fake over a real notice store.
// Board thread only.
#pragma once

#include "reports/GridExport.h"

#include <memory>
#include <vector>

class IExportSource {
public:
    virtual ~IExportSource() = default;
    // Group columns first, then the visible columns in their order, with their captions.
    virtual std::vector<TExportColumn> ExportColumns() const = 0;
    // The rows in display order, without group headings: all of them, or the selected ones. The rows read
    // the grid's store and stay valid while the grid and its store live and the export runs.
    virtual std::unique_ptr<IExportRows> ExportRows(bool SelectedOnly) const = 0;
    virtual int SelectedCount() const = 0;
};

// Any grid with these three members as an export source (the board's TNoticeBdGrid). Holds a reference:
// the grid must outlive it.
template <class TGrid> class TGridExportSource final : public IExportSource {
public:
    explicit TGridExportSource(const TGrid& Grid) : FGrid(Grid) {}
    std::vector<TExportColumn> ExportColumns() const override { return FGrid.ExportColumns(); }
    std::unique_ptr<IExportRows> ExportRows(bool SelectedOnly) const override {
        return FGrid.ExportRows(SelectedOnly);
    }
    int SelectedCount() const override { return FGrid.SelectedCount(); }

private:
    const TGrid& FGrid;
};
