// I2C requests as the bus driver sees them: the 56-byte record, the retries and the
// coprocessor's address probing.
#include "support/RecordingDriver.h"
#include "support/TestSupport.h"

#include "Platform/BoardProfile.h"
#include "Platform/I2CRequest.h"
#include "Utils/I2CDevice.h"

using namespace LmComTesting;
using Platform::I2CRequest;
using Platform::StreamDriver;

namespace
{
const I2CRequest& requestOf(const RecordingDriver::Request& recorded)
{
    return *reinterpret_cast<const I2CRequest*>(recorded.in.data());
}

/** The record's words 1 to 14 in hex, the pointer words (3, 5, 13) as EE unless null. */
std::string fixedWords(const RecordingDriver::Request& recorded)
{
    auto words = recorded.in;
    for (int word : {3, 5, 13})
        if (requestOf(recorded).word(word) != 0)
            std::fill(words.begin() + 4 * (word - 1), words.begin() + 4 * word, 0xEE);
    return hex(words.data(), (int)I2CRequest::kRecordSize);
}

std::string bytes(const unsigned char* data, std::uint32_t size)
{
    return data != nullptr ? hex(data, (int)size) : "null";
}
} // namespace

class I2CDeviceTest : public LmComTest
{
protected:
    void SetUp() override
    {
        LmComTest::SetUp();
        m_driver = RecordingDriver::install(StreamDriver::Kind::I2C);
        // The request is checked here, while the buffers it points to are alive.
        m_driver->answer = [this](const RecordingDriver::Request& request, void*, size_t, const void* in)
        {
            EXPECT_EQ(request.code, 0x220004u);
            EXPECT_EQ(request.in.size(), sizeof(I2CRequest));
            const auto& sent = *static_cast<const I2CRequest*>(in);
            EXPECT_EQ(sent.word(3), I2CRequest::low32(sent.firstPreamble));
            EXPECT_EQ(sent.word(5), I2CRequest::low32(sent.secondPreamble));
            auto* data = sent.readData != nullptr ? (const void*)sent.readData : sent.writeData;
            EXPECT_EQ(sent.word(13), I2CRequest::low32(data));
            m_preambles.push_back(bytes(sent.firstPreamble, sent.word(4)) + " / "
                                  + bytes(sent.secondPreamble, sent.word(6)));
            if (sent.writeData != nullptr)
                m_written.push_back(hex(sent.writeData, (int)sent.word(14)));
            if (sent.readData != nullptr && m_accept(sent))
                for (std::uint32_t i = 0; i < sent.word(14); ++i)
                    sent.readData[i] = (unsigned char)(0x40 + i);
            return m_accept(sent);
        };
    }

    std::shared_ptr<RecordingDriver> m_driver;
    std::function<bool(const I2CRequest&)> m_accept = [](const I2CRequest&) { return true; };
    std::vector<std::string> m_preambles, m_written;
};

TEST_F(I2CDeviceTest, RegisterTransfersBuildTheRecordAsTheDriverExpects)
{
    I2CDevice device;
    unsigned char buffer[4] = {};
    const unsigned char data[3] = {1, 2, 3};
    EXPECT_FALSE(device.read(0x51, 0x10, 4, buffer)); // not open: fails at once
    EXPECT_FALSE(device.write(0x51, 0x10, data, 3));
    EXPECT_TRUE(m_driver->requests().empty());

    ASSERT_TRUE(device.open("I2C1:", 400000));
    EXPECT_TRUE(device.write(0x51, 0x10, data, 3));
    EXPECT_TRUE(device.read(0x51, 0x11, 4, buffer, true));
    EXPECT_EQ(hex(buffer, 4), "40 41 42 43");
    EXPECT_FALSE(device.read(0x51, 0x11, 0, buffer));
    EXPECT_FALSE(device.read(0x51, 0x11, 4, nullptr));

    auto requests = m_driver->requests();
    ASSERT_EQ(requests.size(), 2u);
    EXPECT_EQ(requests[0].device, "I2C1:");
    // write 0x50 / read 0x51, preambles of 2, clock 400000, register, direction, length.
    EXPECT_EQ(fixedWords(requests[0]), "50 00 00 00 51 00 00 00 EE EE EE EE 02 00 00 00 EE EE EE EE 02 00 00 00 "
                                       "00 00 00 00 00 00 00 00 00 00 00 00 80 1A 06 00 10 00 00 00 00 00 00 00 "
                                       "EE EE EE EE 03 00 00 00");
    EXPECT_EQ(fixedWords(requests[1]), "50 00 00 00 51 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
                                       "00 00 00 00 00 00 00 00 00 00 00 00 80 1A 06 00 11 00 00 00 01 00 00 00 "
                                       "EE EE EE EE 04 00 00 00");
    EXPECT_EQ(requests[1].in[8], 0); // no preamble: null pointer words
    EXPECT_EQ(m_preambles, (std::vector<std::string>{"A2 54 / A1 64", "null / null"}));
    EXPECT_EQ(m_written, (std::vector<std::string>{"01 02 03"}));

    // readBack: register 64 and above never reach the bus; below, 0xE0 <- reg, then the read.
    EXPECT_FALSE(device.readBack(0x51, 64, 2, buffer));
    EXPECT_EQ(m_driver->requests().size(), 2u);
    EXPECT_TRUE(device.readBack(0x51, 0x21, 2, buffer));
    requests = m_driver->requests();
    ASSERT_EQ(requests.size(), 4u);
    EXPECT_EQ(requestOf(requests[2]).word(11), 0xE0u);
    EXPECT_EQ(m_written.back(), "21");
    EXPECT_EQ(requestOf(requests[3]).word(11), 0x21u);
    EXPECT_EQ(requestOf(requests[3]).word(12), 1u);
    EXPECT_EQ(m_preambles.back(), "A2 54 / A1 64");

    // Copying moves the device; closing leaves every transfer failing at once.
    I2CDevice other(device);
    EXPECT_FALSE(device.write(0x51, 0x10, data, 3));
    EXPECT_TRUE(other.close());
    EXPECT_FALSE(other.write(0x51, 0x10, data, 3));
    EXPECT_EQ(m_driver->requests().size(), 4u);
    m_driver->present = {"I2C1:"};
    EXPECT_FALSE(other.open("I2C9:", 100000));
}

TEST_F(I2CDeviceTest, ASilentSlaveIsRetriedEveryTenMillisecondsForThreeSeconds)
{
    I2CDevice device;
    ASSERT_TRUE(device.open("I2C1:", 100000));
    m_accept = [](const I2CRequest&) { return false; };
    const unsigned char data[1] = {9};
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(device.write(0x51, 0x10, data, 1));
    const auto took = std::chrono::steady_clock::now() - start;
    EXPECT_GT(std::chrono::duration_cast<std::chrono::milliseconds>(took).count(), 3000);
    auto requests = m_driver->requests();
    // Attempts about 10 ms apart: no fewer than a slow machine makes, no more than 10 ms allows.
    EXPECT_GT(requests.size(), 100u);
    EXPECT_LE(requests.size(), 302u);
}

TEST_F(I2CDeviceTest, TheCoprocessorIsFoundAtItsOtherAddressFromTheEleventhAttempt)
{
    I2CDevice device;
    ASSERT_TRUE(device.open("I2C1:", 100000));
    m_accept = [](const I2CRequest& request) { return request.word(1) == 0x20 && request.word(2) == 0x21; };
    const unsigned char data[2] = {7, 8};
    EXPECT_TRUE(device.writeiPod(0x99, 0x05, data, 2));
    auto requests = m_driver->requests();
    ASSERT_EQ(requests.size(), 11u);
    for (size_t i = 0; i < 10; ++i)
        EXPECT_EQ(requestOf(requests[i]).word(1), 0x22u) << i;
    EXPECT_EQ(fixedWords(requests[10]), "20 00 00 00 21 00 00 00 00 00 00 00 00 00 00 00 EE EE EE EE 03 00 00 00 "
                                        "00 00 00 00 00 00 00 00 00 00 00 00 50 C3 00 00 05 00 00 00 00 00 00 00 "
                                        "EE EE EE EE 02 00 00 00");
    EXPECT_EQ(m_preambles.back(), "null / A1 23 64");

    // The pair that worked is where the next call starts: a read, register write then read.
    unsigned char buffer[2] = {};
    EXPECT_TRUE(device.readiPod(0x99, 0x06, 2, buffer));
    requests = m_driver->requests();
    ASSERT_EQ(requests.size(), 13u);
    EXPECT_EQ(requestOf(requests[11]).word(1), 0x20u);
    EXPECT_EQ(requestOf(requests[11]).word(12), 0u);
    EXPECT_EQ(m_written.back(), "06");
    EXPECT_EQ(requestOf(requests[12]).word(12), 1u);
    EXPECT_EQ(m_preambles[11], "A2 54 / null");
    EXPECT_EQ(m_preambles[12], "null / A1 63");
    EXPECT_EQ(hex(buffer, 2), "40 41");

    // Nobody answers: 20 attempts, alternating from the eleventh.
    m_accept = [](const I2CRequest&) { return false; };
    EXPECT_FALSE(device.writeiPod(0, 0x05, data, 2));
    requests = m_driver->requests();
    ASSERT_EQ(requests.size(), 33u);
    std::string pairs;
    for (size_t i = 13; i < 33; ++i)
        pairs += juce::String::toHexString((int)requestOf(requests[i]).word(1)).toStdString() + " ";
    EXPECT_EQ(pairs, "20 20 20 20 20 20 20 20 20 20 22 20 22 20 22 20 22 20 22 20 ");
}

TEST_F(I2CDeviceTest, LinuxDriverOnI2cDev)
{
    StreamDriver::install(StreamDriver::Kind::I2C, nullptr);
    I2CDevice device;
    EXPECT_FALSE(device.open("I2C1:", 100000)); // no profile entry
    writeSystemFile("/not-a-bus", "x");
    writeSystemFile(Platform::BoardProfile::kProfilePath,
                    "[devices]\nI2C1: = " + systemFile("/not-a-bus").getFullPathName() + "\n");
    ASSERT_TRUE(device.open("I2C1:", 100000));
    unsigned char buffer[2] = {};
    EXPECT_FALSE(device.readiPod(0, 0x01, 2, buffer)); // a plain file refuses I2C_RDWR

    if (!juce::File("/dev/i2c-0").exists())
        GTEST_SKIP() << "no I2C bus on this machine (the kernel has no I2C support)";
}
