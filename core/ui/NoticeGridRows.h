// The rows the notice grid shows: group headings and the data rows of expanded groups, mapped onto the
// positions of the live view (TNoticeGridView). The map is a short list of segments (a heading, or a run
// of consecutive view positions), rebuilt in O(groups * log n) at each refresh of the grid, so it holds no
// per-row memory; without group columns it is a single run.
//
// Headings are named by the values of their group columns, so a heading keeps its id and its collapsed
// state across refreshes while rows come and go. Data rows are named by their nb_internal_key.
// Owned by the grid's model; board thread only. Never throws except on memory exhaustion.
#pragma once

#include "core/TNoticeGridView.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

// One row as shown.
struct TGridRowInfo {
    bool Heading = false;
    int Level = 0;                           // headings: 0 = outermost group column
    TNoticeField Field = nf_nb_internal_key; // headings: the group column
    int32_t Position = -1;                   // data rows: view position; headings: the group's first row's
    int32_t Count = 0;                       // headings: data rows in the group
    bool Expanded = true;                    // headings
    uint64_t Id = 0;                         // headings: their id (HeadingIdBase and up); data rows: 0
};

class TGridDisplayRows {
public:
    // Heading ids start here; keys are positive 32-bit numbers, so the two never meet.
    static constexpr uint64_t HeadingIdBase = 0x80000000u;

    // Reads the view's groups again (the snapshot the grid shows until the next rebuild).
    void Rebuild(const TNoticeGridView& View);

    int32_t Count() const { return FCount; }
    bool Grouped() const { return FGrouped; }
    bool AnyCollapsed() const { return FGrouped && (!FExpandedByDefault || !FExceptions.empty()); }
    // Row must be within 0..Count()-1.
    TGridRowInfo At(int32_t Row) const;
    // The row showing the data row at a view position, or -1 (a collapsed group, or beyond the snapshot).
    int32_t RowOfPosition(int32_t Position) const;
    // The row showing a view position: its data row, or else the innermost heading shown whose group holds
    // it (the position is inside collapsed groups); -1 beyond the snapshot.
    int32_t RowShowing(int32_t Position) const;
    // The row of a heading id, or -1.
    int32_t RowOfHeading(uint64_t Id) const;
    // Expands every group that holds the view position (at the next Rebuild).
    void ExpandTo(const TNoticeGridView& View, int32_t Position);

    // Collapsing and expanding take effect at the next Rebuild. SetAllExpanded reaches every level,
    // including groups inside collapsed ones and groups that appear later.
    void SetExpanded(uint64_t HeadingId, bool Expanded);
    void SetAllExpanded(bool Expanded);

    // Calls Visit(first position, count) for each run of data rows shown, top to bottom.
    template <typename F> void ForEachRun(F&& Visit) const {
        for (const TSegment& s : FSegments)
            if (!s.Heading) Visit(s.Position, s.Count);
    }

private:
    struct TSegment {
        int32_t Row = 0;      // first display row
        int32_t Position = 0; // first view position
        int32_t Count = 0;    // data rows: rows in the run; headings: rows in the group
        int16_t Level = 0;
        bool Heading = false;
        bool Expanded = true;
        uint64_t Id = 0;
    };
    void AddGroups(const TNoticeGridView& View, int Level, int32_t Begin, int32_t End,
                   const std::string& Parent);
    uint64_t IdOf(const std::string& Identity);
    bool IsExpanded(const std::string& Identity) const;
    void SetIdentityExpanded(const std::string& Identity, bool Expanded);

    std::vector<TSegment> FSegments; // display order
    std::vector<size_t> FRuns;       // indexes of the data-run segments, by position
    std::vector<TSortColumn> FGroups;
    int32_t FCount = 0;
    bool FGrouped = false;
    uint64_t FNextId = HeadingIdBase;
    std::unordered_map<std::string, uint64_t> FIds;      // heading identity -> id (current headings)
    std::unordered_map<std::string, uint64_t> FPrevious; // the same before the rebuild under way
    std::unordered_map<uint64_t, std::string> FIdentity; // id -> identity (current headings)
    std::unordered_map<uint64_t, int32_t> FHeadingRows;  // id -> display row
    bool FExpandedByDefault = true;
    std::unordered_set<std::string> FExceptions; // identities of groups not in the default state
};

// The value of a group column as part of a heading's identity: exact (the bits of a date, the text with
// its case), so two groups the view keeps apart never share an identity.
std::string GroupValueKey(const TNoticeRecord& Row, TNoticeField Field);
