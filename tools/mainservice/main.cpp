// The reference main service of a simulated head unit. Options:
//   --heartbeat-ms N   heartbeat period (default 1000)
//   --missed N         unanswered heartbeats before an application counts as silent (default 3)
//   --run-ms N         power off and quit after N ms (default: run until SIGINT or SIGTERM)
//   --shutdown-wait-ms N  how long each shutdown step waits for the applications (default 3000)
//   --carinfo-script FILE  answer frames to play to the car information application (FrameScript.h)
#include "ReferenceMainService.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace
{
volatile std::sig_atomic_t sStopRequested = 0;

void onSignal(int)
{
    sStopRequested = 1;
}

bool readOption(int argc, char** argv, int& i, const char* name, int& value)
{
    if (std::strcmp(argv[i], name) != 0 || i + 1 >= argc)
        return false;
    char* end = nullptr;
    const long parsed = std::strtol(argv[++i], &end, 10);
    if (end == argv[i] || *end != '\0' || parsed < 0 || parsed > 24L * 3600 * 1000)
    {
        std::fprintf(stderr, "MainService: bad value for %s\n", name);
        std::exit(2);
    }
    value = (int)parsed;
    return true;
}

/** Turns a signal into an orderly stop on the message thread. */
class SignalWatch : public juce::Timer
{
public:
    explicit SignalWatch(ReferenceMainService& service) : m_service(service) { startTimer(50); }
    ~SignalWatch() override { stopTimer(); }

    void timerCallback() override
    {
        if (sStopRequested != 0)
            m_service.stop();
    }

private:
    ReferenceMainService& m_service;
};
} // namespace

int main(int argc, char** argv)
{
    ReferenceMainService::Options options;
    const char* scriptPath = nullptr;
    for (int i = 1; i < argc; ++i)
    {
        if (readOption(argc, argv, i, "--heartbeat-ms", options.heartbeatMs)
            || readOption(argc, argv, i, "--missed", options.missedLimit)
            || readOption(argc, argv, i, "--run-ms", options.runMs)
            || readOption(argc, argv, i, "--shutdown-wait-ms", options.shutdownWaitMs))
            continue;
        if (std::strcmp(argv[i], "--carinfo-script") == 0 && i + 1 < argc)
        {
            scriptPath = argv[++i];
            continue;
        }
        std::fprintf(stderr, "usage: MainService [--heartbeat-ms N] [--missed N] [--run-ms N] [--shutdown-wait-ms N] "
                             "[--carinfo-script FILE]\n");
        return 2;
    }
    std::vector<std::string> problems;
    if (scriptPath != nullptr && !FrameScript::load(scriptPath, options.carInfoFrames, problems))
    {
        std::fprintf(stderr, "MainService: car information script: %s\n", problems.front().c_str());
        return 2;
    }
    options.heartbeatMs = juce::jmax(10, options.heartbeatMs);
    options.missedLimit = juce::jmax(1, options.missedLimit);

    std::signal(SIGINT, onSignal);
    std::signal(SIGTERM, onSignal);

    juce::ScopedJuceInitialiser_GUI juce;
    int status = 0;
    {
        ReferenceMainService service(options);
        for (const auto& problem : problems)
            mainSay("car information script: skipped " + juce::String(problem));
        if (!service.start())
            status = 1;
        else
        {
            SignalWatch watch(service);
            juce::MessageManager::getInstance()->runDispatchLoop();
        }
    }
    MsgSession::purgeAll();
    return status;
}
