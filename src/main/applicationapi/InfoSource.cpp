#include "main/applicationapi/InfoSource.h"

InfoSource::Ptr InfoSource::obtain()
{
    return Ptr(new InfoSource());
}

Bundle::Ptr InfoSource::enBundle()
{
    auto bundle = Bundle::obtain();
    bundle->putInt("SourceID", sourceID);
    if (inforText1.isNotEmpty())
        bundle->putString("InforText1", inforText1);
    if (inforText2.isNotEmpty())
        bundle->putString("InforText2", inforText2);
    if (inforText3.isNotEmpty())
        bundle->putString("InforText3", inforText3);
    return bundle;
}

InfoSource::Ptr InfoSource::deBundle(Bundle::Ptr bundle)
{
    auto record = obtain();
    if (bundle == nullptr)
        return record;
    record->sourceID = bundle->getInt("SourceID", 24);
    record->inforText1 = bundle->getString("InforText1", {});
    record->inforText2 = bundle->getString("InforText2", {});
    record->inforText3 = bundle->getString("InforText3", {});
    return record;
}
