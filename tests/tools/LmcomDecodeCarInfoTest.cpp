// lmcom decode carinfo as a user runs it: the values of an answer frame beside their bytes.
#include "support/Command.h"
#include "support/TestSupport.h"

#include <nlohmann/json.hpp>

using namespace LmComTesting;

namespace
{
using LmcomDecodeCarInfoTest = LmComTest;

Command::Result decode(const std::vector<std::string>& args)
{
    std::vector<std::string> all{"decode", "carinfo"};
    all.insert(all.end(), args.begin(), args.end());
    return Command::run(LMCOM_TOOL, all);
}
} // namespace

TEST_F(LmcomDecodeCarInfoTest, PrintsEachValueBesideItsBytes)
{
    const auto wheel = decode({"61 04 03 00 1E 41"});
    EXPECT_EQ(wheel.status, 0);
    EXPECT_EQ(wheel.out,
              (std::vector<std::string>{"frame: 61 04 03 00 1E 41 (6 bytes)", "command 0x61: wheel data",
                                        "  byte 3   00     item 68 = 0", "  byte 3   00     item 29 = 16843009",
                                        "  byte 4   1E     item 30 = 30", "  byte 5   41     item 31 = 65"}));

    // A cut frame from a file: its whole fields, and a note.
    const auto file = m_root.getChildFile("frame.bin");
    const auto bytes = unhex("00 12 05 00 3C 0B");
    ASSERT_TRUE(file.replaceWithData(bytes.data(), bytes.size()));
    const auto cut = decode({"@" + file.getFullPathName().toStdString()});
    EXPECT_EQ(cut.status, 0);
    EXPECT_EQ(cut.out, (std::vector<std::string>{
                           "frame: 00 12 05 00 3C 0B (6 bytes)", "command 0x00: meter readings and vehicle status",
                           "  byte 2   05     item  0 = 5", "  byte 3   00 3C  item  6 = 60",
                           "[the frame ends before a field the command reads: decoded as far as its bytes go]"}));

    const auto json = decode({"30 02 19 40 FF", "--json"});
    EXPECT_EQ(json.status, 0);
    ASSERT_EQ(json.out.size(), 1u);
    const auto parsed = nlohmann::json::parse(json.out[0]);
    EXPECT_EQ(parsed["frame"], "30021940FF");
    EXPECT_EQ(parsed["command"], 0x30);
    EXPECT_EQ(parsed["truncated"], false);
    EXPECT_EQ(parsed["values"], nlohmann::json::parse(R"([{"item":8,"value":25,"offset":2,"bytes":"19"},
                                                          {"item":9,"value":64,"offset":3,"bytes":"40"}])"));

    // Nothing to decode: status 1 and one line saying why.
    const auto unknown = decode({"50 01 00"});
    EXPECT_EQ(unknown.status, 1);
    EXPECT_EQ(unknown.err,
              std::vector<std::string>{"lmcom: decode carinfo: command 0x50 is not a car information answer"});
    EXPECT_EQ(decode({""}).status, 1);
    EXPECT_EQ(decode({"69 01 0A"}).out.back(), "  no values");
}
