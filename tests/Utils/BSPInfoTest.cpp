// Board versions and identities, from a fake board and from a Linux board over a made-up
// system tree.
#include "support/FakeBoard.h"
#include "support/TestSupport.h"

#include "Platform/BoardProfile.h"
#include "Utils/BSPInfo.h"

using namespace LmComTesting;

using BSPInfoTest = LmComTest;

TEST_F(BSPInfoTest, TextsFromTheBoardAndTheirFailureValues)
{
    auto board = FakeBoard::install();
    EXPECT_EQ(BSPInfo::getEBootVersion(), "");
    EXPECT_EQ(BSPInfo::getOSVersion(), "");
    EXPECT_EQ(BSPInfo::getNBootVersion(), "");
    EXPECT_EQ(BSPInfo::getSDID(), "SDID_V ");
    EXPECT_EQ(BSPInfo::getUUID(), "UUID_V ");

    board->os = "LMQ OS 5.0 build 42";
    board->boot = "NBOOT 1.7";
    board->sdCard = "035344534430384780ffffffff0123";
    board->id = std::array<unsigned char, 16>{0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE,
                                              0x00, 0x1F, 0xA5, 0xFF, 0x90, 0x09, 0x3C, 0x7B};
    EXPECT_EQ(BSPInfo::getOSVersion(), "LMQ OS 5.0 build 42");
    EXPECT_EQ(BSPInfo::getNBootVersion(), "NBOOT 1.7");
    EXPECT_EQ(BSPInfo::getEBootVersion(), "");
    EXPECT_EQ(BSPInfo::getSDID(), "SDID_V 035344534430384780ffffffff0123");
    // Bytes 8 to 15, high nibble then low nibble, each in decimal: 10 to 15 take two digits.
    EXPECT_EQ(BSPInfo::getUUID(), "UUID_V 0011510515159009312711");
}

TEST_F(BSPInfoTest, SetUUIDPacksSixteenCharactersIntoEightBytesOnTheEeprom)
{
    auto eeprom = systemFile("/dev-eeprom");
    EXPECT_FALSE(BSPInfo::setUUID("0123456789ABCDEF")); // no "EPM1:" in the profile

    writeSystemFile(Platform::BoardProfile::kProfilePath, "[devices]\nEPM1: = " + eeprom.getFullPathName() + "\n");
    EXPECT_FALSE(BSPInfo::setUUID("0123456789ABCDEF")); // mapped, but no such node
    ASSERT_TRUE(eeprom.create());

    EXPECT_FALSE(BSPInfo::setUUID("0123456789ABCDE"));
    EXPECT_FALSE(BSPInfo::setUUID("0123456789ABCDEF0"));
    EXPECT_EQ(eeprom.getSize(), 0); // not touched

    ASSERT_TRUE(BSPInfo::setUUID("0123456789ABCDEF"));
    juce::MemoryBlock written;
    ASSERT_TRUE(eeprom.loadFileAsData(written));
    // Character 2i shifted four bits (kept to 8 bits), then the low nibble of character 2i+1.
    EXPECT_EQ(hex(written.getData(), (int)written.getSize()), "01 23 45 67 89 12 34 56");
}

TEST_F(BSPInfoTest, LinuxBoardReadsWhatTheSystemHas)
{
    auto empty = Platform::Board::linuxBoard(m_root.getFullPathName());
    EXPECT_EQ(empty->osVersion(), "");
    EXPECT_EQ(empty->bootVersion(), "");
    EXPECT_FALSE(empty->sdCardId().has_value());
    EXPECT_FALSE(empty->uuid().has_value());
    EXPECT_FALSE(empty->retrieveCameraControl());
    EXPECT_FALSE(empty->setDisplayFormat("NavigRecive", 34));

    writeSystemFile("/etc/os-release", "NAME=\"Debian GNU/Linux\"\nVERSION_ID=\"12\"\n"
                                       "PRETTY_NAME=\"Debian GNU/Linux 12 (bookworm)\"\n");
    writeSystemFile("/sys/class/dmi/id/bios_version", "1.4.2\n");
    writeSystemFile("/sys/class/dmi/id/product_uuid", "00112233-4455-6677-8899-aabbccddeeff\n");
    writeSystemFile("/sys/bus/mmc/devices/mmc0:0001/type", "MMC\n");
    writeSystemFile("/sys/bus/mmc/devices/mmc0:0001/cid", "1501004d4d43333247\n");
    writeSystemFile("/sys/bus/mmc/devices/mmc1:aaaa/type", "SD\n");
    writeSystemFile("/sys/bus/mmc/devices/mmc1:aaaa/cid", "035344534430384780ffffffff0123\n");
    auto board = Platform::Board::linuxBoard(m_root.getFullPathName());
    EXPECT_EQ(board->osVersion(), "Debian GNU/Linux 12 (bookworm)");
    EXPECT_EQ(board->bootVersion(), "1.4.2");
    EXPECT_EQ(board->sdCardId().value_or("none"), "035344534430384780ffffffff0123");
    auto uuid = board->uuid();
    ASSERT_TRUE(uuid.has_value());
    EXPECT_EQ(hex(uuid->data() + 8, 8), "88 99 AA BB CC DD EE FF");

    // A device tree's serial number stands in for a missing DMI identity; junk is no identity.
    systemFile("/sys/class/dmi/id/product_uuid").deleteFile();
    writeSystemFile("/sys/firmware/devicetree/base/serial-number", "10000000abcdef01");
    EXPECT_EQ(hex(board->uuid()->data() + 8, 8), "10 00 00 00 AB CD EF 01");
    writeSystemFile("/sys/firmware/devicetree/base/serial-number", "not hex at all");
    EXPECT_FALSE(board->uuid().has_value());
    writeSystemFile("/sys/bus/mmc/devices/mmc1:aaaa/cid", juce::String::repeatedString("ab", 40));
    EXPECT_FALSE(board->sdCardId().has_value());
}
