// String and file-name helpers with the semantics the board's rules are written in: ASCII case folding,
// trimming of every control character and blank, whole-text replacement, 1-based positions where the
// rules count from 1. Pure functions; any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

constexpr char PathDelim = '/';

// Removes leading and trailing characters <= ' ' (blanks and control characters).
std::string Trim(std::string_view s);
std::string TrimLeft(std::string_view s);
std::string TrimRight(std::string_view s);
// Trim without copying: a view of s without its leading and trailing characters <= ' '.
std::string_view TrimView(std::string_view s);

// ASCII-only case mapping: bytes above 127 are left alone, so UTF-8 text passes through unchanged.
std::string LowerCase(std::string_view s);
std::string UpperCase(std::string_view s);
char UpCase(char c);

// Case-insensitive comparison (ASCII): <0, 0, >0.
int CompareText(std::string_view a, std::string_view b);
bool SameText(std::string_view a, std::string_view b);
bool StartsText(std::string_view prefix, std::string_view s);

// Replaces every occurrence of from (case-sensitive, or ignoring ASCII case) by to, scanning left to right
// without rescanning replaced text.
std::string ReplaceAll(std::string_view s, std::string_view from, std::string_view to,
                       bool ignoreCase = false);

// 0-based position of the first occurrence of needle in s at or after from, ignoring ASCII case; npos when
// absent.
size_t FindText(std::string_view s, std::string_view needle, size_t from = 0);
// 1-based position of the first occurrence of needle in s, 0 when absent.
size_t Pos(std::string_view needle, std::string_view s);
// Count characters of s from 1-based position Index, clipped to the text (empty when Index is outside it).
// A view into s: it lives as long as the text it was taken from.
std::string_view Copy(std::string_view s, size_t Index, size_t Count);

// Decimal conversions. StrToInt accepts an optional sign and decimal digits (and a "$"-prefixed hexadecimal
// value, as the original runtime did) within 32 bits and raises EConvertError
// ("'x' is not a valid integer value") for anything else. Leading blanks are skipped, trailing ones are not.
std::string IntToStr(int64_t value);
int32_t StrToInt(std::string_view s);
bool TryStrToInt(std::string_view s, int32_t& value);
int32_t StrToIntDef(std::string_view s, int32_t def);

// File names.
std::string IncludeTrailingPathDelimiter(std::string_view path);
std::string ExcludeTrailingPathDelimiter(std::string_view path);
std::string ExtractFilePath(std::string_view fileName); // folder with trailing separator, or empty
std::string ExtractFileName(std::string_view fileName); // after the last separator
std::string ExtractFileExt(std::string_view fileName);  // from the last '.' of the name part, or empty
bool FileExists(const std::string& fileName);           // a regular file (or a link to one)
bool DirectoryExists(const std::string& dirName);
// Reads the whole of fileName into bytes as they are. CannotRead covers a folder or a file that vanished
// while being read; bytes is then empty. Any thread.
enum class TFileRead { Read, CannotOpen, CannotRead };
TFileRead ReadFileBytes(const std::string& fileName, std::string& bytes);
// The same for callers that only care whether the file could be opened: false (bytes untouched) when it
// cannot; a folder or an unreadable file reads as empty.
bool ReadWholeFile(const std::string& fileName, std::string& bytes);
