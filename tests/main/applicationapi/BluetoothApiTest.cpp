// BluetoothApi: its commands, its three callbacks, the checked int array of 1528 and its
// answers to the common notifications.
#include "support/ApiHarness.h"

#include "main/applicationapi/BluetoothApi.h"

#include <signal.h>

using namespace LmComTesting;

namespace
{
using BluetoothApiTest = ApiTest;

// Operations 9 and 10 are left to their empty defaults.
class Bluetooth : public Recorder<BluetoothCallBack>, public BluetoothPGNCallBack, public BluetoothIpodInfoCallBack
{
public:
    void onBluetoothMessage(const AppMessage::Ptr& m, int code) override { log.add("bt", m, code); }
    void onPhoneEvent(int p1, int p2) override { log.add("phone", p1, p2); }
    void onLinkEvent(int p1, int p2) override { log.add("link", p1, p2); }
    void onBluetoothCommand(int p1, int p2) override { log.add("command1177", p1, p2); }
    void onPGNData(int p1, int p2, const Bundle::Ptr& data) override { log.add("pgn", p1, p2, data); }
    void onIpodInfo(int a, int b, int c) override { log.add("ipod", a, b, c); }
};

class BluetoothWithAll : public Bluetooth
{
public:
    void onMusicEvent(int p1, int p2) override { log.add("music", p1, p2); }
    void onCarDataEvent(int p1, int p2) override { log.add("car", p1, p2); }
};

Bundle::Ptr ints(std::vector<int> values)
{
    return RemoteObjFormat::formatIntArray(values.data(), (int)values.size());
}
} // namespace

TEST_F(BluetoothApiTest, CommandsThreeCallBacksAndNotifications)
{
    auto* api = BluetoothApi::getInstance();
    Bluetooth bt;
    // Unbound: every own code is dropped and none reaches the common dispatch.
    expectIncoming(*api, bt.log, {{1636, 0, 0, Bundle::obtain().get(), ""}, {1528, 0, 0, ints({1, 2, 3}).get(), ""}});
    api->bindCallBack(&bt);
    expectIncoming(*api, bt.log, {{1636, 0, 0, Bundle::obtain().get(), ""}, {1528, 0, 0, ints({1, 2, 3}).get(), ""}});
    api->bindPGNCallBack(&bt);
    api->bindIpodInfoCallBack(&bt);

    auto phone = InfoBT::obtain();
    phone->inforText = "+49 30 1234";
    auto media = InfoMedia::obtain();
    media->artist = "Miles";
    expectCommands(*api,
                   {{[&] { api->startA2DPSrc(); }, "1141 15 0"},
                    {[&] { api->sendToInfoBar(phone); }, "1184 4 0 {Action=255 InforText='+49 30 1234' SourceID=24}"},
                    {[&] { api->sendToInfoBar(media); },
                     "1184 3 0 {Artist='Miles' CurNum=0 DiscType=0 FileType=0 PlayState=255 RefreshFlag=0 "
                     "SourceID=24 TotalNum=0}"},
                    {[&] { api->sendToInfoBar(InfoBT::Ptr()); }, ""},
                    {[&] { api->sendToInfoBar(InfoMedia::Ptr()); }, ""}});
    auto pgn = dataBundle({0x1f, 0x80});
    const std::vector<Incoming> table{{1974, 1, 2, pgn, "bt msg 1974 1 2 {data=[1F 80]} 1974"},
                                      {1952, 3, 4, nullptr, "phone 3 4"},
                                      {1951, 5, 6, nullptr, "link 5 6"},
                                      {1177, 7, 8, nullptr, "command1177 7 8"},
                                      {1953, 9, 10, nullptr, ""},
                                      {74, 11, 12, nullptr, ""},
                                      {1636, 13, 14, pgn, "pgn 13 14 {data=[1F 80]}"},
                                      {1528, 0x7fff0000, 0, ints({-1, 0, 65536}).get(), "ipod -1 0 65536"},
                                      {1528, 0, 0, ints({4, 5, 6, 7}).get(), "ipod 4 5 6"},
                                      {1175, 0, 0, nullptr, ""}};
    expectIncoming(*api, bt.log, table);
    expectCommonNotifications(*api, bt.log, "notify powerOff command event", true);

    BluetoothWithAll all;
    api->bindCallBack(&all);
    expectIncoming(*api, all.log, {{1953, 9, 10, nullptr, "music 9 10"}, {74, 11, 12, nullptr, "car 11 12"}});
}

TEST_F(BluetoothApiTest, PayloadsThatAreNotWhatTheCodeReadsAreDroppedWithALogLine)
{
    auto* api = BluetoothApi::getInstance();
    Bluetooth bt;
    api->bindPGNCallBack(&bt);
    api->bindIpodInfoCallBack(&bt);
    LogLines::clear();
    expectHostileDropped(*api, bt.log, {1528});
    expectHostileDropped(*api, bt.log, {1636}, 0, false);
    // A two-int array, a three-int one with a byte short, another format under "int[]".
    auto shortArray = ints({1, 2, 3});
    shortArray->putByteArray("int[]", "\x01\x00\x00\x00\x02\x00\x00\x00\x03\x00\x00", 11);
    auto wrongFormat = ints({1, 2, 3});
    wrongFormat->putInt("Format", 1);
    expectIncoming(*api, bt.log, {{1528, 0, 0, shortArray, ""}, {1528, 0, 0, wrongFormat, ""}});
    const std::string ipod = "E|applicationapi/BluetoothApi|";
    int ipodLines = 0, pgnLines = 0;
    for (auto& line : LogLines::all())
    {
        ipodLines +=
            line.find("|BluetoothApi|code 1528 dropped: no int array of three integers attached") != std::string::npos;
        pgnLines += line.find("|BluetoothApi|code 1636 dropped: no Bundle attached") != std::string::npos;
    }
    EXPECT_EQ(ipodLines, 10); // 4 without a Bundle, 4 bad Bundles, 2 above
    EXPECT_EQ(pgnLines, 4);
}

TEST_F(ApiProcessTest, BluetoothAgainstTheReferenceMainService)
{
    ChildProcess main("mainservice", {"--heartbeat-ms", "200"});
    ASSERT_TRUE(main.waitForLine("up as"));
    ChildProcess bt("api", {"Bluetooth"});
    ASSERT_TRUE(bt.waitForLine("READY"));
    EXPECT_TRUE(main.waitForLine("AppBluetooth: code 1141 (15, 0)"));
    EXPECT_TRUE(main.waitForLine("AppBluetooth: info bar (1184) phone source 24 text '" + title() + "' action 255"));

    // The iPod information travels as an int array; an address in param1 means nothing here.
    auto info = ints({7, -8, 9});
    post(Pubhead::eAppType::AppBluetooth, 1528, 0x1000, 0, info.get());
    post(Pubhead::eAppType::AppBluetooth, 1528, 0x1000, 0);
    post(Pubhead::eAppType::AppBluetooth, 1528, 0, 0, ParcelableArray::obtain().get());
    post(Pubhead::eAppType::AppBluetooth, 1636, 1, 2, dataBundle({5}).get());
    post(Pubhead::eAppType::AppBluetooth, 1952, 3, 4);
    EXPECT_TRUE(bt.waitForLine("CB phone 3 4"));
    std::vector<std::string> calls;
    for (auto& line : bt.lines())
        if (line.rfind("CB ", 0) == 0)
            calls.push_back(line);
    EXPECT_EQ(calls, (std::vector<std::string>{"CB ipod 7 -8 9", "CB pgn 1 2 {data=[05]}", "CB phone 3 4"}));

    main.kill(SIGTERM);
    EXPECT_TRUE(bt.waitForLine("CB powerOff 13"));
    EXPECT_TRUE(main.waitForLine("AppBluetooth: power-off ready (1204) with 13"));
    EXPECT_TRUE(bt.waitForLine("QUIT"));
    EXPECT_EQ(bt.waitForExit(), 0);
    EXPECT_EQ(main.waitForExit(), 0);
}
