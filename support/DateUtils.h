// The board's calendar type and its basic arithmetic, formatting and parsing.
// TDateTime counts days since 30 December 1899 00:00; the fraction is the time of day. For values before
// that day the time of day is the absolute value of the fraction, as in the calendar type the board's
// files and adapters were written against.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

using TDateTime = double;

constexpr double HoursPerDay = 24.0;
constexpr double SecsPerDay = 86400.0;
constexpr double MSecsPerDay = 86400000.0;
// Days between 1 January 0001 and 30 December 1899.
constexpr int32_t DateDelta = 693594;
// 1 January 1970 as a TDateTime.
constexpr double UnixDateDelta = 25569.0;

// Date and time formats and separators used by FormatDateTime and the locale parsers. The process-wide
// FormatSettings starts from the user's locale; code that needs other settings changes a copy, or saves
// and restores the global (see TFormatSettingsGuard). Board thread only for the global.
struct TFormatSettings {
    std::string ShortDateFormat = "dd/mm/yyyy";
    std::string LongDateFormat = "dd/mm/yyyy";
    std::string ShortTimeFormat = "hh:nn";
    std::string LongTimeFormat = "hh:nn:ss";
    char DateSeparator = '/';
    char TimeSeparator = ':';
    std::string TimeAMString = "AM";
    std::string TimePMString = "PM";
    int TwoDigitYearCenturyWindow = 50;
};

TFormatSettings& FormatSettings();
// The user's locale settings, as FormatSettings() starts.
TFormatSettings LocaleFormatSettings();

// Saves the global FormatSettings on construction and restores it on destruction, also on exceptions.
class TFormatSettingsGuard {
public:
    TFormatSettingsGuard() : FSaved(FormatSettings()) {}
    ~TFormatSettingsGuard() { FormatSettings() = FSaved; }
    TFormatSettingsGuard(const TFormatSettingsGuard&) = delete;
    TFormatSettingsGuard& operator=(const TFormatSettingsGuard&) = delete;

private:
    TFormatSettings FSaved;
};

bool IsLeapYear(int year);
int DaysInMonth(int year, int month);

// Encoding raises EConvertError ("Invalid argument to date encode" / "... time encode") on a date or time
// that does not exist; the Try forms return false instead.
bool TryEncodeDate(int year, int month, int day, TDateTime& result);
TDateTime EncodeDate(int year, int month, int day);
bool TryEncodeTime(int hour, int min, int sec, int msec, TDateTime& result);
TDateTime EncodeTime(int hour, int min, int sec, int msec);
TDateTime EncodeDateTime(int year, int month, int day, int hour, int min, int sec, int msec);

void DecodeDate(TDateTime dt, int& year, int& month, int& day);
void DecodeTime(TDateTime dt, int& hour, int& min, int& sec, int& msec);
void DecodeDateTime(TDateTime dt, int& year, int& month, int& day, int& hour, int& min, int& sec, int& msec);
int DayOfWeek(TDateTime dt); // 1 = Sunday .. 7 = Saturday

// The current local date and time (milliseconds kept), and today at midnight.
TDateTime Now();
TDateTime Date();

// Formats with the board's format letters: c (short date + long time, time left out at midnight), d dd ddd
// dddd ddddd dddddd, m mm mmm mmmm, yy yyyy, h hh, n nn, s ss, z zzz, t tt, am/pm a/p ampm, / and : for the
// separators, text in single or double quotes as is; an "m" right after an hour means minutes.
std::string FormatDateTime(std::string_view format, TDateTime dt, const TFormatSettings& settings);
std::string FormatDateTime(std::string_view format, TDateTime dt);

// Parses a date, a time, or a date and a time as the user types them under the given settings: numbers in
// the order of ShortDateFormat separated by DateSeparator (two numbers mean the current year; two-digit
// years use the century window), then hours[:minutes[:seconds[.milliseconds]]] with an optional AM/PM.
bool TryStrToDateTime(std::string_view text, TDateTime& result, const TFormatSettings& settings);
TDateTime StrToDateTime(std::string_view text, const TFormatSettings& settings); // EConvertError
TDateTime StrToDateTime(std::string_view text);
