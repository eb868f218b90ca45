// AuxInApi: made with its command and view callbacks; no codes of its own, and its answers to
// the common notifications.
#include "support/ApiHarness.h"

#include "main/applicationapi/AuxInApi.h"

using namespace LmComTesting;

using AuxInApiTest = ApiTest;

TEST_F(AuxInApiTest, CallBacksAndNotifications)
{
    RecordingCallBacks callBacks;
    AuxInApi api(&callBacks, &callBacks);
    Recorder<AuxInCallBack> callBack;
    api.bindCallBack(&callBack);
    expectConstructorCallBacks(api, callBacks);
    expectCommands(api, {});
    expectIncoming(api, callBack.log, {{1175, 1, 2, nullptr, ""}, {1636, 1, 2, nullptr, ""}});
    expectCommonNotifications(api, callBack.log, "notify state command", true);
}
