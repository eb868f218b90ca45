// SiriusApi: its info-bar command, its own codes and its answers to the common notifications.
#include "support/ApiHarness.h"

#include "main/applicationapi/SiriusApi.h"

using namespace LmComTesting;

namespace
{
using SiriusApiTest = ApiTest;

class Sirius : public Recorder<SiriusCallBack>
{
public:
    void onSiriusMessage(const AppMessage::Ptr& m, int code) override { log.add("sirius", m, code); }
};
} // namespace

TEST_F(SiriusApiTest, CommandsOwnCodesAndNotifications)
{
    auto* api = SiriusApi::getInstance();
    Sirius sirius;
    api->bindCallBack(&sirius);
    auto channel = InfoSatRadio::obtain();
    channel->channelName = "Jazz";
    expectCommands(
        *api, {{[&] { api->sendToInfoBar(channel); }, "1184 2 0 {Artist='' ChannelName='Jazz' SourceID=24 Title=''}"},
               {[&] { api->sendToInfoBar(nullptr); }, ""}});
    auto rows = messageRows("sirius", {1180, 1636});
    rows.push_back({1639, 0, 0, nullptr, ""});
    expectIncoming(*api, sirius.log, rows);
    expectCommonNotifications(*api, sirius.log, "notify powerOff command event", true);
}
