// The user's date and time formats, read from the system locale (LC_TIME, then LANG) and expressed in the
// board's format letters: d/dd day, m/mm month, yy/yyyy year, h/hh hour, n/nn minute, s/ss second,
// z/zzz millisecond, and "AM/PM" for a 12-hour clock. Two-digit years of the locale are widened to four,
// so that logs and conversions never lose the century.
#pragma once

#include <string>

struct TLocaleFormats {
    std::string ShortDateFormat; // e.g. "dd/mm/yyyy"
    std::string LongTimeFormat;  // e.g. "hh:nn:ss"
    char DateSeparator = '/';
    char TimeSeparator = ':';
};

// Reads the formats once per call; any thread.
TLocaleFormats UserLocaleFormats();
// The formats a user of the named locale ("de_DE", "ja_JP") would have; tests and tools use it to look at
// other users' settings. An unknown name gives the C locale's formats.
TLocaleFormats LocaleFormatsNamed(const std::string& name);
