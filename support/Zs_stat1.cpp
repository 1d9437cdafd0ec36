#include "support/Zs_stat1.h"

#include "support/StrUtils.h"

namespace {
int32_t Wrap(int64_t value) {
    return static_cast<int32_t>(static_cast<uint32_t>(value));
}
} // namespace

TStats_Obj::TStats_Obj(const std::vector<std::string>* RowNames,
                       const std::vector<std::string>* ColumnNames) {
    if (RowNames)
        for (const std::string& n : *RowNames)
            Append(FRowNames, FRowIndex, n);
    if (ColumnNames)
        for (const std::string& n : *ColumnNames)
            Append(FColumnNames, FColumnIndex, n);
    FCounts.assign(FRowNames.size(), std::vector<int32_t>(FColumnNames.size(), 0));
}

void TStats_Obj::Append(std::vector<std::string>& names, std::unordered_map<std::string, int32_t>& index,
                        const std::string& name) {
    index.emplace(LowerCase(name), static_cast<int32_t>(names.size())); // keeps the first of equal names
    names.push_back(name);
}

int32_t TStats_Obj::IndexOf(const std::unordered_map<std::string, int32_t>& index, const std::string& name) {
    const auto it = index.find(name); // name is standardised, so lower case already
    return it == index.end() ? -1 : it->second;
}

std::string TStats_Obj::Standardise_Name(const std::string& Name, const std::string& Fallback) const {
    const std::string_view s = TrimView(Name);
    if (s.empty()) return Fallback.empty() ? std::string() : Standardise_Name(Fallback, "");
    return LowerCase(s);
}

int32_t TStats_Obj::Find_Row(const std::string& RowName) const {
    return IndexOf(FRowIndex, Standardise_Name(RowName, FDefaultRowName));
}

int32_t TStats_Obj::Find_Column(const std::string& ColumnName) const {
    return IndexOf(FColumnIndex, Standardise_Name(ColumnName, ""));
}

int32_t TStats_Obj::Add_Row(const std::string& RowName) {
    const std::string name = Standardise_Name(RowName, FDefaultRowName);
    if (IndexOf(FRowIndex, name) >= 0) return -1;
    Append(FRowNames, FRowIndex, name);
    FCounts.resize(FRowNames.size(), std::vector<int32_t>(FColumnNames.size(), 0));
    return static_cast<int32_t>(FRowNames.size()) - 1;
}

int32_t TStats_Obj::Add_Column(const std::string& ColumnName) {
    const std::string name = Standardise_Name(ColumnName, "");
    if (IndexOf(FColumnIndex, name) >= 0) return -1;
    Append(FColumnNames, FColumnIndex, name);
    const int32_t c = static_cast<int32_t>(FColumnNames.size()) - 1;
    for (std::vector<int32_t>& row : FCounts)
        row.resize(FColumnNames.size(), 0);
    return c;
}

int32_t TStats_Obj::RowOf(const std::string& Row) {
    const int32_t r = Find_Row(Row);
    return r >= 0 ? r : Add_Row(Row);
}

int32_t TStats_Obj::ColumnOf(const std::string& Column) {
    const int32_t c = Find_Column(Column);
    return c >= 0 ? c : Add_Column(Column);
}

void TStats_Obj::Change(const std::string& Row, const std::string& Column, int64_t Amount) {
    const int32_t r = RowOf(Row);
    const int32_t c = ColumnOf(Column);
    if (r >= 0 && c >= 0) FCounts[r][c] = Wrap(FCounts[r][c] + Amount);
}

int32_t TStats_Obj::Get_Count(const std::string& Row, const std::string& Column) {
    const int32_t r = RowOf(Row);
    const int32_t c = ColumnOf(Column);
    return (r >= 0 && c >= 0) ? FCounts[r][c] : -1;
}

int32_t TStats_Obj::Get_Row_Count(const std::string& Row) {
    const int32_t r = RowOf(Row);
    if (r < 0) return -1;
    int64_t sum = 0;
    for (int32_t v : FCounts[r])
        sum += v;
    return Wrap(sum);
}

int32_t TStats_Obj::Get_Column_Count(const std::string& Column) {
    ColumnOf(Column); // the column is still created
    return -1;
}

void TStats_Obj::Get_Row_Max(const std::string&, std::string&, int32_t&) {}
