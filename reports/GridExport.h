// The spreadsheet export of the notice grid: the columns as the grid shows them (group columns first, then
// the visible columns in their order, with their captions) and the rows as it shows them (sorted, filtered,
// grouped rows without their headings), all rows or the selected ones. The file name's ending picks the
// format: ".xlsx" is Office Open XML (libxlsxwriter), ".csv" is UTF-8 CSV (RFC 4180), anything else is an
// Excel 97-2003 workbook (BIFF8, our own writer in reports/XlsWriter). Text stays text, numbers become
// numbers, date-times become dates with a date format; the header row is bold; columns get widths; rows
// beyond a sheet's limit continue on further sheets.
//
// The file appears only when complete: the export writes a temporary file in the target folder and renames
// it over the target at the end, so a failure or a cancel leaves any old file as it was and no half file.
// Board thread (the rows are read from the store while writing).
#pragma once

#include "core/TNoticeRecord.h"
#include "support/Exception.h"

#include <cstdint>
#include <string>
#include <vector>

// A column of the export: the field and the caption shown above it.
struct TExportColumn {
    TNoticeField Field = nf_nb_internal_key;
    std::string Caption;
};

// The rows to write, in order.
class IExportRows {
public:
    virtual ~IExportRows() = default;
    virtual int32_t Count() const = 0;
    virtual const TNoticeRecord* Row(int32_t Index) const = 0; // valid until the next call
};

// Progress of a long export; the board's progress dialog implements it.
class IExportProgress {
public:
    virtual ~IExportProgress() = default;
    // Rows written so far of Total; returns false to cancel (the export then raises EExportCancelled).
    virtual bool Progress(int32_t Done, int32_t Total) = 0;
};

// The export could not be written: the message names the file and says why ("Cannot create file ...:
// No space left on device").
class EExportError : public Exception {
public:
    using Exception::Exception;
    const char* ClassName() const noexcept override { return "EExportError"; }
};

// The user cancelled; nothing was written.
class EExportCancelled : public Exception {
public:
    using Exception::Exception;
    const char* ClassName() const noexcept override { return "EExportCancelled"; }
};

enum class TExportFormat { efXls, efXlsx, efCsv };

// The format a file name asks for (its ending, any letter case).
TExportFormat ExportFormatFor(const std::string& FileName);

// Writes Columns and Rows to FileName. Progress may be null. Raises EExportError or EExportCancelled.
void ExportGrid(const std::vector<TExportColumn>& Columns, const IExportRows& Rows,
                const std::string& FileName, IExportProgress* Progress = nullptr);
