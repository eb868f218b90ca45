// DVBTApi: its two commands, the code 1181 it swallows, and its answers to the notifications.
#include "support/ApiHarness.h"

#include "main/applicationapi/DVBTApi.h"

using namespace LmComTesting;

namespace
{
using DVBTApiTest = ApiTest;

class DVBT : public Recorder<DVBTCallBack>
{
public:
    void onDVBTMessage(const AppMessage::Ptr& m, int code) override { log.add("dvbt", m, code); }
};
} // namespace

TEST_F(DVBTApiTest, CommandsSwallowedCodeAndNotifications)
{
    auto* api = DVBTApi::getInstance();
    DVBT dvbt;
    api->bindCallBack(&dvbt);
    const unsigned char bytes[] = {0xde, 0xad, 0x00};
    expectCommands(*api, {{[&] { api->sendConnectState(true); }, "1129 0 1"},
                          {[&] { api->sendConnectState(false); }, "1129 0 0"},
                          {[&] { api->sendCommand(bytes, 3); }, "1129 1 3 {data=[DE AD 00]}"},
                          {[&] { api->sendCommand(bytes, 0); }, "1129 1 0 {}"},
                          {[&] { api->sendCommand(nullptr, 2); }, ""},
                          {[&] { api->sendCommand(bytes, -1); }, ""}});
    expectIncoming(*api, dvbt.log, {{1181, 1, 2, dataBundle({1}), ""}, {1181, 0, 0, nullptr, ""}});
    expectCommonNotifications(*api, dvbt.log, "notify powerOff command", true);
}
