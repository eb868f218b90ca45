#include "support/Command.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>

namespace LmComTesting
{

namespace
{
using Clock = std::chrono::steady_clock;

int remainingMs(Clock::time_point deadline)
{
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
    return left > 0 ? (int)left : 0;
}
} // namespace

Command::Command(const std::string& program, const std::vector<std::string>& args, bool captureErrors)
{
    int out[2], err[2] = {-1, -1};
    if (pipe2(out, O_CLOEXEC) != 0)
        return;
    if (captureErrors && pipe2(err, O_CLOEXEC) != 0)
    {
        close(out[0]);
        close(out[1]);
        return;
    }
    std::vector<std::string> argv{program};
    argv.insert(argv.end(), args.begin(), args.end());
    m_pid = fork();
    if (m_pid == 0)
    {
        dup2(out[1], 1);
        if (captureErrors)
            dup2(err[1], 2);
        std::vector<char*> raw;
        for (auto& arg : argv)
            raw.push_back(const_cast<char*>(arg.c_str()));
        raw.push_back(nullptr);
        execv(program.c_str(), raw.data());
        _exit(127);
    }
    close(out[1]);
    if (captureErrors)
        close(err[1]);
    m_streams[0].fd = out[0];
    m_streams[1].fd = err[0];
}

Command::~Command()
{
    if (m_pid > 0 && !m_status)
    {
        ::kill(m_pid, SIGKILL);
        waitpid(m_pid, nullptr, 0);
    }
    for (auto& stream : m_streams)
        if (stream.fd >= 0)
            close(stream.fd);
}

void Command::closeStream(Stream& stream)
{
    close(stream.fd);
    stream.fd = -1;
    if (!stream.partial.empty())
        stream.lines.push_back(stream.partial);
    stream.partial.clear();
}

bool Command::readSome(int timeoutMs)
{
    pollfd fds[2];
    int count = 0;
    Stream* streams[2];
    for (auto& stream : m_streams)
        if (stream.fd >= 0)
        {
            fds[count] = {stream.fd, POLLIN, 0};
            streams[count++] = &stream;
        }
    if (count == 0 || poll(fds, (nfds_t)count, timeoutMs) <= 0)
        return false;
    for (int i = 0; i < count; ++i)
    {
        if ((fds[i].revents & (POLLIN | POLLHUP | POLLERR)) == 0)
            continue;
        char buffer[65536];
        const ssize_t n = read(streams[i]->fd, buffer, sizeof buffer);
        if (n <= 0)
        {
            closeStream(*streams[i]);
            continue;
        }
        auto& partial = streams[i]->partial;
        partial.append(buffer, (size_t)n);
        size_t start = 0, end;
        while ((end = partial.find('\n', start)) != std::string::npos)
        {
            streams[i]->lines.push_back(partial.substr(start, end - start));
            start = end + 1;
        }
        partial.erase(0, start);
    }
    return true;
}

bool Command::waitForLine(const std::string& text, int timeoutMs, bool onError)
{
    const auto deadline = Clock::now() + std::chrono::milliseconds(timeoutMs);
    auto& stream = m_streams[onError ? 1 : 0];
    size_t checked = 0;
    for (;;)
    {
        for (; checked < stream.lines.size(); ++checked)
            if (stream.lines[checked].find(text) != std::string::npos)
                return true;
        if (stream.fd < 0)
            return false;
        const int left = remainingMs(deadline);
        if (!readSome(left) && left == 0)
            return false;
    }
}

std::optional<int> Command::waitForExit(int timeoutMs)
{
    if (m_status || m_pid <= 0)
        return m_status;
    const auto deadline = Clock::now() + std::chrono::milliseconds(timeoutMs);
    // The streams end when the program (and anything that inherited them) is gone.
    while ((m_streams[0].fd >= 0 || m_streams[1].fd >= 0) && remainingMs(deadline) > 0)
        readSome(remainingMs(deadline));
    for (;;)
    {
        int status = 0;
        if (waitpid(m_pid, &status, WNOHANG) == m_pid)
        {
            m_status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
            return m_status;
        }
        if (remainingMs(deadline) == 0)
            return std::nullopt;
        usleep(2000);
    }
}

void Command::kill(int signal)
{
    if (m_pid > 0 && !m_status)
        ::kill(m_pid, signal);
}

Command::Result Command::run(const std::string& program, const std::vector<std::string>& args, int timeoutMs)
{
    Command command(program, args);
    Result result;
    const auto status = command.waitForExit(timeoutMs);
    result.status = status.value_or(-1);
    result.out = command.out();
    result.err = command.err();
    return result;
}

} // namespace LmComTesting
