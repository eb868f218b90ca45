#pragma once

#include "JsonWriter.h"

#include <LmCom.h>

namespace LmComTool
{

/** Objects of the bus as JSON, with the same content as ObjectTree: every value carries its
    type, byte arrays are hex text, keys are in byte order, values before nested objects.

    {"type":"Bundle","values":{"Title":{"type":"string","value":"Radio 1"}},"objects":{}}
    {"type":"ParcelableArray","elements":[...]}
    {"type":"RemoteMessage","sender":5,"senderName":"AppRadio","code":1,"param1":0,"param2":0,"object":null}
*/
class ObjectJson
{
public:
    static void write(JsonWriter& json, Parcelable& object);
    /** A Bundle value: {"type": "int" | "bool" | "double" | "string" | "bytes", "value": ...}. */
    static void writeValue(JsonWriter& json, const juce::var& value);
    /** The fields of a message ("sender" to "param2"), into the object being written. */
    static void writeMessageFields(JsonWriter& json, const RemoteMessage& message);
};

} // namespace LmComTool
