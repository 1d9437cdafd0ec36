// A notice store with a few notices and a grid over it as the report reads one: columns, selection and
// the node walk are set by the test, the rows are real store rows.
#pragma once

#include "reports/Ugridtoxml.h"

#include "support/DateUtils.h"

#include <string>
#include <vector>

// Every byte 6 pixels wide: widths in expected texts are 6 times the length plus 18 for the three blanks.
class TFixedWidthMeasurer : public ITextMeasurer {
public:
    int TextWidth(const std::string& Utf8Text) override {
        ++Calls;
        return 6 * static_cast<int>(Utf8Text.size());
    }
    int Calls = 0;
};

struct TTestNotice {
    std::string SourceId, Summary, Node;
    int32_t Severity = 1, Count = 1;
    TDateTime Raised = 0;
    bool NullSummary = false;
};

class TFakeReportGrid : public IReportGrid {
public:
    TNoticeStore Store;
    std::vector<TReportColumn> Groups, Visible;
    std::vector<TBookmark> Selected;
    std::vector<TGridNode> Nodes;

    // Appends a notice; its bookmark is its key, 1, 2, ... in order of adding.
    TBookmark Add(const TTestNotice& N) {
        Store.Append();
        TNoticeRecord& b = Store.Buffer();
        b.SetString(nf_adpt_source_id, N.SourceId);
        if (!N.NullSummary) b.SetString(nf_note_summary, N.Summary);
        b.SetString(nf_note_pvo_node, N.Node);
        b.SetInteger(nf_note_severity, N.Severity);
        b.SetInteger(nf_note_count, N.Count);
        b.SetDateTime(nf_note_raised_date, N.Raised);
        Store.Post();
        return Store.GetBookmark();
    }
    const TNoticeRecord* Row(TBookmark Key) const {
        for (int32_t i = 1; i <= Store.RecordCount(); ++i)
            if (Store.RowAt(i)->AsInteger(nf_nb_internal_key) == Key) return Store.RowAt(i);
        return nullptr;
    }
    void AddRowNode(TBookmark Key) {
        Nodes.push_back({false, int(Groups.size()), nf_nb_internal_key, Row(Key), 0, 1});
    }
    void AddGroupNode(TBookmark FirstKey, int Level = 0) {
        Nodes.push_back({true, Level, nf_note_pvo_node, Row(FirstKey), 0, 0});
    }

    static TReportColumn Column(TNoticeField Field, const std::string& Caption) {
        return {NoticeFieldName(Field), Caption, NoticeFieldType(Field)};
    }

    int GroupColumnCount() const override { return int(Groups.size()); }
    TReportColumn GroupColumn(int Index) const override { return Groups.at(size_t(Index)); }
    int VisibleColumnCount() const override { return int(Visible.size()); }
    TReportColumn VisibleColumn(int Index) const override { return Visible.at(size_t(Index)); }
    int SelectedCount() const override { return int(Selected.size()); }
    TBookmark SelectedBookmark(int Index) const override { return Selected.at(size_t(Index)); }
    TNoticeStore& DataSet() override { return Store; }
    void WalkNodes(const std::function<bool(const TGridNode&)>& Visit) const override {
        for (const TGridNode& node : Nodes)
            if (!Visit(node)) return;
    }
};
