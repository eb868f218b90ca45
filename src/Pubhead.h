#pragma once

/** Identities shared by every subsystem: the applications of the head unit and the pages and
    services they provide. Values travel on the wire as 32-bit integers. */
namespace Pubhead
{

/** One value per application process. Messages are addressed by it. */
struct eAppType
{
    enum EnumTypeTag : int
    {
        AppMain = 0,
        AppMainMenu = 1,
        AppSetup = 2,
        AppAntitheft = 3,
        AppStandby = 4,
        AppRadio = 5,
        AppUSB = 6,
        AppiPod = 7,
        AppDisc = 8,
        AppAuxIn = 9,
        AppSirius = 10,
        AppDVBT = 11,
        AppCamera = 12,
        AppBluetooth = 13,
        AppEQ = 14,
        AppNavi = 15,
        AppHDMI = 16,
        AppPandora = 17,
        AppHDRadio = 18,
        AppRadar = 19,
        AppCarInfo = 20,
        AppWifi = 21,
        AppTelematics = 22,
        AppDAB = 23,
        AppAC = 24,
        AppSWC = 25,
        AppUnknown = 26
    };
};

/** The pages and services that applications provide (0 to 54), grouped by the executable
    that serves them. Where one executable serves several, the later ones are numbered. */
struct eAppServiceType
{
    enum EnumTypeTag : int
    {
        SrvRadio = 0,
        SrvHDRadio = 1,
        SrvRadio2 = 2,
        SrvHDRadio2 = 3,
        SrvDisc = 4,
        SrvDisc2 = 5,
        SrvUSB = 6,
        SrvUSB2 = 7,
        SrvUSB3 = 8,
        SrvUSB4 = 9,
        SrviPod = 10,
        SrviPod2 = 11,
        SrvPandora = 12,
        SrvBluetooth = 13,
        SrvBluetooth2 = 14,
        SrvAuxIn = 15,
        SrvAuxIn2 = 16,
        SrvCamera = 17,
        SrvSirius = 18,
        SrvNavi = 19,
        SrvDVBT = 20,
        SrvHDMI = 21,
        SrvMainMenu = 22,
        SrvSetup = 23,
        SrvAuxIn3 = 24,
        SrvAuxIn4 = 25,
        SrvDisc3 = 26,
        SrvDVBT2 = 27,
        SrviPod3 = 28,
        SrvNone29 = 29,
        SrvStandby = 30,
        SrvAntitheft = 31,
        SrvEQ = 32,
        SrvDisc4 = 33,
        SrvStandby2 = 34,
        SrvRadar = 35,
        SrvCarInfo = 36,
        SrvCarInfo2 = 37,
        SrvCarInfo3 = 38,
        SrvWifi = 39,
        SrvTelematics = 40,
        SrvNone41 = 41,
        SrvDAB = 42,
        SrvAC = 43,
        SrvSWC = 44,
        SrvUSB5 = 45,
        SrvUSB6 = 46,
        SrvUSB7 = 47,
        SrvUSB8 = 48,
        SrvUSB9 = 49,
        SrvUSB10 = 50,
        SrvUSB11 = 51,
        SrvRadio3 = 52,
        SrvRadio4 = 53,
        SrvRadio5 = 54
    };
};

} // namespace Pubhead
