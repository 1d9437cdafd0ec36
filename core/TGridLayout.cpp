#include "core/TGridLayout.h"

#include "support/IniFiles.h"
#include "support/StrUtils.h"

#include <algorithm>
#include <limits>

namespace {

// All fields ordered by Key(field), ties by column-table order (the stable sort starts from it).
template <typename KeyFn> std::vector<TNoticeField> FieldsBy(KeyFn Key) {
    std::vector<TNoticeField> fields;
    for (const NoticeBdColRec& entry : NoticeBdColumnArray)
        fields.push_back(entry.Field);
    std::stable_sort(fields.begin(), fields.end(),
                     [&](TNoticeField a, TNoticeField b) { return Key(a) < Key(b); });
    return fields;
}

const char* SortText(TSortDirection Sort) {
    switch (Sort) {
    case TSortDirection::sdAscending:
        return "asc";
    case TSortDirection::sdDescending:
        return "desc";
    default:
        return "none";
    }
}

bool ParseSort(std::string_view Text, TSortDirection& Sort) {
    Text = TrimView(Text);
    if (SameText(Text, "none"))
        Sort = TSortDirection::sdNone;
    else if (SameText(Text, "asc"))
        Sort = TSortDirection::sdAscending;
    else if (SameText(Text, "desc"))
        Sort = TSortDirection::sdDescending;
    else
        return false;
    return true;
}

// A decimal number with an optional sign and blanks around it. Numbers beyond 32 bits saturate rather
// than fail: they are absurd, not unreadable, and the caller clamps them.
bool ParseNumber(std::string_view Text, int32_t& Value) {
    Text = TrimView(Text);
    bool negative = false;
    if (!Text.empty() && (Text.front() == '+' || Text.front() == '-')) {
        negative = Text.front() == '-';
        Text.remove_prefix(1);
    }
    if (Text.empty()) return false;
    constexpr int64_t limit = int64_t{std::numeric_limits<int32_t>::max()} + 1;
    int64_t v = 0;
    for (const char c : Text) {
        if (c < '0' || c > '9') return false;
        v = std::min(v * 10 + (c - '0'), limit);
    }
    v = negative ? -v : std::min(v, limit - 1);
    Value = static_cast<int32_t>(v);
    return true;
}

// Takes what each of the comma-separated parts gives; a part that does not parse, or is not there,
// leaves that setting as it was.
void ParseColumn(const std::string& Value, TGridColumnLayout& Column) {
    std::vector<std::string_view> parts;
    std::string_view rest = Value;
    for (size_t comma; (comma = rest.find(',')) != std::string_view::npos; rest.remove_prefix(comma + 1))
        parts.push_back(rest.substr(0, comma));
    parts.push_back(rest);
    parts.resize(std::max<size_t>(parts.size(), 6));

    int32_t n = 0;
    if (ParseNumber(parts[0], n)) Column.Position = n;
    if (ParseNumber(parts[1], n)) Column.Width = n;
    if (ParseNumber(parts[2], n)) Column.Visible = n != 0;
    ParseSort(parts[3], Column.Sort);
    if (ParseNumber(parts[4], n)) Column.SortIndex = n;
    if (ParseNumber(parts[5], n)) Column.GroupIndex = n;
}

} // namespace

TGridLayout TGridLayout::Defaults(int32_t WidthUnit) {
    TGridLayout layout;
    for (int i = 0; i < NoticeFieldCount; ++i) {
        const NoticeBdColRec& entry = NoticeBdColumnArray[i];
        TGridColumnLayout& c = layout.FColumns[entry.Field];
        c = TGridColumnLayout{};
        c.Field = entry.Field;
        c.Position = i;
        c.Width = entry.DefaultWidth * WidthUnit;
        c.Visible = entry.ShownByDefault;
    }
    layout.Normalize(); // keeps widths within range whatever the unit
    return layout;
}

std::vector<TNoticeField> TGridLayout::FieldsInPositionOrder() const {
    return FieldsBy([this](TNoticeField f) { return FColumns[f].Position; });
}

void TGridLayout::MoveColumn(TNoticeField Field, int32_t Position) {
    std::vector<TNoticeField> order = FieldsInPositionOrder();
    order.erase(std::find(order.begin(), order.end(), Field));
    Position = std::clamp<int32_t>(Position, 0, NoticeFieldCount - 1);
    order.insert(order.begin() + Position, Field);
    for (int i = 0; i < NoticeFieldCount; ++i)
        FColumns[order[i]].Position = i;
}

std::vector<TSortColumn> TGridLayout::GroupColumns() const {
    std::vector<TSortColumn> out;
    for (TNoticeField f : FieldsBy([this](TNoticeField f) { return FColumns[f].GroupIndex; })) {
        const TGridColumnLayout& c = FColumns[f];
        if (c.GroupIndex >= 0) out.push_back({f, c.Sort == TSortDirection::sdDescending});
    }
    return out;
}

std::vector<TSortColumn> TGridLayout::SortColumns() const {
    // A direction without a priority sorts after the prioritised columns.
    const auto priority = [this](TNoticeField f) {
        const int32_t i = FColumns[f].SortIndex;
        return i < 0 ? int64_t{std::numeric_limits<int32_t>::max()} + 1 : int64_t{i};
    };
    std::vector<TSortColumn> out;
    for (TNoticeField f : FieldsBy(priority)) {
        const TGridColumnLayout& c = FColumns[f];
        if (c.Sort != TSortDirection::sdNone && c.GroupIndex < 0)
            out.push_back({f, c.Sort == TSortDirection::sdDescending});
    }
    return out;
}

void TGridLayout::Normalize() {
    for (int f = 0; f < NoticeFieldCount; ++f) {
        TGridColumnLayout& c = FColumns[f];
        c.Field = static_cast<TNoticeField>(f);
        c.Width = std::clamp<int32_t>(c.Width, 0, MaxWidth);
        if (c.GroupIndex < 0) c.GroupIndex = -1;
        if (c.Sort == TSortDirection::sdNone) c.SortIndex = -1;
    }
    const std::vector<TSortColumn> groups = GroupColumns();
    const std::vector<TSortColumn> sorts = SortColumns();
    const std::vector<TNoticeField> order = FieldsInPositionOrder();
    for (TGridColumnLayout& c : FColumns)
        c.SortIndex = -1;
    for (size_t i = 0; i < groups.size(); ++i)
        FColumns[groups[i].Field].GroupIndex = static_cast<int32_t>(i);
    for (size_t i = 0; i < sorts.size(); ++i)
        FColumns[sorts[i].Field].SortIndex = static_cast<int32_t>(i);
    for (int i = 0; i < NoticeFieldCount; ++i)
        FColumns[order[i]].Position = i;
}

void TGridLayout::SaveToIni(TIniFile& Ini, const std::string& Section) const {
    TGridLayout layout = *this;
    layout.Normalize();
    Ini.EraseSection(Section);
    Ini.WriteInteger(Section, "Version", 1);
    for (TNoticeField f : layout.FieldsInPositionOrder()) {
        const TGridColumnLayout& c = layout.FColumns[f];
        Ini.WriteString(Section, NoticeFieldName(f),
                        IntToStr(c.Position) + "," + IntToStr(c.Width) + "," + (c.Visible ? "1" : "0") + "," +
                            SortText(c.Sort) + "," + IntToStr(c.SortIndex) + "," + IntToStr(c.GroupIndex));
    }
}

void TGridLayout::LoadFromIni(const TIniFile& Ini, const std::string& Section) {
    // The ini reader keeps one value per key (the last one in the file, whatever the letter case), so a
    // repeated field simply takes its last line. "Version" and other unknown keys are not fields.
    for (const auto& [key, value] : Ini.ReadSectionValues(Section)) {
        TNoticeField field;
        if (FindNoticeField(key, field)) ParseColumn(value, FColumns[field]);
    }
    Normalize();
}
