// The grid as an Office Open XML workbook, through libxlsxwriter in its constant-memory mode: each row goes
// to a temporary file as soon as the next one starts, so memory stays flat however many rows there are.
// Text reaches the library cleaned (valid UTF-8, no control characters XML forbids) and cut at Excel's
// 32 767 characters, so every cell is written; the library writes the file only when it is closed.
#include "core/Nb_utils.h"
#include "core/Znb_fieldtext.h"
#include "reports/ExportJob.h"
#include "reports/ExportText.h"
#include "support/StrUtils.h"

#include <xlsxwriter.h>

#include <cerrno>
#include <cstdio>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace {

// The workbook being written; abandoned without writing anything when the export fails or is cancelled.
class TXlsxBook {
public:
    explicit TXlsxBook(lxw_workbook* Book) : FBook(Book) {}
    ~TXlsxBook() {
        if (!FBook) return;
        // Freeing a workbook does not close the row files of constant-memory sheets (they are closed
        // only when the sheets are assembled), so they are closed here.
        for (lxw_worksheet* sheet : FSheets) {
            if (sheet->optimize_tmpfile) fclose(sheet->optimize_tmpfile);
            sheet->optimize_tmpfile = nullptr;
        }
        lxw_workbook_free(FBook);
    }
    TXlsxBook(const TXlsxBook&) = delete;
    TXlsxBook& operator=(const TXlsxBook&) = delete;

    lxw_workbook* Get() const { return FBook; }
    lxw_worksheet* AddSheet(const std::string& Name) {
        lxw_worksheet* sheet = workbook_add_worksheet(FBook, Name.c_str());
        if (!sheet) return nullptr;
        FSheets.push_back(sheet);
        struct stat st {};
        if (sheet->optimize_tmpfile && ::fstat(fileno(sheet->optimize_tmpfile), &st) == 0)
            FRowFiles.push_back({fileno(sheet->optimize_tmpfile), st.st_dev, st.st_ino});
        return sheet;
    }
    // Writes the file and frees the workbook, also when writing fails.
    lxw_error Close() {
        lxw_workbook* book = FBook;
        FBook = nullptr;
        const lxw_error error = workbook_close(book);
        if (error == LXW_NO_ERROR) return error;
        // When writing fails part way, the row files of the sheets not yet written stay open; their
        // descriptors are closed here (still the same files: the library never reopens them).
        for (const TRowFile& f : FRowFiles) {
            struct stat st {};
            if (::fstat(f.Fd, &st) == 0 && st.st_dev == f.Dev && st.st_ino == f.Ino) ::close(f.Fd);
        }
        return error;
    }

private:
    struct TRowFile {
        int Fd;
        dev_t Dev;
        ino_t Ino;
    };
    lxw_workbook* FBook;
    std::vector<lxw_worksheet*> FSheets;
    std::vector<TRowFile> FRowFiles;
};

class TXlsxSheets {
public:
    TXlsxSheets(TExportJob& Job, TXlsxBook& Book) : FJob(Job), FBook(Book) {
        lxw_workbook* book = Book.Get();
        FBold = workbook_add_format(book);
        format_set_bold(FBold);
        FDate = workbook_add_format(book);
        format_set_num_format(FDate, Job.DateFormat.c_str());
    }

    void Write() {
        const int32_t perSheet = FJob.Options.XlsxRowsPerSheet;
        AddSheet(0);
        for (int32_t r = 0, inSheet = 0; r < FJob.RowCount; ++r) {
            if (inSheet == perSheet) {
                AddSheet(r / perSheet);
                inSheet = 0;
            }
            ++inSheet;
            if (const TNoticeRecord* row = FJob.Row(r)) WriteRow(*row, static_cast<lxw_row_t>(inSheet));
            FJob.RowsDone(r + 1);
        }
    }

private:
    void Check(lxw_error Error) {
        if (Error != LXW_NO_ERROR) RaiseExportError(FJob.FileName, lxw_strerror(Error));
    }

    void AddSheet(int32_t Index) {
        const std::string name = Index == 0 ? "Notices" : "Notices (" + std::to_string(Index + 1) + ")";
        errno = 0;
        FSheet = FBook.AddSheet(name);
        if (!FSheet) RaiseExportError(FJob.FileName, errno ? errno : ENOMEM);
        for (size_t c = 0; c < FJob.Columns.size(); ++c) {
            const auto col = static_cast<lxw_col_t>(c);
            Check(worksheet_set_column(FSheet, col, col, FJob.Columns[c].Width, nullptr));
            Check(worksheet_write_string(FSheet, 0, col, FJob.Columns[c].Caption.c_str(), FBold));
        }
    }

    void WriteText(lxw_row_t Row, lxw_col_t Col, std::string_view Text) {
        if (Text.empty()) return;
        FText.assign(CleanCellText(Text, FBuffer, MaxCellUnits)); // the library wants it NUL-terminated
        Check(worksheet_write_string(FSheet, Row, Col, FText.c_str(), nullptr));
    }

    void WriteRow(const TNoticeRecord& Row, lxw_row_t At) {
        for (size_t c = 0; c < FJob.Columns.size(); ++c) {
            const TJobColumn& column = FJob.Columns[c];
            const auto col = static_cast<lxw_col_t>(c);
            if (Row.IsNull(column.Field)) continue;
            switch (column.Kind) {
            case TCellKind::Text:
                WriteText(At, col, Row.AsString(column.Field));
                break;
            case TCellKind::Severity:
                WriteText(At, col, Get_Severity_String(Row.AsInteger(column.Field)));
                break;
            case TCellKind::Integer:
                Check(worksheet_write_number(FSheet, At, col, Row.AsInteger(column.Field), nullptr));
                break;
            case TCellKind::Date: {
                const TDateTime value = Row.AsDateTime(column.Field);
                if (IsSpreadsheetDate(value))
                    Check(worksheet_write_number(FSheet, At, col, value, FDate));
                else
                    WriteText(At, col, FieldDisplayText(Row, column.Field));
                break;
            }
            }
        }
    }

    TExportJob& FJob;
    TXlsxBook& FBook;
    lxw_worksheet* FSheet = nullptr;
    lxw_format* FBold = nullptr;
    lxw_format* FDate = nullptr;
    std::string FBuffer, FText;
};

} // namespace

void WriteXlsx(TExportJob& Job, TExportFile& File) {
    File.CloseFd(); // the library opens the temporary file by name when it closes the workbook
    // Its own temporary files go beside the export: where the user chose to put that much data, rather
    // than in a /tmp that may live in memory.
    std::string folder = ExtractFilePath(File.TemporaryName());
    if (folder.empty()) folder = ".";
    lxw_workbook_options options{};
    options.constant_memory = LXW_TRUE;
    options.tmpdir = folder.data();
    // A zip entry over 4 GB needs the ZIP64 extensions, which older readers do not take: only when needed.
    const double estimate =
        Job.RowCount * (Job.AverageRowBytes + 40.0 * static_cast<double>(Job.Columns.size()));
    options.use_zip64 = estimate > 3e9 ? LXW_TRUE : LXW_FALSE;
    errno = 0;
    TXlsxBook book(workbook_new_opt(File.TemporaryName().c_str(), &options));
    if (!book.Get()) RaiseExportError(File.FileName(), errno ? errno : ENOMEM);
    TXlsxSheets(Job, book).Write();
    errno = 0;
    const lxw_error error = book.Close();
    if (error != LXW_NO_ERROR)
        RaiseExportError(File.FileName(),
                         errno ? std::generic_category().message(errno) : lxw_strerror(error));
}
