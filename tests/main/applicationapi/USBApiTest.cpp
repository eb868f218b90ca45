// USBApi: its info-bar command (with the source rewrite), its own codes and notifications.
#include "support/ApiHarness.h"

#include "main/applicationapi/USBApi.h"

#include <signal.h>

using namespace LmComTesting;

namespace
{
using USBApiTest = ApiTest;

class USB : public Recorder<USBCallBack>
{
public:
    void onUSBMessage(const AppMessage::Ptr& m, int code) override { log.add("usb", m, code); }
};
} // namespace

TEST_F(USBApiTest, CommandsOwnCodesAndNotifications)
{
    auto* api = USBApi::getInstance();
    USB usb;
    api->bindCallBack(&usb);

    auto media = InfoMedia::obtain();
    media->sourceID = 3;
    media->curNum = 4;
    media->title = "So What";
    const std::string fields = "CurNum=4 DiscType=0 FileType=0 PlayState=255 RefreshFlag=0 SourceID=";
    expectCommands(
        *api, {{[&] { api->sendToInfoBar(media, false); }, "1184 3 0 {" + fields + "7 Title='So What' TotalNum=0}"},
               {[&] { api->sendToInfoBar(media, true); }, "1184 3 0 {" + fields + "10 Title='So What' TotalNum=0}"},
               {[&] { api->sendToInfoBar(nullptr, true); }, ""}});
    EXPECT_EQ(media->sourceID, 10); // the caller's record, rewritten in place

    expectIncoming(*api, usb.log,
                   {{1178, 1, 2, dataBundle({9}), "usb msg 1178 1 2 {data=[09]} 1178"},
                    {1634, 0, 0, nullptr, "usb msg 1634 0 0 none 1634"},
                    {1636, 0, 0, RemoteMessage::obtain().get(), "usb msg 1636 0 0 RemoteMessage 1636"},
                    {1639, -5, 5, nullptr, "usb msg 1639 -5 5 none 1639"},
                    {1175, 0, 0, nullptr, ""}});
    expectCommonNotifications(*api, usb.log, "notify powerOff command quit", true);
}

TEST_F(ApiProcessTest, USBAgainstTheReferenceMainService)
{
    ChildProcess main("mainservice", {"--heartbeat-ms", "200"});
    ASSERT_TRUE(main.waitForLine("up as"));
    ChildProcess usb("api", {"USB"});
    ASSERT_TRUE(usb.waitForLine("READY"));
    EXPECT_TRUE(main.waitForLine("AppUSB: info bar (1184) media source 10 state 255 track 5/0 title '" + title()
                                 + "' artist ''"));

    auto info = InfoMedia::obtain();
    info->artist = "Coltrane";
    post(Pubhead::eAppType::AppUSB, 1639, 2, 0, info->enBundle().get());
    EXPECT_TRUE(usb.waitForLine("CB usb msg 1639 2 0 {Artist='Coltrane' CurNum=0 DiscType=0 FileType=0 PlayState=255 "
                                "RefreshFlag=0 SourceID=24 TotalNum=0} 1639"));
    main.kill(SIGTERM);
    EXPECT_TRUE(usb.waitForLine("CB powerOff 6"));
    EXPECT_TRUE(main.waitForLine("AppUSB: power-off ready (1204) with 6"));
    EXPECT_TRUE(usb.waitForLine("QUIT"));
    EXPECT_EQ(usb.waitForExit(), 0);
    EXPECT_EQ(main.waitForExit(), 0);
}
