// Paths of the application directory, executables by service type, and the settings files.
#include "support/TestSupport.h"

#include <LmCom.h>

using namespace LmComTesting;
using Srv = Pubhead::eAppServiceType;

namespace
{
class AppConfigTest : public LmComTest
{
protected:
    juce::String real(const juce::String& systemPath) const { return m_root.getFullPathName() + systemPath; }
};
} // namespace

TEST_F(AppConfigTest, PathsLiveUnderTheRootAsWritten)
{
    const auto app = real("/NandFlash/Application/");
    EXPECT_EQ(AppConfig::getApplicationPath(), app);
    EXPECT_EQ(AppConfig::getResourcePath(), app + "/Resource/"); // the double slash is kept

    const std::map<int, const char*> samples{{0, "Tuner/Radio.exe"},
                                             {54, "Tuner/Radio.exe"},
                                             {3, "Tuner/HDRadio.exe"},
                                             {33, "Disc/Disc.exe"},
                                             {51, "USB/USB.exe"},
                                             {12, "iPod/Pandora.exe"},
                                             {17, "DVBT/Camera.exe"},
                                             {27, "DVBT/DVBT.exe"},
                                             {22, "Bin/MainMenu.exe"},
                                             {30, "Infor/Standby.exe"},
                                             {34, "Infor/Standby.exe"},
                                             {38, "Infor/CarInfo.exe"},
                                             {40, "Telematics/Telematics.exe"},
                                             {44, "Infor/SWC.exe"}};
    for (auto& [type, executable] : samples)
        EXPECT_EQ(AppConfig::getAppPath((Srv::EnumTypeTag)type), app + executable) << type;
    int withExecutable = 0;
    for (int type = -1; type <= 55; ++type)
    {
        EXPECT_EQ(AppConfig::getBackAppPath((Srv::EnumTypeTag)type), AppConfig::getAppPath((Srv::EnumTypeTag)type));
        withExecutable += AppConfig::getAppPath((Srv::EnumTypeTag)type).endsWith(".exe") ? 1 : 0;
    }
    EXPECT_EQ(withExecutable, 52); // all of 0..54 but 19 (navigation, not configured), 29 and 41
    EXPECT_EQ(AppConfig::getAppPath(Srv::SrvNone41), "");
}

TEST_F(AppConfigTest, NavigationPathIsReadUntilSetThenKept)
{
    const juce::String ini = "/NandFlash/Application/Bin/QN_MAIN.ini";
    EXPECT_EQ(AppConfig::getAppPath(Srv::SrvNavi), "");
    writeSystemFile(ini, "[NAVIGATION]\nTITLE=Navi\n");
    EXPECT_EQ(AppConfig::getAppPath(Srv::SrvNavi), "");
    writeSystemFile(ini, "[NAVIGATION]\nPATH=\\SDMMC\\NaviOne\\NaviOne.exe\n");
    EXPECT_EQ(AppConfig::getAppPath(Srv::SrvNavi), real("/SDMMC/NaviOne/NaviOne.exe"));
    writeSystemFile(ini, "[NAVIGATION]\nPATH=/Other/Navi.exe\n");
    EXPECT_EQ(AppConfig::getAppPath(Srv::SrvNavi), real("/SDMMC/NaviOne/NaviOne.exe"));
}

TEST_F(AppConfigTest, SystemDataPathIsReadOnEveryCall)
{
    const juce::String ini = "/NandFlash/Application/Profile/QN_SysSettings.ini";
    EXPECT_EQ(AppConfig::getSystemFilePath(), real("/BACKUP/QN_Config/"));
    writeSystemFile(ini, "[PATH]\nDATAPATH=\\Data\\Config\\\n");
    EXPECT_EQ(AppConfig::getSystemFilePath(), real("/Data/Config/"));
    writeSystemFile(ini, "[PATH]\nDATAPATH=/Flash/Cfg/\n");
    EXPECT_EQ(AppConfig::getSystemFilePath(), real("/Flash/Cfg/"));

    const char garbage[] = {'[', 'P', 'A', 'T', 'H', '\0', ']', '\n', '\xff', '=', '\n', 'D', 'A'};
    ASSERT_TRUE(systemFile(ini).replaceWithData(garbage, sizeof garbage));
    EXPECT_EQ(AppConfig::getSystemFilePath(), real("/BACKUP/QN_Config/"));
}
