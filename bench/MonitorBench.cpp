// How lmcom monitor keeps up with a flat-out sender, on a private bus:
//   - "post": a sender posts messages with a 128-byte Bundle to a live application as fast
//     as it can (MessageHelper::postMessage); the monitor prints each record, text or JSON,
//     into a pipe that this program drains.
//   - "ring": a writer puts records into the ring as fast as the record writer goes (no
//     datagram), faster than any sender: the monitor falls behind and counts what it missed.
// For each run: the sender's rate, and what the monitor printed and counted as missed.
// Usage: LmComMonitorBench [messages]
#include <LmCom.h>

#include "Platform/BusFolder.h"
#include "Platform/BusStatistics.h"
#include "Platform/SharedMemory.h"

#include <juce_events/juce_events.h>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>

extern char** environ;

namespace
{
using Clock = std::chrono::steady_clock;

constexpr int kEndCode = 9999;

struct Counting : IMsgProc
{
    void procOwnerMsg(const juce::ReferenceCountedObjectPtr<RemoteMessage>& msg) override
    {
        ++received;
        done = done || msg->code == kEndCode;
    }
    void procUnknownMsg(int, int, int) override {}
    long received = 0;
    bool done = false;
};

// The application that the messages go to: it only counts them.
pid_t startReceiver(int ready)
{
    const pid_t pid = fork();
    if (pid != 0)
        return pid;
    juce::ScopedJuceInitialiser_GUI juce;
    Counting proc;
    IPCMsg::MessageHelper::config(Pubhead::eAppType::AppRadio, getDestName);
    MsgSession session;
    if (!session.init(&proc))
        _exit(3);
    (void)!write(ready, "R", 1);
    const auto deadline = Clock::now() + std::chrono::seconds(120);
    while (!proc.done && Clock::now() < deadline)
        juce::MessageManager::getInstance()->runDispatchLoopUntil(50);
    _exit(0);
}

struct Monitor
{
    pid_t pid = -1;
    int out = -1, err = -1;
};

Monitor startMonitor(bool json)
{
    int out[2], err[2];
    (void)!pipe2(out, O_CLOEXEC);
    (void)!pipe2(err, O_CLOEXEC);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, out[1], 1);
    posix_spawn_file_actions_adddup2(&actions, err[1], 2);
    std::string tool = LMCOM_TOOL, command = "monitor", jsonFlag = "--json";
    char* argv[] = {tool.data(), command.data(), json ? jsonFlag.data() : nullptr, nullptr};
    Monitor monitor;
    posix_spawn(&monitor.pid, tool.c_str(), &actions, nullptr, argv, environ);
    posix_spawn_file_actions_destroy(&actions);
    close(out[1]);
    close(err[1]);
    monitor.out = out[0];
    monitor.err = err[0];
    return monitor;
}

// Reads a stream until a line holds the text (or it ends); returns the lines read.
long readUntil(int fd, const std::string& text, std::string* lastLine = nullptr)
{
    long lines = 0;
    std::string partial;
    char buffer[1 << 16];
    for (;;)
    {
        pollfd pfd{fd, POLLIN, 0};
        if (poll(&pfd, 1, 30000) <= 0)
            return lines;
        const ssize_t n = read(fd, buffer, sizeof buffer);
        if (n <= 0)
            return lines;
        partial.append(buffer, (size_t)n);
        size_t start = 0, end;
        while ((end = partial.find('\n', start)) != std::string::npos)
        {
            ++lines;
            const auto line = partial.substr(start, end - start);
            start = end + 1;
            if (lastLine != nullptr)
                *lastLine = line;
            if (line.find(text) != std::string::npos)
                return lines;
        }
        partial.erase(0, start);
    }
}

RemoteMessage::Ptr message(int seq)
{
    auto bundle = Bundle::obtain();
    bundle->putInt("seq", seq);
    bundle->putString("title", "A title of some length for the info bar");
    bundle->putByteArray("data", juce::MemoryBlock(64, true));
    auto m = RemoteMessage::obtain();
    m->code = 1184;
    m->param1 = seq;
    m->object = bundle.get();
    return m;
}

void run(const char* mode, bool json, int count, bool withMonitor = true)
{
    const std::string bus = "monbench" + std::to_string(getppid()) + mode + (json ? "j" : "t");
    setenv("LMCOM_BUS", bus.c_str(), 1);
    const bool posting = std::string(mode) == "post";

    int ready[2];
    (void)!pipe(ready);
    pid_t receiver = -1;
    if (posting)
    {
        receiver = startReceiver(ready[1]);
        char c;
        (void)!read(ready[0], &c, 1);
    }
    IPCMsg::MessageHelper::config(Pubhead::eAppType::AppUnknown, getDestName);
    MsgSession::mapSharedArea();
    if (!withMonitor)
    {
        const auto start = Clock::now();
        int sent = 0;
        for (int seq = 0; seq < count; ++seq)
            sent += IPCMsg::MessageHelper::postMessage(Pubhead::eAppType::AppRadio, message(seq)) ? 1 : 0;
        const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
        auto end = RemoteMessage::obtain();
        end->code = kEndCode;
        IPCMsg::MessageHelper::postMessage(Pubhead::eAppType::AppRadio, end);
        waitpid(receiver, nullptr, 0);
        std::printf("post, no monitor: sender %d records in %.3f s (%.0f/s)\n", sent, seconds, sent / seconds);
        return;
    }
    auto monitor = startMonitor(json);
    readUntil(monitor.err, "following bus");

    // The monitor's output is drained while the sender runs.
    long printed = 0;
    std::thread drain([&] { printed = readUntil(monitor.out, json ? "\"code\":9999" : "code=9999"); });

    const auto start = Clock::now();
    int sent = 0, size = 0;
    for (int seq = 0; seq < count; ++seq)
    {
        if (posting)
            sent += IPCMsg::MessageHelper::postMessage(Pubhead::eAppType::AppRadio, message(seq)) ? 1 : 0;
        else
            sent += MsgSession::putParcelable(Parcelable::Ptr(message(seq).get()), size) >= 0 ? 1 : 0;
    }
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    auto end = RemoteMessage::obtain();
    end->code = kEndCode;
    if (posting)
        IPCMsg::MessageHelper::postMessage(Pubhead::eAppType::AppRadio, end);
    else
        MsgSession::putParcelable(Parcelable::Ptr(end.get()), size);
    drain.join();
    const double followed = std::chrono::duration<double>(Clock::now() - start).count();
    kill(monitor.pid, SIGINT);
    std::string summary;
    readUntil(monitor.err, "records,", &summary);
    waitpid(monitor.pid, nullptr, 0);
    if (receiver > 0)
        waitpid(receiver, nullptr, 0);
    long shown = 0, missed = 0;
    std::sscanf(summary.c_str(), "lmcom monitor: %ld records, %*[0-9] invalid, %ld missed", &shown, &missed);
    std::printf("%s %s: sender %d records of %d bytes in %.3f s (%.0f/s) | monitor printed %ld records "
                "(%ld lines) in %.3f s (%.0f/s), counted %ld missed\n",
                mode, json ? "json" : "text", sent, message(0)->writeToParcel()->dataSize(), seconds, sent / seconds,
                shown, printed, followed, shown / followed, missed);
    close(monitor.out);
    close(monitor.err);
}
} // namespace

int main(int argc, char** argv)
{
    const int count = argc > 1 ? std::atoi(argv[1]) : 200000;
    // Each run in a process of its own: the session's ring is mapped once per process. Each
    // leaves nothing behind.
    const auto removeBus = [](const char* suffix)
    {
        setenv("LMCOM_BUS", ("monbench" + std::to_string(getpid()) + suffix).c_str(), 1);
        shm_unlink(Platform::SharedMemory::systemNameFor("LmIPCMsgShareMem").toRawUTF8());
        shm_unlink(Platform::BusStatistics::systemName().toRawUTF8());
        std::error_code ignored; // not juce::File, which takes a socket for a folder
        std::filesystem::remove_all(Platform::BusFolder::path().toStdString(), ignored);
    };
    std::fflush(stdout);
    if (fork() == 0)
    {
        run("post", false, count, false);
        std::fflush(stdout);
        _exit(0);
    }
    wait(nullptr);
    removeBus("postt");
    for (const char* mode : {"post", "ring"})
        for (bool json : {false, true})
        {
            std::fflush(stdout);
            const pid_t child = fork();
            if (child == 0)
            {
                run(mode, json, count);
                std::fflush(stdout);
                _exit(0);
            }
            waitpid(child, nullptr, 0);
            removeBus((std::string(mode) + (json ? "j" : "t")).c_str());
        }
    return 0;
}
