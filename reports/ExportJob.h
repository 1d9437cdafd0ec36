// What the three file writers behind ExportGrid share: the columns as cells of one kind each, the rows,
// progress and cancelling, and the options tests change. One export, board thread.
#pragma once

#include "reports/ExportFile.h"
#include "reports/GridExport.h"

#include <cstdint>
#include <string>
#include <vector>

// What ExportGrid fixes and tests turn.
struct TExportOptions {
    int32_t XlsRowsPerSheet = 65535;    // under the header row, within the 65 536 rows of an .xls sheet
    int32_t XlsxRowsPerSheet = 1048575; // within the 1 048 576 rows of an .xlsx sheet
    int32_t ProgressEvery = 4096;       // rows between two progress reports
    TTemporaryFileMaker MakeTemporary;  // mkstemp when empty
};

// ExportGrid with other options.
void ExportGridWith(const std::vector<TExportColumn>& Columns, const IExportRows& Rows,
                    const std::string& FileName, IExportProgress* Progress, const TExportOptions& Options);

// How a column's values are written: as text, as the severity's text, as numbers, as dates.
enum class TCellKind { Text, Severity, Integer, Date };

struct TJobColumn {
    TNoticeField Field = nf_nb_internal_key;
    TCellKind Kind = TCellKind::Text;
    std::string Caption; // cleaned
    double Width = 10;   // in characters
};

class TExportJob {
public:
    // Reads a sample of the rows for the column widths.
    TExportJob(const std::vector<TExportColumn>& Columns, const IExportRows& Rows, IExportProgress* Progress,
               const TExportOptions& Options, std::string FileName);

    std::vector<TJobColumn> Columns;
    const IExportRows& Rows;
    const int32_t RowCount; // fixed when the export starts
    const TExportOptions& Options;
    const std::string FileName;
    std::string DateFormat;     // the spreadsheet number format of dates
    double AverageRowBytes = 0; // text of one row, from the sample

    // The row at Index; null when the rows shrank meanwhile (written as an empty row).
    const TNoticeRecord* Row(int32_t Index) const { return Index < Rows.Count() ? Rows.Row(Index) : nullptr; }
    // After each row: every ProgressEvery rows and after the last, tells the progress; EExportCancelled
    // when it answers false.
    void RowsDone(int32_t Done) {
        if (Done % Options.ProgressEvery == 0 || Done == RowCount) Report(Done);
    }
    void Report(int32_t Done);

private:
    IExportProgress* FProgress;
};

// A date-time that spreadsheets show as the same date: from 1 March 1900 (before it their day numbers are
// one off, for a 29 February 1900 that never was) to the end of 9999. Others are written as text.
inline bool IsSpreadsheetDate(TDateTime Value) {
    return Value >= 61 && Value < 2958466;
}

// Each writes the whole export into the temporary file.
void WriteXls(TExportJob& Job, TExportFile& File);
void WriteXlsx(TExportJob& Job, TExportFile& File);
void WriteCsv(TExportJob& Job, TExportFile& File);
