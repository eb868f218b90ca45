#pragma once

#include "Message/Bundle.h"

/** What the radio (or HD radio) shows in the info bar. Sent as a Bundle (enBundle) with code
    1184; rebuilt with deBundle. Made only with obtain() or deBundle. */
class InfoTuner : public juce::ReferenceCountedObject
{
public:
    using Ptr = juce::ReferenceCountedObjectPtr<InfoTuner>;

    /** A record with the defaults: source 24, empty texts, action 255. */
    static Ptr obtain();
    /** "SourceID", "InforText" and "BandText" (each only if not empty), "Action". */
    Bundle::Ptr enBundle();
    /** A new record from the Bundle; missing keys give the defaults, a null Bundle the
        defaults of obtain(). */
    static Ptr deBundle(Bundle::Ptr bundle);

    ~InfoTuner() override = default;

    int sourceID = 24;
    juce::String inforText;
    juce::String bandText;
    int action = 255;

private:
    InfoTuner() = default;
};
