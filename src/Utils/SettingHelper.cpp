#include "Utils/SettingHelper.h"

#include "Utils/LmShareMem.h"

int SettingHelper::getSettingInt(int index)
{
    return QN_GetSetupValueInt((SetupIndex)index);
}

juce::String SettingHelper::getSettingString(int index)
{
    return QN_GetSetupValueString((SetupIndex)index);
}

bool SettingHelper::isSettingValueString(int index)
{
    return QN_IsSetupValueString((SetupIndex)index);
}
