#include "RecordFormatter.h"

#include "Hex.h"
#include "JsonWriter.h"
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
    // The part up to the second changes once a second: made once per second per kind.
    thread_local std::time_t cachedSeconds[2] = {-1, -1};
    thread_local char cachedText[2][40];
    char* text = cachedText[json ? 1 : 0];
    if (cachedSeconds[json ? 1 : 0] != seconds)
    {
        std::tm parts = {};
        if (json)
            gmtime_r(&seconds, &parts);
        else
            localtime_r(&seconds, &parts);
        std::strftime(text, 32, json ? "%Y-%m-%dT%H:%M:%S" : "%H:%M:%S", &parts);
        cachedSeconds[json ? 1 : 0] = seconds;
    }
    std::string result(text);
    char digits[8];
    for (int i = 6, rest = fraction; i >= 1; --i, rest /= 10)
        digits[i] = (char)('0' + rest % 10);
    digits[0] = '.';
    result.append(digits, 7);
    if (json)
        result += 'Z';
    return result;
}

bool RecordFormatter::format(const RingFollower::Event& event, std::chrono::system_clock::time_point when,
                             std::string& out) const
{
    using Kind = RingFollower::Event::Kind;

    if (event.kind == Kind::missed)
    {
        if (m_json)
        {
            JsonWriter json(out);
            json.beginObject().key("time").value(timeText(when, true)).key("kind").value("missed").key("missed");
            if (event.missed)
                json.value(*event.missed);
            else
                json.null();
            json.key("reason").value(event.problem).endObject();
            out += "\n";
        }
        else
            out += timeText(when, false) + " MISSED " + (event.missed ? std::to_string(*event.missed) : "?")
                   + " records: " + event.problem + "\n";
        return true;
    }

    // The JSON head, written only once the record is known to be shown.
    const auto jsonHead = [&](JsonWriter& json)
    {
        json.beginObject().key("time").value(timeText(when, true)).key("record");
        if (event.number)
            json.value(*event.number);
        else
            json.null();
        json.key("offset").value(event.offset).key("length").value(event.length);
    };
    const std::string head = timeText(when, false) + " " + numberText(event.number)
                             + " off=" + std::to_string(event.offset) + " len=" + std::to_string(event.length) + " ";

    if (event.kind == Kind::invalid)
    {
        if (m_json)
        {
            JsonWriter json(out);
            jsonHead(json);
            json.key("kind").value("invalid").key("error").value(event.problem).endObject();
            out += "\n";
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
        JsonWriter json(out);
        jsonHead(json);
        if (decoded.message != nullptr)
        {
            json.key("kind").value("message");
            ObjectJson::writeMessageFields(json, *decoded.message);
            shown = decoded.message->object;
        }
        else if (decoded.broadcast != nullptr)
        {
            json.key("kind").value("broadcast");
            json.key("action").value(decoded.broadcast->getString("action", {}).toRawUTF8());
            shown = decoded.broadcast->getParcelable("bundle");
        }
        else if (decoded.object != nullptr)
        {
            json.key("kind").value("object");
            shown = decoded.object;
        }
        else
            json.key("kind").value("undecodable").key("payload").hex(event.payload, (size_t)event.length);
        if (decoded.object != nullptr)
        {
            json.key("object");
            if (shown != nullptr)
                ObjectJson::write(json, *shown);
            else
                json.null();
        }
        if (decoded.trailingBytes > 0)
            json.key("trailingBytes").value(decoded.trailingBytes);
        if (decoded.missingBytes > 0)
            json.key("missingBytes").value(decoded.missingBytes);
        if (event.endsAtRingEnd)
            json.key("endsAtRingEnd").value(true);
        json.endObject();
        out += "\n";
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
