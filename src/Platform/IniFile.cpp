#include "Platform/IniFile.h"

#include "Platform/RegularFile.h"
#include "Platform/detail/Utf8.h"

#include <ini.h>

#include <cerrno>
#include <climits>
#include <cstdlib>

namespace Platform
{

IniFile::IniFile(const juce::String& path)
{
    juce::MemoryBlock content;
    if (RegularFile::read(path.toRawUTF8(), kMaxBytes, content) != RegularFile::Status::read)
        return;
    content.append("", 1); // the parser reads up to a zero byte
    m_bLoaded = ini_parse_string(static_cast<const char*>(content.getData()), &IniFile::onValue, this) >= 0;
}

int IniFile::onValue(void* user, const char* section, const char* name, const char* value)
{
    auto* self = static_cast<IniFile*>(user);
    self->m_values[{section, name}] = value;
    return 1;
}

juce::String IniFile::getString(const juce::String& section, const juce::String& key,
                                const juce::String& defaultValue) const
{
    auto it = m_values.find({section.toStdString(), key.toStdString()});
    if (it == m_values.end())
        return defaultValue;
    return LmComDetail::decodeUtf8(it->second);
}

int IniFile::getInt(const juce::String& section, const juce::String& key, int defaultValue) const
{
    auto it = m_values.find({section.toStdString(), key.toStdString()});
    if (it == m_values.end() || it->second.empty())
        return defaultValue;

    const char* text = it->second.c_str();
    char* end = nullptr;
    errno = 0;
    const long long value = std::strtoll(text, &end, 0);
    if (end == text || *end != '\0' || errno == ERANGE || value < INT_MIN || value > INT_MAX)
        return defaultValue;
    return (int)value;
}

} // namespace Platform
