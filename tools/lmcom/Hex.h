#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace LmComTool
{

/** Bytes as hexadecimal text and back. */
class Hex
{
public:
    /** Reads pairs of hex digits, optionally after "0x" and separated by blanks, ':' or '-'.
        False (out untouched) for anything else, such as an odd number of digits. */
    static bool parse(const std::string& text, std::vector<unsigned char>& out);
    /** Upper-case hex, pairs separated by a blank when spaced; at most `limit` bytes, then
        " ..." when there were more. */
    static std::string format(const unsigned char* data, size_t size, bool spaced, size_t limit = (size_t)-1);
};

} // namespace LmComTool
