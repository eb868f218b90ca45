#include "RecordFormatter.h"

#include "Hex.h"
#include "ObjectJson.h"
#include "ObjectTree.h"

#include <ctime>

namespace LmComTool
{

namespace
{
/** What a valid record holds, once rebuilt. */
struct Decoded
{
    Parcelable::Ptr object;
    RemoteMessage* message = nullptr;
    Bundle* broadcast = nullptr; // the outer Bundle of a named broadcast
    int trailingBytes = 0;
    int missingBytes = 0;
};

Decoded decode(const unsigned char* payload, int length)
{
    Decoded decoded;
    auto parcel = Parcel::obtain();
    parcel->fillData(payload, length);
    decoded.object = createFromParcel(parcel.get());
    const int avail = parcel->dataAvail();
    parcel->recycle();
    if (decoded.object == nullptr)
        return decoded;
    decoded.trailingBytes = avail > 0 ? avail : 0;
    decoded.missingBytes = avail < 0 ? -avail : 0;
    decoded.message = dynamic_cast<RemoteMessage*>(decoded.object.get());
    if (auto* bundle = dynamic_cast<Bundle*>(decoded.object.get()))
    {
        // A named broadcast travels as a Bundle of its action and, optionally, its Bundle.
        const auto& values = bundle->getValueMap();
        const auto& objects = bundle->getObjectMap();
        const juce::var* action = values.contains("action") ? values["action"] : nullptr;
        if (action != nullptr && action->isString() && values.size() == 1
            && (objects.size() == 0 || (objects.size() == 1 && objects.contains("bundle"))))
            decoded.broadcast = bundle;
    }
    return decoded;
}

std::string numberText(const std::optional<std::uint32_t>& number)
{
    return number ? "#" + std::to_string(*number) : std::string("#?");
}
} // namespace

RecordFormatter::RecordFormatter(bool json, Filter filter) : m_json(json), m_filter(filter) {}

std::string RecordFormatter::timeText(std::chrono::system_clock::time_point when, bool json)
{
    using namespace std::chrono;
    const auto micros = duration_cast<microseconds>(when.time_since_epoch()).count();
    const std::time_t seconds = (std::time_t)(micros / 1000000);
    const int fraction = (int)(micros % 1000000);
    std::tm parts = {};
    char text[64];
    if (json)
    {
        gmtime_r(&seconds, &parts);
        const size_t n = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &parts);
        std::snprintf(text + n, sizeof text - n, ".%06dZ", fraction);
    }
    else
    {
        localtime_r(&seconds, &parts);
        const size_t n = std::strftime(text, sizeof text, "%H:%M:%S", &parts);
        std::snprintf(text + n, sizeof text - n, ".%06d", fraction);
    }
    return text;
}

bool RecordFormatter::format(const RingFollower::Event& event, std::chrono::system_clock::time_point when,
                             std::string& out) const
{
    using Kind = RingFollower::Event::Kind;
    using Json = ObjectJson::Json;

    if (event.kind == Kind::missed)
    {
        if (m_json)
        {
            Json json;
            json["time"] = timeText(when, true);
            json["kind"] = "missed";
            json["missed"] = event.missed ? Json(*event.missed) : Json();
            json["reason"] = event.problem;
            out += ObjectJson::dump(json) + "\n";
        }
        else
            out += timeText(when, false) + " MISSED " + (event.missed ? std::to_string(*event.missed) : "?")
                   + " records: " + event.problem + "\n";
        return true;
    }

    Json json;
    if (m_json)
    {
        json["time"] = timeText(when, true);
        json["record"] = event.number ? Json(*event.number) : Json();
        json["offset"] = event.offset;
        json["length"] = event.length;
    }
    const std::string head = timeText(when, false) + " " + numberText(event.number)
                             + " off=" + std::to_string(event.offset) + " len=" + std::to_string(event.length) + " ";

    if (event.kind == Kind::invalid)
    {
        if (m_json)
        {
            json["kind"] = "invalid";
            json["error"] = event.problem;
            out += ObjectJson::dump(json) + "\n";
        }
        else
            out += head + "INVALID " + event.problem + "\n";
        return true;
    }

    const auto decoded = decode(event.payload, event.length);
    if (m_filter.isSet())
    {
        if (decoded.message == nullptr)
            return false;
        if (m_filter.code && decoded.message->code != *m_filter.code)
            return false;
        if (m_filter.sender && decoded.message->sender != *m_filter.sender)
            return false;
    }

    Parcelable::Ptr shown; // the object printed under the head line
    if (m_json)
    {
        if (decoded.message != nullptr)
        {
            json["kind"] = "message";
            ObjectJson::addMessageFields(json, *decoded.message);
            json["object"] = decoded.message->object != nullptr ? ObjectJson::of(*decoded.message->object) : Json();
        }
        else if (decoded.broadcast != nullptr)
        {
            json["kind"] = "broadcast";
            json["action"] = decoded.broadcast->getString("action", {}).toStdString();
            const auto inner = decoded.broadcast->getParcelable("bundle");
            json["object"] = inner != nullptr ? ObjectJson::of(*inner) : Json();
        }
        else if (decoded.object != nullptr)
        {
            json["kind"] = "object";
            json["object"] = ObjectJson::of(*decoded.object);
        }
        else
        {
            json["kind"] = "undecodable";
            json["payload"] = Hex::format(event.payload, (size_t)event.length, false);
        }
        if (decoded.trailingBytes > 0)
            json["trailingBytes"] = decoded.trailingBytes;
        if (decoded.missingBytes > 0)
            json["missingBytes"] = decoded.missingBytes;
        if (event.endsAtRingEnd)
            json["endsAtRingEnd"] = true;
        out += ObjectJson::dump(json) + "\n";
        return true;
    }

    out += head;
    if (decoded.message != nullptr)
    {
        out += ObjectTree::messageFields(*decoded.message);
        shown = decoded.message->object;
    }
    else if (decoded.broadcast != nullptr)
    {
        out += "broadcast action=" + ObjectTree::quoted(decoded.broadcast->getString("action", {}));
        shown = decoded.broadcast->getParcelable("bundle");
    }
    else if (decoded.object != nullptr)
    {
        out += "object";
        shown = decoded.object;
    }
    else
        out += "undecodable: " + Hex::format(event.payload, (size_t)event.length, true, ObjectTree::kBytesShown);
    if (decoded.trailingBytes > 0)
        out += " [" + std::to_string(decoded.trailingBytes) + " bytes after the object]";
    if (decoded.missingBytes > 0)
        out += " [truncated: " + std::to_string(decoded.missingBytes) + " bytes missing]";
    if (event.endsAtRingEnd)
        out += " [ends at the ring's end: receivers reject it]";
    out += "\n";
    if (shown != nullptr)
        ObjectTree::append(out, *shown, 2);
    return true;
}

} // namespace LmComTool
