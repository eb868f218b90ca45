#include "Platform/BoardProfile.h"

#include "Platform/Environment.h"
#include "Platform/detail/Utf8.h"

#include <sys/stat.h>

#include <algorithm>

namespace Platform
{

namespace
{
constexpr int kMaxProfileBytes = 64 * 1024;

juce::String decoded(const char* begin, const char* end)
{
    return LmComDetail::decodeUtf8(reinterpret_cast<const unsigned char*>(begin), (size_t)(end - begin)).trim();
}

juce::MemoryBlock readProfile()
{
    juce::MemoryBlock text;
    const auto path = Environment::resolve(BoardProfile::kProfilePath);
    // A FIFO or a device in place of the file gives nothing rather than a wait or a flood.
    struct stat info
    {
    };
    if (::stat(path.toRawUTF8(), &info) != 0 || !S_ISREG(info.st_mode))
        return text;
    juce::FileInputStream in{juce::File(path)};
    if (in.openedOk())
        in.readIntoMemoryBlock(text, kMaxProfileBytes);
    return text;
}
} // namespace

std::vector<std::pair<juce::String, juce::String>> BoardProfile::parse(const juce::MemoryBlock& text)
{
    std::vector<std::pair<juce::String, juce::String>> entries;
    const char* p = static_cast<const char*>(text.getData());
    const char* const end = p + text.getSize();
    bool inDevices = false;
    while (p < end)
    {
        const char* lineEnd = p;
        while (lineEnd < end && *lineEnd != '\n')
            ++lineEnd;
        const char* first = p;
        while (first < lineEnd && (*first == ' ' || *first == '\t' || *first == '\r'))
            ++first;
        if (first < lineEnd && *first == '[')
        {
            const char* close = first;
            while (close < lineEnd && *close != ']')
                ++close;
            inDevices = close < lineEnd && decoded(first + 1, close) == "devices";
        }
        else if (inDevices && first < lineEnd && *first != ';' && *first != '#')
        {
            // The name is everything before the first '=': "COM2:" keeps its colon.
            const char* equals = first;
            while (equals < lineEnd && *equals != '=')
                ++equals;
            if (equals < lineEnd)
            {
                auto name = decoded(first, equals);
                auto value = decoded(equals + 1, lineEnd);
                if (name.isNotEmpty())
                {
                    auto same = [&](const auto& entry) { return entry.first == name; };
                    entries.erase(std::remove_if(entries.begin(), entries.end(), same), entries.end());
                    entries.emplace_back(name, value);
                }
            }
        }
        p = lineEnd + 1;
    }
    return entries;
}

std::vector<std::pair<juce::String, juce::String>> BoardProfile::entries()
{
    return parse(readProfile());
}

juce::String BoardProfile::deviceNode(const juce::String& name)
{
    for (auto& entry : entries())
        if (entry.first == name)
            return entry.second;
    return name.startsWithChar('/') ? name : juce::String();
}

} // namespace Platform
