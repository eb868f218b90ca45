#include "support/TestSupport.h"

#include "Platform/Environment.h"
#include "Platform/IniFile.h"

namespace
{
class IniFileTest : public LmComTesting::LmComTest
{
};
} // namespace

TEST_F(IniFileTest, SectionsKeysCommentsAndDefaults)
{
    writeSystemFile("/Profile/a.ini", "top=1\n"
                                      "[PATH]\n"
                                      "; comment\n"
                                      "# another\n"
                                      "DATAPATH = \\BACKUP\\Data\\\n"
                                      "Count=0x10\n"
                                      "Bad=12abc\n"
                                      "Empty=\n"
                                      "[path]\n"
                                      "DATAPATH=lower\n");
    Platform::IniFile ini(Platform::Environment::resolve("/Profile/a.ini"));
    ASSERT_TRUE(ini.isLoaded());
    EXPECT_EQ(ini.getString("PATH", "DATAPATH", "d"), "\\BACKUP\\Data\\");
    EXPECT_EQ(ini.getString("path", "DATAPATH", "d"), "lower"); // names are case-sensitive
    EXPECT_EQ(ini.getString("PATH", "datapath", "d"), "d");
    EXPECT_EQ(ini.getString("", "top", "d"), "1");
    EXPECT_EQ(ini.getInt("PATH", "Count", -1), 16);
    EXPECT_EQ(ini.getInt("PATH", "Bad", -1), -1);
    EXPECT_EQ(ini.getInt("PATH", "Empty", -1), -1);
    EXPECT_EQ(ini.getString("PATH", "Empty", "d"), "");

    Platform::IniFile missing(Platform::Environment::resolve("/Profile/none.ini"));
    EXPECT_FALSE(missing.isLoaded());
    EXPECT_EQ(missing.getInt("PATH", "Count", 7), 7);
}

TEST_F(IniFileTest, SystemPathsLiveUnderTheRoot)
{
    EXPECT_EQ(Platform::Environment::resolve("/NandFlash/Application//Resource/"),
              m_root.getFullPathName() + "/NandFlash/Application//Resource/");
    EXPECT_EQ(Platform::Environment::resolve("\\BACKUP\\QN_Config\\"), m_root.getFullPathName() + "/BACKUP/QN_Config/");
    EXPECT_EQ(Platform::Environment::busName(), m_bus);
}
