// Small helpers the notice protocol shares between its source files: reading an element's text without
// copying it, the key form used for look-ups, and the log call. Board thread; internal to core/.
#pragma once

#include "adapters/ZNB_Cfg.h"
#include "adapters/Znb_log.h"
#include "core/TNoticeStore.h"
#include "core/Znb_xml.h"
#include "support/Exception.h"
#include "support/StrUtils.h"
#include "xml/djlpXML.h"

#include <exception>
#include <string>
#include <string_view>

inline void NoticeLog(const std::string& Message) {
    ZS_Log(NBLogFileName(), Message);
}

inline std::string ExceptionText(const std::exception& e) {
    const auto* own = dynamic_cast<const Exception*>(&e);
    return own ? own->Message() : std::string(e.what());
}

// The element's text (its lines joined); a one-line text is returned in place, others go through Scratch.
inline std::string_view ElementText(const TXMLNode& Node, std::string& Scratch) {
    const TXMLStrings& lines = Node.GetContents();
    if (lines.Count() == 0) return {};
    if (lines.Count() == 1) return lines[0];
    Scratch = lines.JoinedText();
    return Scratch;
}

// Keys are looked up with apostrophes doubled, but stored as sent: a key holding an apostrophe is never
// found again. Senders' duplicate handling relies on this staying as it is.
inline std::string LookupKey(std::string Key) {
    if (Key.find('\'') != std::string::npos) Key = ReplaceAll(Key, "'", "''");
    return Key;
}

// The look-up form of a notice's adpt_orig_key element: its text trimmed, decoded, apostrophes doubled.
inline std::string NoticeLookupKey(const TXMLNode& KeyNode) {
    std::string scratch;
    return LookupKey(XML_Decode(TrimView(ElementText(KeyNode, scratch))));
}

// Puts the store's index back to "primaryIdx" however a look-up by originator key ended.
struct TPrimaryIndexGuard {
    TNoticeStore& Store;
    ~TPrimaryIndexGuard() { Store.SetIndexName(TNoticeStore::PrimaryIndexName); }
};
