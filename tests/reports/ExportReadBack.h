// What the export tests share: notices built field by field, and an exported file read back by real
// readers (python3-xlrd and openpyxl for workbooks, Python's csv module for CSV) through read_back.py.
#pragma once

#include "adapters/TempFolder.h"
#include "core/TNoticeRecord.h"
#include "reports/GridExport.h"

#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

struct TReadCell {
    std::string Type; // text, number, date
    std::string Text;
    double Number = 0;
};

struct TReadSheet {
    std::string Name;
    int Rows = 0, Columns = 0;
    std::map<std::pair<int, int>, TReadCell> Cells; // empty cells are absent
    std::map<std::pair<int, int>, bool> Bold;
    std::map<int, double> Widths;

    const TReadCell* Cell(int Row, int Col) const {
        auto it = Cells.find({Row, Col});
        return it == Cells.end() ? nullptr : &it->second;
    }
};

struct TReadBook {
    bool Read = false;  // the reader accepted the file
    std::string Errors; // what it said when it did not
    std::vector<TReadSheet> Sheets;
    bool Bom = false, EndsCrLf = false;
};

inline std::string FromHex(const std::string& Hex) {
    std::string out;
    if (Hex == "-") return out;
    for (size_t i = 0; i + 1 < Hex.size(); i += 2)
        out += static_cast<char>(std::stoi(Hex.substr(i, 2), nullptr, 16));
    return out;
}

inline std::string RunReadBack(const std::string& Args, const std::string& OutFile, std::string& Errors) {
    const std::string script = std::string(NB_SOURCE_DIR) + "/tests/reports/read_back.py";
    const std::string errFile = OutFile + ".err";
    const int rc =
        std::system(("/usr/bin/python3 " + script + " " + Args + " > " + OutFile + " 2> " + errFile).c_str());
    Errors = ReadTextFile(errFile);
    return rc == 0 ? ReadTextFile(OutFile) : std::string();
}

inline TReadBook ReadBack(const std::string& FileName) {
    TReadBook book;
    TTempFolder scratch;
    const std::string text = RunReadBack("book " + FileName, scratch / "out.txt", book.Errors);
    book.Read = !text.empty();
    std::istringstream in(text);
    std::string kind;
    while (in >> kind) {
        if (kind == "SHEET") {
            TReadSheet sheet;
            std::string index, name;
            in >> index >> name >> sheet.Rows >> sheet.Columns;
            sheet.Name = FromHex(name);
            book.Sheets.push_back(sheet);
        } else if (kind == "CELL") {
            size_t s;
            int r, c;
            TReadCell cell;
            std::string value;
            in >> s >> r >> c >> cell.Type >> value;
            if (cell.Type == "text")
                cell.Text = FromHex(value);
            else
                cell.Number = std::stod(value);
            book.Sheets.at(s).Cells[{r, c}] = cell;
        } else if (kind == "BOLD") {
            size_t s;
            int r, c, bold;
            in >> s >> r >> c >> bold;
            book.Sheets.at(s).Bold[{r, c}] = bold != 0;
        } else if (kind == "WIDTH") {
            size_t s;
            int c;
            double width;
            in >> s >> c >> width;
            book.Sheets.at(s).Widths[c] = width;
        } else if (kind == "BOM") {
            in >> book.Bom;
        } else if (kind == "ENDS_CRLF") {
            in >> book.EndsCrLf;
        }
    }
    return book;
}

// Field values of one notice; every field not set stays null.
class TNoticeBuilder {
public:
    TNoticeBuilder& Text(TNoticeField Field, std::string_view Value) {
        FRecord.SetString(Field, Value);
        return *this;
    }
    TNoticeBuilder& Int(TNoticeField Field, int32_t Value) {
        FRecord.SetInteger(Field, Value);
        return *this;
    }
    TNoticeBuilder& Date(TNoticeField Field, TDateTime Value) {
        FRecord.SetDateTime(Field, Value);
        return *this;
    }
    operator TNoticeRecord() const { return FRecord; }

private:
    TNoticeRecord FRecord;
};

// Exported notices numbered from 1: key, summary "Notice <n>", count n.
inline std::vector<TNoticeRecord> NumberedNotices(int Count) {
    std::vector<TNoticeRecord> rows;
    rows.reserve(Count);
    for (int n = 1; n <= Count; ++n)
        rows.push_back(TNoticeBuilder()
                           .Int(nf_nb_internal_key, n)
                           .Text(nf_note_summary, "Notice " + std::to_string(n))
                           .Int(nf_note_count, n));
    return rows;
}

inline std::vector<TExportColumn> KeySummaryCount() {
    return {{nf_nb_internal_key, "Key"}, {nf_note_summary, "Summary"}, {nf_note_count, "Count"}};
}
