// The R/Vista product's date texts and time spans, and the time-zone bias.
#include "support/Zs_datetime.h"

#include "platform/TimeZone.h"
#include "support/Exception.h"
#include "support/StrUtils.h"

namespace {

const char* const MonthWords = "jan feb mar apr may jun jul aug sep oct nov dec";

} // namespace

TDateTime rvStrToDateTime(const std::string& Text) {
    TDateTime result = Now();
    TFormatSettingsGuard saved; // the settings below are the parser's for this call only
    try {
        TFormatSettings& fs = FormatSettings();
        fs.ShortDateFormat = "dd/m/yyyy";
        fs.LongTimeFormat = "hh:nn:ss";
        fs.DateSeparator = '/';
        fs.TimeSeparator = ':';

        std::string s = LowerCase(Trim(Text));
        if (s.empty()) return result;
        std::string day, month, year, time;
        if (Pos("-", s) != 0) {
            // dd-mon-yyyy hh:nn:ss; a one-digit day is padded so that the fixed positions hold.
            if (Pos("-", s) == 2) s = " " + s;
            day = Copy(s, 1, 2);
            month = Copy(s, Pos("-", s) + 1, 3);
            year = Copy(s, 8, 4);
            time = Copy(s, 13, 8);
        } else {
            // The C library's ctime form: www mon dd hh:nn:ss yyyy.
            month = Copy(s, 5, 3);
            day = Copy(s, 9, 2);
            time = Copy(s, 12, 8);
            year = Copy(s, 21, 4);
        }
        // An unknown month word gives position 0 and so January; old feeds rely on getting a date.
        const size_t position = month.empty() ? 0 : Pos(month, MonthWords);
        const std::string monthNumber = IntToStr(static_cast<int64_t>(position / 4 + 1));
        result = StrToDateTime(day + "/" + monthNumber + "/" + year + " " + time);
    } catch (const std::exception&) {
        throw Exception("Error converting rvDateTime. Invalid DateTime string : " + Text);
    }
    return result;
}

int32_t rvTimeUnitToSeconds(int32_t Count, const std::string& Unit) {
    // A month is 28 days and a year 365 days, as the product counts them.
    static const struct {
        const char* Fragment;
        int64_t Factor;
    } Units[] = {{"sec", 1},       {"min", 60},        {"hour", 3600},    {"day", 86400},
                 {"week", 604800}, {"month", 2419200}, {"year", 31536000}};
    const std::string unit = LowerCase(Unit);
    for (const auto& u : Units) {
        if (unit.find(u.Fragment) != std::string::npos)
            return static_cast<int32_t>(static_cast<uint32_t>(static_cast<int64_t>(Count) * u.Factor));
    }
    return 0;
}

void rvSecondsToTimeUnit(int32_t Seconds, int32_t& Count, std::string& Unit) {
    if (Seconds >= 31536000) {
        Unit = "year(s)", Count = Seconds / 31536000;
    } else if (Seconds >= 2419200) {
        Unit = "month(s)", Count = Seconds / 2419200;
    } else if (Seconds >= 604800) {
        Unit = "week(s)", Count = Seconds / 604800;
    } else if (Seconds >= 86400) {
        Unit = "day(s)", Count = Seconds / 86400;
    } else if (Seconds >= 3600) {
        Unit = "hour(s)", Count = Seconds / 3600;
    } else if (Seconds < 60) {
        Unit = "seconds(s)", Count = Seconds; // spelled so in the console's texts
    } else {
        Unit = "minute(s)", Count = Seconds / 60;
    }
}

int32_t Get_Time_Zone_Bias() {
    TTimeZoneInformation info{};
    const TTimeZoneState state = GetTimeZoneInformation(info);
    if (state == TTimeZoneState::Daylight) return (info.Bias + info.DaylightBias) * 60;
    return (info.Bias + info.StandardBias) * 60;
}
