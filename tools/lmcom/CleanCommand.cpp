#include "CleanCommand.h"

#include "UsageError.h"

#include "Platform/BusFolder.h"
#include "Platform/BusStatistics.h"
#include "Platform/Endpoint.h"
#include "Platform/Environment.h"
#include "Platform/SettingsSegment.h"
#include "Platform/SharedMemory.h"

#include <cstdio>
#include <filesystem>

namespace LmComTool
{

const char* const CleanCommand::kUsage = "lmcom clean";

const char* const CleanCommand::kHelp =
    "Removes what a bus left behind: its message ring, statistics and settings segments in\n"
    "/dev/shm and its folder of endpoints in /tmp/lmcom-UID/. Refuses (status 1) while a\n"
    "live process holds an endpoint on the bus: stop the head unit first.\n";

namespace
{
// The bus's shared segments, by the names the library gives them.
const char* const kSegments[][2] = {{"LmIPCMsgShareMem", "message ring"},
                                    {Platform::BusStatistics::kName, "statistics"},
                                    {Platform::SettingsSegment::kName, "settings"}};

std::string busLabel()
{
    const auto bus = Platform::Environment::busName();
    return bus.isEmpty() ? std::string("default") : bus.toStdString();
}
} // namespace

std::vector<Arguments::Option> CleanCommand::options()
{
    return {};
}

int CleanCommand::run(const Arguments& arguments)
{
    arguments.expectPositionals(0, 0, kUsage);
    const std::string prefix = "lmcom clean: bus '" + busLabel() + "'";

    std::string live;
    int dead = 0;
    for (auto& endpoint : Platform::Endpoint::list())
    {
        if (!endpoint.alive)
            ++dead;
        else
            live += (live.empty() ? "" : ", ") + endpoint.name.toStdString();
    }
    if (!live.empty())
        throw CommandFailure(prefix + " is in use (live: " + live + "); nothing removed");

    std::string removed;
    for (auto& segment : kSegments)
    {
        juce::String error;
        const auto result = Platform::SharedMemory::remove(segment[0], error);
        if (result == Platform::SharedMemory::RemoveResult::failed)
            throw CommandFailure(prefix + ": " + error.toStdString());
        if (result == Platform::SharedMemory::RemoveResult::removed)
            removed += (removed.empty() ? "" : ", ") + std::string(segment[1]);
    }

    // Only a real folder is removed: a link in its place is removed as a link, never followed.
    namespace fs = std::filesystem;
    const fs::path folder = Platform::BusFolder::path().dropLastCharacters(1).toStdString();
    std::error_code error;
    const auto status = fs::symlink_status(folder, error);
    if (!error && fs::exists(status))
    {
        fs::remove_all(folder, error);
        if (error)
            throw CommandFailure(prefix + ": cannot remove " + folder.string() + ": " + error.message());
        removed += (removed.empty() ? "" : ", ") + std::string("endpoint folder (") + std::to_string(dead)
                   + (dead == 1 ? " dead endpoint)" : " dead endpoints)");
    }

    if (removed.empty())
        std::printf("%s: nothing to remove\n", prefix.c_str());
    else
        std::printf("%s: removed %s\n", prefix.c_str(), removed.c_str());
    return 0;
}

} // namespace LmComTool
