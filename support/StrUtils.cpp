#include "support/StrUtils.h"

#include "support/Exception.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sys/stat.h>

namespace {

char LowerChar(char c) {
    return (c >= 'A' && c <= 'Z') ? char(c + 32) : c;
}

} // namespace

std::string TrimLeft(std::string_view s) {
    size_t b = 0;
    while (b < s.size() && static_cast<unsigned char>(s[b]) <= ' ')
        ++b;
    return std::string(s.substr(b));
}

std::string TrimRight(std::string_view s) {
    size_t e = s.size();
    while (e > 0 && static_cast<unsigned char>(s[e - 1]) <= ' ')
        --e;
    return std::string(s.substr(0, e));
}

std::string_view TrimView(std::string_view s) {
    size_t b = 0, e = s.size();
    while (b < e && static_cast<unsigned char>(s[b]) <= ' ')
        ++b;
    while (e > b && static_cast<unsigned char>(s[e - 1]) <= ' ')
        --e;
    return s.substr(b, e - b);
}

std::string Trim(std::string_view s) {
    return std::string(TrimView(s));
}

char UpCase(char c) {
    return (c >= 'a' && c <= 'z') ? char(c - 32) : c;
}

std::string LowerCase(std::string_view s) {
    std::string r(s);
    for (char& c : r)
        c = LowerChar(c);
    return r;
}

std::string UpperCase(std::string_view s) {
    std::string r(s);
    for (char& c : r)
        c = UpCase(c);
    return r;
}

int CompareText(std::string_view a, std::string_view b) {
    const size_t n = a.size() < b.size() ? a.size() : b.size();
    for (size_t i = 0; i < n; ++i) {
        const unsigned char x = static_cast<unsigned char>(UpCase(a[i]));
        const unsigned char y = static_cast<unsigned char>(UpCase(b[i]));
        if (x != y) return x < y ? -1 : 1;
    }
    if (a.size() == b.size()) return 0;
    return a.size() < b.size() ? -1 : 1;
}

bool SameText(std::string_view a, std::string_view b) {
    return a.size() == b.size() && CompareText(a, b) == 0;
}

bool StartsText(std::string_view prefix, std::string_view s) {
    return s.size() >= prefix.size() && SameText(s.substr(0, prefix.size()), prefix);
}

std::string ReplaceAll(std::string_view s, std::string_view from, std::string_view to, bool ignoreCase) {
    if (from.empty() || from.size() > s.size()) return std::string(s);
    // Candidates are found by their first character (both cases when ignoring case) with find, which is
    // memchr, so a long text with few matches is copied in large pieces: the report fills templates with
    // tens of megabytes of rows.
    const char lower = LowerChar(from[0]);
    const char upper = UpCase(from[0]);
    const bool twoCases = ignoreCase && lower != upper;
    const char first = ignoreCase ? lower : from[0];
    size_t nextLower = s.find(first), nextUpper = twoCases ? s.find(upper) : std::string_view::npos;
    std::string out;
    out.reserve(s.size());
    size_t copied = 0, i = 0;
    const bool grows = to.size() > from.size();
    while (true) {
        if (nextLower < i) nextLower = s.find(first, i);
        if (twoCases && nextUpper < i) nextUpper = s.find(upper, i);
        const size_t p = nextLower < nextUpper ? nextLower : nextUpper;
        if (p == std::string_view::npos || p + from.size() > s.size()) break;
        const std::string_view part = s.substr(p, from.size());
        if (ignoreCase ? SameText(part, from) : part == from) {
            // Room for the rest of the text too, so a long replacement is not copied again when the rest
            // is appended.
            if (grows) out.reserve(out.size() + (p - copied) + to.size() + (s.size() - p - from.size()));
            out.append(s.substr(copied, p - copied));
            out.append(to);
            copied = i = p + from.size();
        } else {
            i = p + 1;
        }
    }
    out.append(s.substr(copied));
    return out;
}

size_t FindText(std::string_view s, std::string_view needle, size_t from) {
    if (needle.empty()) return from <= s.size() ? from : std::string_view::npos;
    const char lower = LowerChar(needle[0]), upper = UpCase(needle[0]);
    while (from + needle.size() <= s.size()) {
        size_t p = s.find(lower, from);
        if (upper != lower) p = std::min(p, s.find(upper, from));
        if (p == std::string_view::npos || p + needle.size() > s.size()) break;
        if (SameText(s.substr(p, needle.size()), needle)) return p;
        from = p + 1;
    }
    return std::string_view::npos;
}

size_t Pos(std::string_view needle, std::string_view s) {
    const size_t p = s.find(needle);
    return p == std::string_view::npos ? 0 : p + 1;
}

std::string_view Copy(std::string_view s, size_t Index, size_t Count) {
    if (Index < 1 || Index > s.size()) return {};
    return s.substr(Index - 1, Count);
}

std::string IntToStr(int64_t value) {
    return std::to_string(value);
}

bool TryStrToInt(std::string_view s, int32_t& value) {
    // Leading blanks are skipped, trailing ones are not, as the original runtime's conversion did.
    size_t i = 0;
    while (i < s.size() && s[i] == ' ')
        ++i;
    bool negative = false;
    if (i < s.size() && (s[i] == '+' || s[i] == '-')) negative = s[i++] == '-';
    int64_t acc = 0;
    if (i < s.size() && s[i] == '$') {
        ++i;
        if (i == s.size()) return false;
        for (; i < s.size(); ++i) {
            const char c = s[i];
            int d;
            if (c >= '0' && c <= '9')
                d = c - '0';
            else if (c >= 'a' && c <= 'f')
                d = c - 'a' + 10;
            else if (c >= 'A' && c <= 'F')
                d = c - 'A' + 10;
            else
                return false;
            acc = acc * 16 + d;
            if (acc > 0xFFFFFFFFLL) return false;
        }
        // A hexadecimal literal names the 32-bit pattern, as in the original runtime.
        const uint32_t bits = static_cast<uint32_t>(acc);
        value = static_cast<int32_t>(negative ? 0u - bits : bits); // wraps like the 32-bit original
        return true;
    }
    if (i == s.size()) return false;
    for (; i < s.size(); ++i) {
        const char c = s[i];
        if (c < '0' || c > '9') return false;
        acc = acc * 10 + (c - '0');
        if (acc > 2147483648LL) return false;
    }
    if (negative) acc = -acc;
    if (acc > 2147483647LL || acc < -2147483648LL) return false;
    value = static_cast<int32_t>(acc);
    return true;
}

int32_t StrToInt(std::string_view s) {
    int32_t v = 0;
    if (!TryStrToInt(s, v)) throw EConvertError("'" + std::string(s) + "' is not a valid integer value");
    return v;
}

int32_t StrToIntDef(std::string_view s, int32_t def) {
    int32_t v = 0;
    return TryStrToInt(s, v) ? v : def;
}

std::string IncludeTrailingPathDelimiter(std::string_view path) {
    std::string r(path);
    if (r.empty() || r.back() != PathDelim) r.push_back(PathDelim);
    return r;
}

std::string ExcludeTrailingPathDelimiter(std::string_view path) {
    std::string r(path);
    while (r.size() > 1 && r.back() == PathDelim)
        r.pop_back();
    return r;
}

std::string ExtractFilePath(std::string_view fileName) {
    const size_t p = fileName.rfind(PathDelim);
    return p == std::string_view::npos ? std::string() : std::string(fileName.substr(0, p + 1));
}

std::string ExtractFileName(std::string_view fileName) {
    const size_t p = fileName.rfind(PathDelim);
    return std::string(p == std::string_view::npos ? fileName : fileName.substr(p + 1));
}

std::string ExtractFileExt(std::string_view fileName) {
    const size_t dot = fileName.rfind('.');
    const size_t sep = fileName.rfind(PathDelim);
    if (dot == std::string_view::npos || (sep != std::string_view::npos && dot < sep)) return {};
    return std::string(fileName.substr(dot));
}

bool FileExists(const std::string& fileName) {
    struct stat st {};
    return !fileName.empty() && ::stat(fileName.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

bool DirectoryExists(const std::string& dirName) {
    struct stat st {};
    return !dirName.empty() && ::stat(dirName.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

TFileRead ReadFileBytes(const std::string& fileName, std::string& bytes) {
    std::ifstream file(fileName, std::ios::binary);
    if (!file) return TFileRead::CannotOpen;
    try {
        bytes.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    } catch (const std::exception&) { // a folder, a vanished file
        file.setstate(std::ios::badbit);
    }
    if (!file.bad()) return TFileRead::Read;
    bytes.clear();
    return TFileRead::CannotRead;
}

bool ReadWholeFile(const std::string& fileName, std::string& bytes) {
    std::string read;
    if (ReadFileBytes(fileName, read) == TFileRead::CannotOpen) return false;
    bytes = std::move(read);
    return true;
}
