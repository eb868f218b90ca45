#include "Platform/Environment.h"

#include "Platform/detail/Utf8.h"

#include <cstdlib>

namespace Platform
{

static juce::String readVariable(const char* name)
{
    const char* value = std::getenv(name);
    return LmComDetail::decodeUtf8(value);
}

juce::String Environment::busName()
{
    return readVariable("LMCOM_BUS");
}

juce::String Environment::fileSystemRoot()
{
    auto root = readVariable("LMCOM_ROOT");
    while (root.endsWithChar('/'))
        root = root.dropLastCharacters(1);
    return root;
}

juce::String Environment::resolve(const juce::String& systemPath)
{
    auto path = systemPath.replaceCharacter('\\', '/');
    if (!path.startsWithChar('/'))
        path = "/" + path;
    return fileSystemRoot() + path;
}

} // namespace Platform
