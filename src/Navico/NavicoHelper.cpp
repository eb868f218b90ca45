#include "Navico/NavicoHelper.h"

using Srv = Pubhead::eAppServiceType;

Pubhead::eAppServiceType::EnumTypeTag NavicoHelper::getSrcFromNavicoType(int navicoType)
{
    switch (navicoType)
    {
    case 1:
        return Srv::SrvRadio4;
    case 2:
        return Srv::SrvRadio3;
    case 3:
        return Srv::SrvRadio5;
    case 5:
        return Srv::SrvAuxIn;
    case 6:
        return Srv::SrvUSB;
    case 7:
        return Srv::SrvDisc;
    case 9:
        return Srv::SrviPod;
    case 11:
        return Srv::SrvBluetooth2;
    case 12:
        return Srv::SrvSirius;
    case 13:
        return Srv::SrvPandora;
    default:
        return Srv::SrvStandby2;
    }
}

int NavicoHelper::getScrFromWinceType(Pubhead::eAppServiceType::EnumTypeTag serviceType)
{
    switch (serviceType)
    {
    case Srv::SrvDisc:
        return 7;
    case Srv::SrvUSB:
        return 6;
    case Srv::SrviPod:
        return 9;
    case Srv::SrvPandora:
        return 13;
    case Srv::SrvBluetooth2:
        return 11;
    case Srv::SrvAuxIn:
    case Srv::SrvAuxIn2: // both auxiliary inputs are the display's source 5: deliberate
        return 5;
    case Srv::SrvSirius:
        return 12;
    case Srv::SrvRadio3:
        return 2;
    case Srv::SrvRadio4:
        return 1;
    case Srv::SrvRadio5:
        return 3;
    default:
        return 24;
    }
}
