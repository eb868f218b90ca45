// The reference main service plays a script of answer frames to a car information application
// in another process; a hostile script never gets it to read what is not a small regular file.
#include "support/ChildApplication.h"
#include "support/ChildProcess.h"
#include "support/TestSupport.h"

#include <LmCom.h>

#include <sys/stat.h>

#include <cstdio>
#include <memory>
#include <random>

using namespace LmComTesting;

namespace
{
void say(const std::string& line)
{
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

// A car information application: "VALUE item value" per decoded value, "QUIT" on request.
class CarInfoApplication : public ChildApplication, public CarInfoCallBack, private juce::Timer
{
public:
    void shutdown() override { m_api = nullptr; }

    void initialise(const juce::String&) override
    {
        m_api = std::make_unique<CarInfoApi>(nullptr, nullptr);
        m_api->bindCallBack(this);
        m_api->GetAllWheelData(); // waits for the connection
        say("READY");
        startTimer(60000); // never outlive a test that went away
    }

    void onGeneralCommand(int p1, int p2) override { say("GENERAL " + std::to_string(p1) + " " + std::to_string(p2)); }
    void onCarInfoValue(int item, int value) override
    {
        say("VALUE " + std::to_string(item) + " " + std::to_string(value));
    }

private:
    void timerCallback() override { quit(); }

    std::unique_ptr<CarInfoApi> m_api;
};

LMCOM_CHILD_ROLE(carinfo)
{
    juce::JUCEApplicationBase::createInstance = []() -> juce::JUCEApplicationBase* { return new CarInfoApplication(); };
    const int status = juce::JUCEApplicationBase::main();
    MsgSession::purgeAll();
    return status;
}

class CarInfoScriptTest : public LmComTest
{
protected:
    void SetUp() override
    {
        LmComTest::SetUp();
#ifndef LMCOM_MAINSERVICE
        GTEST_SKIP() << "the tools are not built (LMCOM_BUILD_TOOLS=OFF)";
#endif
    }

    std::string writeScript(const std::string& text)
    {
        auto file = m_root.getChildFile("frames.txt");
        EXPECT_TRUE(file.replaceWithData(text.data(), text.size()));
        return file.getFullPathName().toStdString();
    }
};
} // namespace

TEST_F(CarInfoScriptTest, MainServicePlaysItsFramesToTheCarInformation)
{
    const auto script = writeScript("# answer frames\n"
                                    "0 61 04 03 00 1E 41\n"
                                    "30  6D 04 02 0F 1E 41   # test mode\n"
                                    "\n"
                                    "10 69 01 0A\n"
                                    "zz 00 00\n"
                                    "5 6\n"
                                    "100000 00 00\n"
                                    "5\n"
                                    "0 30 02 19 40 AA BB\n"
                                    "0 00 12 05 12 34 56 78 09 0A 01 02 03 04 05 06 07 08 09 0A FF\r\n"
                                    "0 90 01 01");
    ChildProcess app("carinfo");
    ASSERT_TRUE(app.waitForLine("READY"));
    ChildProcess main("mainservice", {"--heartbeat-ms", "200", "--carinfo-script", script});
    EXPECT_TRUE(main.waitForLine("car information script: skipped line 6: expected WAIT_MS, a blank and hex bytes"));
    EXPECT_TRUE(main.waitForLine("car information script: skipped line 7: an odd number of hex digits"));
    EXPECT_TRUE(main.waitForLine("car information script: skipped line 8: the wait is over 60000 ms"));
    EXPECT_TRUE(main.waitForLine("car information script: skipped line 9: expected WAIT_MS"));
    EXPECT_TRUE(main.waitForLine("AppCarInfo: frame to the host controller (74) 61 01 00"));
    EXPECT_TRUE(main.waitForLine("playing 6 car information frames to AppCarInfo"));
    EXPECT_TRUE(main.waitForLine("-> AppCarInfo: answer frame (74) 90 01 01 (line 12)"));
    EXPECT_TRUE(main.waitForLine("car information frames played"));
    ASSERT_TRUE(app.waitForLine("VALUE 64 0"));

    std::vector<std::string> values;
    for (auto& line : app.lines())
        if (line.rfind("VALUE ", 0) == 0)
            values.push_back(line.substr(6));
    EXPECT_EQ(values, (std::vector<std::string>{"68 0",    "29 16843009", "30 30",   "31 65", "66 0", "23 258",
                                                "24 30",   "25 65",       "8 25",    "9 64",  "0 5",  "6 4660",
                                                "7 22136", "8 9",         "9 10",    "10 1",  "11 2", "12 772",
                                                "13 1286", "14 1800",     "15 2314", "16 1",  "64 0"}));

    main.kill(SIGTERM);
    EXPECT_TRUE(app.waitForLine("QUIT"));
    EXPECT_EQ(app.waitForExit(), 0);
    EXPECT_EQ(main.waitForExit(), 0);
}

TEST_F(CarInfoScriptTest, OnlyASmallRegularFileIsRead)
{
#ifdef LMCOM_MAINSERVICE
    const auto fifo = m_root.getChildFile("fifo").getFullPathName().toStdString();
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    const auto big = writeScript(std::string(1024 * 1024 + 1, '#'));
    const auto missing = m_root.getChildFile("none").getFullPathName().toStdString();
    for (const auto& path : {std::string("/dev/zero"), fifo, m_root.getFullPathName().toStdString(), missing, big})
    {
        const auto result = Command::run(LMCOM_MAINSERVICE, {"--carinfo-script", path}, 5000);
        EXPECT_EQ(result.status, 2) << path;
        ASSERT_EQ(result.err.size(), 1u) << path;
        EXPECT_EQ(result.err[0].rfind("MainService: car information script: ", 0), 0u) << result.err[0];
    }

    // Random bytes, lines of any length: each bad line is skipped with a reason that never
    // repeats what the line held, and the service runs.
    std::mt19937 random(74);
    std::string noise;
    for (int i = 0; i < 200000; ++i)
    {
        const auto r = random();
        noise += r % 23 == 0 ? '\n' : r % 3 == 0 ? "0123456789abcdef #"[r % 18] : (char)(r >> 8);
    }
    const auto result = Command::run(LMCOM_MAINSERVICE, {"--run-ms", "100", "--carinfo-script", writeScript(noise)});
    EXPECT_EQ(result.status, 0);
    int skipped = 0;
    for (auto& line : result.out)
    {
        ASSERT_EQ(line.rfind("[main] ", 0), 0u) << line;
        if (line.find("skipped line ") != std::string::npos)
            ++skipped;
        for (unsigned char c : line)
            EXPECT_TRUE(c >= 0x20 && c < 0x7F) << line;
    }
    EXPECT_GT(skipped, 1000);
#endif
}
