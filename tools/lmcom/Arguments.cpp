#include "Arguments.h"

#include "UsageError.h"

#include <cerrno>
#include <climits>
#include <cstdlib>

namespace LmComTool
{

Arguments::Arguments(std::string command, const std::vector<std::string>& words, std::vector<Option> options)
    : m_command(std::move(command)), m_options(std::move(options))
{
    m_options.push_back({"bus", true});
    m_options.push_back({"help", false});

    for (size_t i = 0; i < words.size(); ++i)
    {
        const std::string& word = words[i];
        if (word == "--")
        {
            m_positionals.insert(m_positionals.end(), words.begin() + (long)i + 1, words.end());
            break;
        }
        if (word == "-h")
        {
            m_given.emplace_back("help", "");
            continue;
        }
        if (word.size() < 3 || word.compare(0, 2, "--") != 0)
        {
            m_positionals.push_back(word);
            continue;
        }
        const auto equals = word.find('=');
        const std::string name = word.substr(2, equals == std::string::npos ? std::string::npos : equals - 2);
        const Option* option = nullptr;
        for (auto& candidate : m_options)
            if (candidate.name == name)
                option = &candidate;
        if (option == nullptr)
            fail("unknown option --" + name);
        if (!option->takesValue)
        {
            if (equals != std::string::npos)
                fail("--" + name + " takes no value");
            m_given.emplace_back(name, "");
            continue;
        }
        if (equals != std::string::npos)
            m_given.emplace_back(name, word.substr(equals + 1));
        else if (i + 1 < words.size())
            m_given.emplace_back(name, words[++i]);
        else
            fail("--" + name + " needs a value");
    }
}

bool Arguments::has(const std::string& name) const
{
    for (auto& given : m_given)
        if (given.first == name)
            return true;
    return false;
}

std::optional<std::string> Arguments::value(const std::string& name) const
{
    std::optional<std::string> found;
    for (auto& given : m_given)
        if (given.first == name)
            found = given.second;
    return found;
}

void Arguments::expectPositionals(size_t min, size_t max, const std::string& usage) const
{
    if (m_positionals.size() < min)
        fail("missing arguments: " + usage);
    if (m_positionals.size() > max)
        fail("unexpected argument '" + m_positionals[max] + "': " + usage);
}

void Arguments::fail(const std::string& text) const
{
    throw UsageError("lmcom: " + m_command + ": " + text);
}

int Arguments::toInt(const std::string& text, const std::string& what) const
{
    const char* begin = text.c_str();
    const bool negative = !text.empty() && text[0] == '-';
    const char* digits = begin + (negative ? 1 : 0);
    const bool hexadecimal = digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X');
    if (text.empty() || *digits == '\0' || *digits == '+' || *digits == '-' || *digits == ' ')
        fail(what + " must be an integer, not '" + text + "'");
    errno = 0;
    char* end = nullptr;
    const long long value = std::strtoll(begin, &end, hexadecimal ? 16 : 10);
    if (errno != 0 || end == begin || *end != '\0' || (hexadecimal && digits[2] == '\0'))
        fail(what + " must be an integer, not '" + text + "'");
    // Hexadecimal up to 0xFFFFFFFF stands for the 32-bit pattern (0xFFFFFFFF is -1).
    if (hexadecimal && !negative && value > INT_MAX && value <= 0xFFFFFFFFLL)
        return (int)(unsigned int)value;
    if (value < INT_MIN || value > INT_MAX)
        fail(what + " is out of the 32-bit range: " + text);
    return (int)value;
}

int Arguments::intOption(const std::string& name, int defaultValue) const
{
    const auto text = value(name);
    return text ? toInt(*text, "--" + name) : defaultValue;
}

} // namespace LmComTool
