#pragma once

#include <juce_core/juce_core.h>

namespace Platform
{

/** Where a library that the system names "X.dll" is looked for: "libX.so" first in the
    system folder the caller names (under the file-system root), then through the normal
    loader path. */
struct LibraryPath
{
    static juce::StringArray candidates(const juce::String& systemFolder, const juce::String& dllName);
};

} // namespace Platform
