#include "core/ui/NoticeGridRows.h"

#include <algorithm>
#include <cstring>

std::string GroupValueKey(const TNoticeRecord& Row, TNoticeField Field) {
    if (Row.IsNull(Field)) return std::string(1, '\x01');
    switch (NoticeFieldType(Field)) {
    case TFieldType::ftString:
    case TFieldType::ftMemo:
        return "s" + std::string(Row.AsString(Field));
    case TFieldType::ftDateTime: {
        const TDateTime value = Row.AsDateTime(Field);
        uint64_t bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        return "d" + std::to_string(bits);
    }
    case TFieldType::ftInteger:
    case TFieldType::ftAutoInc:
        break;
    }
    return "i" + std::to_string(Row.AsInteger(Field));
}

void TGridDisplayRows::Rebuild(const TNoticeGridView& View) {
    FSegments.clear();
    FRuns.clear();
    FHeadingRows.clear();
    FGroups = View.GroupColumns();
    FGrouped = !FGroups.empty();
    FCount = 0;
    const int32_t rows = View.RowCount();
    if (!FGrouped) {
        if (rows > 0) FSegments.push_back(TSegment{0, 0, rows, 0, false, true, 0});
        FCount = rows;
        FIds.clear();
        FIdentity.clear();
    } else {
        // Ids of headings that no longer show are forgotten; their collapsed state is kept, as a group
        // that empties and fills again should come back the way the user left it.
        FPrevious.swap(FIds);
        FIds.clear();
        FIdentity.clear();
        AddGroups(View, 0, 0, rows, std::string());
        FPrevious.clear();
    }
    for (size_t i = 0; i < FSegments.size(); ++i)
        if (!FSegments[i].Heading) FRuns.push_back(i);
}

uint64_t TGridDisplayRows::IdOf(const std::string& Identity) {
    uint64_t id;
    const auto old = FPrevious.find(Identity);
    id = old != FPrevious.end() ? old->second : FNextId++;
    FIds.emplace(Identity, id);
    FIdentity.emplace(id, Identity);
    return id;
}

void TGridDisplayRows::AddGroups(const TNoticeGridView& View, int Level, int32_t Begin, int32_t End,
                                 const std::string& Parent) {
    const TNoticeField field = FGroups[size_t(Level)].Field;
    const bool innermost = size_t(Level) + 1 == FGroups.size();
    for (int32_t first = Begin; first < End;) {
        int32_t groupFirst = 0, count = 0;
        View.GroupRange(Level, first, groupFirst, count);
        const int32_t end = count > 0 ? std::min(End, groupFirst + count) : End;
        const TNoticeRecord* row = View.RowAt(first);
        const std::string identity = Parent + '\x1e' + (row ? GroupValueKey(*row, field) : std::string());
        const uint64_t id = IdOf(identity);
        const bool expanded = IsExpanded(identity);
        FHeadingRows.emplace(id, FCount);
        FSegments.push_back(TSegment{FCount, first, end - first, int16_t(Level), true, expanded, id});
        ++FCount;
        if (expanded) {
            if (innermost) {
                FSegments.push_back(TSegment{FCount, first, end - first, int16_t(Level + 1), false, true, 0});
                FCount += end - first;
            } else {
                AddGroups(View, Level + 1, first, end, identity);
            }
        }
        first = end;
    }
}

TGridRowInfo TGridDisplayRows::At(int32_t Row) const {
    const auto it = std::upper_bound(FSegments.begin(), FSegments.end(), Row,
                                     [](int32_t r, const TSegment& s) { return r < s.Row; });
    TGridRowInfo info;
    if (it == FSegments.begin()) return info;
    const TSegment& s = *(it - 1);
    info.Level = s.Level;
    if (s.Heading) {
        info.Heading = true;
        info.Field = FGroups[size_t(s.Level)].Field;
        info.Position = s.Position;
        info.Count = s.Count;
        info.Expanded = s.Expanded;
        info.Id = s.Id;
    } else {
        info.Position = s.Position + (Row - s.Row);
        info.Count = 1;
    }
    return info;
}

int32_t TGridDisplayRows::RowOfPosition(int32_t Position) const {
    const auto it = std::upper_bound(FRuns.begin(), FRuns.end(), Position,
                                     [this](int32_t p, size_t i) { return p < FSegments[i].Position; });
    if (it == FRuns.begin()) return -1;
    const TSegment& s = FSegments[*(it - 1)];
    return Position < s.Position + s.Count ? s.Row + (Position - s.Position) : -1;
}

int32_t TGridDisplayRows::RowShowing(int32_t Position) const {
    const int32_t row = RowOfPosition(Position);
    if (row >= 0 || !FGrouped) return row;
    // Segments run in position order; the last one starting at or before the position is the innermost
    // candidate, and the headings before it enclose it or end before it.
    auto it = std::upper_bound(FSegments.begin(), FSegments.end(), Position,
                               [](int32_t p, const TSegment& s) { return p < s.Position; });
    while (it != FSegments.begin()) {
        const TSegment& s = *--it;
        if (s.Heading && Position < s.Position + s.Count) return s.Row;
        if (s.Level == 0 && s.Heading) break;
    }
    return -1;
}

int32_t TGridDisplayRows::RowOfHeading(uint64_t Id) const {
    const auto it = FHeadingRows.find(Id);
    return it == FHeadingRows.end() ? -1 : it->second;
}

bool TGridDisplayRows::IsExpanded(const std::string& Identity) const {
    return FExpandedByDefault == (FExceptions.count(Identity) == 0);
}

void TGridDisplayRows::SetIdentityExpanded(const std::string& Identity, bool Expanded) {
    if (Expanded == FExpandedByDefault)
        FExceptions.erase(Identity);
    else
        FExceptions.insert(Identity);
}

void TGridDisplayRows::SetExpanded(uint64_t HeadingId, bool Expanded) {
    const auto it = FIdentity.find(HeadingId);
    if (it != FIdentity.end()) SetIdentityExpanded(it->second, Expanded);
}

void TGridDisplayRows::SetAllExpanded(bool Expanded) {
    FExpandedByDefault = Expanded;
    FExceptions.clear();
}

void TGridDisplayRows::ExpandTo(const TNoticeGridView& View, int32_t Position) {
    const TNoticeRecord* row = View.RowAt(Position);
    if (!row) return;
    std::string identity;
    for (const TSortColumn& group : View.GroupColumns()) {
        identity += '\x1e' + GroupValueKey(*row, group.Field);
        SetIdentityExpanded(identity, true);
    }
}
