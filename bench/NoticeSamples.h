// Typical notice messages for the benchmarks: about 400 bytes of field text per notice, keys unique per
// prefix and number, nodes and severities cycling as a monitored estate of 20 nodes would send them.
#pragma once

#include <cstdint>
#include <string>

inline const char* const SampleSeverities[4] = {"Normal", "Warning", "Fatal", "Critical"};

// Field values of notice number n; together about 400 bytes.
struct TSampleNotice {
    std::string Key, Server, Summary, Text, Node, SeverityStr;
    int Severity;
};

inline TSampleNotice SampleNotice(const std::string& prefix, int64_t n) {
    TSampleNotice s;
    const std::string num = std::to_string(n);
    s.Key = prefix + "/db" + std::to_string(n % 20) + "/tablespace/TS_" + num;
    s.Server = "dbserver" + std::to_string(n % 20) + ".example.net";
    s.Summary = "Tablespace TS_" + num + " on dbserver" + std::to_string(n % 20) + " is 91% full";
    s.Text = "Tablespace TS_" + num +
             " has reached 91% of its maximum size. Free space left: 1.2 GB of 14 GB. Autoextend is off "
             "for two of its data files. Add a data file or enable autoextend before the nightly batch at "
             "02:00 fills it; the batch writes about 2 GB.";
    s.Severity = static_cast<int>(n % 4) + 1;
    s.SeverityStr = SampleSeverities[n % 4];
    s.Node = "PVONODE" + std::to_string(n % 20);
    return s;
}

inline std::string SampleNoticeXML(const std::string& prefix, int64_t n) {
    const TSampleNotice s = SampleNotice(prefix, n);
    return "<Notice><Command>post</Command><adpt_id>DEMO</adpt_id><adpt_orig_key>" + s.Key +
           "</adpt_orig_key><adpt_orig_server>" + s.Server +
           "</adpt_orig_server><adpt_source_type>R/Vista</adpt_source_type><adpt_source_id>TS_FULL"
           "</adpt_source_id><note_summary>" +
           s.Summary + "</note_summary><note_text>" + s.Text +
           "</note_text><note_raised_date>2026-11-21T08:15:00Z</note_raised_date><note_last_raised_date>"
           "2026-11-21T08:15:00Z</note_last_raised_date><note_count>1</note_count><note_severity>" +
           std::to_string(s.Severity) + "</note_severity><note_severity_str>" + s.SeverityStr +
           "</note_severity_str><note_group_notified>DBA</note_group_notified><note_pvo_node>" + s.Node +
           "</note_pvo_node><ack_code>ACK-" + std::to_string(n) + "</ack_code><del_code>DEL-" +
           std::to_string(n) + "</del_code></Notice>";
}

// A message of count notices numbered first, first + 1, ...
inline std::string SampleMessage(const std::string& prefix, int64_t first, int count) {
    std::string xml = "<NoticeMessage><NoticeList>";
    for (int i = 0; i < count; ++i)
        xml += SampleNoticeXML(prefix, first + i);
    return xml + "</NoticeList></NoticeMessage>";
}

// Bytes of field text of notice n as stored (the figure the memory goal is measured against).
inline size_t SampleTextBytes(const std::string& prefix, int64_t n) {
    const TSampleNotice s = SampleNotice(prefix, n);
    return s.Key.size() + s.Server.size() + s.Summary.size() + s.Text.size() + s.Node.size() +
           s.SeverityStr.size() + 4 /*DEMO*/ + 7 /*R/Vista*/ + 7 /*TS_FULL*/ + 3 /*DBA*/ + 4 +
           std::to_string(n).size() + 4 + std::to_string(n).size();
}
