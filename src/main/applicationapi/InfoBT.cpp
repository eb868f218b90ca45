#include "main/applicationapi/InfoBT.h"

InfoBT::Ptr InfoBT::obtain()
{
    return Ptr(new InfoBT());
}

Bundle::Ptr InfoBT::enBundle()
{
    auto bundle = Bundle::obtain();
    bundle->putInt("SourceID", sourceID);
    if (inforText.isNotEmpty())
        bundle->putString("InforText", inforText);
    bundle->putInt("Action", action);
    return bundle;
}

InfoBT::Ptr InfoBT::deBundle(Bundle::Ptr bundle)
{
    auto record = obtain();
    if (bundle == nullptr)
        return record;
    record->sourceID = bundle->getInt("SourceID", 24);
    record->inforText = bundle->getString("InforText", {});
    record->action = bundle->getInt("Action", 255);
    return record;
}
