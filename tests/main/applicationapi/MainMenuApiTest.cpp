// MainMenuApi: its six commands, every sub-code of 1174 with its double call and packed value,
// and its answers to the notifications.
#include "support/ApiHarness.h"

#include "main/applicationapi/MainMenuApi.h"

using namespace LmComTesting;

namespace
{
using MainMenuApiTest = ApiTest;

class MainMenu : public Recorder<MainMenuCallBack>
{
public:
    void onSource(int source) override { log.add("source", source); }
    void onFrontSource(int source) override { log.add("front", source); }
    void onSourceFlag(int value, bool flag) override { log.add("flag", value, flag); }
    void onSourceStates(const unsigned char* states, int size) override
    {
        log.add("states", juce::MemoryBlock(states, (size_t)size), size);
    }
    void onInfoSource(const InfoSource::Ptr& info) override
    {
        log.add("info", info->sourceID, info->inforText1, info->inforText3);
    }
    void onMenuValue(int value) override { log.add("value", value); }
    void onAppList(const unsigned char* data, int size, int time) override
    {
        log.add("apps", juce::MemoryBlock(data, (size_t)size), size, time);
    }
    void onMenuEvent() override { log.add("menuEvent"); }
};

Bundle::Ptr sources(std::initializer_list<std::pair<const char*, int>> values, bool withStates)
{
    auto bundle = Bundle::obtain();
    if (withStates)
    {
        const unsigned char states[] = {1, 0, 2};
        bundle->putByteArray("state", states, 3);
    }
    for (auto& [key, value] : values)
        bundle->putInt(key, value);
    return bundle;
}
} // namespace

TEST_F(MainMenuApiTest, CommandsSubCodesAndNotifications)
{
    RecordingCallBacks callBacks;
    MainMenu menu;
    MainMenuApi api(&callBacks, &callBacks, &menu);
    expectConstructorCallBacks(api, callBacks);
    expectCommands(api, {{[&] { api.launchAndroidApp(Pubhead::eAppServiceType::SrvUSB); }, "1125 4 6"},
                         {[&] { api.launchCarApp(Pubhead::eAppServiceType::SrvCarInfo); }, "1125 5 36"},
                         {[&] { api.getAppState(); }, "1125 6 0"},
                         {[&] { api.enterStandby(); }, "1125 8 0"},
                         {[&] { api.setTemporaryDimmer(); }, "1125 10 0"},
                         {[&] { api.FouceCarApp(Pubhead::eAppServiceType::SrvRadar); }, "1125 11 35"}});

    auto info = InfoSource::obtain();
    info->sourceID = 12;
    info->inforText1 = "Line 1";
    info->inforText3 = "Line 3";
    auto apps = dataBundle({0x0A, 0x0B});
    apps->putInt("time", 30);
    expectIncoming(api, menu.log,
                   {{1174, 1, 7, nullptr, "source 7"},
                    // normalSrc and rearSrc both go to onSource, the rear one last.
                    {1174, 2, 0, sources({{"normalSrc", 3}, {"rearSrc", 4}, {"frontSrc", 5}}, true),
                     "states [01 00 02] 3; source 3; source 4; front 5"},
                    {1174, 2, 0, sources({{"rearSrc", -4}}, false), "source 0; source -4; front 0"},
                    {1174, 2, 0, nullptr, ""},
                    {1174, 3, 5 * 65536, nullptr, "flag 5 false"},
                    {1174, 3, 5 * 65536 + 1, nullptr, "flag 5 true"},
                    {1174, 3, (int)0xFFFF0001, nullptr, "flag -1 true"},
                    {1174, 3, (int)0x80008000, nullptr, "flag -32768 true"},
                    {1174, 3, 0xFFFF, nullptr, "flag 0 true"},
                    {1174, 4, 9, nullptr, "value 9"},
                    {1174, 5, 9, nullptr, "menuEvent"},
                    {1174, 6, 9, sources({{"normalSrc", 3}}, true), ""},
                    {1174, 7, 0, info->enBundle(), "info 12 'Line 1' 'Line 3'"},
                    {1174, 7, 0, nullptr, ""},
                    {1174, 8, 6, nullptr, "front 6"},
                    {1174, 9, 0, apps, "apps [0A 0B] 2 30"},
                    {1174, 9, 0, dataBundle({}), "apps [] 0 0"},
                    {1174, 9, 0, sources({{"time", 3}}, false), ""},
                    // Sub-codes outside 1 to 9: nothing, and not the common dispatch either.
                    {1174, 0, 1203, nullptr, ""},
                    {1174, 10, 1203, nullptr, ""},
                    {1174, -1, 0, nullptr, ""},
                    {1175, 1, 2, nullptr, ""}});
    // A payload that is no Bundle, or a Bundle without bytes under "data", is skipped silently.
    LogLines::clear();
    for (int subCode : {2, 7})
        expectHostileDropped(api, menu.log, {1174}, subCode, false);
    expectHostileDropped(api, menu.log, {1174}, 9);
    EXPECT_TRUE(LogLines::all().empty());
    expectCommonNotifications(api, menu.log, "notify command", true);

    // Without a callback, 1174 is dropped; bindCallBack brings one back.
    api.bindCallBack(nullptr);
    expectIncoming(api, menu.log, {{1174, 1, 7, nullptr, ""}});
    api.bindCallBack(&menu);
    expectIncoming(api, menu.log, {{1174, 1, 7, nullptr, "source 7"}});
}
