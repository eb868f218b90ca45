// The Linux I2C bus driver: the head unit's transfer request carried out with i2c-dev I2C_RDWR.
#include "Platform/BoardProfile.h"
#include "Platform/I2CRequest.h"
#include "Platform/PosixCall.h"
#include "Platform/StreamDriver.h"

#include <fcntl.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <vector>

namespace Platform
{

namespace
{
// Bounds from the record's own fields, checked before a byte is touched.
constexpr std::uint32_t kMaxPreamble = 32;
constexpr std::uint32_t kMaxData = 8192;

class I2CBus : public StreamDevice
{
public:
    explicit I2CBus(int fd) : m_fd(fd) {}
    ~I2CBus() override { ::close(m_fd); }

    /** One I2C_RDWR transaction: each preamble as a write to the address in its first byte
        (the bus driver's pre-commands, sent as given), then the register transfer: a write of
        register and data, or a write of the register followed by a read. The clock of word 10
        is the bus's own under Linux (set by the device tree). */
    bool ioControl(juce::uint32 code, const void* in, size_t inSize, void*, size_t) override
    {
        if (code != I2CRequest::kTransferCode || in == nullptr || inSize != sizeof(I2CRequest))
            return false;
        const auto& request = *static_cast<const I2CRequest*>(in);
        const std::uint32_t length = request.word(14);
        const auto address = (std::uint16_t)((request.word(1) & 0xFF) >> 1);
        const bool read = request.word(12) == 1;
        if ((read ? (const void*)request.readData : request.writeData) == nullptr || length == 0 || length > kMaxData)
            return false;

        std::vector<i2c_msg> messages;
        std::vector<std::vector<unsigned char>> payloads;
        payloads.reserve(4);
        auto addPreamble = [&](const unsigned char* bytes, std::uint32_t size)
        {
            if (bytes == nullptr || size < 2 || size > kMaxPreamble)
                return;
            payloads.emplace_back(bytes + 1, bytes + size);
            messages.push_back({(std::uint16_t)(bytes[0] >> 1), 0, (std::uint16_t)(size - 1), payloads.back().data()});
        };
        addPreamble(request.firstPreamble, request.word(4));
        addPreamble(request.secondPreamble, request.word(6));

        const auto reg = (unsigned char)request.word(11);
        if (read)
        {
            payloads.emplace_back(1, reg);
            messages.push_back({address, 0, 1, payloads.back().data()});
            messages.push_back({address, I2C_M_RD, (std::uint16_t)length, request.readData});
        }
        else
        {
            payloads.emplace_back(1, reg);
            payloads.back().insert(payloads.back().end(), request.writeData, request.writeData + length);
            messages.push_back({address, 0, (std::uint16_t)(length + 1), payloads.back().data()});
        }
        i2c_rdwr_ioctl_data transaction{messages.data(), (std::uint32_t)messages.size()};
        return !posixCall([&] { return ::ioctl(m_fd, I2C_RDWR, &transaction); }).failed();
    }

    bool write(const void*, size_t) override { return false; }

private:
    int m_fd;
};

class I2CDevDriver : public StreamDriver
{
public:
    std::unique_ptr<StreamDevice> open(const juce::String& name) override
    {
        auto node = BoardProfile::deviceNode(name);
        if (node.isEmpty())
            return nullptr;
        auto fd = posixCall([&] { return ::open(node.toRawUTF8(), O_RDWR | O_CLOEXEC | O_NOCTTY | O_NONBLOCK); });
        if (fd.failed())
            return nullptr;
        return std::make_unique<I2CBus>(fd.value);
    }
};
} // namespace

std::unique_ptr<StreamDriver> StreamDriver::linuxI2CDriver()
{
    return std::make_unique<I2CDevDriver>();
}

} // namespace Platform
