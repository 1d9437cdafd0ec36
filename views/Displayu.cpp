#include "views/Displayu.h"

#include "adapters/ZNB_Cfg.h"
#include "support/IniFiles.h"
#include "support/StrUtils.h"
#include "support/Zs_strings.h"

#include <cstdio>

namespace {

const std::string GridSection = "Grid";
const std::string GeneralSection = "General";

// Upper-case hexadecimal, at least six digits: "C0C0C0" for a plain colour, "80000018" for a system one.
std::string ColorText(TColor Color) {
    char text[16];
    std::snprintf(text, sizeof text, "%.6X", static_cast<unsigned>(Color));
    return text;
}

// Colours are read through HexToInt, so a lower-case value reads as 0 (black): files have always been
// written in upper case, and a hand-edited lower-case colour has always come out black.
TColor ReadColor(const TIniFile& Ini, const std::string& Key, const std::string& Default) {
    return HexToInt(Ini.ReadString(GeneralSection, Key, Default));
}

} // namespace

TDisplay::TDisplay() = default;

std::array<TColor, 4> TDisplay::DefaultSeverityColors() {
    // Pale green, yellow, orange and red (BBGGRR), light enough for the grid's text.
    return {TColor(0xC8F0C8), TColor(0xB4F5FF), TColor(0xAAD7FF), TColor(0xB9B9FF)};
}

void TDisplay::SetGrid(IDisplayGrid* AGrid) {
    if (AGrid != FGrid) FGrid = AGrid;
}

void TDisplay::Assign(const TDisplay& Source) {
    Name = Source.Name;
    AutoColWidths = Source.AutoColWidths;
    AltRowColors = Source.AltRowColors;
    AltColor = Source.AltColor;
    GridColor = Source.GridColor;
    GridLineColor = Source.GridLineColor;
    ShowGrid = Source.ShowGrid;
    ShowGroupPanel = Source.ShowGroupPanel;
    SeverityRowColors = Source.SeverityRowColors;
    SeverityColors = Source.SeverityColors;
}

void TDisplay::Apply() {
    if (!FGrid) return;
    FGrid->SetGridColor(GridColor);
    FGrid->SetGridLineColor(GridLineColor);
    FGrid->SetShowGridLines(ShowGrid);
    FGrid->SetShowGroupPanel(ShowGroupPanel);
    const uint32_t options = FGrid->Options();
    FGrid->SetOptions(AutoColWidths ? options | goAutoWidth : options & ~uint32_t{goAutoWidth});
    FGrid->RefreshGrid();
}

void TDisplay::LoadFromFile(const std::string& AName) {
    if (!FGrid) return;
    if (AName == DefaultName) {
        CreateDefaultView(*this); // applies it too
        return;
    }
    const TIniFile ini(GetDisplayFileName(AName));
    // Without a "Grid" section (a missing file) the grid keeps its columns.
    TGridLayout layout = FGrid->Layout();
    layout.LoadFromIni(ini, GridSection);
    FGrid->SetLayout(layout);

    Name = AName;
    AutoColWidths = ini.ReadBool(GeneralSection, "AutoColWidths", false);
    AltRowColors = ini.ReadBool(GeneralSection, "AltRowColors", true);
    AltColor = ReadColor(ini, "AltRowColor", "80000018");
    GridColor = ReadColor(ini, "GridColor", "80000005");
    GridLineColor = ReadColor(ini, "GridLineColor", "C0C0C0");
    ShowGrid = ini.ReadBool(GeneralSection, "ShowGrid", true);
    ShowGroupPanel = ini.ReadBool(GeneralSection, "ShowGroupPanel", false);
    SeverityRowColors = ini.ReadBool(GeneralSection, "SeverityRowColors", false);
    const std::array<TColor, 4> colors = DefaultSeverityColors();
    for (size_t i = 0; i < colors.size(); ++i)
        SeverityColors[i] = ReadColor(ini, "SeverityColor" + std::to_string(i + 1), ColorText(colors[i]));
    // A loaded display never shows the group panel, whatever its file says; relied upon by the board.
    ShowGroupPanel = false;
    Apply();
}

void TDisplay::SaveToFile(const std::string& AName) {
    if (!FGrid) return;
    TIniFile ini(GetDisplayFileName(AName));
    FGrid->Layout().SaveToIni(ini, GridSection);
    ini.WriteBool(GeneralSection, "AutoColWidths", AutoColWidths);
    ini.WriteBool(GeneralSection, "AltRowColors", AltRowColors);
    ini.WriteBool(GeneralSection, "ShowGrid", ShowGrid);
    ini.WriteBool(GeneralSection, "ShowGroupPanel", ShowGroupPanel);
    ini.WriteString(GeneralSection, "AltRowColor", ColorText(AltColor));
    ini.WriteString(GeneralSection, "GridColor", ColorText(GridColor));
    ini.WriteString(GeneralSection, "GridLineColor", ColorText(GridLineColor));
    // Files of displays that never had severity colours stay as they were written before them.
    if (SeverityRowColors || ini.ValueExists(GeneralSection, "SeverityRowColors")) {
        ini.WriteBool(GeneralSection, "SeverityRowColors", SeverityRowColors);
        for (size_t i = 0; i < SeverityColors.size(); ++i)
            ini.WriteString(GeneralSection, "SeverityColor" + std::to_string(i + 1),
                            ColorText(SeverityColors[i]));
    }
    ini.UpdateFile();
}

std::string GetDisplayFileName(const std::string& Name) {
    // Without a configuration the folder is empty and the name lands in the root folder; the board always
    // reads its configuration before it touches a display.
    const std::string folder = NBConfig ? NBConfig->NBFolder : std::string();
    return IncludeTrailingPathDelimiter(folder) + Name + ".nbd";
}

TGridLayout DefaultViewLayout(int WidthUnit) {
    // Starting from the column table's defaults is the reset: widths, visibility, table order, nothing
    // sorted or grouped.
    TGridLayout layout = TGridLayout::Defaults(WidthUnit);
    TGridColumnLayout& severity = layout.Column(nf_note_severity);
    severity.Sort = TSortDirection::sdAscending;
    severity.SortIndex = 0;
    layout.MoveColumn(nf_note_severity, 0);
    layout.MoveColumn(nf_adpt_source_id, 1);
    layout.MoveColumn(nf_note_summary, 2);
    layout.MoveColumn(nf_note_raised_date, 3);
    layout.MoveColumn(nf_note_count, 4);
    return layout;
}

void CreateDefaultView(TDisplay& Display) {
    if (IDisplayGrid* grid = Display.Grid()) {
        grid->SetShowGridLines(true);
        grid->SetGridLineColor(clSilver);
        grid->SetShowGroupPanel(false);
        grid->SetGridColor(clWindow);
        grid->SetOptions((grid->Options() | goAutoWidth) & ~uint32_t{goRowIndicator | goFocusRect});
        grid->SetLayout(DefaultViewLayout(grid->WidthUnit()));
    }
    Display.ShowGrid = true;
    Display.Name = TDisplay::DefaultName;
    Display.AltRowColors = true;
    Display.AltColor = clInfoBk;
    Display.AutoColWidths = true;
    Display.GridLineColor = clSilver;
    Display.GridColor = clWindow;
    Display.ShowGrid = true;
    Display.ShowGroupPanel = false;
    Display.SeverityRowColors = false;
    Display.SeverityColors = TDisplay::DefaultSeverityColors();
    Display.Apply();
}
