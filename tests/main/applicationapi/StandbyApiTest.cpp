// StandbyApi: made with its command and view callbacks; its command, and the common
// notifications left to their defaults.
#include "support/ApiHarness.h"

#include "main/applicationapi/StandbyApi.h"

using namespace LmComTesting;

using StandbyApiTest = ApiTest;

TEST_F(StandbyApiTest, CommandAndDefaultNotifications)
{
    RecordingCallBacks callBacks;
    StandbyApi api(&callBacks, &callBacks);
    expectConstructorCallBacks(api, callBacks);
    expectCommands(api, {{[&] { api.exitStandby(); }, "1142 0 0"}});
    CallLog none;
    expectCommonNotifications(api, none, "", true);
}
