#include "AppIdentity.h"

#include "LogBridge.h"
#include "Platform/Environment.h"
#include "Platform/IniFile.h"

#include <mutex>
#include <string>

namespace
{
const char* const kSourceName = "LmCom";
constexpr int kAppTypeCount = 27;

const char* const kPrintableNames[kAppTypeCount] = {
    "AppMain", "AppMainMenu",   "AppSetup", "AppAntitheft", "AppStandby", "AppRadio",  "AppUSB",
    "AppiPod", "AppDisc",       "AppAuxIn", "AppSirius",    "AppDVBT",    "AppCamera", "AppBluetooth",
    "AppEQ",   "AppNavi",       "AppHDMI",  "AppPandora",   "AppHDRadio", "AppRadar",  "AppCarInfo",
    "AppWifi", "AppTelematics", "AppDAB",   "AppAC",        "AppSWC",     "AppUnknown"};

// The main service is reached as "NavigRecive", spelled so: every peer looks for that title.
const char* const kDestNames[kAppTypeCount] = {
    "NavigRecive", "MainMenu", "Setup",   "Antitheft", "Standby",    "Radio", "USB",   "iPod", "Disc",
    "AuxIn",       "Sirius",   "DVBT",    "Camera",    "Bluetooth",  "EQ",    nullptr, "HDMI", "Pandora",
    "HDRadio",     "Radar",    "CarInfo", "Wifi",      "Telematics", "DAB",   "AC",    "SWC",  ""};

// The navigation title: filled once it is not empty, then kept for the life of the process.
std::mutex sNaviTitleLock;
std::string sNaviTitle;

const char* navigationTitle()
{
    std::lock_guard<std::mutex> lock(sNaviTitleLock);
    if (sNaviTitle.empty())
    {
        Platform::IniFile ini(Platform::Environment::resolve("/NandFlash/Application/Bin/QN_MAIN.ini"));
        sNaviTitle = ini.getString("NAVIGATION", "TITLE", {}).toStdString();
        if (sNaviTitle.empty())
            return "";
    }
    // Stable from here on: a non-empty title is never assigned again.
    return sNaviTitle.c_str();
}
} // namespace

const char* appTypeName(int eAppType)
{
    if (eAppType < 0 || eAppType >= kAppTypeCount)
        return "";
    return kPrintableNames[eAppType];
}

extern "C" const char* getDestName(int eAppType)
{
    if (eAppType == Pubhead::eAppType::AppNavi)
        return navigationTitle();
    if (eAppType >= 0 && eAppType < kAppTypeCount)
        return kDestNames[eAppType];

    LogBridge::instance().logError(kSourceName, 80, "LmCom",
                                   juce::String("getDestName Error, eAppType: ") + appTypeName(eAppType));
    return "";
}
