#pragma once

#include <juce_core/juce_core.h>

/** A plain value record of a player's state: eight integers and a text. The library itself
    neither reads nor writes it; it is kept beside the info-bar records for the applications.
    Copyable. */
class PlayInfo
{
public:
    // The integers start at 0: reading them unset was never defined, so nothing depends on it.
    int sourceID = 0;
    int playState = 0;
    int repeatMode = 0;
    int shuffleMode = 0;
    int currentNum = 0;
    int totalNum = 0;
    int currentTime = 0;
    int totalTime = 0;
    juce::String title;
};
