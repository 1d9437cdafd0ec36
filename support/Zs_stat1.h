// A matrix of 32-bit counters addressed by a row name and a column name: the board counts its live notices
// per console node (rows) and severity text (columns). Names the object adds are standardised (trimmed,
// lower-cased; a blank row name is counted under "not set"); look-ups ignore letter case. Every operation
// that names a row or column creates it when missing, reading ones included.
// Owned by whoever creates it (the board keeps one in PVO_Node_Stats); not thread-safe: the board's thread.
// Counters are not range-checked and may go negative. Nothing throws except on memory exhaustion.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

class TStats_Obj {
public:
    // Copies the given lists as given (null: empty); every counter 0.
    TStats_Obj(const std::vector<std::string>* RowNames, const std::vector<std::string>* ColumnNames);

    std::string Standardise_Name(const std::string& Name, const std::string& Fallback) const;
    int32_t Find_Row(const std::string& RowName) const;
    int32_t Find_Column(const std::string& ColumnName) const;
    int32_t Add_Row(const std::string& RowName);       // -1 when present
    int32_t Add_Column(const std::string& ColumnName); // -1 when present

    void Add(const std::string& Row, const std::string& Column, int32_t Amount) {
        Change(Row, Column, Amount);
    }
    void Subtract(const std::string& Row, const std::string& Column, int32_t Amount) {
        Change(Row, Column, -int64_t(Amount));
    }
    void Inc(const std::string& Row, const std::string& Column) { Add(Row, Column, 1); }
    void Dec(const std::string& Row, const std::string& Column) { Subtract(Row, Column, 1); }
    int32_t Get_Count(const std::string& Row, const std::string& Column);
    int32_t Get_Row_Count(const std::string& Row);
    // Always -1 (creating the column when missing): the sum was never reached, and callers rely on that.
    int32_t Get_Column_Count(const std::string& Column);
    // Leaves both outputs untouched: the search was never written and nothing depends on it.
    void Get_Row_Max(const std::string& Row, std::string& Column, int32_t& Count);

    // The names in list order, for the summary window and tools.
    const std::vector<std::string>& RowNames() const { return FRowNames; }
    const std::vector<std::string>& ColumnNames() const { return FColumnNames; }
    const std::string& DefaultRowName() const { return FDefaultRowName; }
    // The counter at list positions (no names, nothing created); both indices must be in range.
    int32_t CountAt(int32_t Row, int32_t Column) const { return FCounts[Row][Column]; }

private:
    static int32_t IndexOf(const std::unordered_map<std::string, int32_t>& index, const std::string& name);
    static void Append(std::vector<std::string>& names, std::unordered_map<std::string, int32_t>& index,
                       const std::string& name);
    int32_t RowOf(const std::string& Row);
    int32_t ColumnOf(const std::string& Column);
    // Adds Amount to the counter, wrapping to 32 bits.
    void Change(const std::string& Row, const std::string& Column, int64_t Amount);

    std::vector<std::vector<int32_t>> FCounts; // [row][column]
    std::vector<std::string> FRowNames;
    std::vector<std::string> FColumnNames;
    std::string FDefaultRowName = "not set";
    std::unordered_map<std::string, int32_t> FRowIndex;
    std::unordered_map<std::string, int32_t> FColumnIndex;
};
