#pragma once

#include "RingFollower.h"

#include <chrono>
#include <optional>
#include <string>

namespace LmComTool
{

/** Turns what a RingFollower reports into the monitor's output: a text head line per record
    ("12:00:01.000042 #7 off=16 len=97 from=AppUnknown code=1184 p1=5 p2=0") followed by the
    attached object as an ObjectTree, or one JSON object per line. Records that fail validation
    and missed records get a line of their own.

    Text:  TIME #NUMBER off=OFFSET len=LENGTH from=SENDER code=C p1=P1 p2=P2 [notes]
           TIME #NUMBER off=OFFSET len=LENGTH broadcast action="ACTION" [notes]
           TIME #NUMBER off=OFFSET len=LENGTH object | undecodable: HEX
           TIME #NUMBER off=OFFSET len=LENGTH INVALID why
           TIME MISSED COUNT records: why
    JSON:  {"time":..., "record":N, "offset":O, "length":L, "kind":"message" | "broadcast" |
           "object" | "undecodable" | "invalid", ...} and {"time":..., "kind":"missed", ...}
    NUMBER and COUNT are "?" (JSON: null) when unknown.
*/
class RecordFormatter
{
public:
    struct Filter
    {
        std::optional<int> code;
        std::optional<int> sender;
        bool isSet() const { return code.has_value() || sender.has_value(); }
    };

    RecordFormatter(bool json, Filter filter);

    /** Appends the event's lines to out. False when the filter hides the record (out is left
        alone); records that fail validation and missed records are never hidden. */
    bool format(const RingFollower::Event& event, std::chrono::system_clock::time_point when, std::string& out) const;

    /** "14:03:07.512301" (local time) for text, "2024-05-01T12:03:07.512301Z" for JSON. */
    static std::string timeText(std::chrono::system_clock::time_point when, bool json);

private:
    bool m_json;
    Filter m_filter;
};

} // namespace LmComTool
