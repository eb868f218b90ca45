#pragma once

#include <juce_core/juce_core.h>

namespace Platform
{

/** The port's only configuration from the environment: which bus (head unit) a process
    belongs to, and under which folder the system's own paths live.

    LMCOM_BUS names the bus (unset or empty: the default bus). LMCOM_ROOT prefixes every
    system path such as "/NandFlash/Application/" (unset or empty: "/").
    Both are read on each call, from any thread.
*/
struct Environment
{
    /** The bus name; "" for the default bus. */
    static juce::String busName();

    /** The file-system root without a trailing slash; "" for "/". */
    static juce::String fileSystemRoot();

    /** A system path ("/NandFlash/...", "\\BACKUP\\...") placed under the file-system root.
        Backslashes become slashes; everything else is kept as written (double slashes too). */
    static juce::String resolve(const juce::String& systemPath);
};

} // namespace Platform
