// The ordered line list the XML tree keeps its attributes ("name=value" lines) and its element text in.
// It behaves like the string lists the stored documents were written against: Text puts a line break
// after every line, SetText splits at CR LF, CR or LF, and name lookups ignore ASCII letter case.
// A plain value type; not thread-safe (one owner at a time).
#pragma once

#include "support/Exception.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class TXMLStrings {
public:
    // The line end of joined text: the platform's own.
#ifdef _WIN32
    static constexpr std::string_view LineBreak = "\r\n";
#else
    static constexpr std::string_view LineBreak = "\n";
#endif

    TXMLStrings() = default;
    TXMLStrings(std::initializer_list<std::string> lines) {
        for (const auto& line : lines)
            Add(line);
    }

    int32_t Count() const {
        return FCount;
    }
    bool Empty() const {
        return FCount == 0;
    }
    // Raises EListError for an index outside 0..Count-1.
    const std::string& operator[](int32_t Index) const;
    std::string& operator[](int32_t Index);
    void Add(std::string Line);
    void Delete(int32_t Index); // EListError when out of range
    void Clear();
    bool operator==(const TXMLStrings& Other) const;

    // Every line followed by LineBreak ("" for an empty list).
    std::string Text() const;
    // The lines joined by LineBreak, without the final one: the text a caller usually wants.
    std::string JoinedText() const;
    // Replaces the lines by Text split at CR LF, CR or LF; a final line break adds no empty line.
    void SetText(std::string_view Text);

    // "name=value" access. The name of a line is the part before its first '=' (empty when it has none);
    // names are compared ignoring ASCII case.
    std::string Names(int32_t Index) const;
    int32_t IndexOfName(std::string_view Name) const; // -1 when absent
    std::string Values(std::string_view Name) const;  // "" when absent
    // Overwrites the first line of that name in place (or appends one); an empty Value removes the line.
    void SetValues(std::string_view Name, std::string_view Value);

private:
    const std::string& Line(int32_t Index) const {
        return Index == 0 ? FFirst : FMore[static_cast<size_t>(Index - 1)];
    }
    std::string& Line(int32_t Index) {
        return Index == 0 ? FFirst : FMore[static_cast<size_t>(Index - 1)];
    }

    // Most element texts are one line: it is kept inline, so reading one costs no list allocation.
    int32_t FCount = 0;
    std::string FFirst;
    std::vector<std::string> FMore;
};
