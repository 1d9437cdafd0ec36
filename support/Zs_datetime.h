// Conversions between the board's date-time values and the text forms adapters and the console use:
// ISO 8601, Unix seconds, the R/Vista product's two text forms, and time spans in words.
// Stateless free functions; any thread, except rvStrToDateTime and ConvertDate, which use the process-wide
// format settings (board thread).
#pragma once

#include "support/DateUtils.h"

#include <cstdint>
#include <string>
#include <string_view>

// Empty text: the zero date-time. Raises EConvertError "Error converting Date. Invalid DateTime string : "
// / "Error converting Time. Invalid DateTime string : " + the whole text.
TDateTime ISO8601ToDate(std::string_view Text);

std::string DateToISO8601(TDateTime Value);     // "yyyy-mm-dd\"T\"hh:nn:ss"
std::string DateToISO8601Time(TDateTime Value); // "\"T\"hh:nn:ss"
int32_t DateTimeToUnix(TDateTime Value);        // whole days only
TDateTime UnixStrToDateTime(const std::string& Text);
std::string DecodeMonth(int32_t Month);     // "Jan".."Dec", empty otherwise
bool isDateString(const std::string& Text); // the user's locale accepts it as a date-time
std::string ConvertDate(const std::string& Text);
TDateTime rvStrToDateTime(const std::string& Text);
int32_t rvTimeUnitToSeconds(int32_t Count, const std::string& Unit);
void rvSecondsToTimeUnit(int32_t Seconds, int32_t& Count, std::string& Unit);
int32_t Get_Time_Zone_Bias(); // seconds to add to local time to obtain UTC
