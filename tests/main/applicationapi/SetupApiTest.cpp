// SetupApi: its two commands, code 1190 decoded by what the settings store says a setting
// holds and then delivered raw, and its answers to the notifications.
#include "support/ApiHarness.h"

#include "Utils/LmShareMem.h"
#include "main/applicationapi/SetupApi.h"

using namespace LmComTesting;

namespace
{
using SetupApiTest = ApiTest;

// Another application process that stores a setup text: args index, text.
LMCOM_CHILD_ROLE(storeSetupText)
{
    return QN_SetSetupValueString((SetupIndex)std::stoi(args.at(0)), juce::String(args.at(1))) ? 0 : 1;
}

class SetupRecorder : public Recorder<SetupCallBack>
{
public:
    void onSettingString(int id, const juce::String& value) override { log.add("text", id, value); }
    void onSettingInt(int id, int value) override { log.add("number", id, value); }
    void onSetupMessage(const AppMessage::Ptr& message) override { log.add("raw", message); }
};
} // namespace

TEST_F(SetupApiTest, CommandsSettingChangesAndNotifications)
{
    RecordingCallBacks callBacks;
    SetupApi api(&callBacks, &callBacks);
    expectConstructorCallBacks(api, callBacks);
    expectCommands(api, {{[&] { api.loadFactory(); }, "1126 0 0"}, {[&] { api.superFactory(); }, "1126 1 0"}});

    // No SetupCallBack yet: 1190 goes nowhere.
    SetupRecorder setup;
    expectIncoming(api, setup.log, {{1190, 2, 4, RemoteObjFormat::formatInt(5), ""}});
    api.bindCallBack(&setup);

    // Setting 8 holds text in the store, 4 a number, 9 was never set.
    ASSERT_TRUE(QN_SetSetupValueString((SetupIndex)8, "Europe/Berlin"));
    ASSERT_TRUE(QN_SetSetupValueInt((SetupIndex)4, 1));
    expectIncoming(
        api, setup.log,
        {{1190, 2, 4, RemoteObjFormat::formatInt(-5), "number 4 -5; raw msg 1190 2 4 {Format=5 int=-5}"},
         {1190, 2, 8, RemoteObjFormat::formatString("Paris"),
          "text 8 'Paris'; raw msg 1190 2 8 {Format=4 String='Paris'}"},
         // The value is read by what the store says, whatever the Bundle's format.
         {1190, 2, 8, RemoteObjFormat::formatInt(3), "text 8 ''; raw msg 1190 2 8 {Format=5 int=3}"},
         {1190, 2, 9, RemoteObjFormat::formatString("x"), "number 9 0; raw msg 1190 2 9 {Format=4 String='x'}"},
         {1190, 2, 4, nullptr, "raw msg 1190 2 4 none"},
         {1190, 1, 4, RemoteObjFormat::formatInt(5), "raw msg 1190 1 4 {Format=5 int=5}"},
         {1190, 0, 0, nullptr, "raw msg 1190 0 0 none"},
         {1174, 2, 4, RemoteObjFormat::formatInt(5), ""}});

    // Another process changes what setting 4 holds: the next 1190 is read as text.
    ChildProcess other("storeSetupText", {"4", "on"});
    ASSERT_EQ(other.waitForExit(), 0);
    expectIncoming(
        api, setup.log,
        {{1190, 2, 4, RemoteObjFormat::formatString("on"), "text 4 'on'; raw msg 1190 2 4 {Format=4 String='on'}"}});
    expectCommonNotifications(api, setup.log, "notify command", true);
}
