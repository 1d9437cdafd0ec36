// Parse throughput of the board's XML reader against libxml2 on notice messages: one notice (17 field
// elements, about 400 bytes of field text, inside Notice inside NoticeList) and a hundred notices.
// "Parse" builds the tree and frees it; "ParseAndLookup" also finds every field by name and reads its
// text, as the notice protocol does. libxml2 is measured as xmlReadMemory + xmlFreeDoc.
#include "core/Znb_const.h"
#include "xml/djlpXML.h"

#include <benchmark/benchmark.h>
#include <libxml/parser.h>

#include <string>

namespace {

std::string NoticeMessage(int notices) {
    std::string text = "<?xml version=\"1.0\"?>\r\n<NoticeList>";
    for (int i = 0; i < notices; ++i) {
        const std::string n = std::to_string(i);
        text += "<Notice>\r\n<Command>post</Command>\r\n";
        text += "<adpt_id>DuskMere</adpt_id><adpt_orig_key>DM-ALERT-000" + n + "</adpt_orig_key>";
        text += "<adpt_orig_server>dbprod-cluster-07.example.net</adpt_orig_server>";
        text += "<adpt_source_type>duskmere</adpt_source_type><adpt_source_id>SRV-0042</adpt_source_id>";
        text += "<note_summary>Tablespace USERS is 91% full on instance PROD7</note_summary>";
        text += "<note_text>The tablespace USERS has passed the warning threshold of 90 percent. "
                "Free space: 1.2 GB of 14 GB. Growth over the last day: 310 MB. Consider adding a data "
                "file or purging old partitions &amp; archived rows.</note_text>";
        text += "<note_raised_date>2026-11-21T14:05:33</note_raised_date>";
        text += "<note_last_raised_date>2026-11-21T14:35:33</note_last_raised_date>";
        text += "<note_count>3</note_count><note_severity>2</note_severity>";
        text += "<note_severity_str>Warning</note_severity_str><note_group_notified>DBA-Oncall</"
                "note_group_notified>";
        text += "<note_pvo_node>PROD7</note_pvo_node><ack_date></ack_date><ack_code>none</ack_code>";
        text += "<del_code>none</del_code>\r\n</Notice>\r\n";
    }
    return text + "</NoticeList>";
}

const std::string& Message(int notices) {
    static const std::string one = NoticeMessage(1);
    static const std::string hundred = NoticeMessage(100);
    return notices == 1 ? one : hundred;
}

void Report(benchmark::State& state, const std::string& text, int notices) {
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(text.size()));
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * notices);
}

void BM_djlpXML_Parse(benchmark::State& state) {
    const int notices = static_cast<int>(state.range(0));
    const std::string& text = Message(notices);
    for (auto _ : state) {
        TXMLNode root(text);
        benchmark::DoNotOptimize(root.GetChildCount());
    }
    Report(state, text, notices);
}

void BM_djlpXML_ParseAndLookup(benchmark::State& state) {
    const int notices = static_cast<int>(state.range(0));
    const std::string& text = Message(notices);
    for (auto _ : state) {
        TXMLNode root(text);
        size_t total = 0;
        TXMLNode* list = root.getChildNodeByName("NoticeList");
        for (TXMLNode* n = list->getChildNodeByName("Notice"); n; n = list->getNextChildNodeByName(n)) {
            for (const auto& col : NoticeBdColumnArray)
                if (TXMLNode* field = n->getChildNodeByName(col.FieldName))
                    total += field->GetContents().JoinedText().size();
        }
        benchmark::DoNotOptimize(total);
    }
    Report(state, text, notices);
}

void BM_libxml2_Parse(benchmark::State& state) {
    const int notices = static_cast<int>(state.range(0));
    const std::string& text = Message(notices);
    for (auto _ : state) {
        xmlDocPtr doc = xmlReadMemory(text.data(), static_cast<int>(text.size()), "notice.xml", nullptr, 0);
        benchmark::DoNotOptimize(doc);
        xmlFreeDoc(doc);
    }
    Report(state, text, notices);
}

} // namespace

BENCHMARK(BM_djlpXML_Parse)->Arg(1)->Arg(100);
BENCHMARK(BM_djlpXML_ParseAndLookup)->Arg(1)->Arg(100);
BENCHMARK(BM_libxml2_Parse)->Arg(1)->Arg(100);

int main(int argc, char** argv) {
    xmlInitParser();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    xmlCleanupParser();
    return 0;
}
