// The one-line settings codec: "name=value;name=value;" to a look-up table and back. The configuration
// store keeps each adapter's built-in defaults in this form.
// A TName_Value_List is a plain value owned by its creator; one thread at a time. Nothing here throws
// except std::bad_alloc.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class TName_Value_List {
public:
    // Empty list; item separator ";", second separator "|".
    TName_Value_List() = default;

    // Inserts name at its sorted place (case-insensitive), or replaces the value of the entry already
    // there; a replaced entry keeps the spelling of its first insertion.
    void Add_Name_Value(const std::string& Name, const std::string& Value);

    // The value stored under Name (any letter case), or empty.
    std::string Look_Up_Value(const std::string& Name) const;
    // True when the value starts with "T" or "t" (true, True, t, Tx); false otherwise, also when missing.
    bool Look_Up_Boolean(const std::string& Name) const;
    // The value as a signed decimal integer; 0 when missing, empty or not a number.
    int32_t Look_Up_Num(const std::string& Name) const;

    // Parses "name=value;..." and adds every item (the list is not cleared first). Names are stored in
    // lower case; a value may contain "=" after the first one.
    void Decode_String(const std::string& Text);
    // "name=value" items in list order joined by the item separator: no escaping, no trailing separator.
    void Encode_String(std::string& Text) const;

    int Count() const { return static_cast<int>(FItems.size()); }
    const std::string& Names(int Index) const { return FItems.at(static_cast<size_t>(Index)).Name; }
    std::string Values(int Index) const { return FItems.at(static_cast<size_t>(Index)).Value(); }

    std::string Item_Separator = ";";
    std::string Second_Separator = "|";

private:
    // A value lives in its own NUL-terminated buffer; a short value (0 or 1 characters) is copied into the
    // buffer already there instead of a new one.
    struct TEntry {
        std::string Name;
        std::unique_ptr<char[]> Buffer;
        std::string Value() const { return Buffer ? std::string(Buffer.get()) : std::string(); }
    };

    // Binary search: true and the entry's index when found, else false and the insertion index.
    bool Find(const std::string& Name, size_t& Index) const;
    std::string Decode_Value(const std::string& Value) const;
    static void Store(TEntry& Entry, const std::string& Value, bool NewBuffer);

    std::vector<TEntry> FItems; // sorted by name, case-insensitive
};
