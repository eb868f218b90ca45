#pragma once

#include <juce_core/juce_core.h>

namespace Platform
{

/** Reads files whose path or content comes from outside (ini files, font lists, a tool's
    input). Only a regular file is read: a FIFO or a device is refused without blocking, and
    no more than a cap is ever read, whatever size the file claims. Any thread.
*/
struct RegularFile
{
    enum class Status
    {
        read,
        missing,    // no such file, or it cannot be opened
        notRegular, // a folder, FIFO, socket or device
        tooLarge,   // more than the cap
        failed      // a read error
    };

    /** Reads the whole file at path (raw bytes; relative to the working folder) into out.
        out is left as it was unless the result is read. */
    static Status read(const char* path, juce::int64 maxBytes, juce::MemoryBlock& out);

    /** Whether path names a regular file (links followed), without opening it. */
    static bool isRegular(const char* path);
};

} // namespace Platform
