#pragma once

#include <juce_core/juce_core.h>

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>

namespace Platform
{

/** The file half of the settings store: the setup values, kept in a text file that a person
    can read, replaced as a whole on every write so that a process killed in the middle leaves
    the old file or the new one, never a mix.

    Format (UTF-8, one item per line; '#' starts a comment line):

        lmcom-setup 1
        4 int -12
        7 string "Europe/Berlin\n\"quoted\" \xC3\xA9"

    The first line that is not a comment names the format and its version; a file of another
    version is refused as a whole. An item is its index (decimal, 0 to kCount - 1), its type
    and its value: a 32-bit decimal number, or a quoted text of at most kMaxTextBytes bytes
    with the escapes \" \\ \n \r \t and \xHH (no zero byte). A later line for the same index
    wins. The file is untrusted: a line that is not an item is skipped (and reported), a file
    larger than kMaxFileBytes or one that is not a regular file is refused (and reported), and
    a refused file never replaces the values read before it.

    Writing: under an exclusive lock on "<file>.lock" (so writers of all processes take turns
    and none loses another's value), the current file is read again, the item changed, the
    whole text written to "<file>.tmp", flushed to disk, and renamed over the file. A file
    that cannot be read as a whole is not overwritten.

    Reading: the values are kept in memory and read again when the file was replaced (its
    identity changed) or the caller's stamp changed (the shared generation that writers step
    after each replacement, which also tells replacements apart that the file's time stamps
    cannot). Any thread.
*/
class SetupFile
{
public:
    struct Value
    {
        bool isString = false;
        std::int32_t number = 0;
        std::string text; // UTF-8 bytes as the file holds them
    };
    using Values = std::map<int, Value>;
    using Reporter = std::function<void(const juce::String&)>;

    static constexpr int kCount = 512;
    static constexpr int kMaxTextBytes = 1024;
    static constexpr std::int64_t kMaxFileBytes = 4 * 1024 * 1024;
    static constexpr int kVersion = 1;

    /** The file at a real path; problems go to the reporter. */
    SetupFile(juce::String path, Reporter reporter);

    const juce::String& path() const { return m_path; }

    /** One item, as the file holds it now; nullopt when absent (or the index is outside). */
    std::optional<Value> get(int index, std::uint32_t stamp);
    /** Every item, as the file holds it now. */
    Values getAll(std::uint32_t stamp);

    /** Replaces one item (see Writing). False, reported, when the index or the text is out of
        bounds, or the file cannot be read or written. */
    bool set(int index, const Value& value);

    /** The file's text for these values. */
    static std::string format(const Values& values);
    /** Reads a file's text. False, with the reason, when it is not a setup file of this
        version; otherwise the items of every good line, the number of lines skipped and the
        first of them (counted from 1). */
    static bool parse(const std::string& text, Values& values, int& badLines, int& firstBadLine, juce::String& error);

private:
    struct Identity
    {
        bool exists = false;
        std::uint64_t device = 0, inode = 0;
        std::int64_t size = 0, modifiedNs = 0, changedNs = 0;
        bool operator==(const Identity& other) const;
    };

    enum class ReadResult
    {
        read,
        missing,
        refused
    };
    /** Reads the whole file; its identity is taken from the descriptor that was read. */
    ReadResult readFile(std::string& text, Identity& identity, juce::String& error) const;
    Identity currentIdentity() const;
    void refresh(std::uint32_t stamp);
    bool writeReplacement(const std::string& text, juce::String& error) const;

    juce::String m_path;
    Reporter m_reporter;

    std::mutex m_lock;
    bool m_bLoaded = false;
    std::uint32_t m_stamp = 0;
    Identity m_identity;
    Values m_values;

    JUCE_DECLARE_NON_COPYABLE(SetupFile)
};

} // namespace Platform
