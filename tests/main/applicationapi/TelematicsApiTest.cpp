// TelematicsApi: its five commands, the bytes of code 1208 and its answers to the notifications.
#include "support/ApiHarness.h"

#include "main/applicationapi/TelematicsApi.h"

using namespace LmComTesting;

namespace
{
using TelematicsApiTest = ApiTest;

class Telematics : public Recorder<TelematicsCallBack>
{
public:
    void onTelematicsData(const unsigned char* data, int length) override
    {
        log.add("data", juce::MemoryBlock(data, (size_t)length), length);
    }
};
} // namespace

TEST_F(TelematicsApiTest, CommandsBytesAndNotifications)
{
    auto* api = TelematicsApi::getInstance();
    Telematics telematics;
    api->bindCallBack(&telematics);
    expectCommands(*api, {{[&] { api->callIn(); }, "1151 0 0"},
                          {[&] { api->hangup(); }, "1151 1 0"},
                          {[&] { api->showNavi(); }, "1151 2 0"},
                          {[&] { api->recvNewInboxInfoMsg(true); }, "1151 3 1"},
                          {[&] { api->recvNewInboxInfoMsg(false); }, "1151 3 0"},
                          {[&] { api->recvNewInfoMsg(true); }, "1151 4 1"},
                          {[&] { api->recvNewInfoMsg(false); }, "1151 4 0"}});
    expectIncoming(*api, telematics.log,
                   {{1208, 0, 9, dataBundle({1, 2, 3}), "data [01 02 03] 3"},
                    {1208, 0, 0, dataBundle({}), "data [] 0"},
                    {1208, 1, 0, dataBundle({1}), ""},
                    {1208, -1, 0, nullptr, ""}});
    LogLines::clear();
    expectHostileDropped(*api, telematics.log, {1208});
    EXPECT_EQ(LogLines::all().size(), 8u);
    EXPECT_NE(LogLines::all().front().find("|TelematicsApi|code 1208 dropped: no bytes under \"data\""),
              std::string::npos);
    expectCommonNotifications(*api, telematics.log, "notify powerOff command", true);
}
