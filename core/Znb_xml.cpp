#include "core/Znb_xml.h"

#include "support/StrUtils.h"

const std::array<std::string_view, 5> XMLEntities = {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;"};
const std::array<std::string_view, 5> XMLCharacters = {"&", "<", ">", "\"", "'"};

std::string XML_Encode(std::string_view Text) {
    bool special = false;
    for (char c : Text)
        special = special || c == '&' || c == '<' || c == '>' || c == '"' || c == '\'';
    if (!special) return std::string(Text);
    // One pass gives the same result as five passes in order: only the first pass's "&" could meet an
    // ampersand added by a later one, and the later ones add none of their own characters.
    std::string out;
    out.reserve(Text.size() + Text.size() / 4);
    for (char c : Text) {
        size_t i = 0;
        while (i < XMLCharacters.size() && XMLCharacters[i][0] != c)
            ++i;
        if (i < XMLCharacters.size())
            out += XMLEntities[i];
        else
            out += c;
    }
    return out;
}

namespace {

// One pass replacing every Entity (which starts with '&') by Character, ignoring case, no rescanning.
// Jumps from ampersand to ampersand, so text with few entities costs little.
std::string ReplaceEntity(const std::string& Text, std::string_view Entity, std::string_view Character) {
    std::string out;
    size_t from = 0;
    size_t amp = Text.find('&');
    while (amp != std::string::npos) {
        if (amp + Entity.size() <= Text.size() &&
            SameText(std::string_view(Text).substr(amp, Entity.size()), Entity)) {
            if (out.empty()) out.reserve(Text.size());
            out.append(Text, from, amp - from).append(Character);
            from = amp + Entity.size();
            amp = Text.find('&', from);
        } else {
            amp = Text.find('&', amp + 1);
        }
    }
    if (from == 0) return Text;
    return out.append(Text, from, std::string::npos);
}

} // namespace

std::string XML_Decode(std::string_view Text) {
    if (Text.find('&') == std::string_view::npos) return std::string(Text);
    std::string out(Text);
    for (size_t i = 0; i < XMLEntities.size(); ++i) {
        if (out.find('&') == std::string::npos) break; // nothing left that could match
        out = ReplaceEntity(out, XMLEntities[i], XMLCharacters[i]);
    }
    return out;
}
