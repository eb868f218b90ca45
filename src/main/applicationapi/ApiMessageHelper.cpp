#include "main/applicationapi/ApiMessageHelper.h"

#include "LogBridge.h"
#include "Message/RemoteObjFormat.h"

const juce::String ApiMessageHelper::KEY_DATA("data");

const juce::MemoryBlock* ApiMessageHelper::byteArrayOf(const AppMessage::Ptr& message, const juce::String& key)
{
    auto bundle = bundleOf(message);
    return bundle != nullptr ? bundle->getByteArray(key) : nullptr;
}

bool ApiMessageHelper::intsOf(const AppMessage::Ptr& message, int* values, int count)
{
    const juce::MemoryBlock* block = RemoteObjFormat::getIntArray(bundleOf(message));
    if (block == nullptr || count < 0 || (juce::uint64)block->getSize() < (juce::uint64)count * 4)
        return false;
    auto* bytes = static_cast<const char*>(block->getData());
    for (int i = 0; i < count; ++i)
        values[i] = (int)juce::ByteOrder::littleEndianInt(bytes + 4 * i);
    return true;
}

int ApiMessageHelper::formatOf(const AppMessage::Ptr& message)
{
    auto bundle = bundleOf(message);
    return bundle != nullptr ? bundle->getInt(RemoteObjFormat::KEY_FORMAT, 0) : 0;
}

void ApiMessageHelper::logDropped(const char* source, int line, const char* tag, int code, const char* reason)
{
    LogBridge::instance().logError(source, line, tag, "code " + juce::String(code) + " dropped: " + reason);
}
