#include "core/Znb_xml.h"

#include "support/StrUtils.h"

namespace {

constexpr std::string_view XMLEntities[5] = {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;"};
constexpr std::string_view XMLChars[5] = {"&", "<", ">", "\"", "'"};

} // namespace

std::string XML_Encode(std::string_view Text) {
    std::string result(Text);
    if (result.find_first_of("&<>\"'") == std::string::npos) return result;
    for (int i = 0; i < 5; ++i)
        result = ReplaceAll(result, XMLChars[i], XMLEntities[i]);
    return result;
}

std::string XML_Decode(std::string_view Text) {
    std::string result(Text);
    // Every entity starts with '&', and decoding never creates one where there was none.
    if (result.find('&') == std::string::npos) return result;
    for (int i = 0; i < 5; ++i) {
        if (result.find('&') == std::string::npos) break;
        result = ReplaceAll(result, XMLEntities[i], XMLChars[i], true);
    }
    return result;
}
