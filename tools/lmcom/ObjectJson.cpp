#include "ObjectJson.h"

#include "AppTypeNames.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace LmComTool
{

namespace
{
template <typename Map>
std::vector<juce::String> sortedKeys(const Map& map)
{
    std::vector<juce::String> keys;
    for (typename Map::Iterator it(map); it.next();)
        keys.push_back(it.getKey());
    std::sort(keys.begin(), keys.end(),
              [](const juce::String& a, const juce::String& b)
              { return std::strcmp(a.toRawUTF8(), b.toRawUTF8()) < 0; });
    return keys;
}
} // namespace

void ObjectJson::writeValue(JsonWriter& json, const juce::var& value)
{
    json.beginObject();
    if (value.isBool())
        json.key("type").value("bool").key("value").value((bool)value);
    else if (value.isInt() || value.isInt64())
        json.key("type").value("int").key("value").value((long long)(juce::int64)value);
    else if (value.isDouble())
        json.key("type").value("double").key("value").value((double)value);
    else if (value.isString())
        json.key("type").value("string").key("value").value(value.toString().toRawUTF8());
    else if (auto* block = value.getBinaryData())
        json.key("type").value("bytes").key("value").hex(static_cast<const unsigned char*>(block->getData()),
                                                         block->getSize());
    else
        json.key("type").value("unknown");
    json.endObject();
}

void ObjectJson::writeMessageFields(JsonWriter& json, const RemoteMessage& message)
{
    json.key("sender").value(message.sender);
    json.key("senderName").value(AppTypeNames::printable(message.sender));
    json.key("code").value(message.code);
    json.key("param1").value(message.param1);
    json.key("param2").value(message.param2);
}

void ObjectJson::write(JsonWriter& json, Parcelable& object)
{
    json.beginObject();
    if (auto* bundle = dynamic_cast<Bundle*>(&object))
    {
        json.key("type").value("Bundle").key("values").beginObject();
        const auto& values = bundle->getValueMap();
        for (auto& name : sortedKeys(values))
            if (const juce::var* stored = values[name])
            {
                json.key(name.toRawUTF8());
                writeValue(json, *stored);
            }
        json.endObject().key("objects").beginObject();
        const auto& objects = bundle->getObjectMap();
        for (auto& name : sortedKeys(objects))
        {
            json.key(name.toRawUTF8());
            write(json, *objects[name]);
        }
        json.endObject();
    }
    else if (auto* array = dynamic_cast<ParcelableArray*>(&object))
    {
        json.key("type").value("ParcelableArray").key("elements").beginArray();
        for (auto& element : array->getParcelableVector())
            write(json, *element);
        json.endArray();
    }
    else if (auto* message = dynamic_cast<RemoteMessage*>(&object))
    {
        json.key("type").value("RemoteMessage");
        writeMessageFields(json, *message);
        json.key("object");
        if (message->object != nullptr)
            write(json, *message->object);
        else
            json.null();
    }
    else
        json.key("type").value("unknown").key("magic").value(object.getFlags());
    json.endObject();
}

} // namespace LmComTool
