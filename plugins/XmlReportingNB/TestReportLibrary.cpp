// Report libraries for the tests of launchReport, built from this one source:
//   XmlReportingNB_Recorder keeps what printFromXML received, for a test that holds the library loaded
//   itself (RecordedXml, RecordedText);
//   XmlReportingNB_NoEntry exports printFromXml instead, a name differing only in letter case, so the
//   board's exact look-up fails.
#include "xmlreporting.h"

#include <cstring>
#include <string>

namespace {
std::string Xml;
NBR_ShortString Texts[3];
int Calls = 0;
} // namespace

#ifdef NBR_TEST_NO_ENTRY
extern "C" NBR_EXPORT int32_t NBR_CALL printFromXml(const char* xml_text, const unsigned char*,
                                                    const unsigned char*, const unsigned char*) {
    return xml_text ? NBR_OK : NBR_ERR_ARGUMENT;
}
#else
extern "C" NBR_EXPORT int32_t NBR_CALL printFromXML(const char* xml_text, const unsigned char* text3,
                                                    const unsigned char* text4, const unsigned char* text5) {
    ++Calls;
    Xml = xml_text;
    const unsigned char* texts[3] = {text3, text4, text5};
    for (int i = 0; i < 3; ++i)
        std::memcpy(Texts[i], texts[i], 1 + texts[i][0]);
    return NBR_OK;
}
#endif

// The last call's XML and its short strings (Index 0 to 2 for text3 to text5), and the number of calls.
extern "C" NBR_EXPORT const char* RecordedXml() {
    return Xml.c_str();
}
extern "C" NBR_EXPORT const unsigned char* RecordedText(int Index) {
    return Texts[Index];
}
extern "C" NBR_EXPORT int RecordedCalls() {
    return Calls;
}
