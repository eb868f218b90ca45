// iPodApi: the session opened only on request, its command, its own codes and notifications.
#include "support/ApiHarness.h"

#include "main/applicationapi/iPodApi.h"

using namespace LmComTesting;

namespace
{
using iPodApiTest = ApiTest;

class IPod : public Recorder<iPodCallBack>
{
public:
    void oniPodMessage(const AppMessage::Ptr& m, int code) override { log.add("ipod", m, code); }
};
} // namespace

TEST_F(iPodApiTest, SessionOnRequestCommandsOwnCodesAndNotifications)
{
    auto* api = iPodApi::getInstance();
    EXPECT_EQ(api->getNativeHandle(), nullptr); // no endpoint until the application asks
    IPod ipod;
    api->bindCallBack(&ipod);
    auto media = InfoMedia::obtain();
    media->album = "Blue";
    expectCommands(*api, {{[&] { api->sendToInfoBar(media); },
                           "1184 3 0 {Album='Blue' CurNum=0 DiscType=0 FileType=0 PlayState=255 RefreshFlag=0 "
                           "SourceID=24 TotalNum=0}"},
                          {[&] { api->sendToInfoBar(nullptr); }, ""},
                          {[&] { api->initMsgSession(); }, ""}});
    EXPECT_NE(api->getNativeHandle(), nullptr);
    auto rows = messageRows("ipod", {1176, 1578, 1634, 1636, 1639, 1912, 2525, 48654});
    rows.push_back({1178, 0, 0, nullptr, ""});
    expectIncoming(*api, ipod.log, rows);
    expectCommonNotifications(*api, ipod.log, "notify powerOff state command", true);
}
