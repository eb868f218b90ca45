#include "Tool.h"

#include "BoardCommand.h"
#include "CleanCommand.h"
#include "DecodeCommand.h"
#include "ListCommand.h"
#include "MessageCommand.h"
#include "MonitorCommand.h"
#include "SettingsCommand.h"
#include "UsageError.h"

#include <cstdio>
#include <cstdlib>

namespace LmComTool
{

namespace
{
struct Command
{
    const char* name;
    const char* summary;
    const char* usage;
    const char* help;
    const char* moreHelp;
    std::vector<Arguments::Option> (*options)();
    int (*run)(const Arguments&);
};

const std::vector<Command>& commands()
{
    static const std::vector<Command> table = {
        {"list", "the endpoints of the bus and whether they are alive", ListCommand::kUsage, ListCommand::kHelp, "",
         &ListCommand::options, &ListCommand::run},
        {"clean", "remove a bus left behind by processes that died", CleanCommand::kUsage, CleanCommand::kHelp, "",
         &CleanCommand::options, &CleanCommand::run},
        {"monitor", "follow the message ring live and print each record", MonitorCommand::kUsage, MonitorCommand::kHelp,
         "", &MonitorCommand::options, &MonitorCommand::run},
        {"post", "post a message to an application", MessageCommand::kPostUsage, MessageCommand::kPostHelp,
         MessageCommand::kValueOptionsHelp, &MessageCommand::options, &MessageCommand::runPost},
        {"send", "send a message and wait until it was handled", MessageCommand::kSendUsage, MessageCommand::kSendHelp,
         MessageCommand::kValueOptionsHelp, &MessageCommand::options, &MessageCommand::runSend},
        {"broadcast", "send a named broadcast to every application", MessageCommand::kBroadcastUsage,
         MessageCommand::kBroadcastHelp, MessageCommand::kValueOptionsHelp, &MessageCommand::options,
         &MessageCommand::runBroadcast},
        {"decode", "print what a byte string holds (parcel, pgn, carinfo)", DecodeCommand::kUsage, DecodeCommand::kHelp,
         "", &DecodeCommand::options, &DecodeCommand::run},
        {"settings", "read and write the settings store (list, get, set)", SettingsCommand::kUsage,
         SettingsCommand::kHelp, "", &SettingsCommand::options, &SettingsCommand::run},
        {"board", "the board profile's device map and the board's versions", BoardCommand::kUsage, BoardCommand::kHelp,
         "", &BoardCommand::options, &BoardCommand::run},
    };
    return table;
}

const char* const kCommonHelp = "\nEvery command also takes --bus NAME (the bus, instead of $LMCOM_BUS) and --help.\n";
} // namespace

std::string Tool::overview()
{
    std::string text = "usage: lmcom [--bus NAME] COMMAND [ARGUMENTS]\n"
                       "\n"
                       "Sees and drives the processes of a head unit on one bus (LMCOM_BUS, or --bus;\n"
                       "unset: the default bus).\n"
                       "\n"
                       "Commands:\n";
    for (auto& command : commands())
    {
        char line[160];
        std::snprintf(line, sizeof line, "  %-10s %s\n", command.name, command.summary);
        text += line;
    }
    text += "\n'lmcom COMMAND --help' tells more. Exit status: 0 done, 1 failed, 2 misused.\n";
    return text;
}

int Tool::run(const std::vector<std::string>& words)
{
    // Options before the command: --bus and --help.
    size_t first = 0;
    std::string bus;
    bool busGiven = false;
    for (; first < words.size(); ++first)
    {
        const auto& word = words[first];
        if (word == "--help" || word == "-h" || word == "help")
        {
            if (word == "help" && first + 1 < words.size())
                return run({words[first + 1], "--help"});
            std::fputs(overview().c_str(), stdout);
            return 0;
        }
        if (word == "--bus" && first + 1 == words.size())
            throw UsageError("lmcom: --bus needs a value (lmcom --help)");
        if (word == "--bus")
        {
            bus = words[++first];
            busGiven = true;
        }
        else if (word.compare(0, 6, "--bus=") == 0)
        {
            bus = word.substr(6);
            busGiven = true;
        }
        else if (word.compare(0, 1, "-") == 0)
            throw UsageError("lmcom: unknown option " + word + " (lmcom --help)");
        else
            break;
    }
    if (first == words.size())
        throw UsageError("lmcom: missing command (lmcom --help)");

    const Command* command = nullptr;
    for (auto& candidate : commands())
        if (words[first] == candidate.name)
            command = &candidate;
    if (command == nullptr)
        throw UsageError("lmcom: unknown command '" + words[first] + "' (lmcom --help)");

    const Arguments arguments(command->name, std::vector<std::string>(words.begin() + (long)first + 1, words.end()),
                              command->options());
    if (arguments.has("help"))
    {
        std::printf("usage: %s\n\n%s%s%s", command->usage, command->help, command->moreHelp, kCommonHelp);
        return 0;
    }
    if (const auto value = arguments.value("bus"))
    {
        bus = *value;
        busGiven = true;
    }
    // The port reads the bus from the environment, on every use.
    if (busGiven)
        setenv("LMCOM_BUS", bus.c_str(), 1);
    return command->run(arguments);
}

} // namespace LmComTool
