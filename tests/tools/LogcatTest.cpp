// The shipped logging library (tools/logcat), loaded for real through the log bridge by a child
// process whose standard error the test reads.
#include "support/Command.h"
#include "support/TestSupport.h"

#include <LmCom.h>

#include <sys/stat.h>
#include <unistd.h>

using namespace LmComTesting;

namespace
{
LMCOM_CHILD_ROLE(logThroughLogcat)
{
    auto& bridge = LogBridge::instance();
    bridge.logError("Message/Unit", 12, "MsgSession", "create again!\nsecond line");
    bridge.logInfo("Info/Unit", 34, "LmCom", "100% sure %s");
    bridge.logErrorF("F/Unit", 56, "Fmt", "value %d", 7);
    std::printf("done\n");
    return 0;
}

class LogcatTest : public LmComTest
{
protected:
    void SetUp() override
    {
        LmComTest::SetUp();
        auto library = systemFile("/NandFlash/Application/Bin/libQN_Logcat.so");
        library.deleteFile();
        ASSERT_EQ(symlink(LMCOM_LOGCAT, library.getFullPathName().toRawUTF8()), 0);
    }

    /** The child's standard error, its lines that came from the library ("X/Tag ...": the part
        after the time stamp). */
    std::vector<std::string> run()
    {
        Command child("/proc/self/exe", {"--lmcom-child", "logThroughLogcat"});
        EXPECT_EQ(child.waitForExit(), 0);
        EXPECT_EQ(child.out(), std::vector<std::string>{"done"});
        std::vector<std::string> lines;
        for (auto& line : child.err())
            lines.push_back(line.size() > 24 && line[4] == '-' && line[23] == ' ' ? line.substr(24) : "?" + line);
        return lines;
    }
};
} // namespace

TEST_F(LogcatTest, WritesEachLineToStandardErrorWithoutAConfiguration)
{
    const auto lines = run();
    ASSERT_EQ(lines.size(), 3u);
    // One entry is one line; a percent sign in a text is printed as it is.
    EXPECT_EQ(lines[0].substr(0, 13), "E/MsgSession ");
    EXPECT_NE(lines[0].find("] Message/Unit:12: create again!?second line"), std::string::npos) << lines[0];
    EXPECT_EQ(lines[1].substr(0, 8), "I/LmCom ");
    EXPECT_NE(lines[1].find("] Info/Unit:34: 100% sure %s"), std::string::npos) << lines[1];
    EXPECT_NE(lines[2].find("] F/Unit:56: value 7"), std::string::npos) << lines[2];
}

TEST_F(LogcatTest, FollowsItsConfigurationAndSurvivesABadOne)
{
    const juce::String config = "/NandFlash/Application/Bin/QN_Logcat.ini";

    writeSystemFile(config, "; errors only\n[Logcat]\nLevel = Error\n");
    auto lines = run();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].substr(0, 13), "E/MsgSession ");
    EXPECT_EQ(lines[1].substr(0, 6), "E/Fmt ");

    // To syslog: nothing on standard error.
    writeSystemFile(config, "[Logcat]\nOutput=syslog\n");
    EXPECT_TRUE(run().empty());

    // Values it does not know, a file that is not text, one that never ends, one that would
    // block, one too large: each says so once and logs to standard error.
    writeSystemFile(config, "[Logcat]\nOutput=printer\nLevel=loud\n");
    lines = run();
    ASSERT_EQ(lines.size(), 5u);
    EXPECT_EQ(lines[0], "?QN_Logcat: Output must be stderr or syslog; using stderr");
    EXPECT_EQ(lines[1], "?QN_Logcat: Level must be debug, info, warn or error; using debug");

    auto file = systemFile(config);
    ASSERT_TRUE(file.replaceWithData("\0[Logcat]\nOutput=syslog\n\xff\xfe", 25));
    EXPECT_EQ(run().size(), 3u);

    file.deleteFile();
    ASSERT_EQ(symlink("/dev/zero", file.getFullPathName().toRawUTF8()), 0);
    EXPECT_EQ(run().size(), 4u);
    file.deleteFile();
    ASSERT_EQ(mkfifo(file.getFullPathName().toRawUTF8(), 0600), 0);
    EXPECT_EQ(run().size(), 4u);
    file.deleteFile();
    ASSERT_TRUE(file.replaceWithText("[Logcat]\nOutput=syslog\n" + juce::String::repeatedString(";", 70000)));
    lines = run();
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_NE(lines[0].find("is not a small regular file; using stderr"), std::string::npos) << lines[0];
}
