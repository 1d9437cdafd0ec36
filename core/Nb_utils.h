// Small helpers of the board: the severity text, the NUL-terminated buffers handed to adapters and the
// display name of a filter or display file. Pure functions; any thread.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

// The notice board folder with a trailing separator, where filter (".nbf") and display (".nbd") files
// are addressed as FilterFolder + name + extension by plain concatenation. The host console assigns it
// before it opens the board (the package exports it under this plain name); the board only reads it.
// While it is empty those names are relative to the current folder. Board thread only.
extern "C" std::string FilterFolder;

// The text of a severity number: 1 "Normal", 2 "Warning", 3 "Fatal", 4 "Critical". Any other number
// gives "" (the board never produces one).
std::string Get_Severity_String(int32_t Severity);

// A text as adapters take it: a buffer of exactly Length bytes, the text followed by one NUL, so Length
// is the text's length plus 1. The caller owns the buffer; it must outlive the adapter's use of it.
struct TpCharBuffer {
    std::unique_ptr<char[]> Buffer;
    int32_t Length = 0;
    char* Data() const { return Buffer.get(); }
};
TpCharBuffer Str_To_pChar(std::string_view Text);

// The extension's length is taken from the whole argument but the characters from the file-name part:
// a bare name loses its extension, a name with a folder comes back whole, extension included. Filter
// and display lists rely on this.
std::string StripExtension(std::string_view FileName);
