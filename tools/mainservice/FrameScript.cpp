#include "FrameScript.h"

#include <juce_core/juce_core.h>

#include <filesystem>
#include <fstream>

namespace
{
int hexDigit(char c)
{
    return juce::CharacterFunctions::getHexDigitValue((juce::juce_wchar)(unsigned char)c);
}

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r';
}

/** One line without its comment; "" when it holds an entry. */
std::string parseLine(const std::string& line, FrameScript::Entry& entry)
{
    size_t pos = 0;
    while (pos < line.size() && isBlank(line[pos]))
        ++pos;
    long wait = 0;
    const size_t waitStart = pos;
    while (pos < line.size() && line[pos] >= '0' && line[pos] <= '9')
    {
        wait = wait * 10 + (line[pos++] - '0');
        if (wait > FrameScript::kMaxWaitMs)
            return "the wait is over " + std::to_string(FrameScript::kMaxWaitMs) + " ms";
    }
    if (pos == waitStart || pos == line.size() || !isBlank(line[pos]))
        return "expected WAIT_MS, a blank and hex bytes";
    entry.waitMs = (int)wait;

    int high = -1;
    for (; pos < line.size() && line[pos] != '#'; ++pos)
    {
        if (isBlank(line[pos]))
        {
            if (high >= 0)
                return "a hex byte is cut in two";
            continue;
        }
        const int digit = hexDigit(line[pos]);
        if (digit < 0)
            return "not a hex digit at column " + std::to_string(pos + 1);
        if (high < 0)
        {
            high = digit;
            continue;
        }
        if (entry.frame.size() == FrameScript::kMaxFrameBytes)
            return "the frame is longer than " + std::to_string(FrameScript::kMaxFrameBytes) + " bytes";
        entry.frame.push_back((unsigned char)(high * 16 + digit));
        high = -1;
    }
    if (high >= 0)
        return "an odd number of hex digits";
    if (entry.frame.empty())
        return "no frame bytes";
    return {};
}
} // namespace

std::vector<FrameScript::Entry> FrameScript::parse(const std::string& text, std::vector<std::string>& problems)
{
    std::vector<Entry> entries;
    size_t start = 0;
    for (int number = 1; start < text.size(); ++number)
    {
        size_t end = text.find('\n', start);
        if (end == std::string::npos)
            end = text.size();
        const size_t length = end - start;
        const std::string line = text.substr(start, std::min(length, kMaxLineBytes + 1));
        start = end + 1;

        const size_t first = line.find_first_not_of(" \t\r");
        if (first == std::string::npos || line[first] == '#')
            continue;
        std::string problem;
        Entry entry;
        if (length > kMaxLineBytes)
            problem = "longer than " + std::to_string(kMaxLineBytes) + " bytes";
        else if (entries.size() == kMaxEntries)
            problem = "more than " + std::to_string(kMaxEntries) + " frames";
        else
            problem = parseLine(line, entry);
        if (!problem.empty())
        {
            problems.push_back("line " + std::to_string(number) + ": " + problem);
            continue;
        }
        entry.line = number;
        entries.push_back(std::move(entry));
    }
    return entries;
}

bool FrameScript::load(const std::string& path, std::vector<Entry>& entries, std::vector<std::string>& problems)
{
    // A FIFO would block and a device never end: only a regular file is read, and only so much.
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
    {
        problems.push_back("not a regular file");
        return false;
    }
    std::ifstream in(path, std::ios::binary);
    if (!in.is_open())
    {
        problems.push_back("cannot be opened");
        return false;
    }
    std::string text(kMaxFileBytes + 1, '\0');
    in.read(&text[0], (std::streamsize)text.size());
    if (in.bad())
    {
        problems.push_back("cannot be read");
        return false;
    }
    const auto got = (size_t)in.gcount();
    if (got > kMaxFileBytes)
    {
        problems.push_back("larger than " + std::to_string(kMaxFileBytes) + " bytes");
        return false;
    }
    text.resize(got);
    entries = parse(text, problems);
    return true;
}
