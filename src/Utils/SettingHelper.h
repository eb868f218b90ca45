#pragma once

#include <juce_core/juce_core.h>

/** One-line access to the setup values of the settings store (LmShareMem). A value written by
    another process is seen on the next read. An item never set reads 0, "" and not text; an
    index outside the store reads the same and is logged. Any thread. */
class SettingHelper
{
public:
    static int getSettingInt(int index);
    static juce::String getSettingString(int index);
    /** Whether the setup item holds text (otherwise a number). */
    static bool isSettingValueString(int index);

private:
    SettingHelper() = delete;
};
