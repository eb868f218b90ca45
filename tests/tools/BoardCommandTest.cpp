// "lmcom board" as a user runs it, against a profile under the test's root.
#include "support/Command.h"
#include "support/TestSupport.h"

#include "Platform/BoardProfile.h"

#include <nlohmann/json.hpp>

using namespace LmComTesting;

using BoardCommandTest = LmComTest;

TEST_F(BoardCommandTest, PrintsTheDeviceMapAndTheBoardsTexts)
{
    writeSystemFile(Platform::BoardProfile::kProfilePath, "[devices]\n"
                                                          "COM2: = /dev/ttyS1\n"
                                                          "GIO1: = /dev/gpiochip0\n"
                                                          "CAM1: = /dev/video\x01"
                                                          "0\n");
    auto text = Command::run(LMCOM_TOOL, {"board"});
    ASSERT_EQ(text.status, 0);
    const auto profile = systemFile(Platform::BoardProfile::kProfilePath).getFullPathName().toStdString();
    ASSERT_GE(text.out.size(), 16u);
    const std::vector<std::string> head(text.out.begin(), text.out.begin() + 12);
    EXPECT_EQ(head, (std::vector<std::string>{"profile " + profile, "", "DEVICE  NODE", "COM2:   /dev/ttyS1",
                                              "COM3:   -", "COM5:   -", "GIO1:   /dev/gpiochip0", "EPM1:   -",
                                              "DSK2:   -", "APD1:   -", "CAM1:   /dev/video?0", ""}));
    EXPECT_EQ(text.out[14], "ebootVersion  ");
    EXPECT_EQ(text.out[15].substr(0, 19), "sdid          SDID_");

    auto json = Command::run(LMCOM_TOOL, {"board", "--json"});
    ASSERT_EQ(json.status, 0);
    ASSERT_EQ(json.out.size(), 1u);
    auto parsed = nlohmann::json::parse(json.out[0]);
    EXPECT_EQ(parsed["profile"], profile);
    ASSERT_EQ(parsed["devices"].size(), 8u);
    EXPECT_EQ(parsed["devices"][0], (nlohmann::json{{"name", "COM2:"}, {"node", "/dev/ttyS1"}}));
    EXPECT_TRUE(parsed["devices"][1]["node"].is_null());
    EXPECT_EQ(parsed["devices"][7]["node"], "/dev/video\x01"
                                            "0");
    EXPECT_EQ(parsed["bsp"]["ebootVersion"], "");
    EXPECT_EQ(parsed["bsp"]["uuid"].get<std::string>().substr(0, 7), "UUID_V ");

    EXPECT_EQ(Command::run(LMCOM_TOOL, {"board", "extra"}).status, 2);
}
