// The name-value codec on any settings text. The first byte picks the separators (the codec's own, or
// other one- and two-byte ones, or none), the rest is decoded twice into the same list. The list must stay
// sorted without duplicate names, find every entry it holds, and encode to a text that decodes back to the
// same entries (with one-byte item separators).
#include "FuzzSupport.h"

#include "adapters/ZS_NameValue.h"
#include "support/StrUtils.h"

#include <string>

namespace {

const char* const Separators[][2] = {{";", "|"}, {";", "|"}, {",", ";"}, {"&&", "="}, {"", ""}, {"=", ";"}};

void CheckList(const TName_Value_List& List) {
    for (int i = 0; i < List.Count(); ++i) {
        const std::string& name = List.Names(i);
        if (i > 0)
            FUZZ_CHECK(CompareText(List.Names(i - 1), name) < 0, "names out of order or repeated: " + name);
        FUZZ_CHECK(List.Look_Up_Value(name) == List.Values(i),
                   "look-up of '" + name + "' finds another value");
        FUZZ_CHECK(List.Look_Up_Value(UpperCase(name)) == List.Values(i), "look-up ignores case");
        List.Look_Up_Boolean(name);
        List.Look_Up_Num(name);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* Data, size_t Size) {
    if (Size == 0) return 0;
    const auto& seps = Separators[Data[0] % (sizeof Separators / sizeof Separators[0])];
    const std::string text(InputText(Data + 1, Size - 1));

    TName_Value_List list;
    list.Item_Separator = seps[0];
    list.Second_Separator = seps[1];
    list.Decode_String(text);
    const int count = list.Count();
    CheckList(list);
    list.Decode_String(text); // the same items again replace, never add
    FUZZ_CHECK(list.Count() == count, "decoding twice added entries");
    CheckList(list);

    // With a one-byte item separator no name or value holds it, and a decoded value decodes to itself, so
    // the encoded text (nothing escaped) names the same entries with the same values.
    if (std::string(seps[0]) != ";" && std::string(seps[0]) != ",") return 0;
    std::string encoded;
    list.Encode_String(encoded);
    TName_Value_List again;
    again.Item_Separator = seps[0];
    again.Second_Separator = seps[1];
    again.Decode_String(encoded);
    FUZZ_CHECK(again.Count() == list.Count(), "encoded text holds " + std::to_string(again.Count()) +
                                                  " entries, not " + std::to_string(list.Count()));
    for (int i = 0; i < again.Count(); ++i)
        FUZZ_CHECK(again.Names(i) == list.Names(i) && again.Values(i) == list.Values(i),
                   "entry " + list.Names(i) + " changed when encoded and decoded");
    return 0;
}
