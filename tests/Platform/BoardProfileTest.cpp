// The board profile: device names of the head unit mapped to Linux nodes.
#include "support/TestSupport.h"

#include "Platform/BoardProfile.h"

#include <sys/stat.h>

using namespace LmComTesting;
using Platform::BoardProfile;

using BoardProfileTest = LmComTest;

TEST_F(BoardProfileTest, NamesAreTakenWholeColonIncluded)
{
    writeSystemFile(BoardProfile::kProfilePath, "; the board of the bench\n"
                                                "[other]\n"
                                                "COM2: = /dev/wrong\n"
                                                "[devices]\n"
                                                "COM2: = /dev/ttyS1\n"
                                                "  GIO1:=/dev/gpiochip0  \r\n"
                                                "# APD1: = /dev/commented\n"
                                                "I2C1: = /dev/i2c-1 ; not a comment inside a value\n"
                                                "EPM1: = /dev/ttyS1\n"
                                                "EPM1: = /dev/eeprom\n"
                                                "no equals sign\n"
                                                "= /dev/nameless\n"
                                                "[devices2]\n"
                                                "COM3: = /dev/ttyS2");
    EXPECT_EQ(BoardProfile::deviceNode("COM2:"), "/dev/ttyS1");
    EXPECT_EQ(BoardProfile::deviceNode("COM2"), ""); // the colon is part of the name
    EXPECT_EQ(BoardProfile::deviceNode("GIO1:"), "/dev/gpiochip0");
    EXPECT_EQ(BoardProfile::deviceNode("APD1:"), "");
    EXPECT_EQ(BoardProfile::deviceNode("I2C1:"), "/dev/i2c-1 ; not a comment inside a value");
    EXPECT_EQ(BoardProfile::deviceNode("EPM1:"), "/dev/eeprom");
    EXPECT_EQ(BoardProfile::deviceNode("COM3:"), "");
    EXPECT_EQ(BoardProfile::deviceNode("/dev/pts/7"), "/dev/pts/7"); // already a path
    EXPECT_EQ(BoardProfile::deviceNode("gio1:"), "");

    auto entries = BoardProfile::entries();
    ASSERT_EQ(entries.size(), 4u);
    EXPECT_EQ(entries[0].first, "COM2:");
    EXPECT_EQ(entries[3].first, "EPM1:");
    EXPECT_EQ(entries[3].second, "/dev/eeprom");
}

TEST_F(BoardProfileTest, HostileProfilesGiveNoEntriesRatherThanFailures)
{
    EXPECT_EQ(BoardProfile::deviceNode("COM2:"), ""); // no profile at all

    juce::Random random(12);
    for (int round = 0; round < 200; ++round)
    {
        juce::MemoryBlock bytes;
        for (int i = random.nextInt(300); i > 0; --i)
        {
            const char pick[] = "[]=:;#\n\r devicesCOM2\xff\xc3";
            bytes.append(&pick[random.nextInt((int)sizeof pick - 1)], 1);
        }
        for (auto& entry : BoardProfile::parse(bytes))
            EXPECT_TRUE(entry.first.isNotEmpty() && !entry.first.containsChar('='));
    }

    // Not UTF-8: decoded with replacement characters, never a crash.
    const char bad[] = "[devices]\nCOM\xff: = /dev/\xc3\n";
    auto entries = BoardProfile::parse(juce::MemoryBlock(bad, sizeof bad - 1));
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].first, juce::String(juce::CharPointer_UTF8("COM\xef\xbf\xbd:")));

    // A FIFO in place of the profile is no profile (and no wait for a writer).
    ASSERT_EQ(mkfifo(systemFile(BoardProfile::kProfilePath).getFullPathName().toRawUTF8(), 0600), 0);
    EXPECT_EQ(BoardProfile::deviceNode("COM2:"), "");
    systemFile(BoardProfile::kProfilePath).deleteFile();

    // Only the first 64 KiB of a huge profile count.
    juce::String huge = "[devices]\n";
    huge << juce::String::repeatedString("; padding\n", 7000) << "COM2: = /dev/late\n";
    writeSystemFile(BoardProfile::kProfilePath, huge);
    EXPECT_EQ(BoardProfile::deviceNode("COM2:"), "");
}
