#include "DemoEstate.h"

#include <algorithm>
#include <ctime>
#include <iterator>
#include <vector>

namespace {

const char* const kServers[] = {"DBPROD01", "DBPROD02", "DBTEST01", "DBREPORT"};

struct TEventKind {
    const char* SourceId;
    const char* Summary;
    const char* Text;
    int32_t Severity;
};

const TEventKind kKinds[] = {
    {"TBS_FULL", "Tablespace USERS is 92% full", "Free space in tablespace USERS fell below 8% (<1 GB left).",
     2},
    {"LONG_TXN", "Long running transaction",
     "A transaction has been open for more than 30 minutes & holds locks.", 2},
    {"REPL_LAG", "Replication lag above 60 s", "The standby is more than 60 seconds behind the primary.", 3},
    {"BACKUP_FAIL", "Nightly backup failed", "The backup job \"nightly_full\" ended with an error.", 4},
    {"DEADLOCK", "Deadlock detected", "Two sessions were deadlocked; one was rolled back.", 1},
    {"CPU_HIGH", "CPU above 90% for 5 minutes", "Processor use stayed above 90% for 5 minutes.", 3},
};

const char* const kSeverityText[] = {"Normal", "Warning", "Fatal", "Critical"};

std::string Element(const char* name, const std::string& value) {
    return std::string("<") + name + ">" + value + "</" + name + ">";
}

// The board looks for NoticeList among the children of the outermost element, so the list is wrapped.
std::string Message(const std::string& notices) {
    return "<NoticeMessage><NoticeList>" + notices + "</NoticeList></NoticeMessage>";
}

} // namespace

std::string DemoXmlEncode(const std::string& text) {
    std::string out;
    out.reserve(text.size());
    for (char c : text) {
        switch (c) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '"':
            out += "&quot;";
            break;
        case '\'':
            out += "&apos;";
            break;
        default:
            out += c;
        }
    }
    return out;
}

std::string DemoIsoTime(std::time_t t) {
    std::tm local{};
    localtime_r(&t, &local);
    char buf[32];
    std::strftime(buf, sizeof(buf), "%Y-%m-%dT%H:%M:%S", &local);
    return buf;
}

std::string DemoIsoNow() {
    return DemoIsoTime(std::time(nullptr));
}

TDemoEstate::TDemoEstate(uint32_t seed, std::string SourceType)
    : FRandom(seed), FSourceType(std::move(SourceType)) {}

std::string TDemoEstate::NoticeXml(const char* command, const TEvent& e, bool full) const {
    std::string x = "<Notice>" + Element("Command", command) + Element("adpt_id", "DEMO") +
                    Element("adpt_orig_key", DemoXmlEncode(e.Key));
    if (full) {
        const int32_t s = e.Severity;
        x += Element("adpt_orig_server", DemoXmlEncode(e.Server)) + Element("adpt_source_type", DemoXmlEncode(FSourceType)) +
             Element("adpt_source_id", DemoXmlEncode(e.SourceId)) +
             Element("note_summary", DemoXmlEncode(e.Summary)) + Element("note_text", DemoXmlEncode(e.Text)) +
             Element("note_raised_date", e.FirstRaised) + Element("note_last_raised_date", e.LastRaised) +
             Element("note_count", std::to_string(e.Count)) + Element("note_severity", std::to_string(s)) +
             Element("note_severity_str", kSeverityText[s - 1]) + Element("note_group_notified", "DBA Team") +
             Element("note_pvo_node", DemoXmlEncode(e.Server)) +
             Element("ack_code", DemoXmlEncode("ACK-" + e.Key)) +
             Element("del_code", DemoXmlEncode("DEL-" + e.Key));
    }
    if (!e.AckDate.empty()) x += Element("ack_date", e.AckDate);
    return x + "</Notice>";
}

std::string TDemoEstate::Tick() {
    std::string body;
    const int notices = 1 + static_cast<int>(FRandom() % 3);
    for (int n = 0; n < notices; ++n) {
        // A full estate only repeats or clears, so the board does not grow without end.
        const uint32_t roll = FLive.size() >= 12 ? FRandom() % 4 : FRandom() % 10;
        if (!FLive.empty() && roll < 3) { // raised again
            auto it = std::next(FLive.begin(), static_cast<long>(FRandom() % FLive.size()));
            it->second.Count += 1;
            // Dates carry whole seconds: a repeat within the same second still has to come out later.
            it->second.LastRaisedAt = std::max(std::time(nullptr), it->second.LastRaisedAt + 1);
            it->second.LastRaised = DemoIsoTime(it->second.LastRaisedAt);
            body += NoticeXml("post", it->second, true);
        } else if (!FLive.empty() && roll < 4) { // cleared at the source
            auto it = std::next(FLive.begin(), static_cast<long>(FRandom() % FLive.size()));
            body += NoticeXml("delete", it->second, false);
            FLive.erase(it);
        } else { // a new event
            const TEventKind& kind = kKinds[FRandom() % std::size(kKinds)];
            TEvent e;
            e.Server = kServers[FRandom() % std::size(kServers)];
            e.SourceId = kind.SourceId;
            e.Key = "DEMO-" + e.Server + "-" + kind.SourceId + "-" + std::to_string(++FSerial);
            e.Summary = e.Server + ": " + kind.Summary;
            e.Text = kind.Text;
            e.Severity = kind.Severity;
            e.Count = 1;
            e.LastRaisedAt = std::time(nullptr);
            e.FirstRaised = e.LastRaised = DemoIsoTime(e.LastRaisedAt);
            ++FRaised;
            body += NoticeXml("post", e, true);
            FLive.emplace(e.Key, e);
        }
    }
    return Message(body);
}

const TDemoEstate::TEvent* TDemoEstate::FindByCode(const std::string& code, const char* prefix) const {
    const auto it = FLive.find(code.rfind(prefix, 0) == 0 ? code.substr(4) : std::string());
    return it == FLive.end() ? nullptr : &it->second;
}

std::string TDemoEstate::Acknowledge(const std::string& code) {
    const TEvent* found = FindByCode(code, "ACK-");
    if (!found) return std::string();
    TEvent& e = FLive.at(found->Key);
    e.AckDate = DemoIsoNow();
    TEvent update; // only the key and the acknowledgement date change
    update.Key = e.Key;
    update.AckDate = e.AckDate;
    return Message(NoticeXml("update", update, false));
}

std::string TDemoEstate::Delete(const std::string& code) {
    const TEvent* found = FindByCode(code, "DEL-");
    if (!found) return std::string();
    const std::string xml = Message(NoticeXml("delete", *found, false));
    const std::string key = found->Key; // erase must not read the key from the node it frees
    FLive.erase(key);
    return xml;
}
