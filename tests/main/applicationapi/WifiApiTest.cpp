// WifiApi: a singleton with no codes of its own, and its answers to the common notifications.
#include "support/ApiHarness.h"

#include "main/applicationapi/WifiApi.h"

using namespace LmComTesting;

using WifiApiTest = ApiTest;

TEST_F(WifiApiTest, Notifications)
{
    auto* api = WifiApi::getInstance();
    Recorder<WifiCallBack> wifi;
    api->bindCallBack(&wifi);
    expectCommands(*api, {});
    expectIncoming(*api, wifi.log, {{1175, 1, 2, nullptr, ""}});
    expectCommonNotifications(*api, wifi.log, "notify state command", true);
}
