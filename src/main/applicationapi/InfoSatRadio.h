#pragma once

#include "Message/Bundle.h"

/** What the satellite radio shows in the info bar. Sent as a Bundle (enBundle) with code 1184;
    rebuilt with deBundle. Made only with obtain() or deBundle. */
class InfoSatRadio : public juce::ReferenceCountedObject
{
public:
    using Ptr = juce::ReferenceCountedObjectPtr<InfoSatRadio>;

    /** A record with the defaults: source 24, empty texts. */
    static Ptr obtain();
    /** "SourceID", "ChannelName", "Artist", "Title" (always, even empty), then "BandText" and
        "Category" (only if not empty). */
    Bundle::Ptr enBundle();
    /** A new record from the Bundle; missing keys give the defaults, a null Bundle the
        defaults of obtain(). */
    static Ptr deBundle(Bundle::Ptr bundle);

    ~InfoSatRadio() override = default;

    int sourceID = 24;
    juce::String channelName;
    juce::String artist;
    juce::String title;
    juce::String bandText;
    juce::String category;

private:
    InfoSatRadio() = default;
};
