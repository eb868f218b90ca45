#include "ObjectTree.h"

#include "AppTypeNames.h"
#include "Hex.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <vector>

namespace LmComTool
{

namespace
{
std::vector<juce::String> sortedKeys(const Parcel::ValueMap& values)
{
    std::vector<juce::String> keys;
    for (Parcel::ValueMap::Iterator it(values); it.next();)
        keys.push_back(it.getKey());
    std::sort(keys.begin(), keys.end(),
              [](const juce::String& a, const juce::String& b)
              { return std::strcmp(a.toRawUTF8(), b.toRawUTF8()) < 0; });
    return keys;
}

std::vector<juce::String> sortedKeys(const juce::HashMap<juce::String, Parcelable::Ptr>& objects)
{
    std::vector<juce::String> keys;
    for (juce::HashMap<juce::String, Parcelable::Ptr>::Iterator it(objects); it.next();)
        keys.push_back(it.getKey());
    std::sort(keys.begin(), keys.end(),
              [](const juce::String& a, const juce::String& b)
              { return std::strcmp(a.toRawUTF8(), b.toRawUTF8()) < 0; });
    return keys;
}
} // namespace

std::string ObjectTree::quoted(const juce::String& text)
{
    std::string out = "\"";
    for (const char* p = text.toRawUTF8(); *p != 0; ++p)
    {
        const auto c = (unsigned char)*p;
        switch (c)
        {
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            if (c < 0x20 || c == 0x7F)
            {
                static const char kDigits[] = "0123456789ABCDEF";
                out += "\\x";
                out += kDigits[c >> 4];
                out += kDigits[c & 15];
            }
            else
                out += (char)c; // UTF-8 as it is: titles are often not ASCII
        }
    }
    return out + "\"";
}

std::string ObjectTree::key(const juce::String& key)
{
    const bool plain =
        key.isNotEmpty() && key.containsOnly("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_.-");
    return plain ? key.toStdString() : quoted(key);
}

std::string ObjectTree::formatDouble(double value)
{
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

std::string ObjectTree::value(const juce::var& value)
{
    if (value.isBool())
        return std::string("bool ") + ((bool)value ? "true" : "false");
    if (value.isInt() || value.isInt64())
        return "int " + std::to_string((juce::int64)value);
    if (value.isDouble())
        return "double " + formatDouble((double)value);
    if (value.isString())
        return "string " + quoted(value.toString());
    if (auto* block = value.getBinaryData())
        return "bytes[" + std::to_string(block->getSize()) + "] "
               + Hex::format(static_cast<const unsigned char*>(block->getData()), block->getSize(), true, kBytesShown);
    return "?";
}

std::string ObjectTree::messageFields(const RemoteMessage& message)
{
    return "from=" + AppTypeNames::printable(message.sender) + " code=" + std::to_string(message.code)
           + " p1=" + std::to_string(message.param1) + " p2=" + std::to_string(message.param2);
}

void ObjectTree::append(std::string& out, Parcelable& object, int indent)
{
    appendNode(out, object, indent, {});
}

void ObjectTree::appendNode(std::string& out, Parcelable& object, int indent, const std::string& label)
{
    out.append((size_t)indent, ' ');
    out += label;
    if (auto* bundle = dynamic_cast<Bundle*>(&object))
    {
        out += bundle->isEmpty() ? "Bundle (empty)\n" : "Bundle\n";
        const auto& values = bundle->getValueMap();
        for (auto& name : sortedKeys(values))
        {
            out.append((size_t)indent + 2, ' ');
            const juce::var* stored = values[name];
            out += key(name) + ": " + (stored != nullptr ? value(*stored) : std::string("?")) + "\n";
        }
        const auto& objects = bundle->getObjectMap();
        for (auto& name : sortedKeys(objects))
            appendNode(out, *objects[name], indent + 2, key(name) + ": ");
    }
    else if (auto* array = dynamic_cast<ParcelableArray*>(&object))
    {
        const auto& elements = array->getParcelableVector();
        out += elements.empty() ? "ParcelableArray (empty)\n"
                                : "ParcelableArray[" + std::to_string(elements.size()) + "]\n";
        for (size_t i = 0; i < elements.size(); ++i)
            appendNode(out, *elements[i], indent + 2, "[" + std::to_string(i) + "]: ");
    }
    else if (auto* message = dynamic_cast<RemoteMessage*>(&object))
    {
        out += "RemoteMessage " + messageFields(*message) + "\n";
        if (message->object != nullptr)
            appendNode(out, *message->object, indent + 2, {});
    }
    else
    {
        char magic[16];
        std::snprintf(magic, sizeof magic, "0x%08X", (unsigned int)object.getFlags());
        out += std::string("object of type ") + magic + "\n";
    }
}

} // namespace LmComTool
