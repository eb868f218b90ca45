#include "main/applicationapi/InfoMedia.h"

InfoMedia::Ptr InfoMedia::obtain()
{
    return Ptr(new InfoMedia());
}

Bundle::Ptr InfoMedia::enBundle()
{
    auto bundle = Bundle::obtain();
    bundle->putInt("SourceID", sourceID);
    bundle->putInt("RefreshFlag", refreshFlag);
    bundle->putInt("PlayState", playState);
    bundle->putInt("TotalNum", totalNum);
    bundle->putInt("CurNum", curNum);
    bundle->putInt("DiscType", discType);
    bundle->putInt("FileType", fileType);
    if (title.isNotEmpty())
        bundle->putString("Title", title);
    if (artist.isNotEmpty())
        bundle->putString("Artist", artist);
    if (album.isNotEmpty())
        bundle->putString("Album", album);
    if (inforText.isNotEmpty())
        bundle->putString("InforText", inforText);
    return bundle;
}

InfoMedia::Ptr InfoMedia::deBundle(Bundle::Ptr bundle)
{
    auto record = obtain();
    if (bundle == nullptr)
        return record;
    record->sourceID = bundle->getInt("SourceID", 24);
    record->refreshFlag = bundle->getInt("RefreshFlag", 0);
    record->playState = bundle->getInt("PlayState", 255);
    record->totalNum = bundle->getInt("TotalNum", 0);
    record->curNum = bundle->getInt("CurNum", 0);
    record->discType = bundle->getInt("DiscType", 0);
    record->fileType = bundle->getInt("FileType", 0);
    record->title = bundle->getString("Title", {});
    record->artist = bundle->getString("Artist", {});
    record->album = bundle->getString("Album", {});
    record->inforText = bundle->getString("InforText", {});
    return record;
}
