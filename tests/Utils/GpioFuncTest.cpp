// GPIO requests as the driver sees them, and the Linux driver where there is no GPIO chip.
#include "support/RecordingDriver.h"
#include "support/TestSupport.h"

#include "Platform/BoardProfile.h"
#include "Utils/GpioFunc.h"

using namespace LmComTesting;
using Platform::StreamDriver;

using GpioFuncTest = LmComTest;

TEST_F(GpioFuncTest, RequestsCarryTheDriversCodesAndLevelCodes)
{
    auto driver = RecordingDriver::install(StreamDriver::Kind::Gpio);
    driver->answer = [](const RecordingDriver::Request& request, void* out, size_t, const void*)
    {
        if (request.code == 0x220008)
            *static_cast<unsigned char*>(out) = request.in[0] == 7 ? 0x80 : 0;
        return true;
    };

    EXPECT_TRUE(GpioFunc::setPinFunc(5, 3));
    EXPECT_EQ(driver->openHandles(), 0); // closed after a function request
    EXPECT_TRUE(GpioFunc::writePin(5, true));
    EXPECT_TRUE(GpioFunc::writePin(6, false));
    bool high = false;
    EXPECT_TRUE(GpioFunc::readPin(7, &high));
    EXPECT_TRUE(high);
    EXPECT_TRUE(GpioFunc::readPin(8, &high));
    EXPECT_FALSE(high);
    EXPECT_EQ(driver->openHandles(), 1); // reads and writes leave their handle open

    auto requests = driver->requests();
    ASSERT_EQ(requests.size(), 5u);
    const std::pair<juce::uint32, std::string> expected[] = {
        {0x220004, "05 00 00 00 03 00 00 00"},
        {0x22000C, "05 00 00 00 60 00 00 00"},
        {0x22000C, "06 00 00 00 20 00 00 00"},
        {0x220008, "07 00 00 00"},
        {0x220008, "08 00 00 00"},
    };
    for (size_t i = 0; i < requests.size(); ++i)
    {
        EXPECT_EQ(requests[i].device, "GIO1:");
        EXPECT_EQ(requests[i].code, expected[i].first) << i;
        EXPECT_EQ(hex(requests[i].in.data(), (int)requests[i].in.size()), expected[i].second) << i;
        EXPECT_EQ(requests[i].outSize, requests[i].code == 0x220008 ? 1u : 0u) << i;
    }

    // A refusing driver, then no driver at all.
    driver->answer = [](const RecordingDriver::Request&, void*, size_t, const void*) { return false; };
    high = true;
    EXPECT_FALSE(GpioFunc::setPinFunc(1, 1));
    EXPECT_FALSE(GpioFunc::writePin(1, true));
    EXPECT_FALSE(GpioFunc::readPin(1, &high));
    EXPECT_TRUE(high); // untouched on failure
    driver->present = {"GIO2:"};
    EXPECT_FALSE(GpioFunc::setPinFunc(1, 1));
    EXPECT_FALSE(GpioFunc::writePin(1, true));
    EXPECT_FALSE(GpioFunc::readPin(1, &high));
}

TEST_F(GpioFuncTest, LinuxDriverOnTheGpioCharacterDevice)
{
    // No "GIO1:" entry, and a node that is no GPIO chip: the driver does not open.
    EXPECT_FALSE(GpioFunc::writePin(1, true));
    writeSystemFile("/not-a-chip", "x");
    writeSystemFile(Platform::BoardProfile::kProfilePath,
                    "[devices]\nGIO1: = " + systemFile("/not-a-chip").getFullPathName() + "\n");
    EXPECT_FALSE(GpioFunc::setPinFunc(1, 1));
    EXPECT_FALSE(GpioFunc::readPin(1, nullptr));

    if (!juce::File("/dev/gpiochip0").exists())
        GTEST_SKIP() << "no GPIO chip on this machine (the kernel has no GPIO support)";
    writeSystemFile(Platform::BoardProfile::kProfilePath, "[devices]\nGIO1: = /dev/gpiochip0\n");
    bool high = false;
    EXPECT_TRUE(GpioFunc::readPin(0, &high));
}
