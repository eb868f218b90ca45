#include "Utils/AppConfig.h"

#include "Platform/Environment.h"
#include "Platform/FontLoader.h"
#include "Platform/IniFile.h"

#include <mutex>

namespace
{
constexpr int kServiceTypeCount = 55;

// The executable of each service type, relative to the application directory.
const char* const kExecutables[kServiceTypeCount] = {
    "Tuner/Radio.exe",           // 0
    "Tuner/HDRadio.exe",         // 1
    "Tuner/Radio.exe",           // 2
    "Tuner/HDRadio.exe",         // 3
    "Disc/Disc.exe",             // 4
    "Disc/Disc.exe",             // 5
    "USB/USB.exe",               // 6
    "USB/USB.exe",               // 7
    "USB/USB.exe",               // 8
    "USB/USB.exe",               // 9
    "iPod/iPod.exe",             // 10
    "iPod/iPod.exe",             // 11
    "iPod/Pandora.exe",          // 12
    "Bluetooth/Bluetooth.exe",   // 13
    "Bluetooth/Bluetooth.exe",   // 14
    "AuxIn/AuxIn.exe",           // 15
    "AuxIn/AuxIn.exe",           // 16
    "DVBT/Camera.exe",           // 17
    "Sirius/Sirius.exe",         // 18
    nullptr,                     // 19: navigation, from QN_MAIN.ini
    "DVBT/DVBT.exe",             // 20
    "HDMI/HDMI.exe",             // 21
    "Bin/MainMenu.exe",          // 22
    "Bin/Setup.exe",             // 23
    "AuxIn/AuxIn.exe",           // 24
    "AuxIn/AuxIn.exe",           // 25
    "Disc/Disc.exe",             // 26
    "DVBT/DVBT.exe",             // 27
    "iPod/iPod.exe",             // 28
    nullptr,                     // 29: no executable
    "Infor/Standby.exe",         // 30
    "Infor/Antitheft.exe",       // 31
    "Infor/EQ.exe",              // 32
    "Disc/Disc.exe",             // 33
    "Infor/Standby.exe",         // 34
    "Infor/Radar.exe",           // 35
    "Infor/CarInfo.exe",         // 36
    "Infor/CarInfo.exe",         // 37
    "Infor/CarInfo.exe",         // 38
    "Infor/Wifi.exe",            // 39
    "Telematics/Telematics.exe", // 40
    nullptr,                     // 41: no executable
    "DAB/DAB.exe",               // 42
    "AC/AC.exe",                 // 43
    "Infor/SWC.exe",             // 44
    "USB/USB.exe",               // 45
    "USB/USB.exe",               // 46
    "USB/USB.exe",               // 47
    "USB/USB.exe",               // 48
    "USB/USB.exe",               // 49
    "USB/USB.exe",               // 50
    "USB/USB.exe",               // 51
    "Tuner/Radio.exe",           // 52
    "Tuner/Radio.exe",           // 53
    "Tuner/Radio.exe",           // 54
};

const char* appExecutable(int type)
{
    return type >= 0 && type < kServiceTypeCount ? kExecutables[type] : nullptr;
}

std::mutex sNaviPathLock;
juce::String sNaviPath;

juce::String navigationPath()
{
    const std::lock_guard<std::mutex> lock(sNaviPathLock);
    if (sNaviPath.isEmpty())
    {
        Platform::IniFile ini(AppConfig::getApplicationPath() + "Bin/QN_MAIN.ini");
        const auto path = ini.getString("NAVIGATION", "PATH", {}).trim();
        if (path.isNotEmpty())
            sNaviPath = Platform::Environment::resolve(path);
    }
    return sNaviPath;
}
} // namespace

juce::String AppConfig::getApplicationPath()
{
    static const juce::String path = Platform::Environment::resolve("/NandFlash/Application/");
    return path;
}

juce::String AppConfig::getAppPath(Pubhead::eAppServiceType::EnumTypeTag type)
{
    if (type == Pubhead::eAppServiceType::SrvNavi)
        return navigationPath();
    const char* executable = appExecutable(type);
    return executable != nullptr ? getApplicationPath() + executable : juce::String();
}

juce::String AppConfig::getBackAppPath(Pubhead::eAppServiceType::EnumTypeTag type)
{
    return getAppPath(type);
}

void AppConfig::loadFont()
{
    static std::once_flag loaded;
    std::call_once(loaded,
                   [] { Platform::FontLoader::loadFontList(getApplicationPath() + "/Resource/Fonts/font.ini"); });
}

juce::String AppConfig::getResourcePath()
{
    static const juce::String path = getApplicationPath() + "/Resource/";
    return path;
}

juce::String AppConfig::getSystemFilePath()
{
    Platform::IniFile ini(getApplicationPath() + "/Profile/QN_SysSettings.ini");
    return Platform::Environment::resolve(ini.getString("PATH", "DATAPATH", "\\BACKUP\\QN_Config\\"));
}
