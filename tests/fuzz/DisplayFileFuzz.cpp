// A ".nbd" display file with any content, loaded as the board loads one (TDisplay::LoadFromFile on a grid,
// through the notice board folder). The layout the grid is handed must be a sound one (positions a
// permutation, indexes dense, widths in range), and saving the loaded display and loading it again must
// give the same display and layout.
#include "FuzzSupport.h"

#include "adapters/ZNB_Cfg.h"
#include "views/Displayu.h"

#include <cstdio>
#include <string>

namespace {

// A grid that only keeps what it is given.
class TFakeGrid : public IDisplayGrid {
public:
    void SetGridColor(TColor) override {}
    void SetGridLineColor(TColor) override {}
    void SetShowGridLines(bool) override {}
    void SetShowGroupPanel(bool Show) override { GroupPanel = Show; }
    uint32_t Options() const override { return FOptions; }
    void SetOptions(uint32_t Options) override { FOptions = Options; }
    void RefreshGrid() override {}
    TGridLayout Layout() const override { return FLayout; }
    void SetLayout(const TGridLayout& Layout) override { FLayout = Layout; }
    int32_t WidthUnit() const override { return 7; }

    bool GroupPanel = false;

private:
    uint32_t FOptions = goRowIndicator | goFocusRect;
    TGridLayout FLayout = TGridLayout::Defaults(7);
};

void CheckLayout(const TGridLayout& Layout) {
    bool place[NoticeFieldCount] = {};
    int sorted = 0, grouped = 0;
    for (int f = 0; f < NoticeFieldCount; ++f) {
        const TGridColumnLayout& c = Layout.Column(TNoticeField(f));
        FUZZ_CHECK(c.Field == TNoticeField(f), "column of another field");
        FUZZ_CHECK(c.Position >= 0 && c.Position < NoticeFieldCount && !place[c.Position],
                   "positions not a permutation");
        place[c.Position] = true;
        FUZZ_CHECK(c.Width >= 0 && c.Width <= TGridLayout::MaxWidth, "width out of range");
        sorted += c.SortIndex >= 0;
        grouped += c.GroupIndex >= 0;
        FUZZ_CHECK(c.SortIndex < 0 || (c.Sort != TSortDirection::sdNone && c.GroupIndex < 0),
                   "sort index without a direction, or on a group column");
    }
    // Dense indexes: every number below the count is taken exactly once.
    for (int i = 0; i < NoticeFieldCount; ++i) {
        int sortUses = 0, groupUses = 0;
        for (int f = 0; f < NoticeFieldCount; ++f) {
            sortUses += Layout.Column(TNoticeField(f)).SortIndex == i;
            groupUses += Layout.Column(TNoticeField(f)).GroupIndex == i;
        }
        FUZZ_CHECK(sortUses == (i < sorted ? 1 : 0), "sort indexes not dense");
        FUZZ_CHECK(groupUses == (i < grouped ? 1 : 0), "group indexes not dense");
    }
    FUZZ_CHECK(Layout.GroupColumns().size() == size_t(grouped), "group columns");
}

struct TDisplayFixture {
    TDisplayFixture() {
        NBConfig = std::make_unique<TNBConfig>(Folder.Path());
        NBConfig->NBFolder = Folder.Path();
    }
    TFuzzFolder Folder;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* Data, size_t Size) {
    static TDisplayFixture fixture;
    WriteFuzzFile(fixture.Folder / "fuzz.nbd", InputText(Data, Size));

    TFakeGrid grid;
    TDisplay display;
    display.SetGrid(&grid);
    display.LoadFromFile("fuzz");
    FUZZ_CHECK(display.Name == "fuzz", "name not taken");
    FUZZ_CHECK(!display.ShowGroupPanel && !grid.GroupPanel, "a loaded display shows the group panel");
    CheckLayout(grid.Layout());

    std::remove((fixture.Folder / "again.nbd").c_str()); // saving keeps what a file held: start empty
    display.SaveToFile("again");
    TFakeGrid grid2;
    TDisplay loaded;
    loaded.SetGrid(&grid2);
    loaded.LoadFromFile("again");
    FUZZ_CHECK(grid2.Layout() == grid.Layout(), "layout changed when saved and loaded again");
    FUZZ_CHECK(loaded.AutoColWidths == display.AutoColWidths && loaded.AltRowColors == display.AltRowColors &&
                   loaded.ShowGrid == display.ShowGrid,
               "settings changed when saved and loaded again");
    FUZZ_CHECK(loaded.AltColor == display.AltColor && loaded.GridColor == display.GridColor &&
                   loaded.GridLineColor == display.GridLineColor,
               "colours changed when saved and loaded again");
    return 0;
}
