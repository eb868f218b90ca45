// DABApi: made with its callbacks; its command, code 48684 and its one override.
#include "support/ApiHarness.h"

#include "main/applicationapi/DABApi.h"

using namespace LmComTesting;

namespace
{
using DABApiTest = ApiTest;

class DAB : public Recorder<DABCallBack>
{
public:
    void onDABMessage(const AppMessage::Ptr& m, int code) override { log.add("dab", m, code); }
};
} // namespace

TEST_F(DABApiTest, CommandsOwnCodeAndNotifications)
{
    RecordingCallBacks callBacks;
    DABApi api(&callBacks, &callBacks);
    DAB dab;
    api.bindCallBack(&dab);
    expectConstructorCallBacks(api, callBacks);
    expectCommands(api, {{[&] { api.postMsgToMain(7u, 9L); }, "48676 7 9"},
                         {[&] { api.postMsgToMain(0xffffffffu, (1L << 33) + 3); }, "48676 -1 3"}});
    expectIncoming(api, dab.log, messageRows("dab", {48684}));
    expectCommonNotifications(api, dab.log, "command", true);
}
