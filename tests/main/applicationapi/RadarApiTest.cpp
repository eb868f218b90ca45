// RadarApi: made with its command and view callbacks; no codes of its own, and its answers to
// the common notifications.
#include "support/ApiHarness.h"

#include "main/applicationapi/RadarApi.h"

using namespace LmComTesting;

using RadarApiTest = ApiTest;

TEST_F(RadarApiTest, CallBacksAndNotifications)
{
    RecordingCallBacks callBacks;
    RadarApi api(&callBacks, &callBacks);
    Recorder<RadarCallBack> callBack;
    api.bindCallBack(&callBack);
    expectConstructorCallBacks(api, callBacks);
    expectCommands(api, {});
    expectIncoming(api, callBack.log, {{1175, 1, 2, nullptr, ""}, {1636, 1, 2, nullptr, ""}});
    expectCommonNotifications(api, callBack.log, "command", true);
}
