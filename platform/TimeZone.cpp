#include "platform/TimeZone.h"

#include <ctime>

TTimeZoneState GetTimeZoneInformation(TTimeZoneInformation& info) {
    info = TTimeZoneInformation{};
    ::tzset();
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    if (::localtime_r(&now, &local) == nullptr) return TTimeZoneState::Unknown;
    // The standard offset of the zone: POSIX keeps it in `timezone` (seconds west of UTC).
    info.Bias = static_cast<int32_t>(::timezone / 60);
    if (local.tm_isdst > 0) {
        // tm_gmtoff is east-positive and already includes the daylight shift.
        info.DaylightBias = static_cast<int32_t>(-local.tm_gmtoff / 60) - info.Bias;
        return TTimeZoneState::Daylight;
    }
    if (local.tm_isdst == 0) {
        // Zones whose standard offset changed over time: trust the offset in force now.
        info.Bias = static_cast<int32_t>(-local.tm_gmtoff / 60);
        return TTimeZoneState::Standard;
    }
    return TTimeZoneState::Unknown;
}
