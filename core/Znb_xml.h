// The five XML entities of notice text. Adapters escape element text with these; the board decodes it
// before storing. Pure functions; any thread; never throw (except on memory exhaustion).
#pragma once

#include <string>
#include <string_view>

// "&" "<" ">" '"' "'" become "&amp;" "&lt;" "&gt;" "&quot;" "&apos;" (case-sensitive, in that order).
std::string XML_Encode(std::string_view Text);
// The reverse, ignoring letter case, "&amp;" first: so "&amp;lt;" decodes all the way to "<" (relied on).
std::string XML_Decode(std::string_view Text);
