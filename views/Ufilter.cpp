#include "views/Ufilter.h"

#include "support/NBPrompt.h"
#include "support/StrUtils.h"
#include "support/Zs_strings.h"

#include <algorithm>
#include <fstream>

const std::array<std::string, 6> FilterFieldsArray = {"boolop",   "leftPar", "fieldname",
                                                      "operator", "value",   "RightPar"};

namespace {

constexpr char ColumnSeparator = '\x02';
constexpr char LineSeparator = '\x03';
// Bytes of filter data read after the flag byte.
constexpr size_t MaxDataBytes = 9999;

} // namespace

void TFilter::Append() {
    const std::string boolop = FRows.empty() ? "" : "AND";
    std::string line = boolop;
    for (const char* column : {"(", "", "=", "", ")"}) {
        line += ColumnSeparator;
        line += column;
    }
    FRows.push_back(std::move(line));
    FCurrentRow = static_cast<int>(FRows.size()) - 1;
}

void TFilter::Delete(int Index) {
    if (Index < 0 || Index >= GetRowCount()) return;
    FRows.erase(FRows.begin() + Index);
}

void TFilter::SetRow(int Index) {
    if (Index < 0 || Index >= GetRowCount()) throw EFilterError("Tried to access non-existent row");
    FCurrentRow = Index;
}

std::string TFilter::GetFieldName(int Index) const {
    if (Index < 0 || Index >= GetFieldCount()) return {};
    return FilterFieldsArray[static_cast<size_t>(Index)];
}

int TFilter::GetColNum(const std::string& Name) const {
    for (size_t i = 0; i < FilterFieldsArray.size(); ++i) {
        if (SameText(FilterFieldsArray[i], Name)) return static_cast<int>(i);
    }
    return -1;
}

std::string TFilter::GetData(int Row, int Col) const {
    if (Row < 0 || Row >= GetRowCount()) return {};
    SetDelimiter(ColumnSeparator);
    const std::string& line = FRows[static_cast<size_t>(Row)];
    return GetToken(line, GetTokenPos(line, Col + 1));
}

void TFilter::setData(int Row, int Col, const std::string& Value) {
    if (Row < 0 || Row >= GetRowCount() || Value == GetData(Row, Col)) return;
    SetDelimiter(ColumnSeparator);
    std::string& line = FRows[static_cast<size_t>(Row)];
    const int pos = GetTokenPos(line, Col + 1);
    // An empty last column lies just past the end of the line, where the tokenizer cannot write; the
    // value then simply ends the line, so a right parenthesis taken away in the line editor can come back.
    if (pos == static_cast<int>(line.size()) + 1)
        line += Value;
    else
        ReplaceToken(line, Value, pos);
}

std::string TFilter::GetFieldByName(const std::string& Name) const {
    const int col = GetColNum(Name);
    if (col < 0) throw EFilterError("Invalid Fieldname: " + Name);
    return GetData(FCurrentRow, col);
}

void TFilter::SetFieldByName(const std::string& Name, const std::string& Value) {
    const int col = GetColNum(Name);
    if (col < 0) throw EFilterError("Invalid Fieldname: " + Name);
    if (GetData(FCurrentRow, col) != Value) setData(FCurrentRow, col, Value);
}

std::string TFilter::GetAsData() const {
    std::string data(1, HeaderFlag ? '1' : '0');
    for (size_t i = 0; i < FRows.size(); ++i) {
        if (i > 0) data += LineSeparator;
        data += FRows[i];
    }
    return data;
}

void TFilter::SetAsData(const std::string& Data) {
    HeaderFlag = !Data.empty() && Data[0] == '1';
    FRows.clear();
    const std::string rest = Data.size() > 1 ? Data.substr(1, MaxDataBytes) : std::string();
    const std::string delim(1, LineSeparator);
    int index = 1;
    std::string token;
    while (index >= 1 && static_cast<size_t>(index) <= rest.size()) {
        Parse(rest, delim, index, token);
        FRows.push_back(token);
    }
}

void TFilter::filterFromFile(const std::string& FileName) {
    if (!FileExists(FileName)) return; // a folder opens on some systems but is no filter
    std::ifstream in(FileName, std::ios::binary);
    if (!in) return;
    // SetAsData reads only the flag byte and the 9999 after it, so a huge file is not read whole.
    std::string data(1 + MaxDataBytes, '\0');
    in.read(data.data(), static_cast<std::streamsize>(data.size()));
    if (in.bad()) return;
    data.resize(static_cast<size_t>(in.gcount()));
    SetAsData(data);
}

void TFilter::filterToFile(const std::string& FileName) const {
    std::ofstream out(FileName, std::ios::binary | std::ios::trunc);
    if (!out) return;
    const std::string data = GetAsData();
    out.write(data.data(), static_cast<std::streamsize>(data.size()));
}

void TFilter::filterFromString(const std::string&) {
    NBPrompt().ShowMessage("Not implemented");
}

std::string TFilter::filterToString() {
    NBPrompt().ShowMessage("Not implemented");
    return {};
}

std::string TFilter::GetFilterString() const {
    std::string text;
    for (const auto& row : FRows) {
        text += row;
        text += "\r\n";
    }
    std::replace(text.begin(), text.end(), ColumnSeparator, ' ');
    return Trim(text);
}

const std::vector<std::string>& TFilter::GetListBoxItems() {
    FListBoxItems.clear();
    for (std::string item : FRows) {
        std::replace(item.begin(), item.end(), ColumnSeparator, ' ');
        FListBoxItems.push_back(std::move(item));
    }
    return FListBoxItems;
}
