// Private-profile (ini) files: sections of "key=value" lines, keys and sections matched in any letter
// case, comments and order kept. The configuration file and the display files use it.
// A TIniFile reads the whole file when constructed and keeps it in memory; writes change only the memory
// copy until UpdateFile. It is a plain value owned by its creator; one thread at a time.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

class TIniFile {
public:
    // Reads FileName. A missing, empty, unreadable or malformed file reads as an empty file; this never
    // throws (except std::bad_alloc).
    explicit TIniFile(std::string FileName);
    ~TIniFile();
    TIniFile(const TIniFile&) = delete;
    TIniFile& operator=(const TIniFile&) = delete;

    const std::string& FileName() const { return FFileName; }

    // The value of Key in Section without surrounding blanks and one pair of surrounding quotes, or
    // Default when the key is missing.
    std::string ReadString(const std::string& Section, const std::string& Key,
                           const std::string& Default) const;
    // A decimal (or "$"/"0x" hexadecimal) integer; a missing or non-numeric value reads as Default.
    int32_t ReadInteger(const std::string& Section, const std::string& Key, int32_t Default) const;
    // The integer form: 0 is false, any other number true; a missing or non-numeric value reads as Default.
    bool ReadBool(const std::string& Section, const std::string& Key, bool Default) const;

    // Line breaks in Value are written as blanks, so a value never spills into other keys or sections. A
    // value with blanks around it, or quotes around it, is written in one more pair of quotes: whatever is
    // written reads back the same (line breaks aside).
    void WriteString(const std::string& Section, const std::string& Key, const std::string& Value);
    void WriteInteger(const std::string& Section, const std::string& Key, int32_t Value);
    void WriteBool(const std::string& Section, const std::string& Key, bool Value); // "1" / "0"

    bool SectionExists(const std::string& Section) const;
    bool ValueExists(const std::string& Section, const std::string& Key) const;
    void EraseSection(const std::string& Section);
    void DeleteKey(const std::string& Section, const std::string& Key);
    // Key names of Section, respectively section names, in file order.
    std::vector<std::string> ReadSection(const std::string& Section) const;
    std::vector<std::string> ReadSections() const;
    // Key and value pairs of Section in file order (values as ReadString gives them).
    std::vector<std::pair<std::string, std::string>> ReadSectionValues(const std::string& Section) const;

    // Writes the memory copy to FileName: a temporary file in the same folder renamed over the old one,
    // so readers see either the old or the new file, never half of one. Raises EInOutError on failure
    // (the old file is then left as it was).
    void UpdateFile();

private:
    struct TImpl;
    std::string FFileName;
    std::unique_ptr<TImpl> FImpl;
};
