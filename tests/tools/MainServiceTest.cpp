// The reference main service (tools/mainservice) with application processes on a private bus.
#include "support/AppPeer.h"
#include "support/ChildProcess.h"

#include <signal.h>
#include <unistd.h>

using namespace LmComTesting;

namespace
{
// Replaces the child with the main service executable; its output goes to the same pipe.
LMCOM_CHILD_ROLE(mainservice)
{
#ifdef LMCOM_MAINSERVICE
    std::vector<std::string> argv{LMCOM_MAINSERVICE};
    argv.insert(argv.end(), args.begin(), args.end());
    std::vector<char*> raw;
    for (auto& arg : argv)
        raw.push_back(const_cast<char*>(arg.c_str()));
    raw.push_back(nullptr);
    execv(raw[0], raw.data());
#endif
    return 127;
}

class MainServiceTest : public LmComTest
{
protected:
    void SetUp() override
    {
        LmComTest::SetUp();
#ifndef LMCOM_MAINSERVICE
        GTEST_SKIP() << "the tools are not built (LMCOM_BUILD_TOOLS=OFF)";
#endif
    }

    static std::string type(Pubhead::eAppType::EnumTypeTag appType)
    {
        return std::to_string(appType);
    }
};
} // namespace

TEST_F(MainServiceTest, RunsConnectionPagesInfoBarAndPowerOffOfItsApplications)
{
    // Two applications wait before the main service exists; the radio has already asked for
    // its page and sent its station.
    ChildProcess radio("app", {type(Pubhead::eAppType::AppRadio), "page=0", "infobar=tuner"});
    ChildProcess menu("app", {type(Pubhead::eAppType::AppMainMenu)});
    ASSERT_TRUE(radio.waitForLine("READY"));
    ASSERT_TRUE(menu.waitForLine("READY"));

    ChildProcess main("mainservice", {"--heartbeat-ms", "200"});
    EXPECT_TRUE(main.waitForLine("-> AppMainMenu: please connect (1744)"));
    EXPECT_TRUE(main.waitForLine("-> AppRadio: please connect (1744)"));
    EXPECT_TRUE(radio.waitForLine("GOT 1744 0 0 handled"));
    EXPECT_TRUE(radio.waitForLine("CONNECTED 1"));
    EXPECT_TRUE(menu.waitForLine("CONNECTED 1"));
    EXPECT_TRUE(main.waitForLine("AppRadio: connect request (1745) -> acknowledged (1746)"));

    // What the radio kept arrives: its page is shown by command line and view message.
    EXPECT_TRUE(main.waitForLine("AppRadio: asks to show page 0 SrvRadio (1724)"));
    EXPECT_TRUE(radio.waitForLine("CB pageshow 0 parking=0 extra=-"));
    EXPECT_TRUE(radio.waitForLine("CB show 0 1725"));
    EXPECT_TRUE(main.waitForLine("AppRadio: info bar (1184) tuner source 0 band 'FM' text '"
                                 + juce::String::fromUTF8("Caf\xc3\xa9 \xe5\x8c\x97\xe4\xba\xac %s").toStdString()
                                 + "' action 255"));

    // Heartbeats go both ways.
    EXPECT_TRUE(radio.waitForLine("GOT 1747 0 0 handled"));
    EXPECT_TRUE(main.waitForLine("AppRadio: heartbeat answered (1748)"));
    EXPECT_TRUE(main.waitForLine("AppMainMenu: heartbeat answered (1748)"));

    // A later application takes the page: the radio hides its page and reports it; its media
    // record reaches the main menu intact.
    ChildProcess usb("app", {type(Pubhead::eAppType::AppUSB), "page=6", "infobar=media"});
    EXPECT_TRUE(usb.waitForLine("CONNECTED 1"));
    EXPECT_TRUE(radio.waitForLine("CB hide 0 1726"));
    EXPECT_TRUE(radio.waitForLine("CB pagehide 0 next=6 extra=-"));
    EXPECT_TRUE(main.waitForLine("AppRadio: page 0 SrvRadio hidden by command line (1730)"));
    EXPECT_TRUE(usb.waitForLine("CB pageshow 6 parking=0 extra=-"));
    EXPECT_TRUE(main.waitForLine("-> AppMainMenu"));
    EXPECT_TRUE(menu.waitForLine("INFOBAR media 7 255 5/0 texts-intact"));

    // Stopping: power-off answered by the default handler, then the applications quit.
    main.kill(SIGTERM);
    EXPECT_TRUE(main.waitForLine("powering off (1203)"));
    EXPECT_TRUE(radio.waitForLine("GOT 1203 5 0 handled"));
    EXPECT_TRUE(main.waitForLine("AppRadio: power-off ready (1204) with 5"));
    EXPECT_TRUE(main.waitForLine("AppUSB: power-off ready (1204) with 6"));
    for (auto* app : {&radio, &menu, &usb})
    {
        EXPECT_TRUE(app->waitForLine("QUIT"));
        EXPECT_EQ(app->waitForExit(), 0);
    }
    EXPECT_TRUE(main.waitForLine("every application has quit"));
    EXPECT_EQ(main.waitForExit(), 0);
}

TEST_F(MainServiceTest, NoticesAnApplicationThatStopsAnsweringAndOneThatIsGone)
{
    ChildProcess main("mainservice", {"--heartbeat-ms", "100", "--missed", "3"});
    ASSERT_TRUE(main.waitForLine("up as 'NavigRecive'"));
    // One main service per bus.
    ChildProcess second("mainservice", {});
    EXPECT_TRUE(second.waitForLine("another main service runs on this bus"));
    EXPECT_EQ(second.waitForExit(), 1);

    // Started after the main service: its own connect request connects it.
    ChildProcess radio("app", {type(Pubhead::eAppType::AppRadio)});
    ASSERT_TRUE(radio.waitForLine("CONNECTED 1"));
    ASSERT_TRUE(main.waitForLine("AppRadio: heartbeat answered (1748)"));

    radio.kill(SIGSTOP);
    EXPECT_TRUE(main.waitForLine("AppRadio: stopped answering heartbeats (3 missed), still alive"));
    radio.kill(SIGCONT);
    EXPECT_TRUE(main.waitForLine("AppRadio: answers heartbeats again"));

    radio.kill(SIGKILL);
    EXPECT_TRUE(main.waitForLine("AppRadio: stopped answering heartbeats (3 missed), its endpoint is gone"));
    main.kill(SIGTERM);
    EXPECT_TRUE(main.waitForLine("powering off (1203) -> nobody"));
    EXPECT_EQ(main.waitForExit(), 0);
}
