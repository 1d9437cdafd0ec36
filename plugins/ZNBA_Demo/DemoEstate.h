// The simulated estate behind the demo adapter: a few database servers on which events are raised,
// raised again and cleared. It only builds notice messages; who sends them and when is ZNBA_Demo.cpp's.
// Not thread-safe: one thread at a time (the adapter serialises access with its own lock).
#pragma once

#include <cstdint>
#include <ctime>
#include <map>
#include <random>
#include <string>

class TDemoEstate {
public:
    // SourceType: the adpt_source_type of every notice, which decides the adapter the board hands the
    // user's acknowledgements and deletions to (the demo can play any configured product).
    explicit TDemoEstate(uint32_t seed, std::string SourceType = "demo");

    // One step of the simulation: a message (NoticeList inside NoticeMessage) with one to three notices
    // ("post" of a new event, "post" of a repeat with a higher count and a later last-raised date, or
    // "delete" of a cleared one).
    std::string Tick();

    // The answer to an acknowledgement: an "update" with ack_date for the notice whose ack_code is code,
    // or an empty text when there is no such live notice.
    std::string Acknowledge(const std::string& code);

    // The answer to a deletion: a "delete" for the notice whose del_code is code, or an empty text.
    std::string Delete(const std::string& code);

    int32_t Raised() const { return FRaised; }
    int32_t Live() const { return static_cast<int32_t>(FLive.size()); }

private:
    struct TEvent {
        std::string Key, Server, SourceId, Summary, Text;
        int32_t Severity = 1;
        int32_t Count = 0;
        std::string FirstRaised, LastRaised, AckDate;
        std::time_t LastRaisedAt = 0; // LastRaised as a clock value
    };
    std::string NoticeXml(const char* command, const TEvent& e, bool full) const;
    const TEvent* FindByCode(const std::string& code, const char* prefix) const;

    std::mt19937 FRandom;
    std::string FSourceType;
    std::map<std::string, TEvent> FLive; // by originator key
    int32_t FRaised = 0;
    int32_t FSerial = 0;
};

// XML_Encode: the five entities, "&" first.
std::string DemoXmlEncode(const std::string& text);

// The local time at t, and now, as "YYYY-MM-DDThh:mm:ss".
std::string DemoIsoTime(std::time_t t);
std::string DemoIsoNow();
