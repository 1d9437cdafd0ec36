// A grid of text cells in the manner of a classic string grid: a column and row count, leading fixed
// (header) rows and columns drawn as header cells, and a cell store that is independent of the counts, so
// a cell written outside the visible counts is kept (and shown once the counts grow) instead of being lost.
// Owned by its parent widget; GUI thread. Nothing throws; out-of-range sizes are clamped to 0.
#pragma once

#include <QHash>
#include <QList>
#include <QPoint>
#include <QTableView>

class TStringGridModel;

class TStringGrid : public QTableView {
    Q_OBJECT
    // Set from Designer forms; colWidths is a comma-separated list for the leading columns.
    Q_PROPERTY(int colCount READ ColCount WRITE SetColCount)
    Q_PROPERTY(int rowCount READ RowCount WRITE SetRowCount)
    Q_PROPERTY(int fixedCols READ FixedCols WRITE SetFixedCols)
    Q_PROPERTY(int fixedRows READ FixedRows WRITE SetFixedRows)
    Q_PROPERTY(int defaultColWidth READ DefaultColWidth WRITE SetDefaultColWidth)
    Q_PROPERTY(int defaultRowHeight READ DefaultRowHeight WRITE SetDefaultRowHeight)
    Q_PROPERTY(QString colWidths READ ColWidthsText WRITE SetColWidthsText)

public:
    explicit TStringGrid(QWidget* parent = nullptr);
    ~TStringGrid() override;

    int ColCount() const;
    int RowCount() const;
    int FixedCols() const;
    int FixedRows() const;
    // New columns get the default width, kept ones their own.
    void SetColCount(int Count);
    void SetRowCount(int Count);
    void SetFixedCols(int Count);
    void SetFixedRows(int Count);

    int DefaultColWidth() const { return FDefaultColWidth; }
    void SetDefaultColWidth(int Width);
    int DefaultRowHeight() const { return FDefaultRowHeight; }
    void SetDefaultRowHeight(int Height);
    int ColWidth(int Col) const;
    void SetColWidth(int Col, int Width);
    QString ColWidthsText() const;
    void SetColWidthsText(const QString& Widths);

    // Any cell, inside the counts or not; an unwritten cell reads empty.
    QString Cell(int Col, int Row) const;
    void SetCell(int Col, int Row, const QString& Text);
    // Empties every cell, kept or shown.
    void ClearCells();

private:
    TStringGridModel* FModel;
    int FDefaultColWidth = 64;
    int FDefaultRowHeight = 24;
};
