// The report template with any content, filled by TPrintColumnsDefinition::initializeXMLTemplate from fixed
// fragments (a grouped and an ungrouped grid; a caption and a row that hold placeholder words themselves).
// The input is the template, and after its first NUL byte the report title. The result must be what the
// same substitutions give when made the plain way, one position at a time.
#include "FuzzSupport.h"

#include "reports/Ugridtoxml.h"
#include "support/StrUtils.h"

#include <string>

namespace {

// Every occurrence of From (ASCII letters in any case), left to right, none inside an inserted text.
std::string PlainReplace(const std::string& S, const std::string& From, const std::string& To) {
    std::string out;
    size_t i = 0;
    while (i + From.size() <= S.size()) {
        if (SameText(std::string_view(S).substr(i, From.size()), From)) {
            out += To;
            i += From.size();
        } else {
            out += S[i++];
        }
    }
    return out + S.substr(i);
}

std::string PlainFill(const TPrintColumnsDefinition& D, const std::string& Template,
                      const std::string& Title) {
    std::string text = PlainReplace(Template, ":field_definitions", D.getFieldDefinitions());
    text = PlainReplace(text, ":select_fields", D.getSelectedFields());
    if (!D.getGroupByFieldDefinitions().empty()) {
        text = PlainReplace(text, "<groupBy/>", "<groupBy>" + D.getGroupByFieldDefinitions() + "</groupBy>");
        text = PlainReplace(text, "<GroupByFields/>",
                            "<GroupByFields>" + D.getSelectedGroupBy() + "</GroupByFields>");
    }
    text = PlainReplace(text, ":xml_data", D.XmlData);
    return PlainReplace(text, ":report_title", Title);
}

TPrintColumnsDefinition Definition(bool Grouped) {
    TPrintColumnsDefinition d;
    d.SelectedFields = {"note_severity", "note_summary", "adpt_source_id"};
    d.ColumnProps = {{"note_severity_caption", "Severity"},
                     {"note_severity_width", "61"},
                     {"note_severity_datatype", "S"},
                     {"note_summary_caption", "Summary :report_title"},
                     {"note_summary_width", "214"},
                     {"note_summary_datatype", "S"},
                     {"adpt_source_id_caption", "Source & <id>"},
                     {"adpt_source_id_width", "90"},
                     {"adpt_source_id_datatype", "S"}};
    if (Grouped) {
        d.GroupByFields = {"note_pvo_node"};
        d.ColumnProps.insert(d.ColumnProps.begin(), {{"note_pvo_node_caption", "Node"},
                                                     {"note_pvo_node_width", "40"},
                                                     {"note_pvo_node_datatype", "S"}});
    }
    d.XmlData = "<row id=\"0\"  note_severity=\"Fatal\" note_summary=\"Disk &amp; :xml_data\" "
                "adpt_source_id=\"TS_FULL\"/>\r\n"
                "<row id=\"0\"  note_severity=\"Normal\" note_summary=\"\" adpt_source_id=\"X\"/>";
    return d;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* Data, size_t Size) {
    static const TPrintColumnsDefinition grouped = Definition(true), plain = Definition(false);
    const std::string input(InputText(Data, Size));
    const size_t nul = input.find('\0');
    const std::string templ = input.substr(0, nul);
    const std::string title = nul == std::string::npos ? "Notices" : input.substr(nul + 1);
    for (const TPrintColumnsDefinition* d : {&grouped, &plain}) {
        const std::string filled = d->initializeXMLTemplate(templ, title);
        FUZZ_CHECK(filled == PlainFill(*d, templ, title), "template filled differently from the plain way");
    }
    return 0;
}
