// PandoraApi: its info-bar command, its own codes and its answers to the common notifications.
#include "support/ApiHarness.h"

#include "main/applicationapi/PandoraApi.h"

using namespace LmComTesting;

namespace
{
using PandoraApiTest = ApiTest;

class Pandora : public Recorder<PandoraCallBack>
{
public:
    void onPandoraMessage(const AppMessage::Ptr& m, int code) override { log.add("pandora", m, code); }
};
} // namespace

TEST_F(PandoraApiTest, CommandsOwnCodesAndNotifications)
{
    auto* api = PandoraApi::getInstance();
    Pandora pandora;
    api->bindCallBack(&pandora);
    auto media = InfoMedia::obtain();
    media->playState = 1;
    media->inforText = "Thumbprint Radio";
    expectCommands(*api, {{[&] { api->sendToInfoBar(media); },
                           "1184 3 0 {CurNum=0 DiscType=0 FileType=0 InforText='Thumbprint Radio' PlayState=1 "
                           "RefreshFlag=0 SourceID=24 TotalNum=0}"},
                          {[&] { api->sendToInfoBar(nullptr); }, ""}});
    auto rows = messageRows("pandora", {1209, 1579, 1636, 1639, 2526, 48654});
    rows.push_back({1634, 0, 0, nullptr, ""});
    expectIncoming(*api, pandora.log, rows);
    expectCommonNotifications(*api, pandora.log, "notify powerOff command quit", true);
}
