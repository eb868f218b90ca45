#pragma once

#include <optional>
#include <string>
#include <vector>

namespace LmComTesting
{

/** A child process of the test binary playing a role (see LMCOM_CHILD_ROLE). It inherits the
    environment (bus and root), its standard output is captured line by line, and it is killed
    if still running when the object goes. */
class ChildProcess
{
public:
    ChildProcess(const std::string& role, const std::vector<std::string>& args = {});
    ~ChildProcess();

    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    int pid() const { return m_pid; }

    /** Waits for a line of output containing the text; false on timeout or end of output. */
    bool waitForLine(const std::string& text, int timeoutMs = 10000);
    /** Every line read so far (waitForLine and waitForExit read). */
    const std::vector<std::string>& lines() const { return m_lines; }

    /** The exit status, or nullopt on timeout (the child keeps running). A child killed by a
        signal gives 128 + the signal number. */
    std::optional<int> waitForExit(int timeoutMs = 10000);

    void kill(int signal);

private:
    bool readSome(int timeoutMs);

    int m_pid = -1;
    int m_outFd = -1;
    std::string m_partial;
    std::vector<std::string> m_lines;
    std::optional<int> m_status;
};

} // namespace LmComTesting
