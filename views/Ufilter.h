// A filter: the user's named selection of notices, an ordered list of lines, each one condition made of
// six columns (boolop, leftPar, fieldname, operator, value, RightPar). TFilter holds one filter in memory,
// reads and writes it as a filter file (".nbf") and turns it into the expression the notice store
// evaluates. Owns its lines; board thread only (the column access uses the process-wide tokenizer).
#pragma once

#include "support/Exception.h"

#include <array>
#include <string>
#include <vector>

// The six column names of a filter line, in column order; looked up ignoring case.
extern const std::array<std::string, 6> FilterFieldsArray;

// Raised for a bad row index or column name; carries only its message.
class EFilterError : public Exception {
public:
    using Exception::Exception;
    const char* ClassName() const noexcept override { return "EFilterError"; }
};

class TFilter {
public:
    TFilter() = default;

    bool HeaderFlag = false; // kept from the loaded data and written back unchanged

    // Adds the line (boolop "" on the first line, "AND" after), "(", "", "=", "", ")" and makes it current.
    void Append();
    // Removes line Index (no effect outside the list); CurrentRow is left as it was.
    void Delete(int Index);
    // Makes line Index current; raises EFilterError "Tried to access non-existent row" when out of range.
    void SetRow(int Index);
    int GetCurrentRow() const { return FCurrentRow; }
    int GetRowCount() const { return static_cast<int>(FRows.size()); }
    int GetFieldCount() const { return 6; }
    std::string GetFieldName(int Index) const;
    // Column number of Name (any letter case), -1 when absent.
    int GetColNum(const std::string& Name) const;

    // Column Col (0..5) of line Row; empty for a row or column that does not exist.
    std::string GetData(int Row, int Col) const;
    // Replaces one column value of line Row in place when it differs; the other columns stay byte for byte.
    void setData(int Row, int Col, const std::string& Value);

    // The named column of the current line; EFilterError "Invalid Fieldname: " + Name for an unknown name.
    std::string GetFieldByName(const std::string& Name) const;
    void SetFieldByName(const std::string& Name, const std::string& Value);

    // The whole filter as one string: "1" or "0", then the lines joined by the byte 3.
    std::string GetAsData() const;
    // Replaces the lines by those of Data. Only the 9999 bytes after the flag byte are read: longer data
    // loses its tail silently, which the format relies on.
    void SetAsData(const std::string& Data);

    // Silent on failure: an unreadable file leaves the filter as it was, an uncreatable one is not written.
    void filterFromFile(const std::string& FileName);
    void filterToFile(const std::string& FileName) const;

    // Not implemented: both show "Not implemented" through NBPrompt() and change nothing.
    void filterFromString(const std::string& Text);
    std::string filterToString();

    // The filter expression: the lines one per text line, their columns one space apart, trimmed.
    std::string GetFilterString() const;
    // One item per line, the columns one space apart; the list stays owned by the filter.
    const std::vector<std::string>& GetListBoxItems();

private:
    std::vector<std::string> FRows;
    std::vector<std::string> FListBoxItems;
    int FCurrentRow = 0;
};
