// The system's time-zone information in the shape the board's conversions expect: biases in minutes,
// positive west of Greenwich (UTC = local time + bias). Any thread.
#pragma once

#include <cstdint>

enum class TTimeZoneState { Unknown, Standard, Daylight };

struct TTimeZoneInformation {
    int32_t Bias = 0;         // minutes, standard offset
    int32_t StandardBias = 0; // minutes added to Bias in standard time (0 on POSIX)
    int32_t DaylightBias = 0; // minutes added to Bias while daylight time is in force
};

// Fills info for the current moment and tells whether daylight time is in force; Unknown on failure.
TTimeZoneState GetTimeZoneInformation(TTimeZoneInformation& info);
