#pragma once

#include "Message/Bundle.h"

/** What the Bluetooth phone shows in the info bar. Sent as a Bundle (enBundle) with code 1184;
    rebuilt with deBundle. Made only with obtain() or deBundle. */
class InfoBT : public juce::ReferenceCountedObject
{
public:
    using Ptr = juce::ReferenceCountedObjectPtr<InfoBT>;

    /** A record with the defaults: source 24, empty text, action 255. */
    static Ptr obtain();
    /** "SourceID", "InforText" (only if not empty), "Action". */
    Bundle::Ptr enBundle();
    /** A new record from the Bundle; missing keys give the defaults, a null Bundle the
        defaults of obtain(). */
    static Ptr deBundle(Bundle::Ptr bundle);

    ~InfoBT() override = default;

    int sourceID = 24;
    juce::String inforText;
    int action = 255;

private:
    InfoBT() = default;
};
