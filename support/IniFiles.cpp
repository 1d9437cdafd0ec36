#include "support/IniFiles.h"

#include "platform/FileLock.h"
#include "support/Exception.h"
#include "support/StrUtils.h"

#include <SimpleIni.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

struct TIniFile::TImpl {
    // Case-insensitive sections and keys, one value per key, values on one line.
    CSimpleIniA Ini{false, false, false};
    // "key=value" without blanks, as other readers of these files expect.
    TImpl() { Ini.SetSpaces(false); }
};

namespace {

std::string ErrnoText(int err) {
    return std::strerror(err);
}

bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}

// One pair of matching quotes around the whole value, which reading takes off.
bool InQuotes(const std::string& Value) {
    return Value.size() >= 2 && (Value.front() == '"' || Value.front() == '\'') &&
           Value.back() == Value.front();
}

} // namespace

TIniFile::TIniFile(std::string FileName) : FFileName(std::move(FileName)), FImpl(std::make_unique<TImpl>()) {
    if (FFileName.empty() || !FileExists(FFileName)) return;
    // Anything SimpleIni cannot read leaves an empty file behind: settings then fall back to defaults.
    if (FImpl->Ini.LoadFile(FFileName.c_str()) < 0) FImpl->Ini.Reset();
}

TIniFile::~TIniFile() = default;

std::string TIniFile::ReadString(const std::string& Section, const std::string& Key,
                                 const std::string& Default) const {
    const char* v = FImpl->Ini.GetValue(Section.c_str(), Key.c_str(), nullptr);
    if (!v) return Default;
    std::string value(v);
    // One pair of matching quotes around a value is taken off, as private-profile readers always did,
    // so that hand-edited files may quote folder names with blanks.
    if (InQuotes(value)) value = value.substr(1, value.size() - 2);
    return value;
}

int32_t TIniFile::ReadInteger(const std::string& Section, const std::string& Key, int32_t Default) const {
    const std::string text = Trim(ReadString(Section, Key, std::string()));
    if (text.empty()) return Default;
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X'))
        return StrToIntDef("$" + text.substr(2), Default);
    return StrToIntDef(text, Default);
}

bool TIniFile::ReadBool(const std::string& Section, const std::string& Key, bool Default) const {
    return ReadInteger(Section, Key, Default ? 1 : 0) != 0;
}

void TIniFile::WriteString(const std::string& Section, const std::string& Key, const std::string& Value) {
    // A value is one line of the file: a line break in it (a folder name can hold one) would start new
    // keys or sections of its own, so breaks are written as blanks.
    std::string oneLine = Value;
    for (char& c : oneLine)
        if (c == '\n' || c == '\r') c = ' ';
    // Reading drops the blanks around a value and one pair of quotes around it. A value that has either
    // (a folder name quoted by hand for its trailing blank, say) goes inside one more pair of quotes, so
    // that it reads back as it was instead of changing at every save.
    if (!oneLine.empty() && (IsBlank(oneLine.front()) || IsBlank(oneLine.back()) || InQuotes(oneLine)))
        oneLine = '"' + oneLine + '"';
    FImpl->Ini.SetValue(Section.c_str(), Key.c_str(), oneLine.c_str());
}

void TIniFile::WriteInteger(const std::string& Section, const std::string& Key, int32_t Value) {
    WriteString(Section, Key, IntToStr(Value));
}

void TIniFile::WriteBool(const std::string& Section, const std::string& Key, bool Value) {
    WriteString(Section, Key, Value ? "1" : "0");
}

bool TIniFile::SectionExists(const std::string& Section) const {
    return FImpl->Ini.GetSection(Section.c_str()) != nullptr;
}

bool TIniFile::ValueExists(const std::string& Section, const std::string& Key) const {
    return FImpl->Ini.GetValue(Section.c_str(), Key.c_str(), nullptr) != nullptr;
}

void TIniFile::EraseSection(const std::string& Section) {
    FImpl->Ini.Delete(Section.c_str(), nullptr);
}

void TIniFile::DeleteKey(const std::string& Section, const std::string& Key) {
    FImpl->Ini.Delete(Section.c_str(), Key.c_str(), true);
}

std::vector<std::string> TIniFile::ReadSection(const std::string& Section) const {
    CSimpleIniA::TNamesDepend keys;
    std::vector<std::string> out;
    if (!FImpl->Ini.GetAllKeys(Section.c_str(), keys)) return out;
    keys.sort(CSimpleIniA::Entry::LoadOrder());
    for (const auto& k : keys)
        out.emplace_back(k.pItem);
    return out;
}

std::vector<std::string> TIniFile::ReadSections() const {
    CSimpleIniA::TNamesDepend sections;
    FImpl->Ini.GetAllSections(sections);
    sections.sort(CSimpleIniA::Entry::LoadOrder());
    std::vector<std::string> out;
    // SimpleIni reports keys before the first section header under the empty section name.
    for (const auto& s : sections)
        if (s.pItem && *s.pItem) out.emplace_back(s.pItem);
    return out;
}

std::vector<std::pair<std::string, std::string>>
TIniFile::ReadSectionValues(const std::string& Section) const {
    std::vector<std::pair<std::string, std::string>> out;
    for (const std::string& key : ReadSection(Section))
        out.emplace_back(key, ReadString(Section, key, ""));
    return out;
}

void TIniFile::UpdateFile() {
    std::string data;
    if (FImpl->Ini.Save(data) < 0) throw EInOutError("Cannot format ini file \"" + FFileName + "\"");
    std::string tmpl = ExtractFilePath(FFileName) + "." + ExtractFileName(FFileName) + ".XXXXXX";
    const int fd = ::mkstemp(tmpl.data());
    if (fd < 0) throw EInOutError("Cannot write ini file \"" + FFileName + "\": " + ErrnoText(errno));
    // Keep the old file's permissions; a new file gets the usual ones.
    struct stat st {};
    const mode_t mode = ::stat(FFileName.c_str(), &st) == 0 ? (st.st_mode & 07777) : 0644;
    ::fchmod(fd, mode);
    const bool written = WriteAll(fd, data) && ::fsync(fd) == 0;
    const int writeErr = errno;
    if (::close(fd) != 0 || !written) {
        ::unlink(tmpl.c_str());
        throw EInOutError("Cannot write ini file \"" + FFileName +
                          "\": " + ErrnoText(written ? errno : writeErr));
    }
    if (::rename(tmpl.c_str(), FFileName.c_str()) != 0) {
        const int err = errno;
        ::unlink(tmpl.c_str());
        throw EInOutError("Cannot write ini file \"" + FFileName + "\": " + ErrnoText(err));
    }
}
