#include "views/NameChecks.h"

#include "support/NBPrompt.h"
#include "support/StrUtils.h"

namespace {

constexpr size_t MaxNameLength = 32;

bool IsNameChar(char c) {
    return c == '-' || c == '_' || (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
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
    if (name.size() > MaxNameLength) {
        Refuse("Error - name cannot be longer than 32 characters");
        ok = false;
    }
    if (name.find(' ') != std::string::npos) {
        Refuse("Error - Name cannot contain spaces");
        ok = false;
    }
    for (const char c : name) {
        if (IsNameChar(c)) continue;
        Refuse(std::string("Error - Name contains an invalid character: \"") + c + "\"");
        ok = false;
    }
    return ok;
}

bool ValidateViewName(const std::string& Name) {
    if (Trim(Name).empty()) return false;
    if (Name.size() > MaxNameLength) {
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
