// The grid's column layout: defaults, moves, repair of hand-built layouts, and its "Grid" ini section,
// including files that were damaged or edited by hand.
#include "core/TGridLayout.h"

#include "adapters/TempFolder.h"
#include "support/IniFiles.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

std::vector<TNoticeField> TableFields() {
    std::vector<TNoticeField> fields;
    for (const NoticeBdColRec& entry : NoticeBdColumnArray)
        fields.push_back(entry.Field);
    return fields;
}

// Positions form 0..17, indexes are dense, widths in range.
void ExpectNormalized(const TGridLayout& layout) {
    std::vector<int> positions, sorts, groups;
    for (int f = 0; f < NoticeFieldCount; ++f) {
        const TGridColumnLayout& c = layout.Column(static_cast<TNoticeField>(f));
        EXPECT_EQ(c.Field, f);
        positions.push_back(c.Position);
        if (c.SortIndex >= 0) sorts.push_back(c.SortIndex);
        if (c.GroupIndex >= 0) groups.push_back(c.GroupIndex);
        EXPECT_GE(c.GroupIndex, -1);
        EXPECT_TRUE(c.Width >= 0 && c.Width <= TGridLayout::MaxWidth) << c.Width;
        EXPECT_TRUE(c.SortIndex < 0 || c.Sort != TSortDirection::sdNone) << "an index needs a direction";
        EXPECT_TRUE(c.GroupIndex < 0 || c.SortIndex < 0) << "a group column is not sorted again";
    }
    for (auto* v : {&positions, &sorts, &groups}) {
        std::sort(v->begin(), v->end());
        for (size_t i = 0; i < v->size(); ++i)
            EXPECT_EQ((*v)[i], static_cast<int>(i));
    }
    EXPECT_EQ(positions.size(), static_cast<size_t>(NoticeFieldCount));
}

// Loads Text as a display file's "Grid" section over Base.
TGridLayout LoadText(const std::string& text, TGridLayout base = TGridLayout::Defaults(5)) {
    TTempFolder folder;
    WriteTextFile(folder / "g.nbd", text);
    const TIniFile ini(folder / "g.nbd");
    base.LoadFromIni(ini, "Grid");
    return base;
}

} // namespace

TEST(GridLayout, MoveColumnKeepsPositionsInRange) {
    TGridLayout layout = TGridLayout::Defaults(1);
    layout.MoveColumn(nf_note_count, -3);
    layout.MoveColumn(nf_nb_internal_key, 99);
    const std::vector<TNoticeField> order = layout.FieldsInPositionOrder();
    EXPECT_EQ(order.front(), nf_note_count);
    EXPECT_EQ(order[1], nf_adpt_id);
    EXPECT_EQ(order.back(), nf_nb_internal_key);
    ExpectNormalized(layout);
}

TEST(GridLayout, NormalizeKeepsRelativeOrdersAndMakesIndexesDense) {
    TGridLayout layout = TGridLayout::Defaults(1);
    for (TNoticeField f : TableFields())
        layout.Column(f).Position = 5; // every column at one place: table order decides
    layout.Column(nf_note_count).Position = -40;
    layout.Column(nf_note_text).Width = -5;
    layout.Column(nf_note_summary).Width = 123456;
    auto& sev = layout.Column(nf_note_severity);
    sev.Sort = TSortDirection::sdDescending;
    sev.SortIndex = 7;
    auto& date = layout.Column(nf_note_raised_date);
    date.Sort = TSortDirection::sdAscending;
    date.SortIndex = 3;
    layout.Column(nf_adpt_id).SortIndex = 2;                       // an index without a direction
    layout.Column(nf_ack_date).Sort = TSortDirection::sdAscending; // a direction without an index
    auto& node = layout.Column(nf_note_pvo_node);
    node.Sort = TSortDirection::sdDescending;
    node.SortIndex = 1; // grouped, so it orders its groups instead
    node.GroupIndex = 9;
    layout.Column(nf_adpt_source_type).GroupIndex = 4;
    layout.Column(nf_del_code).GroupIndex = -7;

    layout.Normalize();
    ExpectNormalized(layout);
    TGridLayout twice = layout;
    twice.Normalize();
    EXPECT_EQ(twice, layout);
    std::vector<TNoticeField> expectedOrder = TableFields();
    expectedOrder.erase(std::find(expectedOrder.begin(), expectedOrder.end(), nf_note_count));
    expectedOrder.insert(expectedOrder.begin(), nf_note_count);
    EXPECT_EQ(layout.FieldsInPositionOrder(), expectedOrder);
    EXPECT_EQ(layout.Column(nf_note_text).Width, 0);
    EXPECT_EQ(layout.Column(nf_note_summary).Width, TGridLayout::MaxWidth);
    EXPECT_EQ(layout.SortColumns(),
              (std::vector<TSortColumn>{
                  {nf_note_raised_date, false}, {nf_note_severity, true}, {nf_ack_date, false}}));
    EXPECT_EQ(layout.GroupColumns(),
              (std::vector<TSortColumn>{{nf_adpt_source_type, false}, {nf_note_pvo_node, true}}));
    EXPECT_EQ(layout.Column(nf_adpt_id).SortIndex, -1);
    EXPECT_EQ(layout.Column(nf_del_code).GroupIndex, -1);
}

// Reading a saved layout back: DisplayTest.SavedDisplayLoadsBackWithItsColoursAndColumnsButNoGroupPanel.
TEST(GridLayout, SavedSectionReplacesTheOldOne) {
    TTempFolder folder;
    const std::string file = folder / "v.nbd";
    WriteTextFile(file, "[Grid]\nstale_key=1\nnote_count=9,9,9\n[General]\nShowGrid=0\n");

    TGridLayout layout = TGridLayout::Defaults(6);
    layout.MoveColumn(nf_note_severity, 0);
    layout.Column(nf_note_severity).Sort = TSortDirection::sdAscending;
    layout.Column(nf_note_severity).SortIndex = 0;
    layout.Column(nf_note_last_raised_date).Sort = TSortDirection::sdDescending;
    layout.Column(nf_note_last_raised_date).SortIndex = 1;
    layout.Column(nf_note_pvo_node).GroupIndex = 0;
    layout.Column(nf_note_pvo_node).Visible = true;
    layout.Column(nf_note_summary).Visible = false;
    layout.Column(nf_note_text).Width = 333;
    {
        TIniFile ini(file);
        layout.SaveToIni(ini, "Grid");
        ini.UpdateFile();
    }
    const std::string text = ReadTextFile(file);
    EXPECT_NE(text.find("Version=1\n"), std::string::npos) << text;
    EXPECT_NE(text.find("\nnote_severity=0,60,1,asc,0,-1\n"), std::string::npos) << text;
    EXPECT_NE(text.find("\nnote_pvo_node=14,120,1,none,-1,0\n"), std::string::npos) << text;
    EXPECT_EQ(text.find("stale_key"), std::string::npos) << text;
    EXPECT_NE(text.find("ShowGrid=0"), std::string::npos) << "other sections stay";
}

TEST(GridLayout, EachPartOfAValueIsReadOnItsOwn) {
    // note_count starts at position 10, width 50, shown, unsorted, ungrouped.
    struct Case {
        const char* value;
        int32_t width;
        bool visible;
        TSortDirection sort;
        int32_t sortIndex;
        int32_t groupIndex;
    };
    using enum TSortDirection;
    const Case cases[] = {
        {"10,abc,0,desc,0,-1", 50, false, sdDescending, 0, -1},
        {"10,99999,1", 4000, true, sdNone, -1, -1},
        {"10,99999999999999999999999", 4000, true, sdNone, -1, -1},
        {"10,-20", 0, true, sdNone, -1, -1},
        {",,0", 50, false, sdNone, -1, -1},
        {"", 50, true, sdNone, -1, -1},
        {"x,y,z,sideways,q,r", 50, true, sdNone, -1, -1},
        {" 10 , 70 , 0 , none , -1 , -1 ", 70, false, sdNone, -1, -1},
        {"10,70,1,DESC,2,-1", 70, true, sdDescending, 0, -1},
        {"10,70,1,asc,0,0,extra,parts", 70, true, sdAscending, -1, 0},
        {"10,70,1,none,5,-1", 70, true, sdNone, -1, -1},
        {"10,70,7,asc,-9,-4", 70, true, sdAscending, 0, -1},
        {"10;70;0", 50, true, sdNone, -1, -1},
    };
    for (const Case& c : cases) {
        const TGridLayout layout = LoadText(std::string("[Grid]\nnote_count=") + c.value + "\n");
        const TGridColumnLayout& col = layout.Column(nf_note_count);
        SCOPED_TRACE(c.value);
        EXPECT_EQ(col.Position, 10);
        EXPECT_EQ(col.Width, c.width);
        EXPECT_EQ(col.Visible, c.visible);
        EXPECT_EQ(col.Sort, c.sort);
        EXPECT_EQ(col.SortIndex, c.sortIndex);
        EXPECT_EQ(col.GroupIndex, c.groupIndex);
        ExpectNormalized(layout);
    }
}

TEST(GridLayout, UnknownMissingRepeatedAndAbsurdKeys) {
    const TGridLayout layout = LoadText("[Grid]\n"
                                        "Version=7\n"
                                        "no_such_field=0,10,0,asc,0,0\n"
                                        "note_count=10,11\n"
                                        "NOTE_COUNT=10,22\n"
                                        "[General]\n"
                                        "note_text=10,1\n"
                                        "[grid]\n"
                                        "note_count=10,33\n"
                                        "note_summary=6,44\n");
    TGridLayout expected = TGridLayout::Defaults(5);
    expected.Column(nf_note_count).Width = 33; // the last value of a repeated key, in any letter case
    expected.Column(nf_note_summary).Width = 44;
    EXPECT_EQ(layout, expected);

    const std::vector<TNoticeField> order =
        LoadText("[Grid]\nnote_count=-99999999999999\nnote_text=2147483647\nnote_summary=99999999999999\n")
            .FieldsInPositionOrder();
    EXPECT_EQ(order.front(), nf_note_count);
    EXPECT_EQ(order[16], nf_note_summary); // both saturate; table order breaks the tie
    EXPECT_EQ(order[17], nf_note_text);

    // Damage after a value leaves it read (arbitrary bytes: the DisplayFile fuzz target).
    EXPECT_EQ(LoadText("[Grid]\nnote_count=10,70\n\xff\xfe=\x80\n[[[\n\x01").Column(nf_note_count).Width, 70);
}
