#include "Utils/SysInfoHelper.h"

#include "Utils/LmShareMem.h"

int SysInfoHelper::getSysInfoInt(int index)
{
    return QN_GetSysInfo((SysInfoIndex)index);
}

void SysInfoHelper::setSysInfoInt(int index, int value)
{
    QN_SetSysInfo((SysInfoIndex)index, value);
}

bool SysInfoHelper::isSrcEnable(Pubhead::eAppServiceType::EnumTypeTag source)
{
    return QN_GetSrcState(source);
}
