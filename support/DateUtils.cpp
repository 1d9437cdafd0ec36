#include "support/DateUtils.h"

#include "platform/LocaleFormats.h"
#include "support/Exception.h"
#include "support/StrUtils.h"

#include <chrono>
#include <cmath>
#include <ctime>
#include <sys/time.h>

namespace {

const char* const ShortMonthNames[12] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                         "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
const char* const LongMonthNames[12] = {"January",   "February", "March",    "April",
                                        "May",       "June",     "July",     "August",
                                        "September", "October",  "November", "December"};
const char* const ShortDayNames[7] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
const char* const LongDayNames[7] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                     "Thursday", "Friday", "Saturday"};

// Whole days since 1 January 0001 (day 1) and milliseconds of the day, with the time of day taken from the
// absolute fraction.
void ToTimeStamp(TDateTime dt, int64_t& days, int64_t& msecs) {
    // NaN, infinities and values far outside any calendar decode as day 0 (all date parts zero) rather
    // than overflow the integer conversions below.
    if (!std::isfinite(dt) || std::fabs(dt) > 1e9) {
        days = msecs = 0;
        return;
    }
    const double whole = std::trunc(dt);
    int64_t ms = static_cast<int64_t>(std::llround(std::fabs(dt - whole) * MSecsPerDay));
    days = static_cast<int64_t>(whole) + DateDelta;
    if (ms >= static_cast<int64_t>(MSecsPerDay)) {
        ms -= static_cast<int64_t>(MSecsPerDay);
        days += dt < 0 ? -1 : 1;
    }
    msecs = ms;
}

std::string Pad(int value, int width) {
    std::string s = std::to_string(value < 0 ? -value : value);
    while (static_cast<int>(s.size()) < width)
        s.insert(s.begin(), '0');
    return value < 0 ? "-" + s : s;
}

} // namespace

TFormatSettings LocaleFormatSettings() {
    const TLocaleFormats locale = UserLocaleFormats();
    TFormatSettings s;
    s.ShortDateFormat = locale.ShortDateFormat;
    s.LongDateFormat = locale.ShortDateFormat;
    s.LongTimeFormat = locale.LongTimeFormat;
    s.DateSeparator = locale.DateSeparator;
    s.TimeSeparator = locale.TimeSeparator;
    return s;
}

TFormatSettings& FormatSettings() {
    static TFormatSettings settings = LocaleFormatSettings();
    return settings;
}

bool IsLeapYear(int year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

int DaysInMonth(int year, int month) {
    static const int days[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (month < 1 || month > 12) return 0;
    return days[month - 1] + (month == 2 && IsLeapYear(year) ? 1 : 0);
}

bool TryEncodeDate(int year, int month, int day, TDateTime& result) {
    if (year < 1 || year > 9999 || month < 1 || month > 12 || day < 1 || day > DaysInMonth(year, month))
        return false;
    int64_t d = day;
    for (int m = 1; m < month; ++m)
        d += DaysInMonth(year, m);
    const int64_t y = year - 1;
    d += y * 365 + y / 4 - y / 100 + y / 400;
    result = static_cast<double>(d - DateDelta);
    return true;
}

TDateTime EncodeDate(int year, int month, int day) {
    TDateTime r;
    if (!TryEncodeDate(year, month, day, r)) throw EConvertError("Invalid argument to date encode");
    return r;
}

bool TryEncodeTime(int hour, int min, int sec, int msec, TDateTime& result) {
    if (hour < 0 || hour > 23 || min < 0 || min > 59 || sec < 0 || sec > 59 || msec < 0 || msec > 999)
        return false;
    result = (hour * 3600000.0 + min * 60000.0 + sec * 1000.0 + msec) / MSecsPerDay;
    return true;
}

TDateTime EncodeTime(int hour, int min, int sec, int msec) {
    TDateTime r;
    if (!TryEncodeTime(hour, min, sec, msec, r)) throw EConvertError("Invalid argument to time encode");
    return r;
}

TDateTime EncodeDateTime(int year, int month, int day, int hour, int min, int sec, int msec) {
    const TDateTime d = EncodeDate(year, month, day);
    const TDateTime t = EncodeTime(hour, min, sec, msec);
    return d >= 0 ? d + t : d - t;
}

void DecodeDate(TDateTime dt, int& year, int& month, int& day) {
    int64_t days, ms;
    ToTimeStamp(dt, days, ms);
    if (days <= 0) {
        year = month = day = 0;
        return;
    }
    // Days since 1 January 0001, counted from 0.
    int64_t t = days - 1;
    int64_t y = 1;
    const int64_t d400 = 146097, d100 = 36524, d4 = 1461;
    y += (t / d400) * 400;
    t %= d400;
    int64_t i = t / d100;
    if (i == 4) i = 3;
    y += i * 100;
    t -= i * d100;
    y += (t / d4) * 4;
    t %= d4;
    i = t / 365;
    if (i == 4) i = 3;
    y += i;
    t -= i * 365;
    year = static_cast<int>(y);
    int m = 1;
    while (t >= DaysInMonth(year, m))
        t -= DaysInMonth(year, m++);
    month = m;
    day = static_cast<int>(t) + 1;
}

void DecodeTime(TDateTime dt, int& hour, int& min, int& sec, int& msec) {
    int64_t days, ms;
    ToTimeStamp(dt, days, ms);
    hour = static_cast<int>(ms / 3600000);
    min = static_cast<int>(ms / 60000 % 60);
    sec = static_cast<int>(ms / 1000 % 60);
    msec = static_cast<int>(ms % 1000);
}

void DecodeDateTime(TDateTime dt, int& year, int& month, int& day, int& hour, int& min, int& sec, int& msec) {
    DecodeDate(dt, year, month, day);
    DecodeTime(dt, hour, min, sec, msec);
}

int DayOfWeek(TDateTime dt) {
    int64_t days, ms;
    ToTimeStamp(dt, days, ms);
    // Days before 1 January 0001 count backwards; keep the result in 1..7 for them too.
    return static_cast<int>((days % 7 + 7) % 7) + 1;
}

TDateTime Now() {
    struct timeval tv {};
    ::gettimeofday(&tv, nullptr);
    std::tm local{};
    const std::time_t secs = tv.tv_sec;
    ::localtime_r(&secs, &local);
    return EncodeDateTime(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min,
                          local.tm_sec > 59 ? 59 : local.tm_sec, static_cast<int>(tv.tv_usec / 1000));
}

TDateTime Date() {
    return std::trunc(Now());
}

std::string FormatDateTime(std::string_view format, TDateTime dt, const TFormatSettings& fs) {
    int year, month, day, hour, min, sec, msec;
    DecodeDateTime(dt, year, month, day, hour, min, sec, msec);
    std::string out;
    bool afterHour = false;
    bool useAmPm = false;
    // A 12-hour clock applies when the format holds an AM/PM marker anywhere.
    {
        const std::string lower = LowerCase(format);
        useAmPm = lower.find("am/pm") != std::string::npos || lower.find("a/p") != std::string::npos ||
                  lower.find("ampm") != std::string::npos;
    }
    size_t i = 0;
    auto run = [&](char c) {
        size_t n = 0;
        while (i + n < format.size() && (format[i + n] | 0x20) == (c | 0x20))
            ++n;
        return n;
    };
    while (i < format.size()) {
        const char c = format[i];
        const char lc = static_cast<char>(c | 0x20);
        if (c == '"' || c == '\'') {
            const size_t e = format.find(c, i + 1);
            const size_t end = e == std::string_view::npos ? format.size() : e;
            out.append(format.substr(i + 1, end - i - 1));
            i = end == format.size() ? end : end + 1;
            continue;
        }
        if (c == '/') {
            out += fs.DateSeparator;
            ++i;
            continue;
        }
        if (c == ':') {
            out += fs.TimeSeparator;
            ++i;
            continue;
        }
        if (StartsText("am/pm", format.substr(i))) {
            out += hour < 12 ? "am" : "pm";
            if (c == 'A') out = out.substr(0, out.size() - 2) + (hour < 12 ? "AM" : "PM");
            i += 5;
            continue;
        }
        if (StartsText("a/p", format.substr(i))) {
            out += hour < 12 ? (c == 'A' ? "A" : "a") : (c == 'A' ? "P" : "p");
            i += 3;
            continue;
        }
        if (StartsText("ampm", format.substr(i))) {
            out += hour < 12 ? fs.TimeAMString : fs.TimePMString;
            i += 4;
            continue;
        }
        switch (lc) {
        case 'c': {
            ++i;
            out += FormatDateTime(fs.ShortDateFormat, dt, fs);
            int64_t days, ms;
            ToTimeStamp(dt, days, ms);
            if (ms != 0) out += " " + FormatDateTime(fs.LongTimeFormat, dt, fs);
            afterHour = false;
            break;
        }
        case 'y': {
            const size_t n = run('y');
            i += n;
            out += n <= 2 ? Pad(year % 100, 2) : Pad(year, 4);
            afterHour = false;
            break;
        }
        case 'm': {
            const size_t n = run('m');
            i += n;
            if (afterHour && n <= 2) {
                out += n == 1 ? std::to_string(min) : Pad(min, 2);
            } else if (n == 1) {
                out += std::to_string(month);
            } else if (n == 2) {
                out += Pad(month, 2);
            } else if (n == 3) {
                out += month >= 1 ? ShortMonthNames[month - 1] : "";
            } else {
                out += month >= 1 ? LongMonthNames[month - 1] : "";
            }
            afterHour = false;
            break;
        }
        case 'd': {
            const size_t n = run('d');
            i += n;
            const int dow = DayOfWeek(dt) - 1;
            if (n == 1)
                out += std::to_string(day);
            else if (n == 2)
                out += Pad(day, 2);
            else if (n == 3)
                out += ShortDayNames[dow];
            else if (n == 4)
                out += LongDayNames[dow];
            else if (n == 5)
                out += FormatDateTime(fs.ShortDateFormat, dt, fs);
            else
                out += FormatDateTime(fs.LongDateFormat, dt, fs);
            afterHour = false;
            break;
        }
        case 'h': {
            const size_t n = run('h');
            i += n;
            int h = hour;
            if (useAmPm) {
                h = hour % 12;
                if (h == 0) h = 12;
            }
            out += n == 1 ? std::to_string(h) : Pad(h, 2);
            afterHour = true;
            break;
        }
        case 'n': {
            const size_t n = run('n');
            i += n;
            out += n == 1 ? std::to_string(min) : Pad(min, 2);
            afterHour = false;
            break;
        }
        case 's': {
            const size_t n = run('s');
            i += n;
            out += n == 1 ? std::to_string(sec) : Pad(sec, 2);
            afterHour = false;
            break;
        }
        case 'z': {
            const size_t n = run('z');
            i += n;
            out += n < 3 ? std::to_string(msec) : Pad(msec, 3);
            afterHour = false;
            break;
        }
        case 't': {
            const size_t n = run('t');
            i += n;
            out += FormatDateTime(n == 1 ? fs.ShortTimeFormat : fs.LongTimeFormat, dt, fs);
            afterHour = false;
            break;
        }
        default:
            out += c;
            ++i;
        }
    }
    return out;
}

std::string FormatDateTime(std::string_view format, TDateTime dt) {
    return FormatDateTime(format, dt, FormatSettings());
}

namespace {

struct TScanner {
    std::string_view s;
    size_t i = 0;
    void SkipBlanks() {
        while (i < s.size() && s[i] == ' ')
            ++i;
    }
    bool Number(int& value, int& digits) {
        SkipBlanks();
        digits = 0;
        int64_t v = 0;
        while (i < s.size() && s[i] >= '0' && s[i] <= '9') {
            v = v * 10 + (s[i++] - '0');
            if (++digits > 9) return false;
        }
        value = static_cast<int>(v);
        return digits > 0;
    }
    bool Char(char c) {
        SkipBlanks();
        if (i < s.size() && s[i] == c) {
            ++i;
            return true;
        }
        return false;
    }
    bool AtEnd() {
        SkipBlanks();
        return i >= s.size();
    }
};

enum class TDateOrder { DMY, MDY, YMD };

TDateOrder OrderOf(const std::string& fmt) {
    for (char c : fmt) {
        const char l = static_cast<char>(c | 0x20);
        if (l == 'd') return TDateOrder::DMY;
        if (l == 'm') return TDateOrder::MDY;
        if (l == 'y') return TDateOrder::YMD;
    }
    return TDateOrder::DMY;
}

int ExpandYear(int year, int digits, const TFormatSettings& fs) {
    if (digits > 2) return year;
    int cy, cm, cd;
    DecodeDate(Date(), cy, cm, cd);
    const int pivot = cy - fs.TwoDigitYearCenturyWindow;
    int y = year + (pivot / 100) * 100;
    if (fs.TwoDigitYearCenturyWindow > 0 && y <= pivot) y += 100;
    return y;
}

bool ScanDate(TScanner& sc, TDateTime& result, const TFormatSettings& fs) {
    int n1, n2, n3, d1, d2, d3;
    if (!sc.Number(n1, d1)) return false;
    if (!sc.Char(fs.DateSeparator)) return false;
    if (!sc.Number(n2, d2)) return false;
    const TDateOrder order = OrderOf(fs.ShortDateFormat);
    int year, month, day;
    if (sc.Char(fs.DateSeparator)) {
        if (!sc.Number(n3, d3)) return false;
        switch (order) {
        case TDateOrder::MDY:
            month = n1, day = n2, year = ExpandYear(n3, d3, fs);
            break;
        case TDateOrder::DMY:
            day = n1, month = n2, year = ExpandYear(n3, d3, fs);
            break;
        default:
            year = ExpandYear(n1, d1, fs), month = n2, day = n3;
        }
    } else {
        int cm, cd;
        DecodeDate(Date(), year, cm, cd);
        if (order == TDateOrder::DMY)
            day = n1, month = n2;
        else
            month = n1, day = n2;
    }
    return TryEncodeDate(year, month, day, result);
}

bool ScanTime(TScanner& sc, TDateTime& result, const TFormatSettings& fs) {
    int h, n = 0, s = 0, ms = 0, digits;
    if (!sc.Number(h, digits)) return false;
    if (sc.Char(fs.TimeSeparator)) {
        if (!sc.Number(n, digits)) return false;
        if (sc.Char(fs.TimeSeparator)) {
            if (!sc.Number(s, digits)) return false;
            if (sc.Char('.')) {
                if (!sc.Number(ms, digits)) return false;
                while (digits > 3)
                    ms /= 10, --digits;
                while (digits < 3)
                    ms *= 10, ++digits;
            }
        }
    } else {
        // A bare number is a time only with an AM/PM marker.
        sc.SkipBlanks();
        if (sc.i >= sc.s.size()) return false;
    }
    sc.SkipBlanks();
    const std::string_view rest = sc.s.substr(sc.i);
    auto marker = [&](std::string_view m) {
        if (!m.empty() && StartsText(m, rest)) {
            sc.i += m.size();
            return true;
        }
        return false;
    };
    if (marker(fs.TimeAMString) || marker("AM") || marker("A")) {
        if (h < 1 || h > 12) return false;
        if (h == 12) h = 0;
    } else if (marker(fs.TimePMString) || marker("PM") || marker("P")) {
        if (h < 1 || h > 12) return false;
        if (h != 12) h += 12;
    }
    return TryEncodeTime(h, n, s, ms, result);
}

} // namespace

bool TryStrToDateTime(std::string_view text, TDateTime& result, const TFormatSettings& fs) {
    const std::string trimmed = Trim(text);
    if (trimmed.empty()) return false;
    TScanner sc{trimmed};
    TDateTime d = 0, t = 0;
    const size_t start = sc.i;
    if (ScanDate(sc, d, fs)) {
        if (sc.AtEnd()) {
            result = d;
            return true;
        }
        if (!ScanTime(sc, t, fs) || !sc.AtEnd()) return false;
        result = d >= 0 ? d + t : d - t;
        return true;
    }
    sc.i = start;
    if (ScanTime(sc, t, fs) && sc.AtEnd()) {
        result = t;
        return true;
    }
    return false;
}

TDateTime StrToDateTime(std::string_view text, const TFormatSettings& fs) {
    TDateTime r;
    if (!TryStrToDateTime(text, r, fs))
        throw EConvertError("'" + std::string(text) + "' is not a valid date and time");
    return r;
}

TDateTime StrToDateTime(std::string_view text) {
    return StrToDateTime(text, FormatSettings());
}
