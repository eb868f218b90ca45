// HDRadioApi: its info-bar command, code 1032 and its answers to the common notifications.
#include "support/ApiHarness.h"

#include "main/applicationapi/HDRadioApi.h"

using namespace LmComTesting;

namespace
{
using HDRadioApiTest = ApiTest;

class HDRadio : public Recorder<HDRadioCallBack>
{
public:
    void onHDRadioEvent(int p1, int code) override { log.add("hd", p1, code); }
};
} // namespace

TEST_F(HDRadioApiTest, CommandsOwnCodesAndNotifications)
{
    auto* api = HDRadioApi::getInstance();
    HDRadio hd;
    api->bindCallBack(&hd);
    auto tuner = InfoTuner::obtain();
    tuner->inforText = "HD2 98.7";
    expectCommands(*api,
                   {{[&] { api->sendToInfoBar(tuner); }, "1184 1 0 {Action=255 InforText='HD2 98.7' SourceID=24}"},
                    {[&] { api->sendToInfoBar(nullptr); }, ""}});
    expectIncoming(*api, hd.log, {{1032, 4, 5, nullptr, "hd 4 1032"}, {1175, 0, 0, nullptr, ""}});
    expectCommonNotifications(*api, hd.log, "notify powerOff command quit", true);
}
