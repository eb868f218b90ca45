#include "support/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>

namespace LmComTesting
{

namespace
{
int remainingMs(std::chrono::steady_clock::time_point deadline)
{
    auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    return left.count() > 0 ? (int)left.count() : 0;
}
} // namespace

ChildProcess::ChildProcess(const std::string& role, const std::vector<std::string>& args)
{
    int pipeFds[2];
    if (pipe2(pipeFds, O_CLOEXEC) != 0)
        return;

    std::vector<std::string> argv{"/proc/self/exe", "--lmcom-child", role};
    argv.insert(argv.end(), args.begin(), args.end());

    m_pid = fork();
    if (m_pid == 0)
    {
        dup2(pipeFds[1], 1);
        std::vector<char*> raw;
        for (auto& arg : argv)
            raw.push_back(const_cast<char*>(arg.c_str()));
        raw.push_back(nullptr);
        execv("/proc/self/exe", raw.data());
        _exit(126);
    }
    close(pipeFds[1]);
    m_outFd = pipeFds[0];
}

ChildProcess::~ChildProcess()
{
    if (m_pid > 0 && !m_status)
    {
        ::kill(m_pid, SIGKILL);
        int status = 0;
        waitpid(m_pid, &status, 0);
    }
    if (m_outFd >= 0)
        close(m_outFd);
}

bool ChildProcess::readSome(int timeoutMs)
{
    if (m_outFd < 0)
        return false;
    pollfd pfd{m_outFd, POLLIN, 0};
    if (poll(&pfd, 1, timeoutMs) <= 0)
        return false;
    char buffer[4096];
    const ssize_t n = read(m_outFd, buffer, sizeof buffer);
    if (n <= 0)
    {
        close(m_outFd);
        m_outFd = -1;
        if (!m_partial.empty())
            m_lines.push_back(m_partial);
        m_partial.clear();
        return false;
    }
    m_partial.append(buffer, (size_t)n);
    size_t end;
    while ((end = m_partial.find('\n')) != std::string::npos)
    {
        m_lines.push_back(m_partial.substr(0, end));
        m_partial.erase(0, end + 1);
    }
    return true;
}

bool ChildProcess::waitForLine(const std::string& text, int timeoutMs)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    size_t checked = 0;
    for (;;)
    {
        for (; checked < m_lines.size(); ++checked)
            if (m_lines[checked].find(text) != std::string::npos)
                return true;
        if (m_outFd < 0)
            return false;
        const int left = remainingMs(deadline);
        // Always look at what is already in the pipe, even with no time left.
        if (!readSome(left) && left == 0)
        {
            for (; checked < m_lines.size(); ++checked)
                if (m_lines[checked].find(text) != std::string::npos)
                    return true;
            return false;
        }
    }
}

std::optional<int> ChildProcess::waitForExit(int timeoutMs)
{
    if (m_status || m_pid <= 0)
        return m_status;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    for (;;)
    {
        while (m_outFd >= 0 && readSome(0))
        {
        }
        int status = 0;
        const pid_t done = waitpid(m_pid, &status, WNOHANG);
        if (done == m_pid)
        {
            while (m_outFd >= 0 && readSome(100))
            {
            }
            m_status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
            return m_status;
        }
        if (remainingMs(deadline) == 0)
            return std::nullopt;
        if (m_outFd >= 0)
            readSome(std::min(remainingMs(deadline), 20));
        else
            usleep(5000);
    }
}

void ChildProcess::kill(int signal)
{
    if (m_pid > 0 && !m_status)
        ::kill(m_pid, signal);
}

} // namespace LmComTesting
