#include "xml/XMLStrings.h"

#include "support/StrUtils.h"

const std::string& TXMLStrings::operator[](int32_t Index) const {
    if (Index < 0 || Index >= FCount) throw EListError::OutOfBounds(Index);
    return Line(Index);
}

std::string& TXMLStrings::operator[](int32_t Index) {
    if (Index < 0 || Index >= FCount) throw EListError::OutOfBounds(Index);
    return Line(Index);
}

void TXMLStrings::Add(std::string Line) {
    if (FCount == 0)
        FFirst = std::move(Line);
    else
        FMore.push_back(std::move(Line));
    ++FCount;
}

void TXMLStrings::Delete(int32_t Index) {
    if (Index < 0 || Index >= FCount) throw EListError::OutOfBounds(Index);
    if (Index == 0) {
        if (!FMore.empty()) {
            FFirst = std::move(FMore.front());
            FMore.erase(FMore.begin());
        } else {
            FFirst.clear();
        }
    } else {
        FMore.erase(FMore.begin() + (Index - 1));
    }
    --FCount;
}

void TXMLStrings::Clear() {
    FCount = 0;
    FFirst.clear();
    FMore.clear();
}

bool TXMLStrings::operator==(const TXMLStrings& Other) const {
    if (FCount != Other.FCount) return false;
    for (int32_t i = 0; i < FCount; ++i)
        if (Line(i) != Other.Line(i)) return false;
    return true;
}

std::string TXMLStrings::Text() const {
    size_t size = 0;
    for (int32_t i = 0; i < FCount; ++i)
        size += Line(i).size() + LineBreak.size();
    std::string text;
    text.reserve(size);
    for (int32_t i = 0; i < FCount; ++i) {
        text += Line(i);
        text += LineBreak;
    }
    return text;
}

std::string TXMLStrings::JoinedText() const {
    if (FCount == 1) return FFirst;
    std::string text = Text();
    if (!text.empty()) text.resize(text.size() - LineBreak.size());
    return text;
}

void TXMLStrings::SetText(std::string_view Text) {
    Clear();
    const char* p = Text.data();
    const char* end = p + Text.size();
    while (p < end) {
        const char* start = p;
        while (p < end && *p != '\r' && *p != '\n')
            ++p;
        Add(std::string(start, p));
        if (p < end && *p == '\r') ++p;
        if (p < end && *p == '\n') ++p;
    }
}

std::string TXMLStrings::Names(int32_t Index) const {
    const std::string& line = (*this)[Index];
    const size_t eq = line.find('=');
    return eq == std::string::npos ? std::string() : line.substr(0, eq);
}

int32_t TXMLStrings::IndexOfName(std::string_view Name) const {
    for (int32_t i = 0; i < FCount; ++i) {
        const std::string& line = Line(i);
        const size_t eq = line.find('=');
        if (eq != std::string::npos && SameText(std::string_view(line).substr(0, eq), Name)) return i;
    }
    return -1;
}

std::string TXMLStrings::Values(std::string_view Name) const {
    const int32_t i = IndexOfName(Name);
    if (i < 0) return {};
    const std::string& line = Line(i);
    return line.substr(line.find('=') + 1);
}

void TXMLStrings::SetValues(std::string_view Name, std::string_view Value) {
    const int32_t i = IndexOfName(Name);
    if (Value.empty()) {
        if (i >= 0) Delete(i);
        return;
    }
    std::string line;
    line.reserve(Name.size() + 1 + Value.size());
    line.append(Name).append(1, '=').append(Value);
    if (i < 0)
        Add(std::move(line));
    else
        Line(i) = std::move(line);
}
