// SystemHelper as the main service receives it: plain window messages at its endpoint.
#include "support/ChildProcess.h"
#include "support/Command.h"
#include "support/Peer.h"
#include "support/TestSupport.h"

#include "Utils/SystemHelper.h"

using namespace LmComTesting;

namespace
{
struct Operation
{
    const char* name;
    void (*call)();
    int msg, wParam, lParam;
};

const Operation kOperations[] = {
    {"beep", &SystemHelper::beep, 1137, 0, 0},
    {"showEQ", &SystemHelper::showEQ, 1766, 0, 0},
    {"hideEQ", &SystemHelper::hideEQ, 1767, 0, 0},
    {"sendTACancel", &SystemHelper::sendTACancel, 1133, 1, 0},
    {"sendFRSwitch", &SystemHelper::sendFRSwitch, 1133, 2, 0},
    {"sendGuide", &SystemHelper::sendGuide, 1133, 3, 0},
    {"showMenu", &SystemHelper::showMenu, 1133, 4, 0},
    {"showBluetooth", &SystemHelper::showBluetooth, 1133, 5, 0},
    {"showMaintenance", &SystemHelper::showMaintenance, 1133, 6, 0},
    {"showTPMS", &SystemHelper::showTPMS, 1133, 7, 0},
    {"showTelematicsInfo", &SystemHelper::showTelematicsInfo, 1133, 8, 0},
    {"showTelematicsInbox", &SystemHelper::showTelematicsInbox, 1133, 9, 0},
    {"enterStandby", &SystemHelper::enterStandby, 1133, 10, 0},
    {"showCurrSource", &SystemHelper::showCurrSource, 1133, 11, 0},
    {"MarineRotaryNext", &SystemHelper::MarineRotaryNext, 1133, 12, 0},
    {"MarineRotaryPre", &SystemHelper::MarineRotaryPre, 1133, 12, 1},
    {"MarineRotaryEnter", &SystemHelper::MarineRotaryEnter, 1133, 12, 2},
    {"MarineshowMenu", &SystemHelper::MarineshowMenu, 1133, 12, 3},
    {"MarineBack", &SystemHelper::MarineBack, 1133, 12, 4},
    {"Mute", &SystemHelper::Mute, 1133, 12, 5},
    {"MarineShowZone2Volume", &SystemHelper::MarineShowZone2Volume, 1133, 12, 6},
};

// An application (the setup) that calls the named operations ("all": every one), then prints
// its log lines. With "noconfig" first, it never configures its messaging.
LMCOM_CHILD_ROLE(systemHelper)
{
    size_t first = 0;
    if (!args.empty() && args[0] == "noconfig")
        ++first;
    else
        IPCMsg::MessageHelper::config(Pubhead::eAppType::AppSetup, getDestName);
    for (size_t i = first; i < args.size(); ++i)
        for (auto& operation : kOperations)
            if (args[i] == "all" || args[i] == operation.name)
                operation.call();
    for (auto& line : LogLines::all())
        say("LOG %s", line.c_str());
    say("DONE");
    return 0;
}

class SystemHelperTest : public LmComTest
{
protected:
    void openMain()
    {
        IPCMsg::MessageHelper::config(Pubhead::eAppType::AppMain, getDestName);
        session = std::make_unique<MsgSession>();
        ASSERT_TRUE(session->init(&main));
    }
    void TearDown() override
    {
        session.reset();
        LmComTest::TearDown();
    }

    MessageLoop loop;
    RecordingProc main;
    std::unique_ptr<MsgSession> session;
};
} // namespace

TEST_F(SystemHelperTest, TheMainServiceReceivesEachOperationAsItsWindowMessage)
{
    openMain();
    ChildProcess app("systemHelper", {"all"});
    ASSERT_TRUE(loop.runUntil([&] { return main.seen.size() >= std::size(kOperations); }));
    EXPECT_TRUE(app.waitForLine("DONE"));
    ASSERT_EQ(main.seen.size(), std::size(kOperations));
    for (size_t i = 0; i < std::size(kOperations); ++i)
    {
        const auto& seen = main.seen[i];
        const auto& expected = kOperations[i];
        EXPECT_FALSE(seen.own) << expected.name;
        EXPECT_EQ(std::make_tuple(seen.code, seen.param1, seen.param2),
                  std::make_tuple(expected.msg, expected.wParam, expected.lParam))
            << expected.name;
    }
    // The marine keys log first, MarineShowZone2Volume under the text "Mute".
    const std::vector<std::string> logs(app.lines().begin(), app.lines().end() - 1);
    EXPECT_EQ(logs, (std::vector<std::string>{"LOG I|Utils/SystemHelper_win32|98|SystemHelper|MarineRotaryNext",
                                              "LOG I|Utils/SystemHelper_win32|104|SystemHelper|MarineRotaryPre",
                                              "LOG I|Utils/SystemHelper_win32|110|SystemHelper|MarineRotaryEnter",
                                              "LOG I|Utils/SystemHelper_win32|116|SystemHelper|MarineshowMenu",
                                              "LOG I|Utils/SystemHelper_win32|122|SystemHelper|MarineBack",
                                              "LOG I|Utils/SystemHelper_win32|129|SystemHelper|Mute",
                                              "LOG I|Utils/SystemHelper_win32|134|SystemHelper|Mute"}));

    // Without its messaging configured an application finds no main service: nothing arrives.
    ChildProcess lost("systemHelper", {"noconfig", "beep", "showMenu"});
    EXPECT_TRUE(lost.waitForLine("DONE"));
    loop.runFor(200);
    EXPECT_EQ(main.seen.size(), std::size(kOperations));
}

TEST_F(SystemHelperTest, AMainServiceThatRestartedIsFoundAgain)
{
    openMain();
    SystemHelper::beep();
    ASSERT_TRUE(loop.runUntil([&] { return main.seen.size() == 1; }));
    session.reset();
    SystemHelper::beep(); // nobody there
    openMain();
    SystemHelper::showEQ();
    ASSERT_TRUE(loop.runUntil([&] { return main.seen.size() == 2; }));
    EXPECT_EQ(main.seen[1].code, 1766);
}

TEST_F(SystemHelperTest, TheReferenceMainServicePrintsThemByName)
{
#ifndef LMCOM_MAINSERVICE
    GTEST_SKIP() << "the tools are not built (LMCOM_BUILD_TOOLS=OFF)";
#else
    Command service(LMCOM_MAINSERVICE, {"--heartbeat-ms", "60000"});
    ASSERT_TRUE(service.waitForLine("[main] up as"));
    ChildProcess app("systemHelper", {"beep", "showEQ", "showMenu", "enterStandby", "MarineShowZone2Volume"});
    EXPECT_TRUE(app.waitForLine("DONE"));
    for (const char* line : {"[main] window message 1137: beep", "[main] window message 1766: show EQ",
                             "[main] window message 1133 4: show menu", "[main] window message 1133 10: enter standby",
                             "[main] window message 1133 12 6: marine show zone 2 volume"})
        EXPECT_TRUE(service.waitForLine(line)) << line;
    for (auto& line : service.out())
        EXPECT_EQ(line.find("fails its checks"), std::string::npos) << line;
#endif
}
