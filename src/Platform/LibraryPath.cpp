#include "Platform/LibraryPath.h"

#include "Platform/Environment.h"

namespace Platform
{

juce::StringArray LibraryPath::candidates(const juce::String& systemFolder, const juce::String& dllName)
{
    auto stem = dllName.endsWithIgnoreCase(".dll") ? dllName.dropLastCharacters(4) : dllName;
    auto soName = "lib" + stem + ".so";

    auto folder = Environment::resolve(systemFolder);
    if (!folder.endsWithChar('/'))
        folder << "/";

    return {folder + soName, soName};
}

} // namespace Platform
