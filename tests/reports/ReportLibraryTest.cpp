// The report library rendering real report XML into PDF files, read back with poppler's pdftotext.
#include "ReportGridFake.h"

#include "adapters/TempFolder.h"
#include "platform/DynLib.h"
#include "reports/Uxmlprintdll_interface.h"
#include "xmlreporting.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

std::string Shell(const std::string& command) {
    std::string out;
    if (FILE* pipe = ::popen(command.c_str(), "r")) {
        char buf[4096];
        for (size_t n; (n = std::fread(buf, 1, sizeof buf, pipe)) > 0;)
            out.append(buf, n);
        ::pclose(pipe);
    }
    return out;
}

// The text of pages First..Last of a PDF, in reading order.
std::string PdfText(const std::string& pdf, int First = 1, int Last = 9999) {
    return Shell("pdftotext -f " + std::to_string(First) + " -l " + std::to_string(Last) + " '" + pdf +
                 "' -");
}

int PdfPages(const std::string& pdf) {
    const std::string info = Shell("pdfinfo '" + pdf + "'");
    const size_t at = info.find("Pages:");
    return at == std::string::npos ? 0 : std::atoi(info.c_str() + at + 6);
}

size_t FilesIn(const std::string& folder) {
    size_t n = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder))
        ++n;
    return n;
}

// Removes a variable from the environment for the life of the guard.
class TUnsetEnv {
public:
    explicit TUnsetEnv(const char* Name) : FName(Name) {
        const char* value = std::getenv(Name);
        FHad = value != nullptr;
        if (FHad) FValue = value;
        ::unsetenv(Name);
    }
    ~TUnsetEnv() {
        if (FHad) ::setenv(FName, FValue.c_str(), 1);
    }

private:
    const char* FName;
    bool FHad = false;
    std::string FValue;
};

class ReportLibraryTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (Shell("command -v pdftotext pdfinfo").empty()) GTEST_SKIP() << "poppler-utils is not installed";
        Grid.Visible = {TFakeReportGrid::Column(nf_adpt_source_id, "Source ID"),
                        TFakeReportGrid::Column(nf_note_summary, "Summary"),
                        TFakeReportGrid::Column(nf_note_count, "Count"),
                        TFakeReportGrid::Column(nf_note_severity, "Severity")};
    }
    // The shipped template filled from the grid, as the print dialog makes it.
    std::string ReportXml() {
        TPrintColumnsDefinition definition;
        definition.initializeFromGrid(Grid, false, Measurer);
        return definition.initializeXMLTemplate(ReadTextFile(NB_BINARY_DIR "/bin/r_base_template.xml"),
                                                "Notice Board Report");
    }
    // printFromXML called directly, for its result.
    int32_t Print(const std::string& xml, const std::string& pdf) {
        const TLibHandle library = PvLoadLib("XmlReportingNB");
        EXPECT_NE(library, nullptr) << GetLastErrorText();
        const auto print = reinterpret_cast<NBR_printFromXML_Fn>(GetProcAddress(library, "printFromXML"));
        NBR_ShortString text3 = {static_cast<unsigned char>(pdf.size())}, empty = {};
        pdf.copy(reinterpret_cast<char*>(text3 + 1), pdf.size());
        const int32_t result = print(xml.c_str(), text3, empty, empty);
        FreeLibrary(library);
        return result;
    }

    TFakeReportGrid Grid;
    TFixedWidthMeasurer Measurer;
    TTempFolder Folder;
};

TEST_F(ReportLibraryTest, WritesTitleCaptionsValuesAndGroupBands) {
    Grid.Groups = {TFakeReportGrid::Column(nf_note_pvo_node, "PVO Node")};
    // Markup, a control byte and a byte that is not UTF-8 print; none of them stops the report.
    const TBookmark a = Grid.Add({"ORA_PROD", "Disk <C:> & \"D:\" full", "NODE_A", 4, 17});
    const TBookmark b = Grid.Add({"ORA\x01TEST", "Bad byte \xff here", "NODE_A", 2, 3});
    const TBookmark c = Grid.Add({"SQL_HR", "Backup late", "NODE_B", 1, 1});
    Grid.AddGroupNode(a);
    Grid.AddRowNode(a);
    Grid.AddRowNode(b);
    Grid.AddGroupNode(c);
    Grid.AddRowNode(c);

    const std::string pdf = Folder / "report.pdf";
    launchReport("XmlReportingNB.dll", ReportXml(), pdf, "", "");
    const std::string text = PdfText(pdf);
    for (const char* expected : {"Notice Board Report", "Source ID", "Summary", "Count", "Severity",
                                 "Disk <C:> & \"D:\" full", "ORA_PROD", "Critical", "17", "ORA TEST",
                                 "Backup late", "PVO Node: NODE_A", "PVO Node: NODE_B", "Page 1 of 1"})
        EXPECT_NE(text.find(expected), std::string::npos) << expected << " not in:\n" << text;
    EXPECT_EQ(FilesIn(Folder.Path()), 1u); // no temporary file left beside it
}

TEST_F(ReportLibraryTest, LongReportsRepeatCaptionsAndNumberPages) {
    for (int i = 0; i < 150; ++i)
        Grid.AddRowNode(
            Grid.Add({"DB" + std::to_string(i), "Tablespace TS_" + std::to_string(i) + " is full", "N"}));
    const std::string pdf = Folder / "long.pdf";
    ASSERT_EQ(Print(ReportXml(), pdf), NBR_OK);
    const int pages = PdfPages(pdf);
    ASSERT_GE(pages, 2);
    const std::string last = PdfText(pdf, pages, pages);
    for (const std::string& expected : {std::string("Notice Board Report"), std::string("Summary"),
                                        std::string("Tablespace TS_149 is full"),
                                        "Page " + std::to_string(pages) + " of " + std::to_string(pages)})
        EXPECT_NE(last.find(expected), std::string::npos) << expected << " not in:\n" << last;
}

TEST_F(ReportLibraryTest, BadInputGivesAnErrorAndLeavesNoFile) {
    // As a script calls it: no display and no platform chosen, one call after another.
    const TUnsetEnv platform("QT_QPA_PLATFORM"), display("DISPLAY"), wayland("WAYLAND_DISPLAY");
    const std::string pdf = Folder / "old.pdf";
    WriteTextFile(pdf, "an older report");
    EXPECT_EQ(Print("<report><rows><row id=\"0\" a=\"1\"></rows></report>", pdf), NBR_ERR_XML);
    EXPECT_EQ(Print("<html><body/></html>", pdf), NBR_ERR_XML);
    EXPECT_EQ(Print("", pdf), NBR_ERR_XML);
    EXPECT_EQ(ReadTextFile(pdf), "an older report");
    EXPECT_EQ(FilesIn(Folder.Path()), 1u);
    EXPECT_EQ(Print(ReportXml(), Folder / "no/such/folder/r.pdf"), NBR_ERR_OUTPUT);
    // A print dialog needs a display; without one the call says so instead of waiting for nobody.
    EXPECT_EQ(Print(ReportXml(), ""), NBR_ERR_NO_GUI);
    EXPECT_EQ(Print(ReportXml(), pdf), NBR_OK);
    EXPECT_NE(PdfText(pdf).find("Notice Board Report"), std::string::npos);
}

} // namespace
