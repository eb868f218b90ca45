#include "Message/RemoteObjFormat.h"

#include <cstring>

const juce::String RemoteObjFormat::KEY_FORMAT("Format");
const juce::String RemoteObjFormat::KEY_INT("int");
const juce::String RemoteObjFormat::KEY_STRING("String");
const juce::String RemoteObjFormat::KEY_BYTES("byte[]");
const juce::String RemoteObjFormat::KEY_INTS("int[]");
const juce::String RemoteObjFormat::KEY_COMB_OBJ("CombOBJ[]");
const juce::String RemoteObjFormat::KEY_BUNDLE("bundle");
const juce::String RemoteObjFormat::KEY_STRINGS("String[]");
const juce::String RemoteObjFormat::KEY_BYTE("byte");
const juce::String RemoteObjFormat::KEY_APPS("App[]");

namespace
{
// "int" + '1'..'3' + the record index in decimal, no separator: record 12's first value is "int112".
juce::String numberedKey(const juce::String& stem, int index)
{
    return stem + juce::String(index);
}

Bundle::Ptr withFormat(int format)
{
    auto bundle = Bundle::obtain();
    bundle->putInt("Format", format);
    return bundle;
}
} // namespace

int RemoteObjFormat::formatOf(const Bundle::Ptr& bundle)
{
    return bundle != nullptr ? bundle->getInt(KEY_FORMAT, 0) : 0;
}

Bundle::Ptr RemoteObjFormat::formatInt(int value)
{
    auto bundle = withFormat(kInt);
    bundle->putInt(KEY_INT, value);
    return bundle;
}

Bundle::Ptr RemoteObjFormat::formatString(const juce::String& value)
{
    auto bundle = withFormat(kString);
    bundle->putString(KEY_STRING, value);
    return bundle;
}

Bundle::Ptr RemoteObjFormat::formatByteArray(const unsigned char* data, int size)
{
    auto bundle = withFormat(kByteArray);
    bundle->putByteArray(KEY_BYTES, data, size);
    return bundle;
}

Bundle::Ptr RemoteObjFormat::formatIntArray(const int* values, int count)
{
    auto bundle = withFormat(kIntArray);
    juce::MemoryBlock bytes;
    for (int i = 0; values != nullptr && i < count; ++i)
    {
        const auto bits = (juce::uint32)values[i];
        const unsigned char le[4] = {(unsigned char)bits, (unsigned char)(bits >> 8), (unsigned char)(bits >> 16),
                                     (unsigned char)(bits >> 24)};
        bytes.append(le, 4);
    }
    bundle->putByteArray(KEY_INTS, bytes);
    return bundle;
}

Bundle::Ptr RemoteObjFormat::formatCommandLine(const AppCommandLine::Ptr& command)
{
    if (command == nullptr)
        return nullptr;
    auto bundle = withFormat(kCommandLine);
    bundle->putInt(KEY_INT + "1", command->getCommand());
    bundle->putInt(KEY_INT + "2", command->getService());
    bundle->putInt(KEY_INT + "3", command->getDetail());
    if (command->getExtraData() != nullptr)
        bundle->putBundle(KEY_BUNDLE, command->getExtraData());
    return bundle;
}

Bundle::Ptr RemoteObjFormat::formatMessageBodyList(const std::vector<_MessageBody*>& list)
{
    auto bundle = withFormat(kMessageBodyList);
    bundle->putInt(KEY_COMB_OBJ, (int)list.size());
    for (size_t i = 0; i < list.size(); ++i)
    {
        const _MessageBody* body = list[i];
        if (body == nullptr)
            continue;
        const int index = (int)i;
        bundle->putInt(numberedKey(KEY_INT + "1", index), body->nValue1);
        bundle->putInt(numberedKey(KEY_INT + "2", index), body->nValue2);
        bundle->putInt(numberedKey(KEY_INT + "3", index), body->nLength);
        if (body->pData != nullptr)
            bundle->putByteArray(numberedKey(KEY_BYTES, index), body->pData, body->nLength);
    }
    return bundle;
}

int RemoteObjFormat::getInt(const Bundle::Ptr& bundle)
{
    return formatOf(bundle) == kInt ? bundle->getInt(KEY_INT, 0) : 0;
}

juce::String RemoteObjFormat::getString(const Bundle::Ptr& bundle)
{
    return formatOf(bundle) == kString ? bundle->getString(KEY_STRING, {}) : juce::String();
}

juce::MemoryBlock* RemoteObjFormat::getByteArray(const Bundle::Ptr& bundle)
{
    return formatOf(bundle) == kByteArray ? bundle->getByteArray(KEY_BYTES) : nullptr;
}

juce::MemoryBlock* RemoteObjFormat::getIntArray(const Bundle::Ptr& bundle)
{
    return formatOf(bundle) == kIntArray ? bundle->getByteArray(KEY_INTS) : nullptr;
}

AppCommandLine::Ptr RemoteObjFormat::generateCommandLine(const Bundle::Ptr& bundle)
{
    if (formatOf(bundle) != kCommandLine)
        return nullptr;
    auto command = AppCommandLine::create(bundle->getInt(KEY_INT + "1", 0), bundle->getInt(KEY_INT + "2", 0),
                                          bundle->getInt(KEY_INT + "3", 0));
    command->putExtraData(bundle->getBundle(KEY_BUNDLE));
    return command;
}

std::vector<_MessageBody*> RemoteObjFormat::getMessageBodyList(const Bundle::Ptr& bundle)
{
    std::vector<_MessageBody*> list;
    if (formatOf(bundle) != kMessageBodyList)
        return list;
    const int count = juce::jmin(bundle->getInt(KEY_COMB_OBJ, 0), bundle->getValueMap().size());
    for (int i = 0; i < count; ++i)
    {
        auto* body = new _MessageBody();
        body->nValue1 = bundle->getInt(numberedKey(KEY_INT + "1", i), 0);
        body->nValue2 = bundle->getInt(numberedKey(KEY_INT + "2", i), 0);
        body->nLength = bundle->getInt(numberedKey(KEY_INT + "3", i), 0);
        if (auto* block = bundle->getByteArray(numberedKey(KEY_BYTES, i)))
        {
            body->pData = new unsigned char[juce::jmax((size_t)1, block->getSize())];
            if (block->getSize() > 0)
                std::memcpy(body->pData, block->getData(), block->getSize());
            // A length that disagrees with the bytes received would send the caller past them.
            body->nLength =
                (int)juce::jlimit((juce::int64)0, (juce::int64)block->getSize(), (juce::int64)body->nLength);
        }
        list.push_back(body);
    }
    return list;
}

void RemoteObjFormat::freeMessageBodyList(std::vector<_MessageBody*>& list)
{
    for (auto* body : list)
    {
        if (body != nullptr)
            delete[] body->pData;
        delete body;
    }
    list.clear();
}
