#pragma once

#include <juce_core/juce_core.h>

#include <utility>
#include <vector>

namespace Platform
{

/** The board profile: which Linux node serves each device name of the head unit ("COM2:",
    "GIO1:", "APD1:", "DSK2:", "EPM1:", I2C bus names).

    The profile is the section [devices] of "/NandFlash/Application/Bin/board.ini" under the
    file-system root, one "NAME = /dev/node" per line. Names are taken whole up to the '='
    (they end in a colon, which generic ini readers split at). Device nodes are real paths,
    not placed under the root. The file is read on every call (at most 64 KiB of it); any
    thread.
*/
struct BoardProfile
{
    /** The system path of the profile. */
    static constexpr const char* kProfilePath = "/NandFlash/Application/Bin/board.ini";

    /** The node for a device name: the profile's entry; else the name itself when it already
        is a path (starts with '/'); else "" (no such device). */
    static juce::String deviceNode(const juce::String& name);

    /** Every entry of [devices], in file order (a repeated name keeps its last value). */
    static std::vector<std::pair<juce::String, juce::String>> entries();

    /** The entries of [devices] in a profile text (exposed for the tests and tools). */
    static std::vector<std::pair<juce::String, juce::String>> parse(const juce::MemoryBlock& text);
};

} // namespace Platform
