// CameraApi: made with its command and view callbacks; no codes of its own, and its answers to
// the common notifications.
#include "support/ApiHarness.h"

#include "main/applicationapi/CameraApi.h"

using namespace LmComTesting;

using CameraApiTest = ApiTest;

TEST_F(CameraApiTest, CallBacksAndNotifications)
{
    RecordingCallBacks callBacks;
    CameraApi api(&callBacks, &callBacks);
    Recorder<CameraCallBack> callBack;
    api.bindCallBack(&callBack);
    expectConstructorCallBacks(api, callBacks);
    expectCommands(api, {});
    expectIncoming(api, callBack.log, {{1175, 1, 2, nullptr, ""}, {1636, 1, 2, nullptr, ""}});
    expectCommonNotifications(api, callBack.log, "notify state command", true);
}
