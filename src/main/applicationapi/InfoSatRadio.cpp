#include "main/applicationapi/InfoSatRadio.h"

InfoSatRadio::Ptr InfoSatRadio::obtain()
{
    return Ptr(new InfoSatRadio());
}

Bundle::Ptr InfoSatRadio::enBundle()
{
    auto bundle = Bundle::obtain();
    bundle->putInt("SourceID", sourceID);
    // These three are always written, even empty (the info bar clears its lines with them).
    bundle->putString("ChannelName", channelName);
    bundle->putString("Artist", artist);
    bundle->putString("Title", title);
    if (bandText.isNotEmpty())
        bundle->putString("BandText", bandText);
    if (category.isNotEmpty())
        bundle->putString("Category", category);
    return bundle;
}

InfoSatRadio::Ptr InfoSatRadio::deBundle(Bundle::Ptr bundle)
{
    auto record = obtain();
    if (bundle == nullptr)
        return record;
    record->sourceID = bundle->getInt("SourceID", 24);
    record->channelName = bundle->getString("ChannelName", {});
    record->artist = bundle->getString("Artist", {});
    record->title = bundle->getString("Title", {});
    record->bandText = bundle->getString("BandText", {});
    record->category = bundle->getString("Category", {});
    return record;
}
