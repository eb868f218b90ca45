#pragma once

#include <LmCom.h>

#include <nlohmann/json.hpp>

#include <string>

namespace LmComTool
{

/** Objects of the bus as JSON, with the same content as ObjectTree: every value carries its
    type, byte arrays are hex text, keys are in byte order. Key order is kept as written.

    {"type":"Bundle","values":{"Title":{"type":"string","value":"Radio 1"}},"objects":{}}
    {"type":"ParcelableArray","elements":[...]}
    {"type":"RemoteMessage","sender":5,"senderName":"AppRadio","code":1,"param1":0,"param2":0,"object":null}
*/
class ObjectJson
{
public:
    using Json = nlohmann::ordered_json;

    static Json of(Parcelable& object);
    /** A Bundle value: {"type": "int" | "bool" | "double" | "string" | "bytes", "value": ...}.
        A double that is not finite is given as the text "NaN", "Infinity" or "-Infinity". */
    static Json value(const juce::var& value);
    /** The fields of a message, without its type and object. */
    static void addMessageFields(Json& json, const RemoteMessage& message);
    /** One line of JSON text (no newline); never throws, whatever the strings hold. */
    static std::string dump(const Json& json);
};

} // namespace LmComTool
