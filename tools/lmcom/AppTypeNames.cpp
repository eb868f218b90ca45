#include "AppTypeNames.h"

#include <LmCom.h>

#include "Platform/detail/Utf8.h"

namespace LmComTool
{

int AppTypeNames::parse(const std::string& word)
{
    if (!word.empty() && word.find_first_not_of("0123456789") == std::string::npos)
    {
        const int value = word.size() <= 2 ? std::stoi(word) : -1;
        return value < kCount ? value : -1;
    }
    const juce::String text = LmComDetail::decodeUtf8(word);
    if (text.isEmpty())
        return -1;
    for (const bool exact : {true, false})
        for (int type = 0; type < kCount; ++type)
        {
            const juce::String printableName(appTypeName(type));
            const juce::String destination = LmComDetail::decodeUtf8(getDestName(type));
            const auto same = [&](const juce::String& name)
            { return name.isNotEmpty() && (exact ? name == text : name.equalsIgnoreCase(text)); };
            if (same(printableName) || same(destination))
                return type;
        }
    return -1;
}

std::string AppTypeNames::printable(int type)
{
    const char* name = appTypeName(type);
    return *name != '\0' ? std::string(name) : std::to_string(type);
}

int AppTypeNames::typeOfTitle(const juce::String& title)
{
    for (int type = 0; type < kCount; ++type)
        if (LmComDetail::decodeUtf8(getDestName(type)) == title)
            return type;
    return -1;
}

} // namespace LmComTool
