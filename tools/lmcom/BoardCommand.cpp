#include "BoardCommand.h"

#include "JsonWriter.h"

#include "Platform/BoardProfile.h"
#include "Platform/Environment.h"
#include "Utils/BSPInfo.h"

#include <algorithm>
#include <cstdio>

namespace LmComTool
{

namespace
{
// The device names the library itself opens, listed even when the profile lacks them.
const char* const kKnownDevices[] = {"COM2:", "COM3:", "COM5:", "GIO1:", "EPM1:", "DSK2:", "APD1:"};

// A profile's text stays on its line.
std::string printable(const juce::String& text)
{
    std::string line = text.toStdString();
    for (auto& c : line)
        if ((unsigned char)c < 0x20 || c == 0x7F)
            c = '?';
    return line;
}
} // namespace

const char* const BoardCommand::kUsage = "lmcom board [--json]";

const char* const BoardCommand::kHelp =
    "Prints the board profile (NandFlash/Application/Bin/board.ini under LMCOM_ROOT, section\n"
    "[devices]): each device name of the head unit and the Linux node it opens (\"-\" when the\n"
    "profile has no entry), then what BSPInfo reads on this board.\n"
    "\n"
    "  --json   one JSON object: {\"profile\", \"devices\": [{\"name\", \"node\"}], \"bsp\": {...}}\n";

std::vector<Arguments::Option> BoardCommand::options()
{
    return {{"json", false}};
}

int BoardCommand::run(const Arguments& arguments)
{
    arguments.expectPositionals(0, 0, kUsage);
    const auto profile = Platform::Environment::resolve(Platform::BoardProfile::kProfilePath);
    auto entries = Platform::BoardProfile::entries();
    std::vector<std::pair<juce::String, juce::String>> devices;
    for (auto* name : kKnownDevices)
    {
        auto it = std::find_if(entries.begin(), entries.end(), [&](const auto& entry) { return entry.first == name; });
        devices.emplace_back(name, it != entries.end() ? it->second : juce::String());
    }
    for (auto& entry : entries)
        if (std::none_of(devices.begin(), devices.end(),
                         [&](const auto& device) { return device.first == entry.first; }))
            devices.push_back(entry);

    const std::pair<const char*, juce::String> bsp[] = {
        {"osVersion", BSPInfo::getOSVersion()},
        {"nbootVersion", BSPInfo::getNBootVersion()},
        {"ebootVersion", BSPInfo::getEBootVersion()},
        {"sdid", BSPInfo::getSDID()},
        {"uuid", BSPInfo::getUUID()},
    };

    if (arguments.has("json"))
    {
        std::string out;
        JsonWriter json(out);
        json.beginObject().key("profile").value(profile.toStdString()).key("devices").beginArray();
        for (auto& device : devices)
        {
            json.beginObject().key("name").value(device.first.toStdString()).key("node");
            if (device.second.isNotEmpty())
                json.value(device.second.toStdString());
            else
                json.null();
            json.endObject();
        }
        json.endArray().key("bsp").beginObject();
        for (auto& [key, value] : bsp)
            json.key(key).value(value.toStdString());
        json.endObject().endObject();
        std::printf("%s\n", out.c_str());
        return 0;
    }

    size_t width = 6;
    for (auto& device : devices)
        width = std::max(width, printable(device.first).size());
    std::printf("profile %s%s\n\n", printable(profile).c_str(), juce::File(profile).existsAsFile() ? "" : " (missing)");
    std::printf("%-*s  %s\n", (int)width, "DEVICE", "NODE");
    for (auto& device : devices)
        std::printf("%-*s  %s\n", (int)width, printable(device.first).c_str(),
                    device.second.isNotEmpty() ? printable(device.second).c_str() : "-");
    std::printf("\n");
    for (auto& [key, value] : bsp)
        std::printf("%-13s %s\n", key, printable(value).c_str());
    return 0;
}

} // namespace LmComTool
