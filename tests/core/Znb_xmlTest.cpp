#include "core/Znb_xml.h"

#include <gtest/gtest.h>

TEST(Znb_xml, EncodeEscapesTheFiveCharactersAmpersandFirst) {
    EXPECT_EQ(XML_Encode("a&b<c>d\"e'f"), "a&amp;b&lt;c&gt;d&quot;e&apos;f");
    EXPECT_EQ(XML_Encode("&lt;"), "&amp;lt;");
    EXPECT_EQ(XML_Encode("plain"), "plain");
}

TEST(Znb_xml, DecodeIgnoresCaseAndDecodesDoubleEscapesFully) {
    EXPECT_EQ(XML_Decode("a&AMP;b&Lt;c&gt;d&quot;e&APOS;f"), "a&b<c>d\"e'f");
    EXPECT_EQ(XML_Decode("&amp;lt;"), "<");
    EXPECT_EQ(XML_Decode("&amp;amp;"), "&amp;"); // one pass per entity
    EXPECT_EQ(XML_Decode("& alone &unknown;"), "& alone &unknown;");
}
