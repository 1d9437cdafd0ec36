// The board's insert, update and delete of one notice element.
#include "core/TNoticeBoard.h"

#include "core/Znb_data.h"
#include "core/Znb_noticetext.h"
#include "core/Znb_xml.h"
#include "support/Zs_datetime.h"

#include <array>
#include <unordered_map>

namespace {

// The first child element of each field's name, found in one pass over the notice's children. Senders
// usually write the elements in column-table order, so the entry after the last match is tried first.
struct TNoticeElements {
    const TXMLNode* Of[NoticeFieldCount] = {};

    explicit TNoticeElements(const TXMLNode& Notice) {
        static const std::unordered_map<std::string_view, size_t> columnOf = [] {
            std::unordered_map<std::string_view, size_t> m;
            for (size_t c = 0; c < NoticeBdColumnArray.size(); ++c)
                m.emplace(NoticeBdColumnArray[c].FieldName, c);
            return m;
        }();
        static const std::array<std::string_view, NoticeFieldCount> names = [] {
            std::array<std::string_view, NoticeFieldCount> n;
            for (size_t c = 0; c < NoticeBdColumnArray.size(); ++c)
                n[c] = NoticeBdColumnArray[c].FieldName;
            return n;
        }();
        size_t guess = 0;
        const int32_t count = Notice.GetChildCount();
        for (int32_t i = 0; i < count; ++i) {
            const TXMLNode* child = Notice.GetChild(i);
            const std::string_view name = child->GetName(); // names match exactly, as the XML library's do
            size_t column = NoticeBdColumnArray.size();
            if (guess < names.size() && name == names[guess]) {
                column = guess;
            } else {
                const auto it = columnOf.find(name);
                if (it != columnOf.end()) column = it->second;
            }
            if (column == NoticeBdColumnArray.size()) continue;
            guess = column + 1;
            const TNoticeField field = NoticeBdColumnArray[column].Field;
            if (!Of[field]) Of[field] = child;
        }
    }
};

// Whether ElementText returns the element's own line rather than a joined copy in the scratch string.
bool TextInTree(const TXMLNode& Element) {
    return Element.GetContents().Count() <= 1;
}

// String values wait here and go into the row in one allocation. A value is kept as a view of the
// element's text while the text is usable as it stands (the tree outlives the row update); only a value
// that has to be decoded, shortened or joined from several lines is copied.
struct TPendingStrings {
    std::array<std::string_view, NoticeFieldCount> Values;
    std::array<std::string, NoticeFieldCount> Owned; // the values that could not stay views
    uint32_t Mask = 0;

    // Text: the element's trimmed text; Stable: it lives in the tree rather than in a scratch string.
    // Size: the column's width for a string column (longer values end in "..."), -1 for a memo.
    void Set(TNoticeField Field, std::string_view Text, bool Stable, int32_t Size) {
        if (Text.find('&') != std::string_view::npos) {
            Owned[Field] = XML_Decode(Text);
            Text = Owned[Field];
            Stable = true;
        }
        if (Size >= 0 && static_cast<int64_t>(Text.size()) > Size) {
            std::string cut(Text.substr(0, static_cast<size_t>(Size > 3 ? Size - 3 : 0)));
            cut += "...";
            Owned[Field] = std::move(cut);
            Text = Owned[Field];
        } else if (!Stable) {
            Owned[Field] = std::string(Text);
            Text = Owned[Field];
        }
        Values[Field] = Text;
        Mask |= 1u << Field;
    }
    // A string or memo column's value from its element.
    void Set(const NoticeBdColRec& Col, std::string_view Text, const TXMLNode& Element) {
        Set(Col.Field, Text, TextInTree(Element), Col.DataType == TFieldType::ftString ? Col.Size : -1);
    }
    void Flush(TNoticeRecord& Row) {
        if (!Mask) return;
        Row.SetStrings(Values.data(), Mask);
        Mask = 0;
    }
};

} // namespace

void TNoticeBoard::AddNote(const TXMLNode& Notice) {
    try {
        std::string node;
        std::string severity;
        std::string scratch;
        TPendingStrings strings;
        const TNoticeElements elements(Notice);
        FNoticeBd.Append();
        TNoticeRecord& row = FNoticeBd.Buffer();
        for (const NoticeBdColRec& col : NoticeBdColumnArray) {
            const TXMLNode* element = elements.Of[col.Field];
            if (!element) continue;
            const std::string_view text = TrimView(ElementText(*element, scratch));
            if (col.Field == nf_note_pvo_node) node = XML_Decode(text);
            if (col.Field == nf_note_severity_str) severity = XML_Decode(text);
            switch (col.DataType) {
            case TFieldType::ftString:
            case TFieldType::ftMemo:
                strings.Set(col, text, *element);
                break;
            case TFieldType::ftInteger:
            case TFieldType::ftAutoInc: // Post assigns the key whatever the notice carried
                if (!text.empty()) row.SetInteger(col.Field, StrToIntDef(text, 0));
                break;
            case TFieldType::ftDateTime:
                if (!text.empty()) row.SetDateTime(col.Field, ISO8601ToDate(text));
                break;
            }
        }
        strings.Flush(row);
        if (FNoticeBd.State() != TDataSetState::dsBrowse) FNoticeBd.Post();
        if (PVO_Node_Stats) PVO_Node_Stats->Inc(node, severity);
    } catch (const EKeysExhausted& e) {
        FNoticeBd.Cancel();
        // The protocol's own line says only "append error"; this one says why, once per refused notice.
        NoticeLog("AddNote : " + e.Message() +
                  "; the Notice Board accepts no new notices until it is restarted");
        throw Exception("Notice Board append error");
    } catch (...) {
        FNoticeBd.Cancel();
        throw Exception("Notice Board append error");
    }
}

void TNoticeBoard::UpdateNote(const TXMLNode& Notice) {
    const TXMLNode* keyNode = Notice.getChildNodeByName("adpt_orig_key");
    if (!keyNode) return;
    TPrimaryIndexGuard guard{FNoticeBd};
    try {
        const std::string key = NoticeLookupKey(*keyNode);
        if (key.empty()) return;
        FNoticeBd.SetIndexName(TNoticeStore::OrigKeyIndexName);
        if (!FNoticeBd.FindKey(key)) return; // an update never creates a notice
        // Fields assigned before a failing one are still posted.
        struct TPostAnyway {
            TNoticeStore& Store;
            ~TPostAnyway() {
                if (Store.State() == TDataSetState::dsBrowse) return;
                try {
                    Store.Post();
                } catch (...) {
                    Store.Cancel();
                }
            }
        } postAnyway{FNoticeBd};
        FNoticeBd.Edit();
        TNoticeRecord& row = FNoticeBd.Buffer();
        std::string scratch;
        TPendingStrings strings;
        const TNoticeElements elements(Notice);
        try {
            for (const NoticeBdColRec& col : NoticeBdColumnArray) {
                const TXMLNode* element = elements.Of[col.Field];
                if (!element || col.DataType == TFieldType::ftAutoInc) continue;
                const std::string_view text = TrimView(ElementText(*element, scratch));
                switch (col.DataType) {
                case TFieldType::ftString:
                case TFieldType::ftMemo:
                    strings.Set(col, text, *element);
                    break;
                case TFieldType::ftInteger:
                case TFieldType::ftAutoInc:
                    row.SetInteger(col.Field, StrToIntDef(XML_Decode(text), 0));
                    break;
                case TFieldType::ftDateTime: {
                    // The first-raised date of a notice never changes after insertion.
                    const std::string value = XML_Decode(text);
                    if (!value.empty() && col.Field != nf_note_raised_date)
                        row.SetDateTime(col.Field, ISO8601ToDate(value));
                    break;
                }
                }
            }
        } catch (...) {
            strings.Flush(row);
            throw;
        }
        strings.Flush(row);
    } catch (const std::exception& e) {
        NoticeLog("UpdateNote : Exception occurred : " + ExceptionText(e));
    }
}

void TNoticeBoard::DeleteNote(const TXMLNode& Notice) {
    const TXMLNode* keyNode = Notice.getChildNodeByName("adpt_orig_key");
    if (!keyNode) return;
    TPrimaryIndexGuard guard{FNoticeBd};
    try {
        std::string scratch;
        const std::string key = LookupKey(Trim(XML_Decode(ElementText(*keyNode, scratch))));
        FNoticeBd.SetIndexName(TNoticeStore::OrigKeyIndexName);
        if (!FNoticeBd.FindKey(key)) return;
        const TNoticeRecord& row = FNoticeBd.ActiveRecord();
        const std::string node(row.AsString(nf_note_pvo_node));
        const std::string severity(row.AsString(nf_note_severity_str));
        FNoticeBd.Delete();
        if (PVO_Node_Stats) PVO_Node_Stats->Dec(node, severity);
    } catch (const std::exception& e) {
        NoticeLog("DeleteNote : Exception occurred : " + ExceptionText(e));
    }
}
