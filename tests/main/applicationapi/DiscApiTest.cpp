// DiscApi: its command, the payloads it decodes for its two callbacks, the power-off request
// that it leaves unanswered, and payloads of another kind.
#include "support/ApiHarness.h"

#include "main/applicationapi/DiscApi.h"

using namespace LmComTesting;

namespace
{
using DiscApiTest = ApiTest;

class Disc : public Recorder<DiscCallBack>, public DiscSetupDataCallBack
{
public:
    void onDiscMessage(const AppMessage::Ptr& m, int code) override { log.add("disc", m, code); }
    void onDiscState(int p1, int p2) override { log.add("state", p1, p2); }
    void onDiscData(int p1, const juce::MemoryBlock& data) override { log.add("data", p1, data); }
    void onDiscInfo(const InfoMedia::Ptr& info) override { log.add("info", info->title, info->curNum); }
    void onDiscText(int p1, const juce::String& text) override { log.add("text", p1, text); }
    void onSetupValue(int id, int value) override { log.add("value", id, value); }
    void onSetupText(int id, const juce::String& text) override { log.add("setupText", id, text); }
    void onGeneralEvent(int p1) override { log.add("event", p1); }
    void onSetupData(int id, const juce::MemoryBlock& data) override { log.add("setupData", id, data); }
};
} // namespace

TEST_F(DiscApiTest, CommandsDecodedPayloadsAndNotifications)
{
    auto* api = DiscApi::getInstance();
    Disc disc;
    api->bindCallBack(&disc);
    api->bindSetupDataCallBack(&disc);
    auto media = InfoMedia::obtain();
    media->discType = 2;
    expectCommands(*api,
                   {{[&] { api->sendToInfoBar(media); },
                     "1184 3 0 {CurNum=0 DiscType=2 FileType=0 PlayState=255 RefreshFlag=0 SourceID=24 TotalNum=0}"},
                    {[&] { api->sendToInfoBar(nullptr); }, ""}});

    auto info = InfoMedia::obtain();
    info->title = "Track 3";
    info->curNum = 3;
    const unsigned char bytes[] = {0, 0x80};
    expectIncoming(*api, disc.log,
                   {{1179, 1, 2, nullptr, "disc msg 1179 1 2 none 1179"},
                    {1634, 3, 4, nullptr, "state 3 4"},
                    {1636, 5, 0, dataBundle({7, 8}), "data 5 [07 08]"},
                    {1639, 0, 0, info->enBundle(), "info 'Track 3' 3"},
                    {1639, 0, 0, Bundle::obtain().get(), "info '' 0"},
                    {1640, 6, 0, RemoteObjFormat::formatString("Kind of Blue"), "text 6 'Kind of Blue'"},
                    {1185, 7, 0, RemoteObjFormat::formatInt(-1), "value 7 -1"},
                    {1185, 8, 0, RemoteObjFormat::formatString(""), "setupText 8 ''"},
                    {1185, 9, 0, RemoteObjFormat::formatByteArray(bytes, 2), "setupData 9 [00 80]"},
                    {1178, 0, 0, nullptr, ""}});
    // 1203 reaches the callback and is not answered.
    expectCommonNotifications(*api, disc.log, "notify powerOff command event", false);

    // Payloads of another kind reach no callback.
    expectHostileDropped(*api, disc.log, {1636, 1640});
    expectHostileDropped(*api, disc.log, {1639, 1185}, 0, false);
    const int two[] = {1, 2};
    expectIncoming(*api, disc.log,
                   {{1185, 1, 0, RemoteObjFormat::formatIntArray(two, 2), ""},
                    {1185, 1, 0, dataBundle({1}), ""},
                    {1640, 1, 0, RemoteObjFormat::formatInt(4), ""}});
}

TEST_F(DiscApiTest, OperationsWithEmptyBodiesNeedNoOverride)
{
    struct Minimal : Recorder<DiscCallBack>
    {
        void onDiscMessage(const AppMessage::Ptr&, int) override {}
        void onDiscState(int, int) override {}
        void onDiscData(int, const juce::MemoryBlock&) override {}
    } minimal;
    auto* api = DiscApi::getInstance();
    api->bindCallBack(&minimal);
    expectIncoming(*api, minimal.log,
                   {{1639, 0, 0, Bundle::obtain().get(), ""}, {1640, 6, 0, RemoteObjFormat::formatString("x"), ""}});
}
