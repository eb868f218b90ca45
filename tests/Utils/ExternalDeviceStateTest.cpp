// Removable devices: folders under the root, and the accessory port through its driver.
#include "support/RecordingDriver.h"
#include "support/TestSupport.h"

#include "Platform/BoardProfile.h"
#include "Utils/ExternalDeviceState.h"

using namespace LmComTesting;

using ExternalDeviceStateTest = LmComTest;

TEST_F(ExternalDeviceStateTest, VolumesAreFoldersAtTheTopOfTheRoot)
{
    EXPECT_EQ(ExternalDeviceState::getUSBConnect(), 0);
    EXPECT_FALSE(ExternalDeviceState::isSDConnect());
    ASSERT_TRUE(systemFile("/Hard Disk2").createDirectory());
    EXPECT_EQ(ExternalDeviceState::getUSBConnect(), 2);
    writeSystemFile("/Hard Disk", "a file, not a volume");
    writeSystemFile("/SD", "a file, not a card");
    EXPECT_EQ(ExternalDeviceState::getUSBConnect(), 2);
    EXPECT_FALSE(ExternalDeviceState::isSDConnect());
    ASSERT_TRUE(systemFile("/Hard Disk4").createDirectory());
    ASSERT_TRUE(systemFile("/Hard Disk5").createDirectory()); // no fifth bit
    ASSERT_TRUE(systemFile("/HARD DISK3").createDirectory()); // names are exact
    EXPECT_EQ(ExternalDeviceState::getUSBConnect(), 0b1010);
    systemFile("/SD").deleteFile();
    ASSERT_TRUE(systemFile("/SD").createDirectory());
    EXPECT_TRUE(ExternalDeviceState::isSDConnect());
}

TEST_F(ExternalDeviceStateTest, TheAccessoryPortAndItsPandoraAnswer)
{
    EXPECT_FALSE(ExternalDeviceState::isIPodConnect()); // no "APD1:" entry
    EXPECT_FALSE(ExternalDeviceState::isPandoraConnect());
    writeSystemFile("/dev-apd", "");
    writeSystemFile(Platform::BoardProfile::kProfilePath,
                    "[devices]\nAPD1: = " + systemFile("/dev-apd").getFullPathName() + "\n");
    // A Linux node opens but has no Pandora request.
    EXPECT_TRUE(ExternalDeviceState::isIPodConnect());
    EXPECT_FALSE(ExternalDeviceState::isPandoraConnect());

    auto driver = RecordingDriver::install(Platform::StreamDriver::Kind::Node);
    unsigned char third = 0;
    driver->answer = [&](const RecordingDriver::Request&, void* out, size_t outSize, const void*)
    {
        std::memset(out, 0xFF, outSize);
        static_cast<unsigned char*>(out)[8] = static_cast<unsigned char*>(out)[9] = 0;
        static_cast<unsigned char*>(out)[10] = static_cast<unsigned char*>(out)[11] = 0;
        static_cast<unsigned char*>(out)[10] = third;
        return true;
    };
    EXPECT_FALSE(ExternalDeviceState::isPandoraConnect()); // third word 0
    third = 1;
    EXPECT_TRUE(ExternalDeviceState::isPandoraConnect());
    auto requests = driver->requests();
    ASSERT_EQ(requests.size(), 2u);
    EXPECT_EQ(requests[0].device, "APD1:");
    EXPECT_EQ(requests[0].code, 0x23041Cu);
    EXPECT_TRUE(requests[0].in.empty());
    EXPECT_EQ(requests[0].outSize, 12u);
    EXPECT_EQ(driver->openHandles(), 0); // closed every time
}
