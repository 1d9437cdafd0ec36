#include "ReportGridFake.h"

#include "support/Exception.h"

#include <gtest/gtest.h>

namespace {

const std::string CRLF = "\r\n";
// Every placeholder once, in an order different from the substitution order.
const std::string Template = "<report><title>:report_title</title><f>:field_definitions</f>"
                             "<s>:select_fields</s><groupBy/><GroupByFields/><r>:xml_data</r></report>";

class ReportXmlTest : public ::testing::Test {
protected:
    void SetUp() override {
        FormatSettings().ShortDateFormat = "dd/mm/yyyy";
        FormatSettings().LongTimeFormat = "hh:nn:ss";
        FormatSettings().DateSeparator = '/';
        FormatSettings().TimeSeparator = ':';
    }
    std::string Build(bool SelectedOnly) {
        Definition.initializeFromGrid(Grid, SelectedOnly, Measurer);
        return Definition.XmlData;
    }

    TFormatSettingsGuard Guard;
    TFakeReportGrid Grid;
    TFixedWidthMeasurer Measurer;
    TPrintColumnsDefinition Definition;
};

TEST_F(ReportXmlTest, AllRowsUngroupedByteForByte) {
    // The summary caption carries markup that must stay raw; its first value is wider than the caption,
    // the second (Null) narrower, so the width grows once and stays.
    Grid.Visible = {TFakeReportGrid::Column(nf_adpt_source_id, "Source ID"),
                    TFakeReportGrid::Column(nf_note_summary, "Sum & <Text>"),
                    TFakeReportGrid::Column(nf_note_count, "Count"),
                    TFakeReportGrid::Column(nf_note_severity, "Severity"),
                    TFakeReportGrid::Column(nf_note_raised_date, "Date Raised")};
    const TBookmark a =
        Grid.Add({"DB1", "Disk <C:> & \"full\" 'x'", "N1", 3, 3, EncodeDateTime(2026, 11, 21, 8, 15, 0, 0)});
    const TBookmark b = Grid.Add({"DB22", "", "N1", 1, 12, EncodeDate(2026, 11, 22), true});
    Grid.AddRowNode(a);
    Grid.AddRowNode(b);

    EXPECT_EQ(Build(false),
              "<row id=\"0\"  adpt_source_id=\"DB1\" note_summary=\"Disk &lt;C:&gt; &amp; &quot;full&quot; "
              "&apos;x&apos;\" note_count=\"3\" note_severity=\"Fatal\" note_raised_date=\"21/11/2026 "
              "08:15:00\"/>" +
                  CRLF +
                  "<row id=\"0\"  adpt_source_id=\"DB22\" note_summary=\"\" note_count=\"12\" "
                  "note_severity=\"Normal\" note_raised_date=\"22/11/2026 00:00:00\"/>");
    EXPECT_EQ(
        Definition.getFieldDefinitions(),
        "<field name=\"adpt_source_id\" caption=\"Source ID\"  fieldDef=\"\" width=\"72\" ignore=\"N\"/>" +
            CRLF +
            "<field name=\"note_summary\" caption=\"Sum & <Text>\"  fieldDef=\"\" width=\"150\" "
            "ignore=\"N\"/>" +
            CRLF +
            "<field name=\"note_count\" caption=\"Count\"  fieldDef=\"numeric\" width=\"48\" ignore=\"N\"/>" +
            CRLF +
            "<field name=\"note_severity\" caption=\"Severity\"  fieldDef=\"\" width=\"66\" ignore=\"N\"/>" +
            CRLF +
            "<field name=\"note_raised_date\" caption=\"Date Raised\"  fieldDef=\"\" width=\"132\" "
            "ignore=\"N\"/>");
    EXPECT_EQ(Definition.getProp("NOTE_SUMMARY", "Caption"), "Sum & <Text>");
    EXPECT_EQ(Definition.getProp("note_summary", "colour"), "");

    // Without group columns the two grouping elements stay as the template has them.
    EXPECT_EQ(Definition.initializeXMLTemplate(Template, "Notice Board Report"),
              "<report><title>Notice Board Report</title><f>" + Definition.getFieldDefinitions() + "</f><s>" +
                  "<adpt_source_id/>" + CRLF + "<note_summary/>" + CRLF + "<note_count/>" + CRLF +
                  "<note_severity/>" + CRLF + "<note_raised_date/>" + "</s><groupBy/><GroupByFields/><r>" +
                  Definition.XmlData + "</r></report>");
}

TEST_F(ReportXmlTest, AllRowsGroupedSkipsHeadingsAndAppendsGroupValues) {
    Grid.Groups = {TFakeReportGrid::Column(nf_note_pvo_node, "PVO Node")};
    Grid.Visible = {TFakeReportGrid::Column(nf_note_summary, "Summary")};
    const TBookmark a = Grid.Add({"S", "Disk full", "NODE_A", 2});
    const TBookmark b = Grid.Add({"S", "CPU", "NODE_A", 4});
    const TBookmark c = Grid.Add({"S", "Log", "NODE_B", 1});
    Grid.AddGroupNode(a);
    Grid.AddRowNode(a);
    Grid.AddRowNode(b);
    Grid.AddGroupNode(c);
    Grid.AddRowNode(c);

    EXPECT_EQ(Build(false), "<row id=\"0\"  note_summary=\"Disk full\" note_pvo_node=\"NODE_A\"/>" + CRLF +
                                "<row id=\"0\"  note_summary=\"CPU\" note_pvo_node=\"NODE_A\"/>" + CRLF +
                                "<row id=\"0\"  note_summary=\"Log\" note_pvo_node=\"NODE_B\"/>");
    // Group columns are described first, but listed after the visible ones.
    EXPECT_EQ(Definition.ColumnProps.front().first, "note_pvo_node_caption");
    EXPECT_EQ(
        Definition.getFieldDefinitions(),
        "<field name=\"note_summary\" caption=\"Summary\"  fieldDef=\"\" width=\"72\" ignore=\"N\"/>" + CRLF +
            "<field name=\"note_pvo_node\" caption=\"PVO Node\"  fieldDef=\"\" width=\"66\" ignore=\"N\"/>");
    EXPECT_EQ(
        Definition.initializeXMLTemplate(Template, "T"),
        "<report><title>T</title><f>" + Definition.getFieldDefinitions() +
            "</f><s><note_summary/></s><groupBy><field name=\"note_pvo_node\" "
            "groupByBand=\"maingroupbyband\"/></groupBy><GroupByFields><note_pvo_node/></GroupByFields><r>" +
            Definition.XmlData + "</r></report>");
}

TEST_F(ReportXmlTest, SelectedRowsCarryRecordNumbersAndPutTheDataSetBack) {
    Grid.Visible = {TFakeReportGrid::Column(nf_note_severity, "Severity"),
                    TFakeReportGrid::Column(nf_note_raised_date, "Date Raised")};
    Grid.Add({"S", "one", "N", 1, 1, EncodeDate(2026, 11, 22)});
    const TBookmark gone = Grid.Add({"S", "two", "N"});
    const TBookmark third = Grid.Add({"S", "three", "N", 4, 1, EncodeDateTime(2026, 11, 22, 9, 0, 5, 0)});
    Grid.Add({"S", "four", "N", 2, 1, EncodeDate(2026, 1, 2)});
    Grid.Store.GotoBookmark(gone);
    Grid.Store.Delete(); // record numbers now differ from keys
    Grid.Store.GotoBookmark(third);
    Grid.Selected = {4, 1};

    // The dataset's string value: a date at midnight without its time, the severity by its number's text.
    EXPECT_EQ(Build(true), "<row id=\"3\"  note_severity=\"Warning\" note_raised_date=\"02/01/2026\"/>" +
                               CRLF +
                               "<row id=\"1\"  note_severity=\"Normal\" note_raised_date=\"22/11/2026\"/>");
    EXPECT_EQ(Grid.Store.GetBookmark(), third);
    EXPECT_FALSE(Grid.Store.ControlsDisabled());

    // A bookmark that no longer exists: the error passes, the dataset is put back all the same.
    Grid.Selected = {third, gone};
    EXPECT_THROW(Build(true), EDatabaseError);
    EXPECT_EQ(Grid.Store.GetBookmark(), third);
    EXPECT_FALSE(Grid.Store.ControlsDisabled());

    // Nothing selected: no rows, but every column defined.
    Grid.Selected.clear();
    EXPECT_EQ(Build(true), "");
    EXPECT_EQ(Definition.SelectedFields.size(), 2u);
    EXPECT_EQ(Definition.getProp("note_raised_date", "width"), "84");
}

TEST_F(ReportXmlTest, SubstitutionIsTextualCaseInsensitiveAndInOrder) {
    // A caption naming a later placeholder of its own line, and data naming later template placeholders.
    Grid.Visible = {TFakeReportGrid::Column(nf_note_summary, "At :WIDTH")};
    Grid.AddRowNode(Grid.Add({"S", "see :Report_Title", "N"}));
    Build(false);
    EXPECT_EQ(Definition.getFieldDefinitions(),
              "<field name=\"note_summary\" caption=\"At 120\"  fieldDef=\"\" width=\"120\" ignore=\"N\"/>");
    EXPECT_EQ(Definition.initializeXMLTemplate("[:XML_DATA][:report_title]", "Title"),
              "[<row id=\"0\"  note_summary=\"see Title\"/>][Title]");
    EXPECT_EQ(Definition.initializeXMLTemplate("no placeholders", "Title"), "no placeholders");
}

TEST_F(ReportXmlTest, EmptyGridGivesEmptyFragments) {
    Build(false);
    EXPECT_EQ(Definition.XmlData, "");
    EXPECT_EQ(Definition.getFieldDefinitions() + Definition.getGroupByFieldDefinitions() +
                  Definition.getSelectedFields() + Definition.getSelectedGroupBy(),
              "");
    EXPECT_EQ(Definition.initializeXMLTemplate(Template, "T"),
              "<report><title>T</title><f></f><s></s><groupBy/><GroupByFields/><r></r></report>");
}

TEST_F(ReportXmlTest, EachDistinctTextIsMeasuredOnce) {
    Grid.Visible = {TFakeReportGrid::Column(nf_adpt_source_id, "Source"),
                    TFakeReportGrid::Column(nf_note_summary, "Summary")};
    for (int i = 0; i < 50; ++i)
        Grid.AddRowNode(Grid.Add({"SAME", i % 2 ? "odd" : "even", "N"}));
    Build(false);
    EXPECT_EQ(Measurer.Calls, 2 + 3); // two captions, three distinct values
    Definition.CacheTextWidths = false;
    Measurer.Calls = 0;
    const std::string cached = Definition.XmlData;
    EXPECT_EQ(Build(false), cached);
    EXPECT_EQ(Measurer.Calls, 2 + 100);
}

} // namespace
