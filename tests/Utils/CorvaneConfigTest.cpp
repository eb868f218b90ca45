// The SD-as-USB switch.
#include "support/TestSupport.h"

#include <LmCom.h>

using namespace LmComTesting;

using CorvaneConfigTest = LmComTest;

TEST_F(CorvaneConfigTest, SDAsUSBIsReadOnEveryCallAndOnlyZeroTurnsItOff)
{
    EXPECT_TRUE(CorvaneConfig::isUseSDAsUsb()); // no file: -1
    const juce::String ini = "/NandFlash/Application/Bin/QN_MAIN.ini";
    writeSystemFile(ini, "[USB]\nUSBAsSD=0\n");
    EXPECT_FALSE(CorvaneConfig::isUseSDAsUsb());
    writeSystemFile(ini, "[USB]\nUSBAsSD=1\n");
    EXPECT_TRUE(CorvaneConfig::isUseSDAsUsb());
    writeSystemFile(ini, "[USB]\nUSBAsSD=0x0\n");
    EXPECT_FALSE(CorvaneConfig::isUseSDAsUsb());
    writeSystemFile(ini, "[USB]\nUSBAsSD=zero\n");
    EXPECT_TRUE(CorvaneConfig::isUseSDAsUsb());
    writeSystemFile(ini, "[usb]\nUSBAsSD=0\n"); // names are case-sensitive
    EXPECT_TRUE(CorvaneConfig::isUseSDAsUsb());
}
