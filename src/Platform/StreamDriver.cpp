#include "Platform/StreamDriver.h"

#include "Platform/BoardProfile.h"
#include "Platform/PosixCall.h"

#include <fcntl.h>
#include <unistd.h>

#include <map>
#include <mutex>

namespace Platform
{

namespace
{
class NodeDevice : public StreamDevice
{
public:
    explicit NodeDevice(int fd) : m_fd(fd) {}
    ~NodeDevice() override { ::close(m_fd); }

    // A Linux node has none of the head unit's control codes; sending an unknown code to
    // whatever the node is could do anything.
    bool ioControl(juce::uint32, const void*, size_t, void*, size_t) override { return false; }

    bool write(const void* data, size_t size) override
    {
        size_t done = 0;
        while (done < size)
        {
            auto result = posixCall([&] { return ::write(m_fd, static_cast<const char*>(data) + done, size - done); });
            if (result.failed() || result.value == 0)
                return false;
            done += (size_t)result.value;
        }
        return true;
    }

private:
    int m_fd;
};

class NodeDriver : public StreamDriver
{
public:
    std::unique_ptr<StreamDevice> open(const juce::String& name) override
    {
        auto node = BoardProfile::deviceNode(name);
        if (node.isEmpty())
            return nullptr;
        // Non-blocking so that a FIFO or a tty without carrier cannot hold the caller.
        auto fd = posixCall([&] { return ::open(node.toRawUTF8(), O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK); });
        if (fd.failed())
            return nullptr;
        return std::make_unique<NodeDevice>(fd.value);
    }
};

std::mutex sLock;

std::map<StreamDriver::Kind, std::shared_ptr<StreamDriver>>& installed()
{
    static std::map<StreamDriver::Kind, std::shared_ptr<StreamDriver>> drivers;
    return drivers;
}
} // namespace

std::unique_ptr<StreamDriver> StreamDriver::linuxNodeDriver()
{
    return std::make_unique<NodeDriver>();
}

std::shared_ptr<StreamDriver> StreamDriver::current(Kind kind)
{
    std::lock_guard<std::mutex> lock(sLock);
    auto& driver = installed()[kind];
    if (driver == nullptr)
    {
        switch (kind)
        {
        case Kind::Node:
            driver = linuxNodeDriver();
            break;
        case Kind::Gpio:
            driver = linuxGpioDriver();
            break;
        case Kind::I2C:
            driver = linuxI2CDriver();
            break;
        }
    }
    return driver;
}

void StreamDriver::install(Kind kind, std::shared_ptr<StreamDriver> driver)
{
    std::lock_guard<std::mutex> lock(sLock);
    installed()[kind] = std::move(driver);
}

} // namespace Platform
