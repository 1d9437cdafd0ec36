#include "core/Nb_utils.h"

#include <gtest/gtest.h>

#include <cstring>

TEST(Nb_utils, SeverityNumbersNameTheirTexts) {
    const char* const names[] = {"", "", "Normal", "Warning", "Fatal", "Critical", ""}; // -1 to 5
    for (int severity = -1; severity <= 5; ++severity)
        EXPECT_EQ(Get_Severity_String(severity), names[severity + 1]) << severity;
}

TEST(Nb_utils, StrToPCharLengthCountsTheNul) {
    TpCharBuffer b = Str_To_pChar("adpt");
    EXPECT_EQ(b.Length, 5);
    EXPECT_EQ(std::memcmp(b.Data(), "adpt\0", 5), 0);
    TpCharBuffer empty = Str_To_pChar("");
    EXPECT_EQ(empty.Length, 1);
    EXPECT_EQ(empty.Data()[0], '\0');
}

TEST(Nb_utils, StripExtensionDropsExtensionOnlyWithoutFolder) {
    EXPECT_EQ(StripExtension("Critical.nbf"), "Critical");
    EXPECT_EQ(StripExtension("noext"), "noext");
    EXPECT_EQ(StripExtension("a.b.nbd"), "a.b");
    // With a folder the count covers the whole argument, so the whole file name comes back.
    EXPECT_EQ(StripExtension("/home/nb/Critical.nbf"), "Critical.nbf");
    EXPECT_EQ(StripExtension("x/ab.nbf"), "ab.n");
}
