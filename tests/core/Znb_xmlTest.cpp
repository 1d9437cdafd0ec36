#include "core/Znb_xml.h"

#include <gtest/gtest.h>

TEST(Znb_xml, EncodeEscapesAmpersandFirst) {
    EXPECT_EQ(XML_Encode("a & b < c > d \"e\" 'f'"), "a &amp; b &lt; c &gt; d &quot;e&quot; &apos;f&apos;");
    EXPECT_EQ(XML_Encode("&lt;"), "&amp;lt;");
    EXPECT_EQ(XML_Encode("plain"), "plain");
    EXPECT_EQ(XML_Encode(""), "");
}

TEST(Znb_xml, DecodeIgnoresCaseAndDecodesDoubleEscapes) {
    EXPECT_EQ(XML_Decode("&amp;lt;"), "<");
    EXPECT_EQ(XML_Decode("&AMP; &Lt; &gT; &QUOT; &Apos;"), "& < > \" '");
    EXPECT_EQ(XML_Decode("&apos;&amp;apos;"), "''");
    EXPECT_EQ(XML_Decode("&amp;amp;"), "&amp;"); // each entity is replaced in one pass, no rescanning
    EXPECT_EQ(XML_Decode("&unknown; & &lt"), "&unknown; & &lt");
    EXPECT_EQ(XML_Decode("no entities"), "no entities");
}
