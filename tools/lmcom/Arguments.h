#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace LmComTool
{

/** The command line of one sub-command: options and positional arguments.

    Options are "--name", "--name=value" or "--name value"; "-h" is "--help"; anything after
    "--" is positional, and so is every other word (a negative number such as "-5" too).
    Every sub-command also takes "--bus NAME" and "--help". Misuse throws UsageError.
*/
class Arguments
{
public:
    struct Option
    {
        std::string name; // without the dashes
        bool takesValue;
    };

    Arguments(std::string command, const std::vector<std::string>& words, std::vector<Option> options);

    const std::string& command() const { return m_command; }
    bool has(const std::string& name) const;
    /** The value of the last occurrence of an option. */
    std::optional<std::string> value(const std::string& name) const;
    /** Every option given, in order, with its value ("" for a flag). */
    const std::vector<std::pair<std::string, std::string>>& options() const { return m_given; }
    const std::vector<std::string>& positionals() const { return m_positionals; }

    /** Throws unless the number of positionals is within [min, max]; `usage` names them. */
    void expectPositionals(size_t min, size_t max, const std::string& usage) const;

    /** Throws a UsageError "lmcom: COMMAND: text". */
    [[noreturn]] void fail(const std::string& text) const;

    /** A 32-bit integer, decimal or 0x hexadecimal, optionally negative; throws otherwise. */
    int toInt(const std::string& text, const std::string& what) const;
    /** The same, for an option's value; the default when the option is absent. */
    int intOption(const std::string& name, int defaultValue) const;

private:
    std::string m_command;
    std::vector<Option> m_options;
    std::vector<std::pair<std::string, std::string>> m_given;
    std::vector<std::string> m_positionals;
};

} // namespace LmComTool
