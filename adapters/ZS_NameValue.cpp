#include "adapters/ZS_NameValue.h"

#include "support/StrUtils.h"

#include <cstring>

bool TName_Value_List::Find(const std::string& Name, size_t& Index) const {
    size_t lo = 0, hi = FItems.size();
    while (lo < hi) {
        const size_t mid = lo + (hi - lo) / 2;
        const int c = CompareText(FItems[mid].Name, Name);
        if (c == 0) {
            Index = mid;
            return true;
        }
        if (c < 0)
            lo = mid + 1;
        else
            hi = mid;
    }
    Index = lo;
    return false;
}

void TName_Value_List::Store(TEntry& Entry, const std::string& Value, bool NewBuffer) {
    if (NewBuffer || !Entry.Buffer) {
        Entry.Buffer = std::make_unique<char[]>(Value.size() + 2);
    }
    // A value with an embedded NUL ends there, as it would in the C buffer it is kept in.
    std::memcpy(Entry.Buffer.get(), Value.c_str(), Value.size() + 1);
}

void TName_Value_List::Add_Name_Value(const std::string& Name, const std::string& Value) {
    size_t index;
    if (!Find(Name, index)) {
        TEntry entry;
        entry.Name = Name;
        Store(entry, Value, true);
        FItems.insert(FItems.begin() + static_cast<std::ptrdiff_t>(index), std::move(entry));
        return;
    }
    // The old buffer holds at least two bytes, so a value of zero or one character always fits in it.
    Store(FItems[index], Value, Value.size() >= 2);
}

std::string TName_Value_List::Look_Up_Value(const std::string& Name) const {
    size_t index;
    return Find(Name, index) ? FItems[index].Value() : std::string();
}

bool TName_Value_List::Look_Up_Boolean(const std::string& Name) const {
    const std::string value = Look_Up_Value(Name);
    return !value.empty() && UpCase(value[0]) == 'T';
}

int32_t TName_Value_List::Look_Up_Num(const std::string& Name) const {
    return StrToIntDef(Look_Up_Value(Name), 0);
}

std::string TName_Value_List::Decode_Value(const std::string& Value) const {
    // Each escape is undone only when the value already holds the character it stands for. Stored
    // settings were written against this test, so it is kept as is rather than testing for the escape.
    std::string v = Value;
    if (v.find('=') != std::string::npos) v = ReplaceAll(v, "&&EQ", "=");
    if (!Item_Separator.empty() && v.find(Item_Separator) != std::string::npos)
        v = ReplaceAll(v, "&&FD", Item_Separator);
    if (!Second_Separator.empty() && v.find(Second_Separator) != std::string::npos)
        v = ReplaceAll(v, "&&SD", Second_Separator);
    return v;
}

void TName_Value_List::Decode_String(const std::string& Text) {
    // Walks the text once with an index; cutting the rest off item by item would copy it again for
    // every item.
    const size_t sepLen = Item_Separator.size();
    size_t start = 0;
    while (start < Text.size()) {
        const size_t p = sepLen == 0 ? std::string::npos : Text.find(Item_Separator, start);
        const size_t end = p == std::string::npos ? Text.size() : p;
        const std::string item = Text.substr(start, end - start);
        start = p == std::string::npos ? Text.size() : p + sepLen;
        const size_t q = item.find('=');
        if (q == std::string::npos)
            Add_Name_Value(LowerCase(item), std::string());
        else
            Add_Name_Value(LowerCase(item.substr(0, q)), Decode_Value(item.substr(q + 1)));
    }
}

void TName_Value_List::Encode_String(std::string& Text) const {
    Text.clear();
    for (const TEntry& entry : FItems) {
        if (!Text.empty()) Text += Item_Separator;
        Text += entry.Name + "=" + entry.Value();
    }
}
