// Displays against a recording stand-in for the grid: what reaches the grid, the default view, and display
// files written, read back, damaged or missing.
#include "views/Displayu.h"

#include "adapters/TempFolder.h"
#include "adapters/ZNB_Cfg.h"
#include "support/Exception.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace std::string_literals;

namespace {

class TRecordingGrid : public IDisplayGrid {
public:
    void SetGridColor(TColor Color) override { Record("GridColor"), GridColor = Color; }
    void SetGridLineColor(TColor Color) override { Record("GridLineColor"), GridLineColor = Color; }
    void SetShowGridLines(bool Show) override { Record("GridLines"), GridLines = Show; }
    void SetShowGroupPanel(bool Show) override { Record("GroupPanel"), GroupPanel = Show; }
    uint32_t Options() const override { return Opts; }
    void SetOptions(uint32_t Options) override { Record("Options"), Opts = Options; }
    void RefreshGrid() override { Record("Refresh"); }
    TGridLayout Layout() const override {
        ++LayoutReads;
        return Columns;
    }
    void SetLayout(const TGridLayout& Layout) override { Record("Layout"), Columns = Layout; }
    int32_t WidthUnit() const override { return 7; }

    void Record(const char* call) { Calls.emplace_back(call); }

    TColor GridColor = 0x123456;
    TColor GridLineColor = 0x123456;
    bool GridLines = true;
    bool GroupPanel = true;
    uint32_t Opts = goRowIndicator | goFocusRect | 1u << 7; // bit 7: an option the display never touches
    TGridLayout Columns = TGridLayout::Defaults(7);
    std::vector<std::string> Calls;
    mutable int LayoutReads = 0;
};

// A layout the default view and the column table would never make.
TGridLayout OddLayout() {
    TGridLayout layout = TGridLayout::Defaults(3);
    layout.MoveColumn(nf_del_code, 0);
    layout.Column(nf_del_code).Visible = true;
    layout.Column(nf_adpt_id).GroupIndex = 0;
    layout.Column(nf_note_summary).Sort = TSortDirection::sdDescending;
    layout.Column(nf_note_summary).SortIndex = 0;
    layout.Column(nf_note_text).Width = 777;
    return layout;
}

class DisplayTest : public ::testing::Test {
protected:
    void SetUp() override {
        NBConfig = std::make_unique<TNBConfig>(Folder.Path());
        NBConfig->NBFolder = Folder.Path();
    }
    void TearDown() override { NBConfig.reset(); }

    TTempFolder Folder;
    TRecordingGrid Grid;
};

} // namespace

TEST_F(DisplayTest, FreshDisplayAppliedShowsBlueWithoutGridLines) {
    TDisplay display;
    display.Apply(); // no grid: nothing to do
    display.SetGrid(&Grid);
    display.SetGridLineColor(0x0000FF);
    EXPECT_TRUE(Grid.Calls.empty()) << "setters wait for Apply";
    display.Apply();
    EXPECT_EQ(Grid.GridColor, 0xFF0000u);
    EXPECT_EQ(Grid.GridLineColor, 0x0000FFu);
    EXPECT_FALSE(Grid.GridLines);
    EXPECT_FALSE(Grid.GroupPanel);
    EXPECT_EQ(Grid.Opts, goRowIndicator | goFocusRect | goAutoWidth | 1u << 7);
    EXPECT_EQ(Grid.Calls.back(), "Refresh");
    EXPECT_EQ(Grid.LayoutReads, 0);

    display.SetAutoColumnWidths(false);
    display.Apply();
    EXPECT_EQ(Grid.Opts, goRowIndicator | goFocusRect | 1u << 7);
}

TEST_F(DisplayTest, DefaultViewPutsSeverityFirstAndSortedThenTheFourMainColumns) {
    Grid.Columns = OddLayout();
    TDisplay display;
    display.SetGrid(&Grid);
    display.Name = "Errors";
    display.AltColor = clWhite;
    display.ShowGroupPanel = true;
    CreateDefaultView(display);

    const TGridLayout& layout = Grid.Columns;
    const std::vector<TNoticeField> expectedOrder = {nf_note_severity,     nf_adpt_source_id,
                                                     nf_note_summary,      nf_note_raised_date,
                                                     nf_note_count,        nf_nb_internal_key,
                                                     nf_adpt_id,           nf_adpt_orig_key,
                                                     nf_adpt_orig_server,  nf_adpt_source_type,
                                                     nf_note_text,         nf_note_last_raised_date,
                                                     nf_note_severity_str, nf_note_group_notified,
                                                     nf_note_pvo_node,     nf_ack_date,
                                                     nf_ack_code,          nf_del_code};
    EXPECT_EQ(layout.FieldsInPositionOrder(), expectedOrder);
    for (const NoticeBdColRec& entry : NoticeBdColumnArray) {
        EXPECT_EQ(layout.Column(entry.Field).Visible, entry.ShownByDefault) << entry.FieldName;
        EXPECT_EQ(layout.Column(entry.Field).Width, entry.DefaultWidth * 7) << entry.FieldName;
    }
    EXPECT_EQ(layout.SortColumns(), (std::vector<TSortColumn>{{nf_note_severity, false}}));
    EXPECT_TRUE(layout.GroupColumns().empty());

    EXPECT_TRUE(Grid.GridLines);
    EXPECT_EQ(Grid.GridLineColor, clSilver);
    EXPECT_FALSE(Grid.GroupPanel);
    EXPECT_EQ(Grid.GridColor, 0x80000005u);
    EXPECT_EQ(Grid.Opts, goAutoWidth | 1u << 7);
    EXPECT_EQ(Grid.Calls.back(), "Refresh");

    EXPECT_EQ(display.Name, "<Default>");
    EXPECT_TRUE(display.AutoColWidths);
    EXPECT_FALSE(display.ShowGroupPanel);
    EXPECT_EQ(display.AltColor, 0x80000018u);

    TDisplay bare; // without a grid only the settings change
    bare.GridColor = clWhite;
    CreateDefaultView(bare);
    EXPECT_EQ(bare.GridColor, clWindow);
    EXPECT_TRUE(bare.ShowGrid);
}

TEST_F(DisplayTest, FileNameIsFolderWithOneSeparatorNameAndExtension) {
    NBConfig->NBFolder = "/srv/NB";
    EXPECT_EQ(GetDisplayFileName("Errors"), "/srv/NB/Errors.nbd");
    NBConfig->NBFolder = "/srv/NB/";
    EXPECT_EQ(GetDisplayFileName("Errors"), "/srv/NB/Errors.nbd");
    NBConfig.reset();
    EXPECT_EQ(GetDisplayFileName("Errors"), "/Errors.nbd");
}

TEST_F(DisplayTest, SavedDisplayLoadsBackWithItsColoursAndColumnsButNoGroupPanel) {
    Grid.Columns = OddLayout();
    TDisplay display;
    display.SetGrid(&Grid);
    display.Name = "Kept";
    display.AutoColWidths = false;
    display.AltRowColors = false;
    display.ShowGrid = false;
    display.AltColor = clInfoBk;
    display.GridColor = 0x0000FF;
    display.GridLineColor = clBtnFace;
    display.ShowGroupPanel = true;
    display.SaveToFile("Errors");
    EXPECT_EQ(display.Name, "Kept") << "saving does not rename";

    const std::string text = ReadTextFile(Folder / "Errors.nbd");
    EXPECT_NE(text.find("[General]\nAutoColWidths=0\nAltRowColors=0\nShowGrid=0\nShowGroupPanel=1\n"
                        "AltRowColor=80000018\nGridColor=0000FF\nGridLineColor=8000000F\n"),
              std::string::npos)
        << text;

    TRecordingGrid otherGrid;
    TDisplay loaded;
    loaded.SetGrid(&otherGrid);
    loaded.LoadFromFile("Errors");
    EXPECT_EQ(loaded.Name, "Errors");
    EXPECT_EQ(otherGrid.Columns, Grid.Columns);
    EXPECT_FALSE(loaded.AutoColWidths);
    EXPECT_FALSE(loaded.AltRowColors);
    EXPECT_FALSE(loaded.ShowGrid);
    EXPECT_EQ(loaded.AltColor, clInfoBk);
    EXPECT_EQ(loaded.GridColor, 0x0000FFu);
    EXPECT_EQ(loaded.GridLineColor, clBtnFace);
    EXPECT_FALSE(loaded.ShowGroupPanel) << "a loaded display never shows the group panel";
    EXPECT_FALSE(otherGrid.GroupPanel);
}

TEST_F(DisplayTest, FileValuesTakeDefaultsWhereTheyAreMissingOrUnreadable) {
    struct Case {
        const char* name;
        std::string text; // empty: no file at all
        bool autoColWidths, altRowColors, showGrid;
        TColor altColor, gridColor, gridLineColor;
    };
    const Case cases[] = {
        {"missing file", "", false, true, true, 0x80000018, 0x80000005, 0xC0C0C0},
        {"lower case is black", "[General]\nGridColor=c0c0c0\nAltRowColor=80000018\n", false, true, true,
         0x80000018, 0, 0xC0C0C0},
        {"digits past F stop", "[General]\nGridColor=0xFF\nGridLineColor=FF:\nAltRowColor=\n", false, true,
         true, 0, 0, 0xFF3},
        {"non-numeric booleans", "[General]\nAutoColWidths=yes\nAltRowColors=no\nShowGrid=2\n", false, true,
         true, 0x80000018, 0x80000005, 0xC0C0C0},
        {"repeated keys: the last", "[General]\nShowGrid=1\nshowgrid=0\n[general]\nAutoColWidths=1\n", true,
         true, false, 0x80000018, 0x80000005, 0xC0C0C0},
        {"garbage after a key", "[General]\nAltRowColors=0\n\x01\xff\0\x80junk\nGridColor=000000\n"s, false,
         false, true, 0x80000018, 0x80000005, 0xC0C0C0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        std::filesystem::remove(Folder / "Odd.nbd");
        if (!c.text.empty()) WriteTextFile(Folder / "Odd.nbd", c.text);
        TRecordingGrid grid;
        grid.Columns = OddLayout();
        TDisplay display;
        display.SetGrid(&grid);
        display.ShowGroupPanel = true;
        display.LoadFromFile("Odd");
        EXPECT_EQ(display.Name, "Odd");
        EXPECT_EQ(display.AutoColWidths, c.autoColWidths);
        EXPECT_EQ(display.AltRowColors, c.altRowColors);
        EXPECT_EQ(display.ShowGrid, c.showGrid);
        EXPECT_FALSE(display.ShowGroupPanel);
        EXPECT_EQ(display.AltColor, c.altColor);
        EXPECT_EQ(display.GridColor, c.gridColor);
        EXPECT_EQ(display.GridLineColor, c.gridLineColor);
        EXPECT_EQ(grid.Columns, OddLayout()) << "no Grid section keeps the columns";
    }
}

TEST_F(DisplayTest, DefaultNameNeverTouchesTheFolder) {
    const std::string decoy =
        "[Grid]\nnote_count=0,500,1,desc,0,0\n[General]\nShowGrid=0\nGridColor=0000FF\n";
    WriteTextFile(Folder / "<Default>.nbd", decoy);
    TRecordingGrid reference;
    TDisplay referenceDisplay;
    referenceDisplay.SetGrid(&reference);
    CreateDefaultView(referenceDisplay);

    for (const std::string& folder : {Folder.Path(), Folder / "absent/"}) {
        NBConfig->NBFolder = folder;
        TRecordingGrid grid;
        grid.Columns = OddLayout();
        TDisplay display;
        display.SetGrid(&grid);
        display.Name = "Errors";
        display.LoadFromFile("<Default>");
        EXPECT_EQ(grid.LayoutReads, 0) << folder;
        EXPECT_EQ(grid.Columns, reference.Columns) << folder;
        EXPECT_EQ(display.Name, "<Default>");
        EXPECT_TRUE(display.ShowGrid);
        EXPECT_EQ(display.GridColor, clWindow);
        EXPECT_EQ(grid.Calls.back(), "Refresh");
    }
    EXPECT_FALSE(std::filesystem::exists(Folder / "absent"));
    EXPECT_EQ(ReadTextFile(Folder / "<Default>.nbd"), decoy);
}

TEST_F(DisplayTest, WithoutAGridNothingIsReadOrWritten) {
    WriteTextFile(Folder / "Errors.nbd", "[General]\nShowGrid=1\nGridColor=000000\n");
    TDisplay display;
    display.LoadFromFile("Errors");
    display.LoadFromFile("<Default>");
    EXPECT_EQ(display.Name, "<Default>");
    EXPECT_FALSE(display.ShowGrid);
    EXPECT_EQ(display.GridColor, clBlue);
    display.SaveToFile("New");
    EXPECT_FALSE(std::filesystem::exists(Folder / "New.nbd"));
}

TEST_F(DisplayTest, SaveFailsOnlyAsTheIniWriterFails) {
    WriteTextFile(Folder / "plain-file", "not a folder");
    TDisplay display;
    display.SetGrid(&Grid);
    for (const std::string& folder : {Folder / "absent/", Folder / "plain-file/"}) {
        NBConfig->NBFolder = folder;
        EXPECT_THROW(display.SaveToFile("Errors"), EInOutError) << folder;
        EXPECT_FALSE(std::filesystem::exists(folder + "Errors.nbd"));
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(Folder.Path()), {}), 1) << "no stray files";
}

TEST_F(DisplayTest, SampleDisplayLoadsAndSavesUnchanged) {
    NBConfig->NBFolder = NB_SOURCE_DIR "/examples/displays/";
    TDisplay display;
    display.SetGrid(&Grid);
    display.LoadFromFile("Triage");
    const TGridLayout& layout = Grid.Columns;
    EXPECT_EQ(layout.GroupColumns(), (std::vector<TSortColumn>{{nf_note_severity, true}}));
    EXPECT_EQ(layout.SortColumns(), (std::vector<TSortColumn>{{nf_note_last_raised_date, true}}));
    EXPECT_EQ(layout.FieldsInPositionOrder().front(), nf_note_severity);

    NBConfig->NBFolder = Folder.Path();
    display.SaveToFile("Triage");
    EXPECT_EQ(ReadTextFile(Folder / "Triage.nbd"),
              ReadTextFile(NB_SOURCE_DIR "/examples/displays/Triage.nbd"));
}

TEST_F(DisplayTest, SeverityRowColoursAreKeptOnlyOnceUsedAndTheDefaultViewHasThemOff) {
    TDisplay display;
    display.SetGrid(&Grid);
    EXPECT_FALSE(display.SeverityRowColors);
    display.SaveToFile("Plain");
    EXPECT_EQ(ReadTextFile(Folder / "Plain.nbd").find("Severity"), std::string::npos);

    display.SeverityRowColors = true;
    display.SeverityColors[3] = 0x0000FF;
    display.SaveToFile("Coloured");
    EXPECT_NE(ReadTextFile(Folder / "Coloured.nbd").find("SeverityRowColors=1\nSeverityColor1=C8F0C8\n"),
              std::string::npos);
    TDisplay loaded;
    loaded.SetGrid(&Grid);
    loaded.LoadFromFile("Coloured");
    EXPECT_TRUE(loaded.SeverityRowColors);
    EXPECT_EQ(loaded.SeverityColors[3], 0x0000FFu);
    EXPECT_EQ(loaded.SeverityColors[0], TDisplay::DefaultSeverityColors()[0]);

    loaded.SeverityRowColors = false; // switched off again: the file says so rather than forgetting
    loaded.SaveToFile("Coloured");
    EXPECT_NE(ReadTextFile(Folder / "Coloured.nbd").find("SeverityRowColors=0"), std::string::npos);
    loaded.SeverityRowColors = true;
    loaded.LoadFromFile(TDisplay::DefaultName);
    EXPECT_FALSE(loaded.SeverityRowColors);
}
