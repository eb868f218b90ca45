#include "main/applicationapi/InfoTuner.h"

InfoTuner::Ptr InfoTuner::obtain()
{
    return Ptr(new InfoTuner());
}

Bundle::Ptr InfoTuner::enBundle()
{
    auto bundle = Bundle::obtain();
    bundle->putInt("SourceID", sourceID);
    if (inforText.isNotEmpty())
        bundle->putString("InforText", inforText);
    if (bandText.isNotEmpty())
        bundle->putString("BandText", bandText);
    bundle->putInt("Action", action);
    return bundle;
}

InfoTuner::Ptr InfoTuner::deBundle(Bundle::Ptr bundle)
{
    auto record = obtain();
    if (bundle == nullptr)
        return record;
    record->sourceID = bundle->getInt("SourceID", 24);
    record->inforText = bundle->getString("InforText", {});
    record->bandText = bundle->getString("BandText", {});
    record->action = bundle->getInt("Action", 255);
    return record;
}
