// A display (also called a view): a named set of presentation settings for the notice grid (which columns
// show, in what order and width, how rows are coloured, grid lines, group panel, automatic column widths),
// kept as a ".nbd" file in the notice board folder. TDisplay holds one, applies it to a grid, and reads and
// writes its file. The name "<Default>" is reserved: never a file, always the built-in default view.
//
// The grid is reached through IDisplayGrid, which the grid widget implements, so every rule here is tested
// without a screen. A TDisplay does not own its grid. Board thread only. Nothing here reports an error:
// file trouble is silent (defaults are read), except that a failed save raises the ini writer's EInOutError.
#pragma once

#include "core/TGridLayout.h"
#include "support/TColor.h"

#include <array>
#include <cstdint>
#include <string>

// The grid's option set, in the order the display rules count them ("the first two options").
enum TGridOption : uint32_t {
    goRowIndicator = 1u << 0, // a narrow column before the first that marks the current row
    goFocusRect = 1u << 1,    // a focus rectangle around the current cell
    goAutoWidth = 1u << 2,    // the visible columns share the grid's width in proportion to their widths
};

// What a display needs of the grid it is applied to.
class IDisplayGrid {
public:
    virtual ~IDisplayGrid() = default;
    virtual void SetGridColor(TColor Color) = 0;     // background of the cells
    virtual void SetGridLineColor(TColor Color) = 0; // colour of the grid lines
    virtual void SetShowGridLines(bool Show) = 0;
    virtual void SetShowGroupPanel(bool Show) = 0;
    virtual uint32_t Options() const = 0; // TGridOption bits
    virtual void SetOptions(uint32_t Options) = 0;
    virtual void RefreshGrid() = 0; // repaint with the current settings
    // The columns as the user left them, and a new column layout to show (the grid re-sorts and regroups).
    virtual TGridLayout Layout() const = 0;
    virtual void SetLayout(const TGridLayout& Layout) = 0;
    // Pixels of one unit of the column table's default widths: the grid font's average character width.
    virtual int32_t WidthUnit() const = 0;
};

class TDisplay {
public:
    TDisplay(); // the defaults below; no grid

    static constexpr const char* DefaultName = "<Default>";

    std::string Name = DefaultName;
    bool AltRowColors = true;
    bool AutoColWidths = true;
    std::string Tag = "noticeboard"; // set on creation; not stored, not read
    TColor AltColor = clInfoBk;
    TColor GridColor = clBlue; // replaced as soon as a display is loaded or the default view is built
    TColor GridLineColor = clSilver;
    bool ShowGroupPanel = false;
    bool ShowGrid = false;
    // Whole rows in the colour of their severity (SeverityColors[0] for 1 Normal ... [3] for 4 Critical;
    // other values keep the usual colours). Off by default, and then rows are coloured as without it.
    bool SeverityRowColors = false;
    std::array<TColor, 4> SeverityColors = DefaultSeverityColors();
    static std::array<TColor, 4> DefaultSeverityColors();

    IDisplayGrid* Grid() const { return FGrid; }
    void SetGrid(IDisplayGrid* AGrid); // not owned; null for none

    // Plain stores: none of them touches the grid until Apply.
    void SetAltRowColors(bool Value) { AltRowColors = Value; }
    void SetAutoColumnWidths(bool Value) { AutoColWidths = Value; }
    void SetAltColor(TColor Value) { AltColor = Value; }
    void SetGridColor(TColor Value) { GridColor = Value; }
    void SetGridLineColor(TColor Value) { GridLineColor = Value; }

    // Copies Name, AutoColWidths, AltRowColors, AltColor, GridColor, GridLineColor, ShowGrid,
    // ShowGroupPanel, SeverityRowColors and SeverityColors (not the grid, not Tag).
    void Assign(const TDisplay& Source);
    // Pushes the settings into the bound grid (nothing without one). AltRowColors and AltColor stay here:
    // the grid's row drawing reads them from the display.
    void Apply();
    // "<Default>" builds the default view; any other name reads GetDisplayFileName(Name). Nothing without
    // a grid.
    void LoadFromFile(const std::string& AName);
    // Writes the grid's layout and the settings to GetDisplayFileName(AName); nothing without a grid.
    // Does not change Name.
    void SaveToFile(const std::string& AName);

private:
    IDisplayGrid* FGrid = nullptr;
};

// The notice board folder (empty while there is no configuration) with a trailing separator, then Name,
// then ".nbd".
std::string GetDisplayFileName(const std::string& Name);

// Builds the default view on Display's grid (when it has one) and in Display's settings, then applies it.
void CreateDefaultView(TDisplay& Display);
// The default view's columns: the column table's defaults (widths in WidthUnit), severity first and sorted
// ascending, then source, summary, raised date and count.
TGridLayout DefaultViewLayout(int WidthUnit);
