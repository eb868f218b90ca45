#pragma once

/** Message codes of the protocol between an application and the main service (AppMain).
    They travel as RemoteMessage::code; the comments say who sends each and what param1 holds. */
namespace ServiceCode
{
// Connection.
constexpr int kPleaseConnect = 1744;  ///< main to app: connect now
constexpr int kConnectRequest = 1745; ///< app to main: param1 = the app's eAppType
constexpr int kConnectAck = 1746;     ///< main to app: connection acknowledged
constexpr int kHeartbeat = 1747;      ///< main to app
constexpr int kHeartbeatReply = 1748; ///< app to main: param1 = the app's eAppType
constexpr int kCommandInfo = 1754;    ///< main to app: the object is a command-line Bundle

// Pages.
constexpr int kRequestPageShow = 1724; ///< app to main: param1 = eAppServiceType
constexpr int kViewShow = 1725;        ///< main to app
constexpr int kViewHide = 1726;        ///< main to app
constexpr int kViewNotify = 1727;      ///< main to app
constexpr int kPageShowReady = 1728;   ///< app to main: param1 = eAppServiceType
constexpr int kPageHidingReady = 1729; ///< app to main: param1 = eAppServiceType
constexpr int kPageHidden = 1730;      ///< app to main: param1 = the hidden eAppServiceType

// Power, settings and general notifications.
constexpr int kSystemBeep = 1137;     ///< app to main
constexpr int kGeneralEvent = 1194;   ///< main to app
constexpr int kGeneralNotify = 1195;  ///< main to app
constexpr int kQuit = 1199;           ///< main to app
constexpr int kStateChanged = 1202;   ///< main to app
constexpr int kPowerOff = 1203;       ///< main to app: param1 is echoed by the answer
constexpr int kPowerOffReady = 1204;  ///< app to main
constexpr int kGeneralCommand = 1322; ///< main to app
constexpr int kSetting = 1765;        ///< app to main: param1 = setting id, param2 = kSettingInt or kSettingString

constexpr int kSettingInt = 1;
constexpr int kSettingString = 2;

// Info bar.
constexpr int kInfoBar = 1184;          ///< app to main: param1 = kind of record, the object its Bundle
constexpr int kGeneralToInfoBar = 2248; ///< app to main: two values defined by the main service

/** Kinds of info-bar record (param1 of kInfoBar). */
constexpr int kInfoBarTuner = 1;
constexpr int kInfoBarSatRadio = 2;
constexpr int kInfoBarMedia = 3;
constexpr int kInfoBarBT = 4;
} // namespace ServiceCode
