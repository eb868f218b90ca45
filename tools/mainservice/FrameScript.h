#pragma once

#include <string>
#include <vector>

/** A script of car information answer frames for the main service to play to the car
    information application, one frame per line:

        WAIT_MS  HEX BYTES      # comment

    WAIT_MS (0 to 60000) is the wait before the frame is sent; the frame is 1 to 300 bytes of hex
    (pairs, blanks allowed). Blank lines and lines starting with '#' are skipped.

    The file comes from outside: only a regular file of at most 1 MiB is read, a line longer
    than 4096 bytes or not in this form is skipped with a reason, and at most 10000 frames are
    kept.
*/
class FrameScript
{
public:
    struct Entry
    {
        int waitMs = 0;
        std::vector<unsigned char> frame;
        int line = 0;
    };

    static constexpr size_t kMaxFileBytes = 1024 * 1024;
    static constexpr size_t kMaxLineBytes = 4096;
    static constexpr size_t kMaxFrameBytes = 300;
    static constexpr size_t kMaxEntries = 10000;
    static constexpr int kMaxWaitMs = 60000;

    /** The entries of the text; each skipped line adds "line N: reason" to problems. */
    static std::vector<Entry> parse(const std::string& text, std::vector<std::string>& problems);
    /** Reads and parses a file; false, with the reason in problems, when it cannot be read. */
    static bool load(const std::string& path, std::vector<Entry>& entries, std::vector<std::string>& problems);
};
