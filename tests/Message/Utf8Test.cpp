// Text from outside the process becomes a juce::String through one checked decoder, at every
// door: the environment, ini files, endpoint file names and command lines.
#include "support/TestSupport.h"

#include "Message/CmdLineHelper.h"
#include "Platform/BusFolder.h"
#include "Platform/Environment.h"
#include "Platform/IniFile.h"
#include "Platform/detail/Utf8.h"

#include <LmCom.h>

#include <stdlib.h>

using namespace LmComTesting;

namespace
{
using Utf8Test = LmComTest;

const juce::String kReplacement = juce::String::charToString(0xFFFD);

// An overlong NUL, a stray continuation byte, a surrogate and a truncated sequence.
const char* const kHostile = "a\xC0\x80"
                             "b\xA0"
                             "c\xED\xA0\x80"
                             "d\xE4\xB8";

juce::String decoded(const std::string& bytes)
{
    return LmComDetail::decodeUtf8(bytes);
}
} // namespace

TEST_F(Utf8Test, MalformedSequencesBecomeReplacementsAndWellFormedTextIsKept)
{
    EXPECT_EQ(decoded(kHostile), "a" + kReplacement + "b" + kReplacement + "c" + kReplacement + "d" + kReplacement);
    const std::string good = "caf\xC3\xA9 \xE4\xB8\xAD \xF0\x9F\x98\x80 \xEF\xBF\xBD";
    EXPECT_EQ(decoded(good).toStdString(), good);
    EXPECT_TRUE(LmComDetail::isValidUtf8((const unsigned char*)good.data(), good.size()));
    for (const std::string& bad :
         std::vector<std::string>{"\xC0\x80", "\xA0", "\xED\xA0\x80", "\xF4\x90\x80\x80", std::string("a\0b", 3)})
        EXPECT_FALSE(LmComDetail::isValidUtf8((const unsigned char*)bad.data(), bad.size()))
            << hex(bad.data(), (int)bad.size());

    // Property: whatever the bytes, the result is well-formed and re-decodes to itself.
    juce::Random random(14);
    for (int round = 0; round < 2000; ++round)
    {
        std::string bytes((size_t)random.nextInt(12), '\0');
        for (auto& byte : bytes)
            byte = (char)random.nextInt(256);
        const auto text = decoded(bytes);
        const std::string utf8 = text.toStdString();
        ASSERT_TRUE(LmComDetail::isValidUtf8((const unsigned char*)utf8.data(), utf8.size()))
            << hex(bytes.data(), (int)bytes.size());
        ASSERT_EQ(decoded(utf8), text);
    }
}

TEST_F(Utf8Test, EnvironmentIniFilesAndFileNamesAreDecodedChecked)
{
    ASSERT_EQ(setenv("LMCOM_BUS", kHostile, 1), 0);
    EXPECT_EQ(Platform::Environment::busName(), decoded(kHostile));
    EXPECT_EQ(Platform::BusFolder::decodeName("x%C0%80y"), "x" + kReplacement + "y");

    const std::string content = "[NAVIGATION]\nTITLE=" + std::string(kHostile) + "\n";
    writeSystemFile("/Bin/QN_MAIN.ini", {});
    systemFile("/Bin/QN_MAIN.ini").replaceWithData(content.data(), content.size());
    Platform::IniFile ini(Platform::Environment::resolve("/Bin/QN_MAIN.ini"));
    EXPECT_EQ(ini.getString("NAVIGATION", "TITLE", {}), decoded(kHostile));
}

TEST_F(Utf8Test, CommandLinesWithStrayBytesParse)
{
    juce::ScopedJuceInitialiser_GUI juce;
    IPCMsg::MessageHelper::config(Pubhead::eAppType::AppRadio, getDestName);
    ASSERT_TRUE(MsgSession::mapSharedArea());
    auto bundle = Bundle::obtain();
    bundle->putInt("k", 7);
    const auto line = CmdLineHelper::genCommandLine(bundle).toStdString();

    // A process's arguments reach the helper through JUCE's unchecked constructor.
    const auto unchecked = [](const std::string& bytes) { return juce::String(juce::CharPointer_UTF8(bytes.c_str())); };
    const auto parsed = CmdLineHelper::parseCommandLine(unchecked(line + "\xA0"));
    ASSERT_NE(parsed, nullptr);
    EXPECT_EQ(parsed->getInt("k", 0), 7);
    EXPECT_EQ(CmdLineHelper::parseCommandLine(unchecked("\xA0")), nullptr);
    EXPECT_EQ(CmdLineHelper::parseCommandLine(unchecked("-d \xA0\xA0 -l\xA0")), nullptr);
}
