#include "core/Nb_utils.h"

#include "core/Znb_const.h"
#include "support/StrUtils.h"

#include <cstring>

std::string FilterFolder;

std::string Get_Severity_String(int32_t Severity) {
    // The table was always indexed without a check, as callers pass only 1 to 4; out of range gives ""
    // here rather than reading past it.
    if (Severity < 1 || Severity > static_cast<int32_t>(SeverityStrings.size())) return {};
    return SeverityStrings[static_cast<size_t>(Severity - 1)];
}

TpCharBuffer Str_To_pChar(std::string_view Text) {
    TpCharBuffer result;
    result.Length = static_cast<int32_t>(Text.size() + 1);
    result.Buffer = std::make_unique<char[]>(Text.size() + 1);
    if (!Text.empty()) std::memcpy(result.Buffer.get(), Text.data(), Text.size());
    result.Buffer[Text.size()] = '\0';
    return result;
}

std::string StripExtension(std::string_view FileName) {
    const std::string name = ExtractFileName(FileName);
    const size_t count = FileName.size() - ExtractFileExt(FileName).size();
    return name.substr(0, count); // a count past the name's end takes the whole name
}
