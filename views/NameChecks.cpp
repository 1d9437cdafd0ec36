#include "views/NameChecks.h"

#include "support/NBPrompt.h"
#include "support/StrUtils.h"

namespace {

constexpr size_t MaxNameLength = 32;

bool IsNameChar(char c) {
    return c == '-' || c == '_' || (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// Names arrive as UTF-8 from the dialogs: a multi-byte sequence is one character, both for the length
// limit and for the invalid-character message, which must show it whole.
size_t CharLength(const std::string& s, size_t i) {
    size_t n = 1;
    if (static_cast<unsigned char>(s[i]) >= 0xC0) {
        while (i + n < s.size() && n < 4 && (static_cast<unsigned char>(s[i + n]) & 0xC0) == 0x80)
            ++n;
    }
    return n;
}

size_t CharCount(const std::string& s) {
    size_t count = 0;
    for (size_t i = 0; i < s.size(); i += CharLength(s, i))
        ++count;
    return count;
}

void Refuse(const std::string& message) {
    NBPrompt().ShowMessage(message, TMsgDlgType::mtError);
}

} // namespace

bool ValidateFileName(const std::string& Name) {
    const std::string name = LowerCase(Name);
    bool ok = true;
    if (name.empty()) {
        Refuse("Error - name cannot be blank");
        ok = false;
    }
    if (CharCount(name) > MaxNameLength) {
        Refuse("Error - name cannot be longer than 32 characters");
        ok = false;
    }
    if (name.find(' ') != std::string::npos) {
        Refuse("Error - Name cannot contain spaces");
        ok = false;
    }
    for (size_t i = 0; i < name.size();) {
        const size_t n = CharLength(name, i);
        if (n == 1 && IsNameChar(name[i])) {
            ++i;
            continue;
        }
        Refuse("Error - Name contains an invalid character: \"" + name.substr(i, n) + "\"");
        ok = false;
        i += n;
    }
    return ok;
}

bool ValidateViewName(const std::string& Name) {
    if (Trim(Name).empty()) return false;
    if (CharCount(Name) > MaxNameLength) {
        Refuse("Error - Display names are restricted to 32 characters");
        return false;
    }
    for (const char c : Name) {
        if (IsNameChar(c)) continue;
        Refuse("Error - The Display name contains an invalid character. Valid characters are: 'a..z, A..Z, "
               "0..9, _, -'");
        return false;
    }
    return true;
}
