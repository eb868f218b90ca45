#pragma once

#include "Message/Bundle.h"

/** What a media source (USB, disc, iPod, Pandora, Bluetooth audio) shows in the info bar.
    Sent as a Bundle (enBundle) with code 1184; rebuilt with deBundle. Made only with obtain()
    or deBundle. */
class InfoMedia : public juce::ReferenceCountedObject
{
public:
    using Ptr = juce::ReferenceCountedObjectPtr<InfoMedia>;

    /** A record with the defaults: source 24, play state 255, numbers 0, empty texts. */
    static Ptr obtain();
    /** The seven integers always ("SourceID", "RefreshFlag", "PlayState", "TotalNum",
        "CurNum", "DiscType", "FileType"), then "Title", "Artist", "Album" and "InforText"
        only if not empty. */
    Bundle::Ptr enBundle();
    /** A new record from the Bundle; missing keys give the defaults, a null Bundle the
        defaults of obtain(). */
    static Ptr deBundle(Bundle::Ptr bundle);

    ~InfoMedia() override = default;

    int sourceID = 24;
    int refreshFlag = 0;
    int playState = 255;
    int totalNum = 0;
    int curNum = 0;
    int discType = 0;
    int fileType = 0;
    juce::String title;
    juce::String artist;
    juce::String album;
    juce::String inforText;

private:
    InfoMedia() = default;
};
