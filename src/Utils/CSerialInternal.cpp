#include "Utils/CSerialInternal.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

namespace
{
constexpr int kPollPeriodMs = 20;
// Receive characters, breaks and line errors.
constexpr unsigned kDefaultMask =
    CSerialInternal::kEventRxChar | CSerialInternal::kEventBreak | CSerialInternal::kEventErr;
} // namespace

CSerialInternal::~CSerialInternal()
{
    m_port.close();
}

void CSerialInternal::checkSynchronous(void* overlapped, unsigned timeout)
{
    if (overlapped != nullptr || timeout != kInfinite)
    {
        std::fprintf(stderr, "Serial library: Timeouts are not supported, when SERIAL_NO_CANCELIO is defined\n");
        std::abort();
    }
}

int CSerialInternal::open(const juce::String& device, unsigned, unsigned, bool)
{
    m_lastError = 0;
    if (m_port.isOpen())
        return fail(kErrorAlreadyOpen);
    m_portName = device;
    if (const int error = m_port.open(device))
        return fail(error);
    setMask(kDefaultMask);
    return m_lastError;
}

int CSerialInternal::close()
{
    m_lastError = 0;
    m_port.close();
    return 0;
}

int CSerialInternal::readSettings(Platform::SerialDevice::Settings& settings)
{
    if (!m_port.isOpen())
        return fail(kErrorNotOpen);
    if (const int error = m_port.getSettings(settings))
        return fail(error);
    return 0;
}

int CSerialInternal::setup(int baud, int dataBits, int parity, int stopBits)
{
    m_lastError = 0;
    Platform::SerialDevice::Settings settings;
    if (readSettings(settings) != 0)
        return m_lastError;
    settings.baud = baud;
    settings.dataBits = dataBits;
    settings.parity = parity;
    settings.stopBits = stopBits;
    return fail(m_port.setSettings(settings));
}

int CSerialInternal::setEventChar(char ch, bool adjustMask)
{
    m_lastError = 0;
    if (!m_port.isOpen())
        return fail(kErrorNotOpen);
    if (adjustMask)
        setMask(getEventMask() | kEventRxFlag);
    m_eventChar = ch;
    return m_lastError;
}

int CSerialInternal::setMask(unsigned mask)
{
    m_lastError = 0;
    if (!m_port.isOpen())
        return fail(kErrorNotOpen);
    // Linux has no event mask to refuse, so the reopen that followed a refused mask never
    // happens here; the mask only selects what the polling loop reports.
    m_eventMask = mask;
    return 0;
}

int CSerialInternal::waitEvent(void* overlapped, unsigned timeout)
{
    checkSynchronous(overlapped, timeout);
    m_lastError = 0;
    if (!m_port.isOpen())
        return fail(kErrorNotOpen);
    std::this_thread::sleep_for(std::chrono::milliseconds(kPollPeriodMs));
    m_pendingEvent = kEventRxChar;
    return 0;
}

int CSerialInternal::setupHandshaking(int mode)
{
    m_lastError = 0;
    Platform::SerialDevice::Settings settings;
    if (readSettings(settings) != 0)
        return m_lastError;
    switch (mode)
    {
    case 0:
        settings.hardwareFlow = settings.xonOutput = settings.xonInput = false;
        break;
    case 1:
        settings.hardwareFlow = true;
        settings.xonOutput = settings.xonInput = false;
        break;
    case 2:
        settings.hardwareFlow = false;
        settings.xonOutput = settings.xonInput = true;
        break;
    default:
        return fail(kErrorBadMode);
    }
    return fail(m_port.setSettings(settings));
}

int CSerialInternal::setupReadTimeouts(int mode)
{
    m_lastError = 0;
    if (!m_port.isOpen())
        return fail(kErrorNotOpen);
    using Mode = Platform::SerialDevice::ReadMode;
    m_port.setReadMode(mode == 0 ? Mode::Immediate : mode == 1 ? Mode::Blocking : Mode::Timed);
    return 0;
}

int CSerialInternal::getBaudrate()
{
    Platform::SerialDevice::Settings settings;
    return readSettings(settings) == 0 ? settings.baud : -1;
}

int CSerialInternal::getDataBits()
{
    Platform::SerialDevice::Settings settings;
    return readSettings(settings) == 0 ? settings.dataBits : -1;
}

int CSerialInternal::getParity()
{
    Platform::SerialDevice::Settings settings;
    return readSettings(settings) == 0 ? settings.parity : -1;
}

int CSerialInternal::getStopBits()
{
    Platform::SerialDevice::Settings settings;
    return readSettings(settings) == 0 ? settings.stopBits : -1;
}

int CSerialInternal::getHandshaking()
{
    Platform::SerialDevice::Settings settings;
    if (readSettings(settings) != 0)
        return -1;
    if (settings.hardwareFlow)
        return 1;
    if (!settings.xonOutput)
        return 0;
    return settings.xonInput ? 2 : 0;
}

unsigned CSerialInternal::getEventMask()
{
    if (!m_port.isOpen())
    {
        fail(kErrorNotOpen);
        return 0;
    }
    return m_eventMask;
}

char CSerialInternal::getEventChar()
{
    if (!m_port.isOpen())
    {
        fail(kErrorNotOpen);
        return 0;
    }
    return m_eventChar;
}

int CSerialInternal::write(const char* text, unsigned* written, void* overlapped, unsigned timeout)
{
    return write(text, text != nullptr ? (unsigned)std::strlen(text) : 0u, written, overlapped, timeout);
}

int CSerialInternal::write(const void* data, unsigned size, unsigned* written, void* overlapped, unsigned timeout)
{
    checkSynchronous(overlapped, timeout);
    m_lastError = 0;
    if (written != nullptr)
        *written = 0;
    if (!m_port.isOpen())
        return fail(kErrorNotOpen);
    size_t done = 0;
    const int error = data != nullptr ? m_port.write(data, size, done) : (size != 0 ? EFAULT : 0);
    if (written != nullptr)
        *written = (unsigned)done;
    return fail(error);
}

int CSerialInternal::read(void* data, unsigned size, unsigned* read)
{
    m_lastError = 0;
    if (read != nullptr)
        *read = 0;
    if (!m_port.isOpen())
        return fail(kErrorNotOpen);
    if (data == nullptr && size != 0)
        return fail(EFAULT);
    size_t got = 0;
    const int error = m_port.read(data, size, got);
    if (read != nullptr)
        *read = (unsigned)got;
    return fail(error);
}
