#include "SettingsCommand.h"

#include "JsonWriter.h"
#include "UsageError.h"

#include "Platform/Environment.h"
#include "Platform/SettingsSegment.h"
#include "Platform/SetupFile.h"
#include "Platform/detail/Utf8.h"
#include "Utils/detail/SettingsStore.h"

#include <cstdio>
#include <functional>

namespace LmComTool
{

namespace
{
enum class Kind
{
    sysinfo,
    srcstate,
    setup
};

/** The store as this command sees it; every problem it meets is kept for the error line. */
struct Store
{
    juce::StringArray problems;
    Platform::SettingsSegment segment{[this](const juce::String& text) { problems.add(text); }};
    Platform::SetupFile setup{Platform::Environment::resolve(LmComDetail::SettingsStore::kSetupFile),
                              [this](const juce::String& text) { problems.add(text); }};

    [[noreturn]] void fail(const Arguments& arguments) const
    {
        throw CommandFailure(
            "lmcom: " + arguments.command() + ": "
            + (problems.isEmpty() ? juce::String("the settings store cannot be used") : problems[problems.size() - 1])
                  .toStdString());
    }
    void openSegment(const Arguments& arguments)
    {
        if (!segment.open())
            fail(arguments);
    }
    /** Problems that did not stop the command (lines skipped in the setup file). */
    void warn(const Arguments& arguments) const
    {
        for (auto& problem : problems)
            std::fprintf(stderr, "lmcom %s: %s\n", arguments.command().c_str(), problem.toRawUTF8());
    }
};

Kind kindOf(const Arguments& arguments, const std::string& word)
{
    if (word == "sysinfo")
        return Kind::sysinfo;
    if (word == "srcstate")
        return Kind::srcstate;
    if (word == "setup")
        return Kind::setup;
    arguments.fail("unknown kind '" + word + "' (sysinfo, srcstate, setup)");
}

int indexOf(const Arguments& arguments, Kind kind, const std::string& word)
{
    const int count = kind == Kind::sysinfo    ? Platform::SettingsSegment::kSysInfoCount
                      : kind == Kind::srcstate ? LmComDetail::SettingsStore::kSourceCount
                                               : Platform::SetupFile::kCount;
    const int index = arguments.toInt(word, "INDEX");
    if (index < 0 || index >= count)
        arguments.fail("INDEX must be within 0.." + std::to_string(count - 1) + ", not " + word);
    return index;
}

bool stateOf(const Arguments& arguments, const std::string& word)
{
    if (word == "on" || word == "1" || word == "true")
        return true;
    if (word == "off" || word == "0" || word == "false")
        return false;
    arguments.fail("a source state is on or off, not '" + word + "'");
}

std::string textOf(const Platform::SetupFile::Value& value)
{
    // The file is untrusted: printed text goes through the checked decoder.
    return LmComDetail::decodeUtf8(reinterpret_cast<const unsigned char*>(value.text.data()), value.text.size())
        .toStdString();
}

std::string quoted(const std::string& text)
{
    std::string out = "\"";
    JsonWriter::escape(out, text);
    return out + "\"";
}

int list(const Arguments& arguments, Store& store)
{
    arguments.expectPositionals(1, 1, SettingsCommand::kUsage);
    store.openSegment(arguments);
    const bool json = arguments.has("json");
    std::string out;
    auto row = [&](const char* kind, int index, const char* type, const std::string& shown,
                   const std::function<void(JsonWriter&)>& value)
    {
        if (!json)
        {
            char line[64];
            std::snprintf(line, sizeof line, "%-8s  %5d  %-6s  ", kind, index, type);
            out += line + shown + "\n";
            return;
        }
        JsonWriter writer(out);
        writer.beginObject().key("kind").value(kind).key("index").value(index).key("type").value(type).key("value");
        value(writer);
        writer.endObject();
        out += "\n";
    };
    if (!json)
        out += "KIND      INDEX  TYPE    VALUE\n";
    for (int index = 0; index < Platform::SettingsSegment::kSysInfoCount; ++index)
    {
        std::int32_t value = 0;
        if (store.segment.getSysInfo(index, value) && value != 0)
            row("sysinfo", index, "int", std::to_string(value), [&](JsonWriter& w) { w.value(value); });
    }
    for (int index = 0; index < LmComDetail::SettingsStore::kSourceCount; ++index)
    {
        std::int32_t value = 0;
        if (store.segment.getSource(index, value) && value != 0)
            row("srcstate", index, "bool", "on", [&](JsonWriter& w) { w.value(true); });
    }
    for (auto& [index, value] : store.setup.getAll(store.segment.setupGeneration()))
    {
        if (value.isString)
        {
            const auto text = textOf(value);
            row("setup", index, "string", quoted(text), [&](JsonWriter& w) { w.value(text); });
        }
        else
            row("setup", index, "int", std::to_string(value.number), [&](JsonWriter& w) { w.value(value.number); });
    }
    std::fputs(out.c_str(), stdout);
    store.warn(arguments);
    return 0;
}

int get(const Arguments& arguments, Store& store)
{
    arguments.expectPositionals(3, 3, SettingsCommand::kUsage);
    const auto kind = kindOf(arguments, arguments.positionals()[1]);
    const int index = indexOf(arguments, kind, arguments.positionals()[2]);
    store.openSegment(arguments);
    std::int32_t number = 0;
    if (kind == Kind::sysinfo && store.segment.getSysInfo(index, number))
        std::printf("%d\n", number);
    else if (kind == Kind::srcstate && store.segment.getSource(index, number))
        std::printf("%s\n", number != 0 ? "on" : "off");
    else if (kind == Kind::setup)
    {
        const auto value = store.setup.get(index, store.segment.setupGeneration());
        store.warn(arguments);
        if (!value)
            throw CommandFailure("lmcom: settings: setup item " + std::to_string(index) + " is not set");
        if (value->isString)
            std::printf("%s\n", textOf(*value).c_str());
        else
            std::printf("%d\n", value->number);
    }
    return 0;
}

int set(const Arguments& arguments, Store& store)
{
    arguments.expectPositionals(4, 4, SettingsCommand::kUsage);
    const auto kind = kindOf(arguments, arguments.positionals()[1]);
    const int index = indexOf(arguments, kind, arguments.positionals()[2]);
    const auto& word = arguments.positionals()[3];
    if (arguments.has("string") && kind != Kind::setup)
        arguments.fail("--string is for setup items only");
    store.openSegment(arguments);
    if (kind == Kind::sysinfo)
        store.segment.setSysInfo(index, arguments.toInt(word, "VALUE"));
    else if (kind == Kind::srcstate)
        store.segment.setSource(index, stateOf(arguments, word) ? 1 : 0);
    else
    {
        Platform::SetupFile::Value value;
        value.isString = arguments.has("string");
        if (!value.isString)
        {
            try
            {
                value.number = arguments.toInt(word, "VALUE");
            }
            catch (const UsageError&)
            {
                value.isString = true; // not a number: text
            }
        }
        if (value.isString)
        {
            if (word.size() > (size_t)Platform::SetupFile::kMaxTextBytes)
                arguments.fail("VALUE is longer than " + std::to_string(Platform::SetupFile::kMaxTextBytes) + " bytes");
            // Stored as UTF-8 whatever the shell gave: bytes that are not become U+FFFD.
            value.text =
                LmComDetail::decodeUtf8(reinterpret_cast<const unsigned char*>(word.data()), word.size()).toStdString();
        }
        if (!store.setup.set(index, value))
            store.fail(arguments);
        store.segment.bumpSetupGeneration();
    }
    return 0;
}
} // namespace

const char* const SettingsCommand::kUsage = "lmcom settings list [--json] | get KIND INDEX | set KIND INDEX VALUE "
                                            "[--string]";

const char* const SettingsCommand::kHelp =
    "Reads and writes the settings store of the bus (what SysInfoHelper and SettingHelper\n"
    "read). KIND is one of:\n"
    "\n"
    "  sysinfo    system-information values, INDEX 0..255, VALUE a 32-bit integer\n"
    "  srcstate   source states by service type, INDEX 0..54, VALUE on or off\n"
    "  setup      setup items, INDEX 0..511, VALUE an integer or a text (at most 1024\n"
    "             bytes); --string keeps a VALUE that looks like a number as text\n"
    "\n"
    "  list       every system value that is not 0, every source that is on, every setup\n"
    "             item that is set (--json: one object per line: kind, index, type, value)\n"
    "  get        one value as it is: a number, on/off, or a setup item's text (status 1\n"
    "             when the setup item is not set)\n"
    "  set        stores one value; every process of the bus sees it at once\n"
    "\n"
    "Setup items live in /NandFlash/Application/Profile/QN_SetupValues.txt under $LMCOM_ROOT.\n";

std::vector<Arguments::Option> SettingsCommand::options()
{
    return {{"json", false}, {"string", false}};
}

int SettingsCommand::run(const Arguments& arguments)
{
    if (arguments.positionals().empty())
        arguments.fail("missing action: " + std::string(kUsage));
    const auto& action = arguments.positionals()[0];
    if (arguments.has("json") && action != "list")
        arguments.fail("--json is for list only");
    Store store;
    if (action == "list")
        return list(arguments, store);
    if (action == "get")
        return get(arguments, store);
    if (action == "set")
        return set(arguments, store);
    arguments.fail("unknown action '" + action + "' (list, get, set)");
}

} // namespace LmComTool
