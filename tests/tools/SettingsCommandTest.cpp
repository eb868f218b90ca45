// "lmcom settings" against the real settings store of the test's bus and root.
#include "support/Command.h"
#include "support/TestSupport.h"

#include "Utils/LmShareMem.h"

#include <nlohmann/json.hpp>

using namespace LmComTesting;

namespace
{
class SettingsCommandTest : public LmComTest
{
protected:
    static Command::Result lmcom(const std::vector<std::string>& args) { return Command::run(LMCOM_TOOL, args); }
};
} // namespace

TEST_F(SettingsCommandTest, SetGetAndListMeetTheLibrary)
{
    // The tool writes, this process reads through the library.
    for (const auto& args : std::vector<std::vector<std::string>>{{"settings", "set", "sysinfo", "3", "-7"},
                                                                  {"settings", "set", "srcstate", "4", "on"},
                                                                  {"settings", "set", "setup", "2", "0x10"},
                                                                  {"settings", "set", "setup", "5", "Tune \"in\""},
                                                                  {"settings", "set", "setup", "6", "42", "--string"}})
        ASSERT_EQ(lmcom(args).status, 0) << args[3];
    EXPECT_EQ(QN_GetSysInfo((SysInfoIndex)3), -7);
    EXPECT_TRUE(QN_GetSrcState(Pubhead::eAppServiceType::SrvDisc));
    EXPECT_EQ(QN_GetSetupValueInt((SetupIndex)2), 16);
    EXPECT_EQ(QN_GetSetupValueString((SetupIndex)5), "Tune \"in\"");
    EXPECT_TRUE(QN_IsSetupValueString((SetupIndex)6));

    // The library writes, the tool reads.
    QN_SetSysInfo((SysInfoIndex)255, 1);
    ASSERT_TRUE(QN_SetSetupValueString((SetupIndex)511, juce::String::fromUTF8("caf\xC3\xA9\n")));
    EXPECT_EQ(lmcom({"settings", "get", "sysinfo", "255"}).out, std::vector<std::string>{"1"});
    EXPECT_EQ(lmcom({"settings", "get", "srcstate", "54"}).out, std::vector<std::string>{"off"});
    EXPECT_EQ(lmcom({"settings", "get", "setup", "511"}).out, (std::vector<std::string>{"caf\xC3\xA9", ""}));
    const auto unset = lmcom({"settings", "get", "setup", "9"});
    EXPECT_EQ(unset.status, 1);
    EXPECT_EQ(unset.err, std::vector<std::string>{"lmcom: settings: setup item 9 is not set"});

    EXPECT_EQ(
        lmcom({"settings", "list"}).out,
        (std::vector<std::string>{"KIND      INDEX  TYPE    VALUE", "sysinfo       3  int     -7",
                                  "sysinfo     255  int     1", "srcstate      4  bool    on",
                                  "setup         2  int     16", "setup         5  string  \"Tune \\\"in\\\"\"",
                                  "setup         6  string  \"42\"", "setup       511  string  \"caf\xC3\xA9\\n\""}));
    const auto json = lmcom({"settings", "list", "--json"});
    ASSERT_EQ(json.status, 0);
    ASSERT_EQ(json.out.size(), 7u);
    EXPECT_EQ(nlohmann::json::parse(json.out[3]),
              nlohmann::json::parse(R"({"kind":"setup","index":2,"type":"int","value":16})"));
    EXPECT_EQ(nlohmann::json::parse(json.out[6])["value"], "caf\xC3\xA9\n");
}

TEST_F(SettingsCommandTest, MisuseExitsTwoAndStoresNothing)
{
    const std::vector<std::vector<std::string>> misuses = {
        {"settings"},
        {"settings", "erase"},
        {"settings", "list", "extra"},
        {"settings", "get", "sysinfo"},
        {"settings", "get", "colour", "1"},
        {"settings", "get", "sysinfo", "256"},
        {"settings", "get", "srcstate", "55"},
        {"settings", "get", "setup", "-1"},
        {"settings", "get", "setup", "x"},
        {"settings", "get", "setup", "1", "--json"},
        {"settings", "set", "sysinfo", "1"},
        {"settings", "set", "sysinfo", "1", "2147483648"},
        {"settings", "set", "sysinfo", "1", "one"},
        {"settings", "set", "srcstate", "1", "maybe"},
        {"settings", "set", "sysinfo", "1", "1", "--string"},
        {"settings", "set", "setup", "512", "1"},
        {"settings", "set", "setup", "1", std::string(1025, 'x')},
        {"settings", "set", "setup", "1", "2", "3"},
    };
    for (auto& args : misuses)
    {
        const auto result = lmcom(args);
        EXPECT_EQ(result.status, 2) << args.back();
        EXPECT_EQ(result.err.size(), 1u) << args.back();
        EXPECT_TRUE(result.out.empty()) << args.back();
    }
    EXPECT_EQ(lmcom({"settings", "list"}).out.size(), 1u); // the heading only
}
