#pragma once

#include <juce_core/juce_core.h>

#include <map>
#include <string>
#include <utility>

namespace Platform
{

/** The port's ini reader: sections, key=value lines, ';' and '#' comments, names compared
    case-sensitively. A missing file or key gives the caller's default. The file is read once,
    when the object is made; the content is untrusted and never makes the reader fail.
*/
class IniFile
{
public:
    /** Configuration files are small; a larger one is not read. */
    static constexpr juce::int64 kMaxBytes = 1024 * 1024;

    /** Reads the file at a real path (see Environment::resolve for system paths). Only a
        regular file of at most kMaxBytes is read. */
    explicit IniFile(const juce::String& path);

    /** True when the file existed and could be read. */
    bool isLoaded() const { return m_bLoaded; }

    juce::String getString(const juce::String& section, const juce::String& key,
                           const juce::String& defaultValue) const;

    /** The value read as a decimal (or 0x hexadecimal) integer; the default when the key is
        missing or its value is not a number. */
    int getInt(const juce::String& section, const juce::String& key, int defaultValue) const;

private:
    static int onValue(void* user, const char* section, const char* name, const char* value);

    std::map<std::pair<std::string, std::string>, std::string> m_values;
    bool m_bLoaded = false;
};

} // namespace Platform
