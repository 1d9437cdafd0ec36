#include "xml/XMLStrings.h"

#include "support/StrUtils.h"

namespace {

[[noreturn]] void IndexError(int32_t Index) {
    throw EListError("List index out of bounds (" + std::to_string(Index) + ")");
}

} // namespace

const std::string& TXMLStrings::operator[](int32_t Index) const {
    if (Index < 0 || Index >= Count()) IndexError(Index);
    return FLines[static_cast<size_t>(Index)];
}

std::string& TXMLStrings::operator[](int32_t Index) {
    if (Index < 0 || Index >= Count()) IndexError(Index);
    return FLines[static_cast<size_t>(Index)];
}

void TXMLStrings::Delete(int32_t Index) {
    if (Index < 0 || Index >= Count()) IndexError(Index);
    FLines.erase(FLines.begin() + Index);
}

std::string TXMLStrings::Text() const {
    size_t size = 0;
    for (const auto& line : FLines)
        size += line.size() + LineBreak.size();
    std::string text;
    text.reserve(size);
    for (const auto& line : FLines) {
        text += line;
        text += LineBreak;
    }
    return text;
}

std::string TXMLStrings::JoinedText() const {
    if (FLines.size() == 1) return FLines.front();
    std::string text = Text();
    if (!text.empty()) text.resize(text.size() - LineBreak.size());
    return text;
}

void TXMLStrings::SetText(std::string_view Text) {
    FLines.clear();
    const char* p = Text.data();
    const char* end = p + Text.size();
    while (p < end) {
        const char* start = p;
        while (p < end && *p != '\r' && *p != '\n')
            ++p;
        FLines.emplace_back(start, p);
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
    for (size_t i = 0; i < FLines.size(); ++i) {
        const std::string& line = FLines[i];
        const size_t eq = line.find('=');
        if (eq != std::string::npos && SameText(std::string_view(line).substr(0, eq), Name))
            return static_cast<int32_t>(i);
    }
    return -1;
}

std::string TXMLStrings::Values(std::string_view Name) const {
    const int32_t i = IndexOfName(Name);
    if (i < 0) return {};
    const std::string& line = FLines[static_cast<size_t>(i)];
    return line.substr(line.find('=') + 1);
}

void TXMLStrings::SetValues(std::string_view Name, std::string_view Value) {
    const int32_t i = IndexOfName(Name);
    if (Value.empty()) {
        if (i >= 0) FLines.erase(FLines.begin() + i);
        return;
    }
    std::string line;
    line.reserve(Name.size() + 1 + Value.size());
    line.append(Name).append(1, '=').append(Value);
    if (i < 0)
        FLines.push_back(std::move(line));
    else
        FLines[static_cast<size_t>(i)] = std::move(line);
}
