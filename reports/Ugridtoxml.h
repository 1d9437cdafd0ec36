// TPrintColumnsDefinition: what the notice grid shows, turned into the XML text the report library prints.
// It reads the grid's layout (group columns, visible columns, captions), the rows to print (all rows as the
// grid shows them, or only the selected rows), measures each column's width in pixels with the font
// "Arial", and fills a report template by plain text substitution. No XML parser is involved: every element
// is built as text, and the template's placeholders are documented in docs/report-xml.md.
//
// The grid is reached through IReportGrid (the grid widget implements it) and text widths through
// ITextMeasurer (the window layer measures with QFontMetrics), so the rules are tested without a screen.
// Board thread only.
#pragma once

#include "core/TGridLayout.h"
#include "core/TNoticeGridView.h"
#include "core/TNoticeStore.h"

#include <functional>
#include <string>
#include <vector>

// A grid column as the report sees it.
struct TReportColumn {
    std::string FieldName; // the bound notice field
    std::string Caption;   // as displayed
    TFieldType DataType = TFieldType::ftString;
};

// What the report reads of the grid.
class IReportGrid {
public:
    virtual ~IReportGrid() = default;
    virtual int GroupColumnCount() const = 0; // in grouping order
    virtual TReportColumn GroupColumn(int Index) const = 0;
    virtual int VisibleColumnCount() const = 0; // in the order they are shown
    virtual TReportColumn VisibleColumn(int Index) const = 0;
    virtual int SelectedCount() const = 0; // selected rows, in the order the user selected them
    virtual TBookmark SelectedBookmark(int Index) const = 0;
    // The dataset behind the grid: the selected-rows walk moves its current row (and puts it back).
    virtual TNoticeStore& DataSet() = 0;
    // The grid's nodes in display order, group headings included (TNoticeGridView::WalkNodes).
    virtual void WalkNodes(const std::function<bool(const TGridNode&)>& Visit) const = 0;
};

// Pixel width of a text in one font.
class ITextMeasurer {
public:
    virtual ~ITextMeasurer() = default;
    virtual int TextWidth(const std::string& Utf8Text) = 0;
};

class TPrintColumnsDefinition {
public:
    std::vector<std::string> GroupByFields;  // field names of the group columns, in grouping order
    std::vector<std::string> SelectedFields; // field names of the visible columns, in visible order
    // "<field>_caption", "<field>_width", "<field>_datatype" entries in the order they were appended.
    std::vector<std::pair<std::string, std::string>> ColumnProps;
    std::string XmlData; // the row elements, joined by CR LF
    // Measure each distinct text of a column once per initializeFromGrid while the column's values repeat
    // (a costly measurer is then asked little); benchmarks turn it off to see what it saves.
    bool CacheTextWidths = true;

    // Fills all four members from the grid; Measurer gives the widths ("Arial"). In selected-rows mode the
    // dataset's current row moves and is put back, its controls disabled meanwhile, also when a dataset
    // error (EDatabaseError) passes; a column bound to no notice field raises EDatabaseError.
    void initializeFromGrid(IReportGrid& Grid, bool SelectedOnly, ITextMeasurer& Measurer);
    // The template with its placeholders replaced, in the documented order.
    std::string initializeXMLTemplate(const std::string& Template, const std::string& ReportTitle) const;

    std::string getFieldDefinitions() const;
    std::string getGroupByFieldDefinitions() const;
    std::string getSelectedFields() const;
    std::string getSelectedGroupBy() const;
    // The first ColumnProps value named FieldName + "_" + Prop; empty when absent.
    std::string getProp(const std::string& FieldName, const std::string& Prop) const;
};
