#pragma once

#include <optional>
#include <string>
#include <vector>

namespace LmComTesting
{

/** A program run as a child process with the test's environment (bus and root), its standard
    output and standard error captured line by line. Killed if still running when the object
    goes. */
class Command
{
public:
    /** Standard error is captured, or (captureErrors false) left to the test's own, so that
        what a sanitizer reports in the child shows in the test's output. */
    Command(const std::string& program, const std::vector<std::string>& args, bool captureErrors = true);
    ~Command();

    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;

    /** Waits for a line containing the text on standard output (or error); false on timeout
        or when the stream ended without it. */
    bool waitForLine(const std::string& text, int timeoutMs = 10000, bool onError = false);
    /** The exit status, or nullopt on timeout; a child killed by a signal gives 128 + signal.
        Both streams are read to their end. */
    std::optional<int> waitForExit(int timeoutMs = 10000);
    void kill(int signal);

    const std::vector<std::string>& out() const { return m_streams[0].lines; }
    const std::vector<std::string>& err() const { return m_streams[1].lines; }

    struct Result
    {
        int status = -1;
        std::vector<std::string> out, err;
    };
    /** Runs a program to its end (killed after the timeout: status -1). */
    static Result run(const std::string& program, const std::vector<std::string>& args, int timeoutMs = 10000);

private:
    struct Stream
    {
        int fd = -1;
        std::string partial;
        std::vector<std::string> lines;
    };
    /** Reads what is there, waiting up to timeoutMs for something; false when nothing came. */
    bool readSome(int timeoutMs);
    void closeStream(Stream& stream);

    int m_pid = -1;
    Stream m_streams[2];
    std::optional<int> m_status;
};

} // namespace LmComTesting
