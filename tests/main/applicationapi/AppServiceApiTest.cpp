// The application service facade: the instance map, the requests and their codes, and the
// common dispatch of the framework's codes.
#include "support/AppPeer.h"

using namespace LmComTesting;

namespace
{
constexpr auto kRadio = Pubhead::eAppType::AppRadio;
constexpr auto kUSB = Pubhead::eAppType::AppUSB;

using AppServiceApiTest = FrameworkTest;

AppMessage::Ptr message(int code, int param1 = 0, int param2 = 0, juce::ReferenceCountedObject* object = nullptr)
{
    return AppMessage::Ptr(new AppMessage(code, param1, param2, object));
}
} // namespace

TEST_F(AppServiceApiTest, InstanceMapKeepsTheFirstAndErasesByType)
{
    EXPECT_EQ(AppServiceApi::getInstance(), nullptr);
    auto usb = std::make_unique<TestApi>(kUSB, false);
    auto radio = std::make_unique<TestApi>(kRadio, false);
    auto menu = std::make_unique<TestApi>(Pubhead::eAppType::AppMainMenu, false);
    EXPECT_EQ(AppServiceApi::getInstance(), menu.get()); // the smallest type, not the latest
    EXPECT_EQ(AppServiceApi::getInstance(kRadio), radio.get());
    EXPECT_EQ(AppServiceApi::getInstance(Pubhead::eAppType::AppDisc), nullptr);
    {
        TestApi second(kRadio, false);
        TestApi copy(*usb);
        EXPECT_EQ(AppServiceApi::getInstance(kRadio), radio.get()); // the first stays
        EXPECT_EQ(AppServiceApi::getInstance(kUSB), usb.get());
    }
    // Going, the second radio API and the copy erased the entries of the first ones.
    EXPECT_EQ(AppServiceApi::getInstance(kRadio), nullptr);
    EXPECT_EQ(AppServiceApi::getInstance(kUSB), nullptr);
    menu = nullptr;
    EXPECT_EQ(AppServiceApi::getInstance(), nullptr);
}

TEST_F(AppServiceApiTest, RequestsCarryTheirCodesAndWaitForTheConnection)
{
    using Srv = Pubhead::eAppServiceType;
    TestApi api(kRadio, true);
    api.requestPageShow(Srv::SrvRadio2);
    api.onPageShowReady(Srv::SrvRadio3);
    api.onPageHidingReady(Srv::SrvRadio4);
    api.powerOffReady(Srv::SrvRadio5);
    api.systemBeep();
    api.sendGeneralToInfoBar(-3, 70000);
    api.setSettingInt(12, -5);
    api.setSettingString(13, juce::String::fromUTF8("Fr\xc3\xa9quence"));
    ASSERT_TRUE(waitFor(ServiceCode::kConnectRequest, 1));
    loop->runFor(50);
    EXPECT_TRUE(main.requests().empty());

    acknowledge(api);
    api.systemBeep(); // connected: at once
    ASSERT_TRUE(waitFor(ServiceCode::kSystemBeep, 2));
    std::vector<std::tuple<int, int, int, int>> seen;
    for (auto& r : main.requests())
        seen.emplace_back(r.code, r.param1, r.param2, r.sender);
    EXPECT_EQ(seen, (std::vector<std::tuple<int, int, int, int>>{{1724, 2, 0, kRadio},
                                                                 {1728, 52, 0, kRadio},
                                                                 {1729, 53, 0, kRadio},
                                                                 {1204, 54, 0, kRadio},
                                                                 {1137, 0, 0, kRadio},
                                                                 {2248, -3, 70000, kRadio},
                                                                 {1765, 12, 1, kRadio},
                                                                 {1765, 13, 2, kRadio},
                                                                 {1137, 0, 0, kRadio}}));
    EXPECT_EQ(RemoteObjFormat::getInt(main.requests()[6].bundle), -5);
    EXPECT_EQ(RemoteObjFormat::getString(main.requests()[7].bundle), juce::String::fromUTF8("Fr\xc3\xa9quence"));
    EXPECT_EQ(main.requests()[0].bundle, nullptr);
}

TEST_F(AppServiceApiTest, GeneralServiceDispatchesTheCommonCodes)
{
    TestApi api(kRadio, false);
    auto& service = *api.getGeneralService();
    for (auto [code, p1, p2] : {std::tuple{1195, 4, 5},
                                {1202, 0, 0},
                                {1202, -7, 0},
                                {1322, 8, 9},
                                {1194, 10, 0},
                                {1199, 11, 0},
                                {1203, 12, 0}})
        EXPECT_TRUE(service.processMessage(message(code, p1, p2))) << code;
    EXPECT_EQ(api.response().calls,
              (std::vector<std::string>{"onGeneralNotify 4 5", "onStateChanged 0", "onStateChanged 1",
                                        "onGeneralCommand 8 9", "onGeneralEvent 10", "onQuit 11", "onPowerOff 12"}));
    EXPECT_FALSE(service.processMessage(message(1184)));
    EXPECT_FALSE(service.processMessage(message(1748)));
    EXPECT_FALSE(service.processMessage(nullptr));

    // The view: unbound, one error line per code and the message is dropped.
    LogLines::clear();
    for (int code : {1725, 1726, 1727})
        EXPECT_TRUE(service.processMessage(message(code, 3)));
    const std::string unbound = "|AppServiceApi|Please call AppServiceApi::bindViewCallBack first!";
    EXPECT_EQ(LogLines::all(), (std::vector<std::string>{"E|applicationapi/AppServiceApi|48" + unbound,
                                                         "E|applicationapi/AppServiceApi|58" + unbound,
                                                         "E|applicationapi/AppServiceApi|68" + unbound}));
    RecordingCallBacks view;
    api.bindViewCallBack(&view);
    for (int code : {1725, 1726, 1727})
        EXPECT_TRUE(service.processMessage(message(code, code - 1720)));
    api.unbindViewCallBack();
    EXPECT_TRUE(service.processMessage(message(1725, 9)));
    EXPECT_EQ(view.calls, (std::vector<std::string>{"show 5 1725", "hide 6 1726", "notify 7 1727"}));

    // A command line reaches the command handler; any other object reaches nobody.
    api.bindAppCmdCallBack(&view);
    auto show = RemoteObjFormat::formatCommandLine(AppCommandLine::genCmdPageShow({}, true));
    EXPECT_TRUE(service.processMessage(message(1754, 0, 0, AppCommandLine::genCmdPageShow({}, true).get())));
    EXPECT_TRUE(service.processMessage(message(1754)));
    EXPECT_TRUE(service.processMessage(message(1754, 0, 0, show.get())));
    EXPECT_EQ(view.calls.back(), "pageshow 0 parking=1 extra=-");
    EXPECT_EQ(view.calls.size(), 4u);
}

TEST_F(AppServiceApiTest, WithoutAResponseNothingIsHandled)
{
    TestApi api(kRadio, false, false);
    RecordingCallBacks view;
    api.bindViewCallBack(&view); // no response object: nothing to bind to
    for (int code : {1744, 1746, 1747, 1754, 1725, 1203, 1199})
        EXPECT_FALSE(api.getGeneralService()->processMessage(message(code))) << code;
    api.installResponse();
    EXPECT_EQ(api.getGeneralResponse()->getViewCallBack(), nullptr);
}
