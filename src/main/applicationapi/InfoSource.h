#pragma once

#include "Message/Bundle.h"

/** Up to three free text lines of a source for the info bar; the main menu decodes these.
    Made only with obtain() or deBundle. */
class InfoSource : public juce::ReferenceCountedObject
{
public:
    using Ptr = juce::ReferenceCountedObjectPtr<InfoSource>;

    /** A record with the defaults: source 24, empty texts. */
    static Ptr obtain();
    /** "SourceID", then "InforText1" to "InforText3", each only if not empty. */
    Bundle::Ptr enBundle();
    /** A new record from the Bundle; missing keys give the defaults, a null Bundle the
        defaults of obtain(). */
    static Ptr deBundle(Bundle::Ptr bundle);

    ~InfoSource() override = default;

    int sourceID = 24;
    juce::String inforText1;
    juce::String inforText2;
    juce::String inforText3;

private:
    InfoSource() = default;
};
