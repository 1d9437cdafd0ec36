#include "reports/Uxmlprintdll_interface.h"

#include "platform/DynLib.h"
#include "support/Exception.h"
#include "xmlreporting.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <string>

namespace {

// Whether the library file is still mapped into the process.
bool StillLoaded(const std::string& name) {
    void* h = ::dlopen((std::string(NB_PLUGIN_DIR) + "/" + name + ".so").c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (h) ::dlclose(h);
    return h != nullptr;
}

std::string RaisedMessage(const std::string& library) {
    try {
        launchReport(library, "<report/>", "", "", "");
    } catch (const Exception& e) {
        return e.Message();
    }
    return "(nothing raised)";
}

TEST(LaunchReport, HandsOverTheXmlAndShortStringsAndUnloads) {
    // The test holds the recorder itself so that what it received outlives launchReport's unload.
    const TLibHandle held = PvLoadLib("XmlReportingNB_Recorder.dll");
    ASSERT_NE(held, nullptr) << GetLastErrorText();
    const auto xml = reinterpret_cast<const char* (*)()>(GetProcAddress(held, "RecordedXml"));
    const auto text = reinterpret_cast<const unsigned char* (*)(int)>(GetProcAddress(held, "RecordedText"));
    const auto calls = reinterpret_cast<int (*)()>(GetProcAddress(held, "RecordedCalls"));
    ASSERT_TRUE(xml && text && calls);

    const std::string long3 = std::string(250, 'a') + "bcdefghij"; // 259 bytes
    launchReport("XmlReportingNB_Recorder.dll", "<report>\xc3\xa9</report>", long3, "", "pdf");
    EXPECT_EQ(calls(), 1);
    EXPECT_STREQ(xml(), "<report>\xc3\xa9</report>");
    EXPECT_EQ(text(0)[0], 255);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(text(0) + 1), 255), long3.substr(0, 255));
    EXPECT_EQ(text(1)[0], 0);
    EXPECT_EQ(text(2)[0], 3);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(text(2) + 1), 3), "pdf");
    FreeLibrary(held);
    EXPECT_FALSE(StillLoaded("XmlReportingNB_Recorder"));
}

TEST(LaunchReport, LoadAndLookUpFailuresRaiseAndNothingStaysLoaded) {
    EXPECT_EQ(RaisedMessage(""), "(nothing raised)");
    EXPECT_EQ(RaisedMessage("NoSuchReportLibrary.dll"), "Unable to Load DLLNoSuchReportLibrary.dll");
    // The loader's own text for the failed look-up names the missing entry point.
    EXPECT_NE(RaisedMessage("XmlReportingNB_NoEntry.dll").find("printFromXML"), std::string::npos);
    EXPECT_FALSE(StillLoaded("XmlReportingNB_NoEntry"));
}

} // namespace
