// The date-time conversions and the adapter status messages, exported under their plain names for the
// host console. Each forwards to the engine's routine of the same name.
#include "noticeboard.h"

#include "adapters/Znb_erc.h"
#include "support/Zs_datetime.h"

namespace noticeboard {

extern "C" {

std::string Get_ZNB_Error_Message(int32_t Code) {
    return ::Get_ZNB_Error_Message(Code);
}

double ISO8601ToDate(const std::string& Text) {
    return ::ISO8601ToDate(Text);
}
std::string DateToISO8601(double Value) {
    return ::DateToISO8601(Value);
}
std::string DateToISO8601Time(double Value) {
    return ::DateToISO8601Time(Value);
}
int32_t DateTimeToUnix(double Value) {
    return ::DateTimeToUnix(Value);
}
double UnixStrToDateTime(const std::string& Text) {
    return ::UnixStrToDateTime(Text);
}
std::string DecodeMonth(int32_t Month) {
    return ::DecodeMonth(Month);
}
std::string ConvertDate(const std::string& Text) {
    return ::ConvertDate(Text);
}
double rvStrToDateTime(const std::string& Text) {
    return ::rvStrToDateTime(Text);
}
int32_t rvTimeUnitToSeconds(int32_t Count, const std::string& Unit) {
    return ::rvTimeUnitToSeconds(Count, Unit);
}
void rvSecondsToTimeUnit(int32_t Seconds, int32_t& Count, std::string& Unit) {
    ::rvSecondsToTimeUnit(Seconds, Count, Unit);
}
int32_t Get_Time_Zone_Bias() {
    return ::Get_Time_Zone_Bias();
}

} // extern "C"

} // namespace noticeboard
