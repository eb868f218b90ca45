#pragma once

/** Message codes of the application APIs, beside the framework's own (ServiceCodes.h). What
    param1, param2 and the object of an incoming code mean is the main service's business;
    the numbered names (kRadio2 ...) are further codes of the same application. Each API's
    header says which of them it handles and how. */
namespace ApiCode
{
// Commands, app to main.
constexpr int kMainMenuCommand = 1125;   ///< param1 = sub-command
constexpr int kSetupCommand = 1126;      ///< param1 = sub-command
constexpr int kDVBTCommand = 1129;       ///< param1 0: connect state, 1: bytes under "data"
constexpr int kBluetoothCommand = 1141;  ///< param1 = sub-command
constexpr int kStandbyCommand = 1142;    ///< param1 = sub-command
constexpr int kCarInfoCommand = 1150;    ///< the caller's two values
constexpr int kTelematicsCommand = 1151; ///< param1 = sub-command, param2 a flag
constexpr int kDABToMain = 48676;        ///< the caller's two values

/** Sub-commands (param1). */
constexpr int kDVBTConnectState = 0;
constexpr int kDVBTData = 1;
constexpr int kStartA2DPSrc = 15;
constexpr int kExitStandby = 0;
constexpr int kTelematicsCallIn = 0;
constexpr int kTelematicsHangup = 1;
constexpr int kTelematicsShowNavi = 2;
constexpr int kTelematicsNewInboxInfo = 3;
constexpr int kTelematicsNewInfo = 4;

// Incoming, main to app.
constexpr int kCarData = 74; ///< raw car-data frames, bytes under "data"
constexpr int kHDRadio = 1032;
constexpr int kMainMenu = 1174;
constexpr int kRadio = 1175;
constexpr int kiPod = 1176;
constexpr int kBluetooth = 1177;
constexpr int kUSB = 1178;
constexpr int kDisc = 1179;
constexpr int kSirius = 1180;
constexpr int kDVBT = 1181;
constexpr int kDiscSetupData = 1185; ///< a RemoteObjFormat value for the disc player's setup
constexpr int kSetup = 1190;
constexpr int kTelematics = 1208;
constexpr int kPandora = 1209;
constexpr int kHDMI = 1224;
constexpr int kRadio2 = 1323;
constexpr int kRadio3 = 1328;
constexpr int kBluetoothIpodInfo = 1528; ///< three integers
constexpr int kiPod2 = 1578;
constexpr int kPandora2 = 1579;
constexpr int kMediaList = 1634;
constexpr int kPGN = 1636; ///< parameter-group data
constexpr int kMediaInfo = 1639;
constexpr int kDiscText = 1640; ///< a RemoteObjFormat string for the disc player
constexpr int kiPod3 = 1912;
constexpr int kBluetoothLink = 1951;
constexpr int kBluetoothPhone = 1952;
constexpr int kBluetoothMusic = 1953;
constexpr int kBluetoothData = 1974;
constexpr int kHDMI2 = 2425;
constexpr int kiPod4 = 2525;
constexpr int kPandora3 = 2526;
constexpr int kMediaApp = 48654;
constexpr int kDAB = 48684;
} // namespace ApiCode
