// The settings store across processes: shared values, the setup file, bad indices, a store of
// another layout, a writer killed while it replaces the file.
#include "support/ChildProcess.h"
#include "support/MessageLoop.h"
#include "support/TestSupport.h"

#include "Platform/SharedMemory.h"
#include "Utils/LmShareMem.h"
#include "Utils/SettingHelper.h"
#include "Utils/SysInfoHelper.h"
#include "Utils/detail/SettingsStore.h"

#include <LogBridge.h>

#include <atomic>
#include <climits>
#include <csignal>
#include <random>
#include <thread>

using namespace LmComTesting;
using LmComDetail::SettingsStore;

namespace
{
const auto kDvd = Pubhead::eAppServiceType::SrvDisc;

// Prints what the store holds for the indices given as arguments: "sys I V", "src I V",
// "setup I int|string V".
LMCOM_CHILD_ROLE(readSettings)
{
    for (size_t i = 0; i + 1 < args.size(); i += 2)
    {
        const int index = std::stoi(args[i + 1]);
        if (args[i] == "sys")
            say("sys %d %d", index, SysInfoHelper::getSysInfoInt(index));
        else if (args[i] == "src")
            say("src %d %d", index, SysInfoHelper::isSrcEnable((Pubhead::eAppServiceType::EnumTypeTag)index) ? 1 : 0);
        else if (SettingHelper::isSettingValueString(index))
            say("setup %d string %s", index, SettingHelper::getSettingString(index).toRawUTF8());
        else
            say("setup %d int %d", index, SettingHelper::getSettingInt(index));
    }
    return 0;
}

// Sets what its arguments say: "sys I V", "src I V", "int I V", "string I V".
LMCOM_CHILD_ROLE(writeSettings)
{
    bool ok = true;
    for (size_t i = 0; i + 2 < args.size(); i += 3)
    {
        const int index = std::stoi(args[i + 1]);
        if (args[i] == "sys")
            QN_SetSysInfo((SysInfoIndex)index, std::stoi(args[i + 2]));
        else if (args[i] == "src")
            ok &= QN_SetSrcState((Pubhead::eAppServiceType::EnumTypeTag)index, args[i + 2] == "1");
        else if (args[i] == "int")
            ok &= QN_SetSetupValueInt((SetupIndex)index, std::stoi(args[i + 2]));
        else
            ok &= QN_SetSetupValueString((SetupIndex)index, juce::String::fromUTF8(args[i + 2].c_str()));
    }
    return ok ? 0 : 1;
}

// Rewrites the setup file without end: items 0..99 hold 900 copies of one letter each, the
// letter of the round (a, b, c, ...), item 100 the round number.
LMCOM_CHILD_ROLE(rewriteSetupForever)
{
    for (int round = 0;; ++round)
    {
        const juce::String text = juce::String::repeatedString(juce::String::charToString('a' + round % 26), 900);
        for (int index = 0; index < 100; ++index)
            QN_SetSetupValueString((SetupIndex)index, text);
        QN_SetSetupValueInt((SetupIndex)100, round);
        if (round == 0)
            say("WRITING");
    }
}

class LmShareMemTest : public LmComTest
{
protected:
    static std::vector<std::string> run(const std::string& role, const std::vector<std::string>& args)
    {
        ChildProcess child(role, args);
        EXPECT_EQ(child.waitForExit(), 0);
        return child.lines();
    }
};
} // namespace

TEST_F(LmShareMemTest, AValueSetInOneProcessIsReadInAnotherAtOnce)
{
    // A fresh store reads as nothing set.
    EXPECT_EQ(run("readSettings", {"sys", "5", "src", "4", "setup", "7"}),
              (std::vector<std::string>{"sys 5 0", "src 4 0", "setup 7 int 0"}));

    QN_SetSysInfo((SysInfoIndex)5, -42);
    EXPECT_TRUE(QN_SetSrcState(kDvd, true));
    EXPECT_TRUE(QN_SetSetupValueInt((SetupIndex)7, INT_MIN));
    EXPECT_TRUE(QN_SetSetupValueString((SetupIndex)511, juce::String::fromUTF8("Gr\xC3\xBC\xC3\x9F"
                                                                               "e \"x\"\\n")));
    EXPECT_EQ(run("readSettings", {"sys", "5", "src", "4", "src", "5", "setup", "7", "setup", "511"}),
              (std::vector<std::string>{"sys 5 -42", "src 4 1", "src 5 0", "setup 7 int -2147483648",
                                        "setup 511 string Gr\xC3\xBC\xC3\x9F"
                                        "e \"x\"\\n"}));

    // This process has read the file already; another one's writes show on the next read.
    EXPECT_EQ(SettingHelper::getSettingInt(7), INT_MIN);
    run("writeSettings", {"sys", "5", "7", "src", "4", "0", "int", "511", "3", "string", "7", "seven"});
    EXPECT_EQ(SysInfoHelper::getSysInfoInt(5), 7);
    EXPECT_FALSE(SysInfoHelper::isSrcEnable(kDvd));
    EXPECT_FALSE(SettingHelper::isSettingValueString(511));
    EXPECT_EQ(SettingHelper::getSettingInt(511), 3);
    EXPECT_EQ(SettingHelper::getSettingString(511), "");
    EXPECT_EQ(SettingHelper::getSettingString(7), "seven");
    EXPECT_EQ(SettingHelper::getSettingInt(7), 0);
    EXPECT_TRUE(LogLines::all().empty());
}

TEST_F(LmShareMemTest, IndicesOutsideTheStoreGiveTheFailureValueAndALogLine)
{
    for (int index : {-1, (int)SysInfoCount, INT_MIN, INT_MAX})
    {
        LogLines::clear();
        SysInfoHelper::setSysInfoInt(index, 9);
        EXPECT_EQ(SysInfoHelper::getSysInfoInt(index), 0);
        EXPECT_EQ(LogLines::all().size(), 2u) << index;
    }
    for (int index : {-1, SettingsStore::kSourceCount, INT_MIN})
    {
        LogLines::clear();
        EXPECT_FALSE(QN_SetSrcState((Pubhead::eAppServiceType::EnumTypeTag)index, true));
        EXPECT_FALSE(SysInfoHelper::isSrcEnable((Pubhead::eAppServiceType::EnumTypeTag)index));
        EXPECT_EQ(LogLines::all().size(), 2u) << index;
    }
    for (int index : {-1, (int)SetupCount, INT_MAX})
    {
        LogLines::clear();
        EXPECT_FALSE(QN_SetSetupValueInt((SetupIndex)index, 1));
        EXPECT_FALSE(QN_SetSetupValueString((SetupIndex)index, "x"));
        EXPECT_EQ(SettingHelper::getSettingInt(index), 0);
        EXPECT_EQ(SettingHelper::getSettingString(index), "");
        EXPECT_FALSE(SettingHelper::isSettingValueString(index));
        EXPECT_EQ(LogLines::all().size(), 5u) << index;
    }
    const auto lines = LogLines::all();
    EXPECT_NE(std::find_if(lines.begin(), lines.end(),
                           [](const std::string& line)
                           {
                               return line.rfind("E|Utils/LmShareMem|", 0) == 0
                                      && line.find(
                                             "|LmShareMem|QN_IsSetupValueString: index 2147483647 is outside 0..511")
                                             != std::string::npos;
                           }),
              lines.end());
    // Nothing reached the store: every slot inside it is still zero, no setup file was made.
    for (int index = 0; index < SysInfoCount; ++index)
        ASSERT_EQ(SysInfoHelper::getSysInfoInt(index), 0);
    EXPECT_TRUE(SettingsStore::setupValues().empty());
    EXPECT_FALSE(systemFile(SettingsStore::kSetupFile).exists());
}

TEST_F(LmShareMemTest, AStoreOfAnotherLayoutIsRefusedWithALogLine)
{
    // A later library made the bus's store: version 2, its values where ours would be.
    Platform::SharedMemory other(Platform::SettingsSegment::kName);
    ASSERT_TRUE(other.create(Platform::SettingsSegment::kSize));
    const std::int32_t header[] = {Platform::SettingsSegment::kMagic, 2, 256, 64};
    std::memcpy(other.data(), header, sizeof header);
    std::memset(other.data() + 64, 0x55, 1024);

    QN_SetSysInfo((SysInfoIndex)0, 1);
    EXPECT_EQ(QN_GetSysInfo((SysInfoIndex)0), 0);
    EXPECT_FALSE(QN_SetSrcState(kDvd, true));
    EXPECT_EQ(other.data()[64], 0x55); // not written either
    const auto lines = LogLines::all();
    ASSERT_FALSE(lines.empty());
    EXPECT_NE(lines[0].find("|LmShareMem|settings store"), std::string::npos) << lines[0];
    EXPECT_NE(lines[0].find("version 2"), std::string::npos) << lines[0];
    // Tried again at most once a second, not once per read.
    EXPECT_LE(lines.size(), 2u);

    // Setup values do not depend on it.
    EXPECT_TRUE(QN_SetSetupValueInt((SetupIndex)3, 33));
    EXPECT_EQ(run("readSettings", {"setup", "3", "sys", "0"}), (std::vector<std::string>{"setup 3 int 33", "sys 0 0"}));
}

TEST_F(LmShareMemTest, AWriterKilledWhileReplacingTheSetupFileLeavesAWholeFile)
{
    std::mt19937 random(7);
    int lastRound = -1;
    for (int attempt = 0; attempt < 4; ++attempt)
    {
        ChildProcess writer("rewriteSetupForever");
        ASSERT_TRUE(writer.waitForLine("WRITING"));
        juce::Thread::sleep((int)(random() % 40));
        writer.kill(SIGKILL);
        writer.waitForExit();

        // Read back by a fresh file object: no line skipped, every item whole.
        Platform::SetupFile file(systemFile(SettingsStore::kSetupFile).getFullPathName(),
                                 [](const juce::String& problem) { ADD_FAILURE() << problem; });
        const auto values = file.getAll(0);
        ASSERT_EQ(values.size(), attempt == 0 ? 101u : 102u);
        ASSERT_FALSE(values.at(100).isString);
        const int round = values.at(100).number;
        EXPECT_GE(round, 0);
        for (int index = 0; index < 100; ++index)
        {
            const auto& text = values.at(index).text;
            ASSERT_EQ(text.size(), 900u);
            // Items up to the one being written hold the next round's letter, the rest this one's.
            const char letter = text[0];
            EXPECT_TRUE(letter == 'a' + round % 26 || letter == 'a' + (round + 1) % 26) << index;
            EXPECT_EQ(text.find_first_not_of(letter), std::string::npos) << index;
        }
        // A writer in this process goes on from what the dead one left.
        EXPECT_TRUE(QN_SetSetupValueInt((SetupIndex)101, attempt));
        EXPECT_EQ(SettingHelper::getSettingInt(101), attempt);
        lastRound = round;
    }
    EXPECT_GE(lastRound, 0);
}

TEST_F(LmShareMemTest, ReadersOnAnyThreadNeverSeeHalfAValue)
{
    // Another process replaces the setup file without end while threads here read it and
    // write and read a shared value.
    ChildProcess writer("rewriteSetupForever");
    ASSERT_TRUE(writer.waitForLine("WRITING"));
    std::atomic<bool> stop{false};
    std::atomic<int> torn{0}, reads{0};
    std::vector<std::thread> threads;
    threads.emplace_back(
        [&]
        {
            for (int i = 0; !stop; ++i)
                SysInfoHelper::setSysInfoInt(9, i % 2 == 0 ? 0x11111111 : 0x22222222);
        });
    for (int reader = 0; reader < 2; ++reader)
        threads.emplace_back(
            [&, reader]
            {
                while (!stop)
                {
                    const auto text = SettingHelper::getSettingString(reader * 50).toStdString();
                    const int sys = SysInfoHelper::getSysInfoInt(9);
                    torn += text.size() != 900 || text.find_first_not_of(text[0]) != std::string::npos
                            || (sys != 0 && sys != 0x11111111 && sys != 0x22222222);
                    ++reads;
                }
            });
    juce::Thread::sleep(300);
    stop = true;
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(torn, 0);
    EXPECT_GT(reads, 0);
    EXPECT_TRUE(LogLines::all().empty());
}
