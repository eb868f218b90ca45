#include "MonitorCommand.h"

#include "AppTypeNames.h"
#include "RecordFormatter.h"
#include "RingFollower.h"
#include "UsageError.h"

#include "Platform/Atomic.h"
#include "Platform/BusStatistics.h"
#include "Platform/Environment.h"
#include "Platform/SharedMemory.h"

#include <LmCom.h>

#include <csignal>
#include <cstdio>
#include <thread>

namespace LmComTool
{

namespace
{
volatile std::sig_atomic_t sStop = 0;
// An eighth of the ring behind the writers: no pause before the next poll.
constexpr int kBusyBytes = MsgSession::kRingSize / 8;

void onSignal(int)
{
    sStop = 1;
}

void installSignalHandlers()
{
    struct sigaction action = {};
    action.sa_handler = &onSignal;
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    // A closed pipe shows as a failed write, and the monitor stops quietly.
    signal(SIGPIPE, SIG_IGN);
}

std::string busLabel()
{
    const auto bus = Platform::Environment::busName();
    return bus.isEmpty() ? std::string("default") : bus.toStdString();
}

// The ring is complete once its maker wrote the total size, which it writes last.
bool ringReady(Platform::SharedMemory& ring)
{
    if (ring.data() == nullptr && !ring.open(MsgSession::kRingSize))
        return false;
    return Platform::SharedInt32::load(reinterpret_cast<const volatile std::int32_t*>(ring.data()))
           == MsgSession::kRingSize;
}
} // namespace

const char* const MonitorCommand::kUsage = "lmcom monitor [--json] [--code N] [--sender NAME] [--count N]";

const char* const MonitorCommand::kHelp =
    "Follows the bus's message ring and prints every record as it is written:\n"
    "time, record number, offset and payload length in the ring, sender, code, param1,\n"
    "param2, then the attached object as a tree. Records that fail validation are printed\n"
    "as INVALID; when the writers come round the ring past the monitor it says MISSED and\n"
    "how many records, and goes on at the start of the writers' lap. It never writes to\n"
    "the bus. Waits for a bus that has not started. Ends on Ctrl-C with a summary on\n"
    "standard error.\n"
    "\n"
    "  --json          one JSON object per line\n"
    "  --code N        only messages with this code\n"
    "  --sender NAME   only messages from this application (AppRadio, Radio or 5)\n"
    "  --count N       stop after N records were printed\n";

std::vector<Arguments::Option> MonitorCommand::options()
{
    return {{"json", false}, {"code", true}, {"sender", true}, {"count", true}};
}

int MonitorCommand::run(const Arguments& arguments)
{
    arguments.expectPositionals(0, 0, kUsage);
    RecordFormatter::Filter filter;
    if (arguments.has("code"))
        filter.code = arguments.intOption("code", 0);
    if (const auto sender = arguments.value("sender"))
    {
        const int type = AppTypeNames::parse(*sender);
        filter.sender = type >= 0 ? type : arguments.toInt(*sender, "--sender");
    }
    const int count = arguments.intOption("count", 0);
    if (arguments.has("count") && count < 1)
        arguments.fail("--count must be 1 or more");
    const RecordFormatter formatter(arguments.has("json"), filter);

    installSignalHandlers();
    std::setvbuf(stdout, nullptr, _IOFBF, 1 << 16);

    Platform::SharedMemory ring("LmIPCMsgShareMem");
    for (bool told = false; !ringReady(ring); told = true)
    {
        if (ring.data() == nullptr && ring.lastError().isNotEmpty())
            throw CommandFailure("lmcom: monitor: " + ring.lastError().toStdString());
        if (!told)
            std::fprintf(stderr, "lmcom monitor: waiting for bus '%s' to start\n", busLabel().c_str());
        if (sStop != 0)
            return 0;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }

    // The statistics are made together with the ring; a bus without them is still followed.
    Platform::BusStatistics statistics;
    for (int attempt = 0; attempt < 20 && !statistics.open() && sStop == 0; ++attempt)
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    if (!statistics.isOpen())
        std::fprintf(stderr, "lmcom monitor: bus '%s' has no statistics: laps and missed records cannot be counted\n",
                     busLabel().c_str());

    RingFollower follower(ring.data(), statistics.isOpen() ? &statistics : nullptr);
    follower.start();
    std::fprintf(stderr, "lmcom monitor: following bus '%s' from offset %d, lap %u\n", busLabel().c_str(),
                 follower.cursor(), follower.lap());

    std::string text;
    int printed = 0;
    bool failed = false;
    const auto sink = [&](const RingFollower::Event& event)
    {
        text.clear();
        if (failed || (count > 0 && printed >= count))
            return;
        if (!formatter.format(event, std::chrono::system_clock::now(), text))
            return;
        if (event.kind == RingFollower::Event::Kind::record)
            ++printed;
        failed = std::fwrite(text.data(), 1, text.size(), stdout) != text.size();
    };

    // Reads in batches: a short sleep between polls, none while the writers are far ahead.
    while (sStop == 0 && !failed && (count == 0 || printed < count))
    {
        follower.poll(sink);
        if (follower.lastPollBytes() >= kBusyBytes)
            continue;
        failed = std::fflush(stdout) != 0;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    std::fflush(stdout);
    std::fprintf(stderr, "lmcom monitor: %llu records, %llu invalid, %llu missed%s\n",
                 (unsigned long long)follower.recordsSeen(), (unsigned long long)follower.invalidSeen(),
                 (unsigned long long)follower.missedCounted(),
                 follower.missedUncounted() > 0
                     ? (" (and " + std::to_string(follower.missedUncounted()) + " times an unknown number)").c_str()
                     : "");
    return 0;
}

} // namespace LmComTool
