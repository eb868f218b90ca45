#pragma once

#include "Message/Bundle.h"

/** The text command line that starts an application process with a Bundle: the Bundle is
    stored in the shared ring and the text names its record, "-d <offset> -l <length>". */
class CmdLineHelper
{
public:
    /** Stores the Bundle in the ring and returns "-d N -l M". */
    static juce::String genCommandLine(const juce::ReferenceCountedObjectPtr<Bundle>& bundle);
    /** The Bundle a command line refers to; null when "-d" is absent (slot -1), when nothing
        valid is stored there, or when the record holds another class. Options start with '-'
        and are followed by their value; an option without a value counts as "0". */
    static juce::ReferenceCountedObjectPtr<Bundle> parseCommandLine(const juce::String& commandLine);

private:
    CmdLineHelper() = delete;
};
