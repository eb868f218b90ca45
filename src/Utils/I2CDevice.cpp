#include "Utils/I2CDevice.h"

#include "Platform/I2CRequest.h"
#include "Platform/StreamDriver.h"

#include <atomic>
#include <chrono>
#include <cstdio>

namespace
{
using Platform::I2CRequest;

constexpr juce::uint32 kRetryForMs = 3000;
constexpr int kRetrySleepMs = 10;
constexpr unsigned char kReadBackRegister = 0xE0;
constexpr unsigned char kReadBackLimit = 64;

constexpr unsigned char kFirstPreamble[] = {0xA2, 0x54};
constexpr unsigned char kSecondPreamble[] = {0xA1, 0x64};

// The coprocessor's transfers.
constexpr int kCoprocessorClock = 50000;
constexpr int kCoprocessorAttempts = 20;
constexpr int kSwitchFromAttempt = 11;
constexpr unsigned char kCoprocessorWritePreamble[] = {0xA1, 0x23, 0x64};
constexpr unsigned char kCoprocessorRegisterPreamble[] = {0xA2, 0x54};
constexpr unsigned char kCoprocessorReadPreamble[] = {0xA1, 0x63};

// The coprocessor's current address pair (write address; read is write + 1), process-wide.
std::atomic<unsigned char> sCoprocessorWrite{0x22};

void fill(I2CRequest& request, unsigned char address, const unsigned char* first, std::uint32_t firstLength,
          const unsigned char* second, std::uint32_t secondLength, int clock, unsigned char reg,
          const unsigned char* writeData, unsigned char* readData, int length)
{
    request.setWord(1, address & 0xFEu);
    request.setWord(2, address | 0x01u);
    request.setWord(3, first != nullptr ? I2CRequest::low32(first) : 0);
    request.setWord(4, first != nullptr ? firstLength : 0);
    request.setWord(5, second != nullptr ? I2CRequest::low32(second) : 0);
    request.setWord(6, second != nullptr ? secondLength : 0);
    request.setWord(10, (std::uint32_t)clock);
    request.setWord(11, reg);
    request.setWord(12, readData != nullptr ? 1 : 0);
    request.setWord(13, I2CRequest::low32(readData != nullptr ? (const void*)readData : writeData));
    request.setWord(14, (std::uint32_t)length);
    request.firstPreamble = first;
    request.secondPreamble = second;
    request.writeData = readData != nullptr ? nullptr : writeData;
    request.readData = readData;
}
} // namespace

class I2CDevice::Impl
{
public:
    std::unique_ptr<Platform::StreamDevice> device;
    I2CRequest request;
    int clock = 0;

    bool send(I2CRequest& transfer)
    {
        return device != nullptr
               && device->ioControl(I2CRequest::kTransferCode, &transfer, sizeof transfer, nullptr, 0);
    }

    /** A register transfer, tried again every 10 ms until 3 s have passed. */
    bool transfer(unsigned char address, unsigned char reg, const unsigned char* writeData, unsigned char* readData,
                  int length, bool noPreamble)
    {
        fill(request, address, noPreamble ? nullptr : kFirstPreamble, sizeof kFirstPreamble,
             noPreamble ? nullptr : kSecondPreamble, sizeof kSecondPreamble, clock, reg, writeData, readData, length);
        const bool hasData = (readData != nullptr || writeData != nullptr) && length >= 1;
        const auto start = std::chrono::steady_clock::now();
        for (;;)
        {
            if (device == nullptr)
                return false;
            // A write without data fails each attempt, as it always has, until the time is up.
            if (hasData && send(request))
                return true;
            if (std::chrono::steady_clock::now() - start > std::chrono::milliseconds(kRetryForMs))
                return false;
            juce::Thread::sleep(kRetrySleepMs);
        }
    }

    /** One coprocessor phase: up to 20 attempts, switching the address pair before each from
        the eleventh on. */
    bool coprocessor(const unsigned char* first, std::uint32_t firstLength, const unsigned char* second,
                     std::uint32_t secondLength, unsigned char reg, const unsigned char* writeData,
                     unsigned char* readData, int length, const char* failure)
    {
        I2CRequest transfer;
        for (int attempt = 1; attempt <= kCoprocessorAttempts; ++attempt)
        {
            if (attempt >= kSwitchFromAttempt)
                sCoprocessorWrite = sCoprocessorWrite == 0x22 ? 0x20 : 0x22;
            fill(transfer, sCoprocessorWrite, first, firstLength, second, secondLength, kCoprocessorClock, reg,
                 writeData, readData, length);
            if (send(transfer))
                return true;
            if (failure != nullptr)
            {
                std::fputs(failure, stderr);
                juce::Thread::sleep(1);
            }
        }
        return false;
    }
};

I2CDevice::I2CDevice() : m_pImpl(std::make_unique<Impl>()) {}

I2CDevice::I2CDevice(I2CDevice& other) : m_pImpl(std::move(other.m_pImpl)) {}

I2CDevice& I2CDevice::operator=(I2CDevice& other)
{
    if (this != &other)
    {
        close();
        m_pImpl = std::move(other.m_pImpl);
    }
    return *this;
}

I2CDevice::~I2CDevice() = default;

bool I2CDevice::open(const juce::String& name, int clock)
{
    if (m_pImpl == nullptr)
        return false;
    m_pImpl->device.reset();
    m_pImpl->device = Platform::StreamDriver::current(Platform::StreamDriver::Kind::I2C)->open(name);
    if (m_pImpl->device == nullptr)
        return false;
    m_pImpl->clock = clock;
    return true;
}

bool I2CDevice::close()
{
    if (m_pImpl != nullptr)
        m_pImpl->device.reset();
    return true;
}

bool I2CDevice::write(unsigned char address, unsigned char reg, const unsigned char* data, int length, bool noPreamble)
{
    return m_pImpl != nullptr && m_pImpl->transfer(address, reg, data, nullptr, length, noPreamble);
}

bool I2CDevice::read(unsigned char address, unsigned char reg, int length, unsigned char* data, bool noPreamble)
{
    if (m_pImpl == nullptr || data == nullptr || length < 1)
        return false;
    return m_pImpl->transfer(address, reg, nullptr, data, length, noPreamble);
}

bool I2CDevice::readBack(unsigned char address, unsigned char reg, int length, unsigned char* data)
{
    if (reg >= kReadBackLimit || data == nullptr || length == 0)
        return false;
    return write(address, kReadBackRegister, &reg, 1, true) && read(address, reg, length, data, false);
}

bool I2CDevice::writeiPod(unsigned char, unsigned char reg, const unsigned char* data, int length, bool)
{
    if (m_pImpl == nullptr)
        return false;
    return m_pImpl->coprocessor(nullptr, 0, kCoprocessorWritePreamble, sizeof kCoprocessorWritePreamble, reg, data,
                                nullptr, length, nullptr);
}

bool I2CDevice::readiPod(unsigned char, unsigned char reg, int length, unsigned char* data, bool)
{
    if (m_pImpl == nullptr || data == nullptr || length < 1)
        return false;
    // The register write carries the write pair, the read the read pair. The two failure
    // texts are crossed over; tools that scan the output look for them as they are.
    unsigned char registerByte = reg;
    if (!m_pImpl->coprocessor(kCoprocessorRegisterPreamble, sizeof kCoprocessorRegisterPreamble, nullptr, 0, reg,
                              &registerByte, nullptr, 1, "Read 2.0C write error \r\n"))
        return false;
    if (!m_pImpl->coprocessor(nullptr, 0, kCoprocessorReadPreamble, sizeof kCoprocessorReadPreamble, reg, nullptr, data,
                              length, "Write 2.0C read error \r\n"))
        return false;
    std::fprintf(stderr, "buffer[0] = %d buffer[1] = %d \r\n", data[0], length > 1 ? data[1] : 0);
    return true;
}
