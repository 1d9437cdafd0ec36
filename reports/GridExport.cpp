#include "reports/GridExport.h"

#include "reports/ExportJob.h"
#include "support/StrUtils.h"

#include <cerrno>
#include <new>

TExportFormat ExportFormatFor(const std::string& FileName) {
    const std::string ext = LowerCase(ExtractFileExt(FileName));
    if (ext == ".xlsx") return TExportFormat::efXlsx;
    if (ext == ".csv") return TExportFormat::efCsv;
    return TExportFormat::efXls;
}

void ExportGrid(const std::vector<TExportColumn>& Columns, const IExportRows& Rows,
                const std::string& FileName, IExportProgress* Progress) {
    ExportGridWith(Columns, Rows, FileName, Progress, TExportOptions());
}

void ExportGridWith(const std::vector<TExportColumn>& Columns, const IExportRows& Rows,
                    const std::string& FileName, IExportProgress* Progress, const TExportOptions& Options) {
    try {
        TExportFile file(FileName, Options.MakeTemporary);
        TExportJob job(Columns, Rows, Progress, Options, FileName);
        job.Report(0);
        switch (ExportFormatFor(FileName)) {
        case TExportFormat::efXls:
            WriteXls(job, file);
            break;
        case TExportFormat::efXlsx:
            WriteXlsx(job, file);
            break;
        case TExportFormat::efCsv:
            WriteCsv(job, file);
            break;
        }
        file.Commit();
    } catch (const std::bad_alloc&) {
        // The temporary file is gone by now; the board goes on with the memory the export gave back.
        RaiseExportError(FileName, ENOMEM);
    }
}
