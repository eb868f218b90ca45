#include "Utils/SerialPort.h"

#include "Utils/CSerialInternalEx.h"

namespace
{
constexpr unsigned kQueueSize = 10240;
constexpr unsigned kChunkSize = 255;
constexpr unsigned kCloseWaitMs = 2000;
} // namespace

class SerialPort::Pimpl : public CSerialInternalEx
{
public:
    explicit Pimpl(SerialCallBack* callback) : m_callback(callback) {}
    ~Pimpl() override { stopListener(kCloseWaitMs); }

    std::atomic<SerialCallBack*> m_callback;

protected:
    void onEvent(unsigned, unsigned) override
    {
        // The buffer belongs to the listener, so a callback that outlives this object still
        // reads valid bytes.
        char* buffer = listenerBuffer();
        if (buffer == nullptr)
            return;
        for (;;)
        {
            unsigned got = 0;
            const int error = read(buffer, kChunkSize, &got);
            if (m_bEventMode && error != 0)
                return;
            if (got == 0)
                return;
            buffer[got] = 0;
            if (auto* callback = m_callback.load())
                if (!callOutside([&] { callback->onDataReceived(buffer, (int)got); }))
                    return; // let go by close(): this object may be gone
            if (m_bEventMode && got != kChunkSize)
                return;
        }
    }
};

SerialPort::SerialPort(SerialCallBack* callback) : m_pImpl(std::make_unique<Pimpl>(callback)) {}

SerialPort::SerialPort(SerialPort& other) : m_pImpl(std::move(other.m_pImpl)) {}

SerialPort& SerialPort::operator=(SerialPort& other)
{
    if (this != &other)
    {
        m_pImpl.reset();
        m_pImpl = std::move(other.m_pImpl);
    }
    return *this;
}

SerialPort::~SerialPort() = default;

bool SerialPort::open(const juce::String& device, int baud)
{
    if (m_pImpl == nullptr)
        return false;
    // A failed open leaves the port closed, and setup then fails; an open port fails with
    // 1247 here but keeps working, so only setup's result counts.
    m_pImpl->open(device, kQueueSize, kQueueSize, true);
    const int setup = m_pImpl->setup(baud, 8, 0, 0);
    m_pImpl->setupReadTimeouts(0);
    return setup == 0;
}

void SerialPort::setCallBack(SerialCallBack* callback)
{
    if (m_pImpl != nullptr)
        m_pImpl->m_callback = callback;
}

int SerialPort::write(void* data, int size)
{
    if (m_pImpl == nullptr || size <= 0)
        return 0;
    unsigned written = 0;
    m_pImpl->write(data, (unsigned)size, &written);
    return (int)written;
}

bool SerialPort::close()
{
    if (m_pImpl == nullptr)
        return false;
    const int stopped = m_pImpl->stopListener(kCloseWaitMs);
    return m_pImpl->CSerialInternal::close() == 0 && stopped == 0;
}
