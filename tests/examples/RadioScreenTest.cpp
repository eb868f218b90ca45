// The radio screen example (examples/RadioScreen) as a program on the test's bus; the test
// plays the main service.
#include "support/AppPeer.h"
#include "support/Command.h"

using namespace LmComTesting;

namespace
{
class RadioScreenTest : public FrameworkTest
{
protected:
    void SetUp() override
    {
        FrameworkTest::SetUp();
#ifndef LMCOM_RADIOSCREEN
        GTEST_SKIP() << "the examples are not built (LMCOM_BUILD_TOOLS=OFF)";
#endif
    }
};
} // namespace

TEST_F(RadioScreenTest, RadioCallbacksDriveTheStationProxyAndTheScreen)
{
#ifdef LMCOM_RADIOSCREEN
    Command radio(LMCOM_RADIOSCREEN, {}, false);
    ASSERT_TRUE(radio.waitForLine("[radio] ready"));
    ASSERT_TRUE(waitFor(ServiceCode::kConnectRequest, 1));
    postToApp(Pubhead::eAppType::AppRadio, ServiceCode::kConnectAck, 0, 0);

    auto station = Bundle::obtain();
    station->putString("Band", "FM");
    station->putString("Frequency", "101.1 MHz");
    station->putString("Name", "Radio 1");
    postToApp(Pubhead::eAppType::AppRadio, 1175, 0, 0, station.get());
    EXPECT_TRUE(radio.waitForLine("[radio] screen shows FM 101.1 MHz \"Radio 1\"; info bar (1184)"));
    ASSERT_TRUE(waitFor(ServiceCode::kInfoBar, 1));
    const auto requests = main.requests();
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_EQ(requests[0].param1, ServiceCode::kInfoBarTuner);
    EXPECT_EQ(InfoTuner::deBundle(requests[0].bundle)->inforText, "101.1 MHz");

    postToApp(Pubhead::eAppType::AppRadio, 1323, 0, 0); // another radio code: not the screen's
    EXPECT_TRUE(radio.waitForLine("[radio] radio code 1323 is not for the screen"));
    postToApp(Pubhead::eAppType::AppRadio, ServiceCode::kPowerOff, 31, 0);
    EXPECT_TRUE(radio.waitForLine("[radio] screen: power-off, the station is kept"));
    EXPECT_TRUE(waitFor(ServiceCode::kPowerOffReady, 1));
    postToApp(Pubhead::eAppType::AppRadio, ServiceCode::kQuit, 0, 0);
    ASSERT_EQ(radio.waitForExit(), 0);

    const std::vector<std::string> expected{"[radio] screen: registered in core 'radio'",
                                            "[radio] ready, waiting for the main service",
                                            "[radio] screen shows FM 101.1 MHz \"Radio 1\"; info bar (1184)",
                                            "[radio] radio code 1323 is not for the screen",
                                            "[radio] screen: power-off, the station is kept",
                                            "[radio] screen: closing",
                                            "[radio] screen: removed",
                                            "[radio] stopped"};
    EXPECT_EQ(radio.out(), expected);
#endif
}
