#include "support/Zs_datetime.h"

#include "support/Exception.h"
#include "support/StrUtils.h"

#include <cmath>

namespace {

// Everything from 1-based position Index to the end. Views, not copies: a notice carries dates in
// several fields and every one is read here.
std::string_view CopyFrom(std::string_view s, size_t Index) {
    return Copy(s, Index, std::string_view::npos);
}

// Dates the calendar can show: 1 January 0001 to 31 December 9999.
bool InCalendarRange(TDateTime Value) {
    return std::isfinite(Value) && Value > -693594.0 && Value < 2958466.0;
}

// ISO 8601 texts use "-" and ":" whatever the user's separators are.
TFormatSettings IsoFormatSettings() {
    TFormatSettings fs;
    fs.DateSeparator = '-';
    fs.TimeSeparator = ':';
    return fs;
}

} // namespace

TDateTime ISO8601ToDate(std::string_view Text) {
    if (Text.empty()) return 0.0;
    const size_t p = Pos("T", Text);
    std::string_view datePart, timePart;
    if (p >= 2) {
        datePart = Copy(Text, 1, p - 1);
        timePart = CopyFrom(Text, p + 1);
    } else if (p == 0) {
        datePart = Text;
    } else {
        timePart = CopyFrom(Text, 2);
    }

    TDateTime date = 0.0;
    if (!datePart.empty()) {
        // Fixed positions: yyyy?mm?dd, the separators are not checked and anything after them is ignored.
        try {
            const int32_t year = StrToInt(Copy(datePart, 1, 4));
            const int32_t month = StrToInt(Copy(datePart, 6, 2));
            const int32_t day = StrToInt(Copy(datePart, 9, 2));
            date = EncodeDate(year, month, day);
        } catch (const std::exception&) {
            throw EConvertError("Error converting Date. Invalid DateTime string : " + std::string(Text));
        }
    }
    TDateTime time = 0.0;
    if (!timePart.empty()) {
        // hh?nn?ss; fractions and zone designators are ignored, the time is taken as it stands.
        try {
            const int32_t hour = StrToInt(Copy(timePart, 1, 2));
            const int32_t min = StrToInt(Copy(timePart, 4, 2));
            const int32_t sec = StrToInt(Copy(timePart, 7, 2));
            time = EncodeTime(hour, min, sec, 0);
        } catch (const std::exception&) {
            throw EConvertError("Error converting Time. Invalid DateTime string : " + std::string(Text));
        }
    }
    return date + time;
}

std::string DateToISO8601(TDateTime Value) {
    if (!InCalendarRange(Value)) throw Exception("Error converting DateTime to ISO8601 string");
    return FormatDateTime("yyyy-mm-dd\"T\"hh:nn:ss", Value, IsoFormatSettings());
}

std::string DateToISO8601Time(TDateTime Value) {
    if (!InCalendarRange(Value)) throw Exception("Error converting DateTime to ISO8601Time string");
    return FormatDateTime("\"T\"hh:nn:ss", Value, IsoFormatSettings());
}

int32_t DateTimeToUnix(TDateTime Value) {
    if (!std::isfinite(Value)) return 0;
    const double days = std::trunc(Value - UnixDateDelta);
    if (days < -9.2e18 || days > 9.2e18) return 0;
    // Whole days only, in 32-bit arithmetic: the time of day is dropped and far dates wrap around.
    const uint32_t wholeDays = static_cast<uint32_t>(static_cast<int64_t>(days));
    return static_cast<int32_t>(wholeDays * 86400u);
}

TDateTime UnixStrToDateTime(const std::string& Text) {
    int32_t seconds = 0;
    if (!TryStrToInt(Text, seconds))
        throw Exception("Error converting Unix String to DateTime. String = " + Text);
    return UnixDateDelta + seconds / SecsPerDay;
}

std::string DecodeMonth(int32_t Month) {
    static const char* const Names[12] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                          "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    return Month >= 1 && Month <= 12 ? Names[Month - 1] : std::string();
}

bool isDateString(const std::string& Text) {
    // The user's field order; like the console's general text-to-date conversion, "-" and "." separate
    // date fields as well as the user's own separator.
    TFormatSettings fs = FormatSettings();
    TDateTime value;
    if (TryStrToDateTime(Text, value, fs)) return true;
    for (char sep : {'/', '-', '.'}) {
        if (sep == FormatSettings().DateSeparator) continue;
        fs.DateSeparator = sep;
        if (TryStrToDateTime(Text, value, fs)) return true;
    }
    return false;
}

std::string ConvertDate(const std::string& Text) {
    if (isDateString(Text)) return Text;
    // Split as "A-B-C D"; a missing "-" or blank leaves the field before it empty.
    std::string rest = Text;
    size_t p = Pos("-", rest);
    const std::string a = Trim(Copy(rest, 1, p == 0 ? 0 : p - 1));
    rest = CopyFrom(rest, p + 1);
    p = Pos("-", rest);
    const std::string b = Trim(Copy(rest, 1, p == 0 ? 0 : p - 1));
    rest = CopyFrom(rest, p + 1);
    p = Pos(" ", rest);
    const std::string c = Trim(Copy(rest, 1, p == 0 ? 0 : p - 1));
    const std::string d = Trim(CopyFrom(rest, p + 1));

    const std::string reversed = c + "-" + b + "-" + a + " " + d;
    if (isDateString(reversed)) return reversed;
    const std::string swapped = b + "-" + a + "-" + c + " " + d;
    if (isDateString(swapped)) return swapped;
    return Text;
}
