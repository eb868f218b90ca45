// HDMIApi: its two codes (1224 also goes on to the common dispatch) and its one override.
#include "support/ApiHarness.h"

#include "main/applicationapi/HDMIApi.h"

using namespace LmComTesting;

namespace
{
using HDMIApiTest = ApiTest;

class HDMI : public Recorder<HDMICallBack>
{
public:
    void onHDMISignal(int p1, int p2) override { log.add("signal", p1, p2); }
    void onHDMIState(int p1, int p2) override { log.add("hdmiState", p1, p2); }
};
} // namespace

TEST_F(HDMIApiTest, OwnCodesAndNotifications)
{
    auto* api = HDMIApi::getInstance();
    HDMI hdmi;
    expectIncoming(*api, hdmi.log, {{2425, 1, 2, nullptr, ""}});
    api->bindCallBack(&hdmi);
    expectCommands(*api, {});
    expectIncoming(*api, hdmi.log, {{2425, 1, 2, nullptr, "signal 1 2"}, {1224, 3, 4, nullptr, "hdmiState 3 4"}});
    expectCommonNotifications(*api, hdmi.log, "command", true);
}
