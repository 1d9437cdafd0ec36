// The notice grid's column layout: for each of the 18 notice fields its column's place, width, visibility,
// sorting and grouping. The grid widget shows a layout and hands back the one the user made; displays
// (views/Displayu) build the default one and keep it in the "Grid" section of their ".nbd" files. The key
// format of that section is documented in docs/display-files.md.
// A plain value; any thread may hold one, the board's thread shows it.
#pragma once

#include "core/Znb_const.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

class TIniFile;

enum class TSortDirection { sdNone, sdAscending, sdDescending };

// One column of a sort or group order.
struct TSortColumn {
    TNoticeField Field = nf_nb_internal_key;
    bool Descending = false;
    bool operator==(const TSortColumn&) const = default;
};

struct TGridColumnLayout {
    TNoticeField Field = nf_nb_internal_key;
    int32_t Position = 0; // place among all 18 columns, 0 = leftmost (hidden columns keep a place too)
    int32_t Width = 0;    // pixels
    bool Visible = false;
    TSortDirection Sort = TSortDirection::sdNone;
    int32_t SortIndex = -1;  // priority among the sorted columns, 0 first; -1 when not sorted
    int32_t GroupIndex = -1; // place among the group columns, 0 outermost; -1 when not grouped
    bool operator==(const TGridColumnLayout&) const = default;
};

class TGridLayout {
public:
    // The column table's defaults (Znb_const): table order, each entry's visibility, its default width
    // times WidthUnit pixels, nothing sorted or grouped.
    static TGridLayout Defaults(int32_t WidthUnit);

    TGridColumnLayout& Column(TNoticeField Field) { return FColumns[Field]; }
    const TGridColumnLayout& Column(TNoticeField Field) const { return FColumns[Field]; }

    // Fields in column order (by Position).
    std::vector<TNoticeField> FieldsInPositionOrder() const;
    // Moves Field to Position, shifting the columns between; positions stay 0..17.
    void MoveColumn(TNoticeField Field, int32_t Position);

    // The orders the grid's view applies: group columns by GroupIndex, then sorted columns by SortIndex
    // (a grouped column's own direction orders its groups; it is not repeated among the sort columns).
    std::vector<TSortColumn> GroupColumns() const;
    std::vector<TSortColumn> SortColumns() const;

    // Repairs a layout read from a file or built by hand: positions become a permutation of 0..17 (keeping
    // their relative order, ties by column-table order), sort and group indexes become dense (0, 1, ...) in
    // their relative order, a column with an index but no direction is not sorted, a direction without an
    // index sorts after the indexed columns, a grouped column takes no sort index (its direction orders its
    // groups), widths are limited to 0..MaxWidth.
    void Normalize();
    static constexpr int32_t MaxWidth = 4000;

    // Writes the layout into Section (erased first), one key per field (documented in docs/).
    void SaveToIni(TIniFile& Ini, const std::string& Section) const;
    // Reads what Section says and keeps the rest as it is: a missing section or key, an unknown field
    // name or a part of a value that does not parse changes nothing for that column or setting; a field
    // named twice takes its last value; the result is normalised. Never throws for bad content.
    void LoadFromIni(const TIniFile& Ini, const std::string& Section);

    bool operator==(const TGridLayout&) const = default;

private:
    std::array<TGridColumnLayout, NoticeFieldCount> FColumns; // indexed by TNoticeField
};
