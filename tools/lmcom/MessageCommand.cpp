#include "MessageCommand.h"

#include "AppTypeNames.h"
#include "Hex.h"
#include "UsageError.h"

#include "Platform/BusFolder.h"
#include "Platform/Endpoint.h"
#include "Platform/Environment.h"

#include "Platform/detail/Utf8.h"

#include <cerrno>
#include <cstdlib>

namespace LmComTool
{

const char* const MessageCommand::kValueOptionsHelp =
    "\n"
    "The attached Bundle, from any number of:\n"
    "  --int KEY=N        a 32-bit integer (decimal or 0x hex)\n"
    "  --bool KEY=true    true, false, 1 or 0\n"
    "  --double KEY=X     a double\n"
    "  --string KEY=TEXT  a text (UTF-8)\n"
    "  --bytes KEY=HEX    a byte array, e.g. 0102FF or \"01 02 ff\"\n";

namespace
{
std::string busLabel()
{
    const auto bus = Platform::Environment::busName();
    return bus.isEmpty() ? std::string("default") : bus.toStdString();
}

juce::String utf8(const Arguments& arguments, const std::string& text, const std::string& what)
{
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
    if (!LmComDetail::isValidUtf8(bytes, text.size()))
        arguments.fail(what + " is not valid UTF-8");
    return LmComDetail::decodeUtf8(bytes, text.size());
}

// The ring is made by the first process of a bus: mapping it where nobody listens would make
// a bus out of nothing, so the destination is looked for first.
void mapRing(const std::string& command)
{
    IPCMsg::MessageHelper::config(Pubhead::eAppType::AppUnknown, getDestName);
    if (!MsgSession::mapSharedArea())
        throw CommandFailure("lmcom: " + command + ": cannot map the message ring of bus '" + busLabel() + "'");
}
} // namespace

const char* const MessageCommand::kPostUsage = "lmcom post DEST CODE [P1 [P2]] [--int KEY=N ...]";
const char* const MessageCommand::kSendUsage = "lmcom send DEST CODE [P1 [P2]] [--int KEY=N ...]";
const char* const MessageCommand::kBroadcastUsage = "lmcom broadcast ACTION [--int KEY=N ...]";

const char* const MessageCommand::kPostHelp =
    "Posts a message to one application and returns at once. DEST is an application\n"
    "type by name (AppRadio), by destination name (Radio) or by number (5); CODE, P1 and\n"
    "P2 are integers (P1 and P2 default to 0). The sender is AppUnknown (26). Fails (status\n"
    "1) when no live process has the destination's endpoint, or its queue stayed full.\n";
const char* const MessageCommand::kSendHelp =
    "Sends a message to one application and returns once its handler has run (or the\n"
    "process died meanwhile). Arguments as for post.\n";
const char* const MessageCommand::kBroadcastHelp =
    "Sends a named broadcast to the receivers of every application. The Bundle goes under\n"
    "\"bundle\" beside the \"action\". Fails (status 1) when the bus has no live endpoint.\n";

std::vector<Arguments::Option> MessageCommand::options()
{
    return {{"int", true}, {"bool", true}, {"double", true}, {"string", true}, {"bytes", true}};
}

Bundle::Ptr MessageCommand::bundleOf(const Arguments& arguments)
{
    Bundle::Ptr bundle;
    for (auto& [option, assignment] : arguments.options())
    {
        if (option != "int" && option != "bool" && option != "double" && option != "string" && option != "bytes")
            continue;
        const auto equals = assignment.find('=');
        if (equals == std::string::npos || equals == 0)
            arguments.fail("--" + option + " needs KEY=VALUE, not '" + assignment + "'");
        const juce::String key = utf8(arguments, assignment.substr(0, equals), "the key");
        const std::string text = assignment.substr(equals + 1);
        const std::string what = "--" + option + " " + key.toStdString();
        if (bundle == nullptr)
            bundle = Bundle::obtain();

        if (option == "int")
            bundle->putInt(key, arguments.toInt(text, what));
        else if (option == "bool")
        {
            if (text != "true" && text != "false" && text != "1" && text != "0")
                arguments.fail(what + " must be true, false, 1 or 0, not '" + text + "'");
            bundle->putBool(key, text == "true" || text == "1");
        }
        else if (option == "double")
        {
            errno = 0;
            char* end = nullptr;
            const double value = std::strtod(text.c_str(), &end);
            if (text.empty() || end != text.c_str() + text.size() || errno == ERANGE)
                arguments.fail(what + " must be a number, not '" + text + "'");
            bundle->putDouble(key, value);
        }
        else if (option == "string")
            bundle->putString(key, utf8(arguments, text, what));
        else
        {
            std::vector<unsigned char> bytes;
            if (!Hex::parse(text, bytes))
                arguments.fail(what + " must be hex bytes, not '" + text + "'");
            bundle->putByteArray(key, bytes.data(), (int)bytes.size());
        }
    }
    return bundle;
}

int MessageCommand::deliver(const Arguments& arguments, bool synchronous)
{
    arguments.expectPositionals(2, 4, synchronous ? kSendUsage : kPostUsage);
    const auto& words = arguments.positionals();
    const int dest = AppTypeNames::parse(words[0]);
    if (dest < 0)
        arguments.fail("unknown destination '" + words[0] + "' (a name such as AppRadio or Radio, or 0 to 26)");
    const int code = arguments.toInt(words[1], "CODE");
    const int param1 = words.size() > 2 ? arguments.toInt(words[2], "P1") : 0;
    const int param2 = words.size() > 3 ? arguments.toInt(words[3], "P2") : 0;
    const auto bundle = bundleOf(arguments);

    const std::string name = getDestName(dest);
    const std::string command = arguments.command();
    juce::String refused;
    if (!Platform::BusFolder::check(refused) && refused.isNotEmpty())
        throw CommandFailure("lmcom: " + command + ": " + refused.toStdString());
    if (name.empty() || !Platform::Endpoint::exists(name))
        throw CommandFailure("lmcom: " + command + ": no live endpoint '" + name + "' (" + AppTypeNames::printable(dest)
                             + ") on bus '" + busLabel() + "'");
    mapRing(command);
    const bool delivered = synchronous ? IPCMsg::MessageHelper::sendMessage(dest, code, param1, param2, bundle.get())
                                       : IPCMsg::MessageHelper::postMessage(dest, code, param1, param2, bundle.get());
    if (!delivered)
        throw CommandFailure("lmcom: " + command + ": '" + name
                             + "' did not take the message (its queue stayed "
                               "full, or it went away)");
    return 0;
}

int MessageCommand::runPost(const Arguments& arguments)
{
    return deliver(arguments, false);
}

int MessageCommand::runSend(const Arguments& arguments)
{
    return deliver(arguments, true);
}

int MessageCommand::runBroadcast(const Arguments& arguments)
{
    arguments.expectPositionals(1, 1, kBroadcastUsage);
    const juce::String action = utf8(arguments, arguments.positionals()[0], "ACTION");
    const auto bundle = bundleOf(arguments);
    bool anyone = false;
    for (auto& endpoint : Platform::Endpoint::list())
        anyone = anyone || endpoint.alive;
    if (!anyone)
        throw CommandFailure("lmcom: broadcast: no live endpoint on bus '" + busLabel() + "'");
    mapRing("broadcast");
    MsgSession::sendBroadcast(action, bundle);
    return 0;
}

} // namespace LmComTool
