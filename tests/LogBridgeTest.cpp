#include "support/ChildProcess.h"
#include "support/TestSupport.h"

#include <LmCom.h>

using LmComTesting::LogLines;

namespace
{
class LogBridgeTest : public LmComTesting::LmComTest
{
};
} // namespace

TEST_F(LogBridgeTest, LinesReachTheLoadedLibraryWithFileLineTagAndText)
{
    auto& bridge = LogBridge::instance();
    EXPECT_FALSE(bridge.load()); // loaded on first use, never twice
    LogLines::clear();

    bridge.logError("Some/Unit", 12, "Tag", "plain text");
    bridge.logInfo("Other/Unit", 34, "Info", "100% sure %s %n");
    bridge.logErrorF("F/Unit", 56, "Fmt", "value %d and %s", 7, "seven");

    auto lines = LogLines::all();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0], "E|Some/Unit|12|Tag|plain text");
    // Percent signs in a text are printed, never read as a format.
    EXPECT_EQ(lines[1], "I|Other/Unit|34|Info|100% sure %s %n");
    EXPECT_EQ(lines[2], "E|F/Unit|56|Fmt|value 7 and seven");
}

LMCOM_CHILD_ROLE(logWithoutLibrary)
{
    auto& bridge = LogBridge::instance();
    const int results =
        bridge.logError("a", 1, "b", "c") + bridge.logInfo("a", 1, "b", "c") + bridge.logErrorF("a", 1, "b", "%s", "c");
    std::printf("results %d dest %s\n", results, getDestName(99));
    return 0;
}

TEST_F(LogBridgeTest, AbsentLibraryIsSilentlySkipped)
{
    // A root without the library, in a process that never loaded it.
    systemFile("/NandFlash/Application/Bin/libQN_Logcat.so").deleteFile();
    LmComTesting::ChildProcess child("logWithoutLibrary");
    EXPECT_EQ(child.waitForExit(), 0);
    ASSERT_EQ(child.lines().size(), 1u);
    EXPECT_EQ(child.lines()[0], "results 0 dest ");
}

TEST_F(LogBridgeTest, DestinationNamesAndTheirLogLines)
{
    LogLines::clear();
    EXPECT_STREQ(getDestName(0), "NavigRecive");
    EXPECT_STREQ(getDestName(5), "Radio");
    EXPECT_STREQ(getDestName(25), "SWC");
    EXPECT_STREQ(getDestName(26), "");
    EXPECT_TRUE(LogLines::all().empty()); // AppUnknown logs nothing

    EXPECT_STREQ(getDestName(27), "");
    EXPECT_STREQ(getDestName(-1), "");
    EXPECT_EQ(LogLines::count("E|LmCom|80|LmCom|getDestName Error, eAppType: "), 2);

    EXPECT_STREQ(appTypeName(0), "AppMain");
    EXPECT_STREQ(appTypeName(15), "AppNavi");
    EXPECT_STREQ(appTypeName(26), "AppUnknown");
    EXPECT_STREQ(appTypeName(27), "");

    // Before config, the session has no resolver and names nothing.
    EXPECT_STREQ(MsgSession::getDestName(5), "");
    EXPECT_EQ(MsgSession::m_nSender, -1);
    MsgSession::config(Pubhead::eAppType::AppRadio, getDestName);
    EXPECT_STREQ(MsgSession::getDestName(5), "Radio");
    EXPECT_EQ(MsgSession::m_nSender, 5);
}

TEST_F(LogBridgeTest, NavigationTitleIsReadUntilFound)
{
    // No file, then a file without the key: read again on every call.
    EXPECT_STREQ(getDestName(15), "");
    writeSystemFile("/NandFlash/Application/Bin/QN_MAIN.ini", "[NAVIGATION]\nPATH=/x\n");
    EXPECT_STREQ(getDestName(15), "");

    writeSystemFile("/NandFlash/Application/Bin/QN_MAIN.ini",
                    "; head unit\n[USB]\nTITLE=wrong\n[NAVIGATION]\nTITLE = iGO 100%\n");
    EXPECT_STREQ(getDestName(15), "iGO 100%");

    // Found once, kept for the life of the process.
    writeSystemFile("/NandFlash/Application/Bin/QN_MAIN.ini", "[NAVIGATION]\nTITLE=Other\n");
    EXPECT_STREQ(getDestName(15), "iGO 100%");
}
