// RadioApi: its command, its own codes, its answers to the common notifications, its copies.
#include "support/ApiHarness.h"

#include "main/applicationapi/RadioApi.h"

#include <signal.h>

using namespace LmComTesting;

namespace
{
using RadioApiTest = ApiTest;

class Radio : public Recorder<RadioCallBack>
{
public:
    void onRadioMessage(const AppMessage::Ptr& m, int code) override { log.add("radio", m, code); }
};
} // namespace

TEST_F(RadioApiTest, CommandsOwnCodesAndNotifications)
{
    auto* api = RadioApi::getInstance();
    ASSERT_EQ(api, RadioApi::getInstance());
    EXPECT_EQ(AppServiceApi::getInstance(Pubhead::eAppType::AppRadio), api);
    Radio radio;
    expectIncoming(*api, radio.log, {{1175, 1, 2, nullptr, ""}}); // unbound: dropped
    api->bindCallBack(&radio);

    auto tuner = InfoTuner::obtain();
    tuner->sourceID = 0;
    tuner->bandText = "FM";
    tuner->inforText = juce::String::fromUTF8("Caf\xc3\xa9 101.1");
    expectCommands(*api, {{[&] { api->sendToInfoBar(tuner); },
                           "1184 1 0 {Action=255 BandText='FM' InforText='Caf\xc3\xa9 101.1' SourceID=0}"},
                          {[&] { api->sendToInfoBar(nullptr); }, ""}});

    expectIncoming(*api, radio.log,
                   {{74, 1, 2, dataBundle({1, 0xff}), "radio msg 74 1 2 {data=[01 FF]} 74"},
                    {1175, -1, 0, nullptr, "radio msg 1175 -1 0 none 1175"},
                    {1323, 0, 0, new juce::DynamicObject(), "radio msg 1323 0 0 object 1323"},
                    {1328, 0, 7, nullptr, "radio msg 1328 0 7 none 1328"},
                    {1636, 5, 6, ParcelableArray::obtain().get(), "radio msg 1636 5 6 ParcelableArray 1636"},
                    {1176, 0, 0, nullptr, ""}});
    expectCommonNotifications(*api, radio.log, "notify powerOff command quit", true);

    // A copy has its own response object and the same callbacks; assignment takes them over.
    RadioApi copy(*api);
    expectIncoming(copy, radio.log,
                   {{1195, 1, 1, nullptr, "notify 1 1"}, {1175, 0, 0, nullptr, "radio msg 1175 0 0 none 1175"}});
    api->bindCallBack(nullptr);
    copy = *api;
    expectIncoming(copy, radio.log, {{1195, 1, 1, nullptr, ""}});
}

TEST_F(ApiProcessTest, RadioAgainstTheReferenceMainService)
{
    ChildProcess main("mainservice", {"--heartbeat-ms", "200"});
    ASSERT_TRUE(main.waitForLine("up as"));
    ChildProcess radio("api", {"Radio"});
    ASSERT_TRUE(radio.waitForLine("READY"));
    EXPECT_TRUE(
        main.waitForLine("AppRadio: info bar (1184) tuner source 0 band 'FM' text '" + title() + "' action 255"));

    auto data = dataBundle({0x10, 0x00, 0xff});
    post(Pubhead::eAppType::AppRadio, 1175, 1, -2, data.get());
    post(Pubhead::eAppType::AppRadio, 74, 3, 4);
    EXPECT_TRUE(radio.waitForLine("CB radio msg 1175 1 -2 {data=[10 00 FF]} 1175"));
    EXPECT_TRUE(radio.waitForLine("CB radio msg 74 3 4 none 74"));

    // Power-off reaches the callback and is answered; quit reaches it and ends the process.
    main.kill(SIGTERM);
    EXPECT_TRUE(radio.waitForLine("CB powerOff 5"));
    EXPECT_TRUE(main.waitForLine("AppRadio: power-off ready (1204) with 5"));
    EXPECT_TRUE(radio.waitForLine("CB quit msg 1199"));
    EXPECT_TRUE(radio.waitForLine("QUIT"));
    EXPECT_EQ(radio.waitForExit(), 0);
    EXPECT_EQ(main.waitForExit(), 0);
}
