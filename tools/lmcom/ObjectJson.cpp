#include "ObjectJson.h"

#include "AppTypeNames.h"
#include "Hex.h"

#include <algorithm>
#include <cmath>
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

ObjectJson::Json ObjectJson::value(const juce::var& value)
{
    Json json;
    if (value.isBool())
    {
        json["type"] = "bool";
        json["value"] = (bool)value;
    }
    else if (value.isInt() || value.isInt64())
    {
        json["type"] = "int";
        json["value"] = (juce::int64)value;
    }
    else if (value.isDouble())
    {
        const double d = value;
        json["type"] = "double";
        if (std::isfinite(d))
            json["value"] = d;
        else
            json["value"] = std::isnan(d) ? "NaN" : (d > 0 ? "Infinity" : "-Infinity");
    }
    else if (value.isString())
    {
        json["type"] = "string";
        json["value"] = value.toString().toStdString();
    }
    else if (auto* block = value.getBinaryData())
    {
        json["type"] = "bytes";
        json["value"] = Hex::format(static_cast<const unsigned char*>(block->getData()), block->getSize(), false);
    }
    else
        json["type"] = "unknown";
    return json;
}

void ObjectJson::addMessageFields(Json& json, const RemoteMessage& message)
{
    json["sender"] = message.sender;
    json["senderName"] = AppTypeNames::printable(message.sender);
    json["code"] = message.code;
    json["param1"] = message.param1;
    json["param2"] = message.param2;
}

ObjectJson::Json ObjectJson::of(Parcelable& object)
{
    Json json;
    if (auto* bundle = dynamic_cast<Bundle*>(&object))
    {
        json["type"] = "Bundle";
        Json values = Json::object();
        for (auto& key : sortedKeys(bundle->getValueMap()))
            if (const juce::var* stored = bundle->getValueMap()[key])
                values[key.toStdString()] = value(*stored);
        Json objects = Json::object();
        for (auto& key : sortedKeys(bundle->getObjectMap()))
            objects[key.toStdString()] = of(*bundle->getObjectMap()[key]);
        json["values"] = std::move(values);
        json["objects"] = std::move(objects);
    }
    else if (auto* array = dynamic_cast<ParcelableArray*>(&object))
    {
        json["type"] = "ParcelableArray";
        Json elements = Json::array();
        for (auto& element : array->getParcelableVector())
            elements.push_back(of(*element));
        json["elements"] = std::move(elements);
    }
    else if (auto* message = dynamic_cast<RemoteMessage*>(&object))
    {
        json["type"] = "RemoteMessage";
        addMessageFields(json, *message);
        json["object"] = message->object != nullptr ? of(*message->object) : Json();
    }
    else
    {
        json["type"] = "unknown";
        json["magic"] = object.getFlags();
    }
    return json;
}

std::string ObjectJson::dump(const Json& json)
{
    // Strings are valid UTF-8 as rebuilt, but a replacement keeps a damaged one from throwing.
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

} // namespace LmComTool
