#include "Platform/SetupFile.h"

#include <juce_core/juce_core.h>

#include "Platform/PosixCall.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <string_view>

namespace Platform
{

namespace
{
const char* const kFormatName = "lmcom-setup";
const char* const kPreamble =
    "# LmCom setup values: INDEX int NUMBER, or INDEX string \"TEXT\" (UTF-8; \\\" \\\\ \\n \\r \\t \\xHH).\n"
    "# The settings store replaces this file as a whole: edit a copy and rename it over this one.\n";

/** Closes a descriptor when it goes. */
struct Descriptor
{
    int fd = -1;
    ~Descriptor()
    {
        if (fd >= 0)
            close(fd);
    }
};

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

std::string_view skipBlanks(std::string_view text)
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    return text;
}

/** The word up to the next blank; the rest of the text stays in `text`. */
std::string_view takeWord(std::string_view& text)
{
    text = skipBlanks(text);
    size_t end = 0;
    while (end < text.size() && !isBlank(text[end]))
        ++end;
    auto word = text.substr(0, end);
    text.remove_prefix(end);
    return word;
}

/** A decimal number within [min, max], nothing else. */
bool toNumber(std::string_view word, std::int64_t min, std::int64_t max, std::int64_t& out)
{
    const bool negative = !word.empty() && word.front() == '-';
    if (negative)
        word.remove_prefix(1);
    if (word.empty() || word.size() > 10)
        return false;
    std::int64_t value = 0;
    for (char c : word)
    {
        if (c < '0' || c > '9')
            return false;
        value = value * 10 + (c - '0');
    }
    value = negative ? -value : value;
    if (value < min || value > max)
        return false;
    out = value;
    return true;
}

int hexDigit(char c)
{
    return juce::CharacterFunctions::getHexDigitValue((juce::juce_wchar)(unsigned char)c);
}

/** A quoted text with its escapes; only blanks may follow the closing quote. */
bool toText(std::string_view rest, std::string& out)
{
    rest = skipBlanks(rest);
    if (rest.empty() || rest.front() != '"')
        return false;
    rest.remove_prefix(1);
    out.clear();
    for (size_t i = 0; i < rest.size(); ++i)
    {
        const char c = rest[i];
        if (c == '"')
            return skipBlanks(rest.substr(i + 1)).empty();
        if ((int)out.size() >= SetupFile::kMaxTextBytes || (unsigned char)c < 0x20 || c == 0x7F)
            return false;
        if (c != '\\')
        {
            out += c;
            continue;
        }
        if (++i == rest.size())
            return false;
        switch (rest[i])
        {
        case '"':
        case '\\':
            out += rest[i];
            break;
        case 'n':
            out += '\n';
            break;
        case 'r':
            out += '\r';
            break;
        case 't':
            out += '\t';
            break;
        case 'x':
        {
            const int high = i + 1 < rest.size() ? hexDigit(rest[i + 1]) : -1;
            const int low = i + 2 < rest.size() ? hexDigit(rest[i + 2]) : -1;
            // A zero byte would end the text early everywhere it is read.
            if (high < 0 || low < 0 || high * 16 + low == 0)
                return false;
            out += (char)(high * 16 + low);
            i += 2;
            break;
        }
        default:
            return false;
        }
    }
    return false; // no closing quote
}

void appendQuoted(std::string& out, const std::string& text)
{
    static const char* const digits = "0123456789ABCDEF";
    out += '"';
    for (char c : text)
    {
        const auto byte = (unsigned char)c;
        if (c == '"' || c == '\\')
            (out += '\\') += c;
        else if (c == '\n')
            out += "\\n";
        else if (c == '\r')
            out += "\\r";
        else if (c == '\t')
            out += "\\t";
        else if (byte < 0x20 || byte == 0x7F)
            ((out += "\\x") += digits[byte >> 4]) += digits[byte & 15];
        else
            out += c;
    }
    out += '"';
}

std::int64_t nanoseconds(const struct timespec& time)
{
    return (std::int64_t)time.tv_sec * 1000000000 + time.tv_nsec;
}
} // namespace

bool SetupFile::Identity::operator==(const Identity& other) const
{
    return exists == other.exists && device == other.device && inode == other.inode && size == other.size
           && modifiedNs == other.modifiedNs && changedNs == other.changedNs;
}

SetupFile::SetupFile(juce::String path, Reporter reporter) : m_path(std::move(path)), m_reporter(std::move(reporter)) {}

std::string SetupFile::format(const Values& values)
{
    std::string text = kPreamble;
    text += std::string(kFormatName) + " " + std::to_string(kVersion) + "\n";
    for (auto& [index, value] : values)
    {
        text += std::to_string(index);
        if (value.isString)
            appendQuoted(text += " string ", value.text);
        else
            text += " int " + std::to_string(value.number);
        text += '\n';
    }
    return text;
}

bool SetupFile::parse(const std::string& text, Values& values, int& badLines, int& firstBadLine, juce::String& error)
{
    values.clear();
    badLines = 0;
    firstBadLine = 0;
    bool headerSeen = false;
    std::string_view rest(text);
    for (int lineNumber = 1; !rest.empty(); ++lineNumber)
    {
        const auto end = rest.find('\n');
        auto line = rest.substr(0, end);
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        if (skipBlanks(line).empty() || skipBlanks(line).front() == '#')
            continue;

        auto words = line;
        const auto first = takeWord(words);
        if (!headerSeen)
        {
            std::int64_t version = 0;
            const auto versionWord = takeWord(words);
            if (first != kFormatName || !skipBlanks(words).empty() || !toNumber(versionWord, 0, INT_MAX, version))
            {
                error = "not a setup file (line " + juce::String(lineNumber) + ")";
                return false;
            }
            if (version != kVersion)
            {
                error = "a setup file of version " + juce::String((int)version) + ", not " + juce::String(kVersion);
                return false;
            }
            headerSeen = true;
            continue;
        }

        std::int64_t index = 0;
        Value value;
        bool good = toNumber(first, 0, kCount - 1, index) && first.front() != '-';
        if (good)
        {
            const auto type = takeWord(words);
            if (type == "int")
            {
                std::int64_t number = 0;
                const auto word = takeWord(words);
                good = skipBlanks(words).empty() && toNumber(word, INT_MIN, INT_MAX, number);
                value.number = (std::int32_t)number;
            }
            else if (type == "string")
            {
                value.isString = true;
                good = toText(words, value.text);
            }
            else
                good = false;
        }
        if (!good)
        {
            if (badLines++ == 0)
                firstBadLine = lineNumber;
            continue;
        }
        values[(int)index] = std::move(value);
    }
    return true;
}

SetupFile::Identity SetupFile::currentIdentity() const
{
    Identity identity;
    struct stat info = {};
    if (stat(m_path.toRawUTF8(), &info) != 0)
        return identity;
    identity.exists = true;
    identity.device = (std::uint64_t)info.st_dev;
    identity.inode = (std::uint64_t)info.st_ino;
    identity.size = (std::int64_t)info.st_size;
    identity.modifiedNs = nanoseconds(info.st_mtim);
    identity.changedNs = nanoseconds(info.st_ctim);
    return identity;
}

SetupFile::ReadResult SetupFile::readFile(std::string& text, Identity& identity, juce::String& error) const
{
    // Non-blocking: a FIFO put in the file's place must not hang the reader.
    Descriptor file;
    auto opened = posixCall([&] { return ::open(m_path.toRawUTF8(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY); });
    if (opened.failed())
    {
        if (opened.error == ENOENT)
            return ReadResult::missing;
        error = "cannot open " + m_path + ": " + juce::String(opened.message());
        return ReadResult::refused;
    }
    file.fd = opened.value;
    struct stat info = {};
    if (fstat(file.fd, &info) != 0 || !S_ISREG(info.st_mode))
    {
        error = m_path + " is not a regular file";
        return ReadResult::refused;
    }
    if (info.st_size > kMaxFileBytes)
    {
        error = m_path + " is larger than " + juce::String(kMaxFileBytes) + " bytes";
        return ReadResult::refused;
    }
    identity.exists = true;
    identity.device = (std::uint64_t)info.st_dev;
    identity.inode = (std::uint64_t)info.st_ino;
    identity.size = (std::int64_t)info.st_size;
    identity.modifiedNs = nanoseconds(info.st_mtim);
    identity.changedNs = nanoseconds(info.st_ctim);

    // The size said is only a hint: read to the end, never past the limit.
    text.clear();
    char buffer[65536];
    for (;;)
    {
        auto got = posixCall([&] { return ::read(file.fd, buffer, sizeof buffer); }, (ssize_t)-1);
        if (got.failed())
        {
            error = "cannot read " + m_path + ": " + juce::String(got.message());
            return ReadResult::refused;
        }
        if (got.value == 0)
            break;
        if ((std::int64_t)text.size() + got.value > kMaxFileBytes)
        {
            error = m_path + " is larger than " + juce::String(kMaxFileBytes) + " bytes";
            return ReadResult::refused;
        }
        text.append(buffer, (size_t)got.value);
    }
    return ReadResult::read;
}

void SetupFile::refresh(std::uint32_t stamp)
{
    const auto identity = currentIdentity();
    if (m_bLoaded && stamp == m_stamp && identity == m_identity)
        return;
    m_bLoaded = true;
    m_stamp = stamp;
    m_identity = identity;

    std::string text;
    Identity readIdentity;
    juce::String error;
    const auto result = readFile(text, readIdentity, error);
    if (result == ReadResult::missing)
    {
        m_values.clear();
        m_identity = Identity();
        return;
    }
    // What was read last stays: a refused file never takes its place.
    if (result == ReadResult::refused)
    {
        m_reporter(error + "; setup values kept as they were");
        return;
    }
    m_identity = readIdentity;
    Values values;
    int badLines = 0, firstBadLine = 0;
    if (!parse(text, values, badLines, firstBadLine, error))
    {
        m_reporter(m_path + " is " + error + ": refused; setup values kept as they were");
        return;
    }
    if (badLines > 0)
        m_reporter(m_path + ": line " + juce::String(firstBadLine) + " is not a setup value; " + juce::String(badLines)
                   + " such line(s) skipped");
    m_values = std::move(values);
}

std::optional<SetupFile::Value> SetupFile::get(int index, std::uint32_t stamp)
{
    std::lock_guard<std::mutex> guard(m_lock);
    refresh(stamp);
    auto it = m_values.find(index);
    if (it == m_values.end())
        return std::nullopt;
    return it->second;
}

SetupFile::Values SetupFile::getAll(std::uint32_t stamp)
{
    std::lock_guard<std::mutex> guard(m_lock);
    refresh(stamp);
    return m_values;
}

bool SetupFile::writeReplacement(const std::string& text, juce::String& error) const
{
    const auto temporary = m_path + ".tmp";
    {
        Descriptor file;
        auto opened = posixCall(
            [&] { return ::open(temporary.toRawUTF8(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0600); });
        if (opened.failed())
        {
            error = "cannot write " + temporary + ": " + juce::String(opened.message());
            return false;
        }
        file.fd = opened.value;
        for (size_t written = 0; written < text.size();)
        {
            auto wrote =
                posixCall([&] { return ::write(file.fd, text.data() + written, text.size() - written); }, (ssize_t)-1);
            if (wrote.failed())
            {
                error = "cannot write " + temporary + ": " + juce::String(wrote.message());
                return false;
            }
            written += (size_t)wrote.value;
        }
        // On disk before the name points at it: a crash leaves the old file or the whole new one.
        auto flushed = posixCall([&] { return ::fsync(file.fd); });
        if (flushed.failed())
        {
            error = "cannot flush " + temporary + ": " + juce::String(flushed.message());
            return false;
        }
    }
    auto renamed = posixCall([&] { return ::rename(temporary.toRawUTF8(), m_path.toRawUTF8()); });
    if (renamed.failed())
    {
        error = "cannot replace " + m_path + ": " + juce::String(renamed.message());
        return false;
    }
    // The rename itself reaches the disk with the folder.
    Descriptor folder;
    folder.fd = ::open(juce::File(m_path).getParentDirectory().getFullPathName().toRawUTF8(),
                       O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder.fd >= 0)
        ::fsync(folder.fd);
    return true;
}

bool SetupFile::set(int index, const Value& value)
{
    auto fail = [this](const juce::String& text)
    {
        m_reporter(text);
        return false;
    };
    if (index < 0 || index >= kCount)
        return fail("setup index " + juce::String(index) + " is outside 0.." + juce::String(kCount - 1));
    if (value.isString && ((int)value.text.size() > kMaxTextBytes || value.text.find('\0') != std::string::npos))
        return fail("setup text for index " + juce::String(index) + " is longer than " + juce::String(kMaxTextBytes)
                    + " bytes or holds a zero byte");

    const juce::File file(m_path);
    if (!file.getParentDirectory().isDirectory() && !file.getParentDirectory().createDirectory())
        return fail("cannot make the folder of " + m_path);

    Descriptor lock;
    auto locked = posixCall(
        [&] { return ::open((m_path + ".lock").toRawUTF8(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600); });
    if (locked.failed())
        return fail("cannot open " + m_path + ".lock: " + juce::String(locked.message()));
    lock.fd = locked.value;
    // Released by the kernel when the descriptor closes, also when the writer dies.
    auto taken = posixCall([&] { return ::flock(lock.fd, LOCK_EX); });
    if (taken.failed())
        return fail("cannot lock " + m_path + ".lock: " + juce::String(taken.message()));

    std::string text;
    Identity identity;
    juce::String error;
    Values values;
    const auto result = readFile(text, identity, error);
    if (result == ReadResult::refused)
        return fail(error + "; not replaced");
    int badLines = 0, firstBadLine = 0;
    if (result == ReadResult::read && !parse(text, values, badLines, firstBadLine, error))
        return fail(m_path + " is " + error + "; not replaced");
    values[index] = value;
    if (!writeReplacement(format(values), error))
        return fail(error);

    std::lock_guard<std::mutex> guard(m_lock);
    m_bLoaded = false; // read again: the reader's view follows the file
    return true;
}

} // namespace Platform
