// The lmcom tool as a user runs it: real processes on the test's private bus.
#include "support/ChildProcess.h"
#include "support/Command.h"
#include "support/Peer.h"
#include "support/TestSupport.h"

#include <LmCom.h>

#include <nlohmann/json.hpp>

#include <signal.h>

using namespace LmComTesting;
using Json = nlohmann::ordered_json;

namespace
{
const std::string kTool = LMCOM_TOOL;

class LmcomToolTest : public LmComTest
{
};

Command::Result lmcom(const std::vector<std::string>& args)
{
    return Command::run(kTool, args);
}

// A monitor's text line without its time.
std::vector<std::string> withoutTime(const std::vector<std::string>& lines)
{
    std::vector<std::string> result;
    for (auto& line : lines)
        result.push_back(line.compare(0, 1, " ") == 0 ? line : line.substr(line.find(' ') + 1));
    return result;
}

// A monitor's JSON line without its time, in its own key order.
std::string jsonWithoutTime(const std::string& line)
{
    auto json = Json::parse(line);
    json.erase("time");
    return json.dump();
}

std::string hexOf(const Parcel::Ptr& parcel)
{
    return hex(parcel->data(), parcel->dataSize());
}
} // namespace

// args: count bytes. Writes stamped messages into the ring as fast as it can (the record
// writer alone, no destination), then a message with code 9999.
LMCOM_CHILD_ROLE(ringwriter)
{
    const int count = std::stoi(args.at(0)), bytes = std::stoi(args.at(1));
    if (!MsgSession::mapSharedArea())
        return 3;
    int size = 0;
    for (int seq = 0; seq < count; ++seq)
        MsgSession::putParcelable(Parcelable::Ptr(makeStamped(1, seq, bytes).get()), size);
    auto end = RemoteMessage::obtain();
    end->code = 9999;
    MsgSession::putParcelable(Parcelable::Ptr(end.get()), size);
    say("DONE");
    return 0;
}

TEST_F(LmcomToolTest, MonitorShowsWhatPostSendAndBroadcastPutOnTheBus)
{
    ChildProcess peer("peer", {"5", "die"});
    ASSERT_TRUE(peer.waitForLine("READY"));
    Command text(kTool, {"monitor", "--count", "3"});
    Command json(kTool, {"monitor", "--json", "--count", "3"});
    Command filtered(kTool, {"monitor", "--code", "7", "--sender", "AppUnknown", "--count", "1"});
    for (auto* monitor : {&text, &json, &filtered})
        ASSERT_TRUE(monitor->waitForLine("lmcom monitor: following bus '" + m_bus.toStdString() + "' from offset 16",
                                         10000, true));

    const auto posted =
        lmcom({"post", "Radio", "1184", "5", "-7", "--int", "SourceID=5", "--string", "Title=Radio \"1\"\n", "--bytes",
               "data=01 02 ff", "--bool", "on=true", "--double", "gain=-2.5"});
    EXPECT_EQ(posted.status, 0);
    EXPECT_TRUE(posted.out.empty() && posted.err.empty());
    EXPECT_TRUE(peer.waitForLine("OWN 1184 5 -7 26 -"));

    // send returns once the handler has run: it wrote its line before returning.
    const auto sent = lmcom({"send", "AppRadio", "7", "0x10"});
    EXPECT_EQ(sent.status, 0);
    EXPECT_EQ(systemFile("/handled.txt").loadFileAsString().removeCharacters("\r"), "1184\n7\n");

    EXPECT_EQ(lmcom({"broadcast", "news", "--string", "text=hello"}).status, 0);
    EXPECT_TRUE(peer.waitForLine("BROADCAST news hello"));

    for (auto* monitor : {&text, &json, &filtered})
        ASSERT_EQ(monitor->waitForExit(), 0);
    EXPECT_EQ(withoutTime(text.out()),
              (std::vector<std::string>{"#0 off=16 len=135 from=AppUnknown code=1184 p1=5 p2=-7", //
                                        "  Bundle",                                               //
                                        "    SourceID: int 5",                                    //
                                        "    Title: string \"Radio \\\"1\\\"\\n\"",               //
                                        "    data: bytes[3] 01 02 FF",                            //
                                        "    gain: double -2.5",                                  //
                                        "    on: bool true",                                      //
                                        "#1 off=159 len=20 from=AppUnknown code=7 p1=16 p2=0",    //
                                        "#2 off=187 len=82 broadcast action=\"news\"",            //
                                        "  Bundle",                                               //
                                        "    text: string \"hello\""}));
    EXPECT_EQ(text.err().back(), "lmcom monitor: 3 records, 0 invalid, 0 missed");

    ASSERT_EQ(json.out().size(), 3u);
    EXPECT_EQ(json.out()[0].substr(0, 9), "{\"time\":\"");
    EXPECT_EQ(jsonWithoutTime(json.out()[0]),
              R"({"record":0,"offset":16,"length":135,"kind":"message","sender":26,"senderName":"AppUnknown",)"
              R"("code":1184,"param1":5,"param2":-7,"object":{"type":"Bundle","values":{)"
              R"("SourceID":{"type":"int","value":5},"Title":{"type":"string","value":"Radio \"1\"\n"},)"
              R"("data":{"type":"bytes","value":"0102FF"},"gain":{"type":"double","value":-2.5},)"
              R"("on":{"type":"bool","value":true}},"objects":{}}})");
    EXPECT_EQ(jsonWithoutTime(json.out()[1]),
              R"({"record":1,"offset":159,"length":20,"kind":"message","sender":26,"senderName":"AppUnknown",)"
              R"("code":7,"param1":16,"param2":0,"object":null})");
    EXPECT_EQ(jsonWithoutTime(json.out()[2]),
              R"({"record":2,"offset":187,"length":82,"kind":"broadcast","action":"news","object":{"type":"Bundle",)"
              R"("values":{"text":{"type":"string","value":"hello"}},"objects":{}}})");

    EXPECT_EQ(withoutTime(filtered.out()),
              std::vector<std::string>{"#1 off=159 len=20 from=AppUnknown code=7 p1=16 p2=0"});
}

TEST_F(LmcomToolTest, ListShowsLiveApplicationsAndDeadOnes)
{
    ChildProcess radio("peer", {"5", "die"});
    ChildProcess bluetooth("peer", {"13", "die"});
    ASSERT_TRUE(radio.waitForLine("READY"));
    ASSERT_TRUE(bluetooth.waitForLine("READY"));
    bluetooth.kill(SIGKILL); // leaves its endpoint behind
    ASSERT_EQ(bluetooth.waitForExit(), 128 + SIGKILL);

    const auto listed = lmcom({"list"});
    EXPECT_EQ(listed.status, 0);
    EXPECT_EQ(listed.out,
              (std::vector<std::string>{"TITLE      TYPE  APPLICATION    STATE", "Radio      5     AppRadio       live",
                                        "Bluetooth  13    AppBluetooth   dead"}));
    EXPECT_EQ(lmcom({"list", "--json"}).out,
              (std::vector<std::string>{R"({"title":"Radio","type":5,"name":"AppRadio","alive":true})",
                                        R"({"title":"Bluetooth","type":13,"name":"AppBluetooth","alive":false})"}));

    // --bus picks another bus, which has nobody.
    const auto elsewhere = lmcom({"list", "--bus", m_bus.toStdString() + "-other"});
    EXPECT_EQ(elsewhere.status, 0);
    EXPECT_TRUE(elsewhere.out.empty());
    EXPECT_EQ(elsewhere.err,
              std::vector<std::string>{"lmcom list: no endpoints on bus '" + m_bus.toStdString() + "-other'"});
    // A post to the dead one fails (status 1) with one line.
    const auto refused = lmcom({"post", "Bluetooth", "1"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.err, std::vector<std::string>{"lmcom: post: no live endpoint 'Bluetooth' (AppBluetooth) on bus '"
                                                    + m_bus.toStdString() + "'"});
}

TEST_F(LmcomToolTest, MisuseGivesOneErrorLineAndStatusTwo)
{
    const std::vector<std::vector<std::string>> misuses = {
        {},
        {"frobnicate"},
        {"--colour", "list"},
        {"--bus"},
        {"list", "extra"},
        {"list", "--bogus"},
        {"monitor", "--code"},
        {"monitor", "--code", "seven"},
        {"monitor", "--count", "0"},
        {"monitor", "--sender", "Nobody"},
        {"monitor", "--json=yes"},
        {"post"},
        {"post", "Radio"},
        {"post", "Nowhere", "1"},
        {"post", "27", "1"},
        {"post", "Radio", "1x"},
        {"post", "Radio", "1", "2", "3", "4"},
        {"post", "Radio", "99999999999"},
        {"post", "Radio", "1", "--int", "k=1.5"},
        {"post", "Radio", "1", "--int", "=1"},
        {"post", "Radio", "1", "--bool", "k=maybe"},
        {"post", "Radio", "1", "--double", "k=1e999"},
        {"post", "Radio", "1", "--bytes", "k=123"},
        {"post", "Radio", "1", "--string", "k=\xC3"},
        {"post", "Radio", "1", "--string"},
        {"send", "Radio"},
        {"broadcast"},
        {"broadcast", "a", "b"},
        {"decode"},
        {"decode", "nmea", "00"},
        {"decode", "parcel", "0g"},
        {"decode", "parcel"},
        {"decode", "pgn", "00", "--json"},
    };
    for (auto& args : misuses)
    {
        std::string shown;
        for (auto& arg : args)
            shown += "'" + arg + "' ";
        const auto result = lmcom(args);
        EXPECT_EQ(result.status, 2) << shown;
        EXPECT_TRUE(result.out.empty()) << shown;
        ASSERT_EQ(result.err.size(), 1u) << shown;
        EXPECT_EQ(result.err[0].compare(0, 7, "lmcom: "), 0) << shown << result.err[0];
    }
    EXPECT_EQ(lmcom({"decode", "nmea", "00"}).err,
              std::vector<std::string>{"lmcom: decode: unknown kind 'nmea' (known: parcel, pgn, carinfo)"});
    EXPECT_EQ(lmcom({"post", "Radio", "1x"}).err,
              std::vector<std::string>{"lmcom: post: CODE must be an integer, not '1x'"});

    // Help is no misuse.
    for (const char* command : {"list", "monitor", "post", "send", "broadcast", "decode"})
    {
        const auto help = lmcom({command, "--help"});
        EXPECT_EQ(help.status, 0) << command;
        ASSERT_FALSE(help.out.empty()) << command;
        EXPECT_EQ(help.out[0].compare(0, 13 + std::strlen(command), "usage: lmcom " + std::string(command)), 0);
    }
    EXPECT_EQ(lmcom({"--help"}).status, 0);
}

TEST_F(LmcomToolTest, DecodePrintsTheObjectsOfAParcelAndAParameterGroup)
{
    auto inner = Bundle::obtain();
    inner->putBool("on", false);
    auto list = ParcelableArray::obtain();
    list->addParcelable(Parcelable::Ptr(inner.get()));
    list->addParcelable(Parcelable::Ptr(RemoteMessage::obtain().get()));
    auto outer = Bundle::obtain();
    outer->putString("key with space", "x\ty");
    outer->putDouble("nan", std::nan(""));
    outer->putParcelable("list", Parcelable::Ptr(list.get()));
    outer->putBundle("empty", Bundle::obtain());
    auto message = RemoteMessage::obtain();
    message->code = 74;
    message->param1 = -1;
    message->sender = 20;
    message->object = outer.get();
    auto parcel = message->writeToParcel();
    parcel->writeByte(0xAB); // a stray byte after the objects

    const auto decoded = lmcom({"decode", "parcel", hexOf(parcel)});
    EXPECT_EQ(decoded.status, 0);
    const int end = parcel->dataSize() - 1;
    EXPECT_EQ(decoded.out, (std::vector<std::string>{
                               "RemoteMessage from=AppCarInfo code=74 p1=-1 p2=0",
                               "  Bundle",
                               "    \"key with space\": string \"x\\ty\"",
                               "    nan: double nan",
                               "    empty: Bundle (empty)",
                               "    list: ParcelableArray[2]",
                               "      [0]: Bundle",
                               "        on: bool false",
                               "      [1]: RemoteMessage from=-1 code=0 p1=0 p2=0",
                               "[1 bytes not decoded at offset " + std::to_string(end) + ": AB]",
                           }));

    // The same from a file, as JSON.
    const auto file = systemFile("/parcel.bin");
    ASSERT_TRUE(parcel->writeDataToFile(file.getFullPathName()));
    const auto json = lmcom({"decode", "parcel", "@" + file.getFullPathName().toStdString(), "--json"});
    EXPECT_EQ(json.status, 0);
    ASSERT_EQ(json.out.size(), 2u);
    EXPECT_EQ(json.out[1], R"({"offset":)" + std::to_string(end) + R"(,"undecoded":"AB"})");
    const auto tree = Json::parse(json.out[0]);
    EXPECT_EQ(tree["offset"], 0);
    const auto& bundle = tree["object"]["object"];
    EXPECT_EQ(bundle["values"]["nan"].dump(), R"({"type":"double","value":"NaN"})");
    EXPECT_EQ(bundle["values"]["key with space"]["value"], "x\ty");
    EXPECT_EQ(bundle["objects"]["list"]["elements"][1]["senderName"], "-1");

    // Every cut of the bytes decodes to something or fails cleanly.
    for (int cut = 0; cut < parcel->dataSize(); cut += 7)
    {
        const auto part = lmcom({"decode", "parcel", hex(parcel->data(), cut)});
        EXPECT_TRUE(part.status == 0 || part.status == 1) << cut;
        EXPECT_LE(part.err.size(), 1u) << cut;
    }
    EXPECT_EQ(lmcom({"decode", "parcel", "00 00 00 00"}).err,
              std::vector<std::string>{"lmcom: decode parcel: no object in 4 bytes"});

    // A command for zone volume with a repeated field: the packet as far as it was read, its
    // acknowledgement and its negative one.
    const auto failed = lmcom({"decode", "pgn", "00 ED 01 00 A5 5A 01 16 FE 01 28 02 01 00 01 01"});
    EXPECT_EQ(failed.status, 1);
    EXPECT_EQ(failed.out,
              (std::vector<std::string>{
                  "PGN 126208, header A5 5A: command (group function 1) for PGN 130582, priority 8",
                  "fields: 2 declared, 1 read", "  [0] field 1: type 18, flag 0, value 0",
                  "PGN error code 3, transmit error code 0", "parse: failed",
                  "ack: 00 ED 01 00 A5 5A 02 16 FE 01 03 FF", "nack: 00 ED 01 00 A5 5A 02 16 FE 01 00 02 44"}));
    const auto request = lmcom({"decode", "pgn", "00 ED 01 00 A5 5A 00 0E FE 01 E8 03 00 00 FA 00 01 02 FF"});
    EXPECT_EQ(request.status, 0);
    EXPECT_EQ(
        request.out,
        (std::vector<std::string>{
            "PGN 126208, header A5 5A: request (group function 0) for PGN 130574, interval 1000, offset 250",
            "fields: 1 declared, 1 read", "  [0] field 2: type 5, flag 1, value 255, error 3 (value out of range)",
            "PGN error code 0, transmit error code 0", "parse: succeeded, packet valid",
            "ack: 00 ED 01 00 A5 5A 02 0E FE 01 00 01 03"}));
    EXPECT_EQ(lmcom({"decode", "pgn", "00 ED 01"}).status, 1);
}

TEST_F(LmcomToolTest, MonitorAccountsForEveryRecordOfAFlatOutWriter)
{
    // About 18 laps of the ring, written as fast as the record writer goes: whether the
    // monitor keeps up or not, every record is either shown intact, in order, or counted as
    // missed, exactly (one writer).
    constexpr int kCount = 20000;
    ASSERT_TRUE(MsgSession::mapSharedArea());
    Command monitor(kTool, {"monitor", "--json"});
    ASSERT_TRUE(monitor.waitForLine("following bus", 10000, true));
    ChildProcess writer("ringwriter", {std::to_string(kCount), "150"});
    ASSERT_TRUE(writer.waitForLine("DONE", 60000));
    ASSERT_TRUE(monitor.waitForLine("\"code\":9999", 60000));
    monitor.kill(SIGTERM);
    ASSERT_EQ(monitor.waitForExit(), 0);

    long long expected = 0, shown = 0, missed = 0;
    for (auto& line : monitor.out())
    {
        const auto json = Json::parse(line);
        if (json["kind"] == "missed")
        {
            ASSERT_TRUE(json["missed"].is_number()) << line;
            missed += json["missed"].get<long long>();
            expected += json["missed"].get<long long>();
            continue;
        }
        ASSERT_EQ(json["kind"], "message") << line;
        if (json["code"] == 9999)
            break;
        ASSERT_EQ(json["code"], kStampedCode);
        ASSERT_EQ(json["param2"].get<long long>(), expected) << line;
        ASSERT_EQ(json["record"].get<long long>(), expected) << line;
        ASSERT_EQ(json["object"]["values"]["seq"]["value"].get<long long>(), expected) << line;
        ++expected;
        ++shown;
    }
    EXPECT_EQ(shown + missed, kCount);
    std::printf("monitor showed %lld records and counted %lld missed\n", shown, missed);
}
