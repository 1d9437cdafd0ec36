#include "reports/Ugridtoxml.h"

#include "core/Nb_utils.h"
#include "core/Znb_fieldtext.h"
#include "core/Znb_xml.h"
#include "support/StrUtils.h"

#include <algorithm>
#include <unordered_map>

namespace {

constexpr std::string_view CRLF = "\r\n";
constexpr std::string_view ThreeBlanks = "   ";

// The line of each name, joined by CR LF (none after the last; an empty list gives "").
template <class TLine> std::string JoinLines(const std::vector<std::string>& Names, TLine Line) {
    std::string text;
    for (const std::string& name : Names) {
        if (!text.empty()) text += CRLF;
        text += Line(name);
    }
    return text;
}

std::string EmptyElements(const std::vector<std::string>& Names) {
    return JoinLines(Names, [](const std::string& name) { return "<" + name + "/>"; });
}

// Widths of one column's values followed by three blanks. Each distinct value is measured once while the
// column's values repeat (source, severity, count ...); a column whose first values are nearly all
// different (summaries, dates) is measured directly, as keeping its texts costs more than measuring them.
class TValueWidths {
public:
    TValueWidths(ITextMeasurer& Measurer, bool Cache) : FMeasurer(&Measurer), FCache(Cache) {}

    int Width(const std::string& Value) {
        if (FCache && ++FLookups == TrialLookups && FWidths.size() > TrialLookups / 2) {
            FCache = false;
            FWidths = {};
        }
        if (!FCache) return Measure(Value);
        const auto found = FWidths.find(Value);
        if (found != FWidths.end()) return found->second;
        const int width = Measure(Value);
        FWidths.emplace(Value, width);
        return width;
    }

private:
    int Measure(const std::string& Value) { return FMeasurer->TextWidth(Value + std::string(ThreeBlanks)); }

    static constexpr size_t TrialLookups = 1024;
    ITextMeasurer* FMeasurer;
    bool FCache;
    size_t FLookups = 0;
    std::unordered_map<std::string, int> FWidths;
};

// A column as rows are built: its field, and where its width entry is.
struct TRowColumn {
    std::string Name;
    TNoticeField Field = nf_nb_internal_key;
    size_t WidthEntry = 0; // index in ColumnProps of the first "<name>_width" entry
};

TNoticeField FieldByName(const std::string& Name) {
    TNoticeField field;
    if (!FindNoticeField(Name, field)) throw EDatabaseError("Field '" + Name + "' not found");
    return field;
}

// Puts the dataset back on its row and re-attaches its views, whichever way the walk ends.
class TDataSetWalk {
public:
    explicit TDataSetWalk(TNoticeStore& DataSet) : FDataSet(DataSet) {
        FDataSet.DisableControls();
        FBookmark = FDataSet.GetBookmark();
    }
    ~TDataSetWalk() {
        if (FBookmark != 0 && FDataSet.State() == TDataSetState::dsBrowse &&
            FDataSet.BookmarkValid(FBookmark))
            FDataSet.GotoBookmark(FBookmark);
        FDataSet.FreeBookmark(FBookmark);
        FDataSet.EnableControls();
    }
    TDataSetWalk(const TDataSetWalk&) = delete;
    TDataSetWalk& operator=(const TDataSetWalk&) = delete;

private:
    TNoticeStore& FDataSet;
    TBookmark FBookmark = 0;
};

} // namespace

void TPrintColumnsDefinition::initializeFromGrid(IReportGrid& Grid, bool SelectedOnly,
                                                 ITextMeasurer& Measurer) {
    GroupByFields.clear();
    SelectedFields.clear();
    ColumnProps.clear();
    XmlData.clear();

    const auto describeColumn = [&](const TReportColumn& Column) {
        const std::string& name = Column.FieldName;
        ColumnProps.emplace_back(name + "_caption", Column.Caption);
        ColumnProps.emplace_back(name + "_width", IntToStr(Measurer.TextWidth(Column.Caption + "   ")));
        // Dates go with the text columns; the severity prints as its text.
        const bool text = name == "note_severity" || Column.DataType == TFieldType::ftString ||
                          Column.DataType == TFieldType::ftMemo || Column.DataType == TFieldType::ftDateTime;
        ColumnProps.emplace_back(name + "_datatype", text ? "S" : "I");
    };
    for (int i = 0; i < Grid.GroupColumnCount(); ++i) {
        const TReportColumn column = Grid.GroupColumn(i);
        GroupByFields.push_back(column.FieldName);
        describeColumn(column);
    }
    for (int i = 0; i < Grid.VisibleColumnCount(); ++i) {
        const TReportColumn column = Grid.VisibleColumn(i);
        SelectedFields.push_back(column.FieldName);
        describeColumn(column);
    }

    // Row attributes come in this order: the visible columns, then the group columns. A field listed twice
    // shares the first width entry, as lookups by name find the first.
    std::vector<TRowColumn> columns;
    std::vector<int> widths(ColumnProps.size(), 0);
    for (const std::vector<std::string>* names : {&SelectedFields, &GroupByFields})
        for (const std::string& name : *names) {
            TRowColumn column{name, FieldByName(name), 0};
            const std::string entry = name + "_width";
            while (!SameText(ColumnProps[column.WidthEntry].first, entry))
                ++column.WidthEntry;
            widths[column.WidthEntry] = StrToInt(ColumnProps[column.WidthEntry].second);
            columns.push_back(std::move(column));
        }

    std::vector<TValueWidths> valueWidths(columns.size(), TValueWidths(Measurer, CacheTextWidths));
    std::string row;
    const auto buildRow = [&](int32_t Id, const auto& ValueOf) {
        row.assign("<row id=\"");
        row += IntToStr(Id);
        row += "\" ";
        for (size_t c = 0; c < columns.size(); ++c) {
            const TRowColumn& column = columns[c];
            const std::string value = ValueOf(column.Field);
            row += ' ';
            row += column.Name;
            row += "=\"";
            row += XML_Encode(value);
            row += '"';
            const int width = valueWidths[c].Width(value);
            if (widths[column.WidthEntry] < width) {
                widths[column.WidthEntry] = width;
                ColumnProps[column.WidthEntry].second = IntToStr(width);
            }
        }
        row += "/>";
        if (XmlData.empty()) {
            // Room for as many rows as the dataset holds, each about as long as the first: the rows of a
            // large grid are then not copied again and again as the text grows.
            XmlData.reserve(size_t(std::max(Grid.DataSet().RecordCount(), 1)) * (row.size() + CRLF.size()) *
                            5 / 4);
        } else {
            XmlData += CRLF;
        }
        XmlData += row;
    };

    if (SelectedOnly) {
        TNoticeStore& dataSet = Grid.DataSet();
        TDataSetWalk walk(dataSet);
        for (int i = 0; i < Grid.SelectedCount(); ++i) {
            dataSet.GotoBookmark(Grid.SelectedBookmark(i));
            const TNoticeRecord& record = dataSet.ActiveRecord();
            buildRow(dataSet.RecNo(), [&](TNoticeField Field) {
                return Field == nf_note_severity ? Get_Severity_String(record.AsInteger(Field))
                                                 : FieldAsString(record, Field);
            });
        }
    } else {
        // Every row of this mode carries id="0" (its counter was never advanced); reports rely on it.
        Grid.WalkNodes([&](const TGridNode& Node) {
            if (Node.IsGroup || Node.Row == nullptr) return true;
            const TNoticeRecord& record = *Node.Row;
            buildRow(0, [&](TNoticeField Field) -> std::string {
                if (record.IsNull(Field)) return {};
                if (Field == nf_note_severity) return Get_Severity_String(record.AsInteger(Field));
                return FieldDisplayText(record, Field);
            });
            return true;
        });
    }
}

std::string TPrintColumnsDefinition::initializeXMLTemplate(const std::string& Template,
                                                           const std::string& ReportTitle) const {
    // Plain text substitution in this order: a placeholder word inside inserted text is replaced by the
    // later steps, which the report layout accepts.
    std::string text = ReplaceAll(Template, ":field_definitions", getFieldDefinitions(), true);
    text = ReplaceAll(text, ":select_fields", getSelectedFields(), true);
    const std::string groupBy = getGroupByFieldDefinitions();
    if (!groupBy.empty()) {
        text = ReplaceAll(text, "<groupBy/>", "<groupBy>" + groupBy + "</groupBy>", true);
        text = ReplaceAll(text, "<GroupByFields/>",
                          "<GroupByFields>" + getSelectedGroupBy() + "</GroupByFields>", true);
    }
    text = ReplaceAll(text, ":xml_data", XmlData, true);
    // The rows make this text large; it is copied again only when it holds the last placeholder.
    if (FindText(text, ":report_title") != std::string::npos)
        text = ReplaceAll(text, ":report_title", ReportTitle, true);
    return text;
}

std::string TPrintColumnsDefinition::getFieldDefinitions() const {
    const auto line = [this](const std::string& name) {
        // Two blanks before fieldDef, and name and caption unescaped: the report library reads it so.
        std::string text = "<field name=\":name\" caption=\":caption\"  fieldDef=\":fieldtype\" "
                           "width=\":width\" ignore=\":ignore\"/>";
        text = ReplaceAll(text, ":name", name, true);
        text = ReplaceAll(text, ":caption", getProp(name, "caption"), true);
        text = ReplaceAll(text, ":fieldtype", getProp(name, "datatype") == "I" ? "numeric" : "", true);
        text = ReplaceAll(text, ":width", getProp(name, "width"), true);
        return ReplaceAll(text, ":ignore", "N", true);
    };
    std::string text = JoinLines(SelectedFields, line);
    const std::string groups = JoinLines(GroupByFields, line);
    if (!text.empty() && !groups.empty()) text += CRLF;
    return text + groups;
}

std::string TPrintColumnsDefinition::getGroupByFieldDefinitions() const {
    return JoinLines(GroupByFields, [](const std::string& name) {
        return "<field name=\"" + name + "\" groupByBand=\"maingroupbyband\"/>";
    });
}

std::string TPrintColumnsDefinition::getSelectedFields() const {
    return EmptyElements(SelectedFields);
}

std::string TPrintColumnsDefinition::getSelectedGroupBy() const {
    return EmptyElements(GroupByFields);
}

std::string TPrintColumnsDefinition::getProp(const std::string& FieldName, const std::string& Prop) const {
    const std::string entry = FieldName + "_" + Prop;
    for (const auto& [name, value] : ColumnProps)
        if (SameText(name, entry)) return value;
    return {};
}
