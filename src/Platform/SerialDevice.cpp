#include "Platform/SerialDevice.h"

#include "Platform/BoardProfile.h"
#include "Platform/PosixCall.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <termios.h>
#include <unistd.h>

#include <chrono>

namespace Platform
{

namespace
{
struct Speed
{
    int baud;
    speed_t code;
};
constexpr Speed kSpeeds[] = {
    {50, B50},         {75, B75},         {110, B110},         {134, B134},         {150, B150},
    {200, B200},       {300, B300},       {600, B600},         {1200, B1200},       {1800, B1800},
    {2400, B2400},     {4800, B4800},     {9600, B9600},       {19200, B19200},     {38400, B38400},
    {57600, B57600},   {115200, B115200}, {230400, B230400},   {460800, B460800},   {500000, B500000},
    {576000, B576000}, {921600, B921600}, {1000000, B1000000}, {1500000, B1500000}, {2000000, B2000000},
};

// A waiting read looks at the cancel flag this often.
constexpr int kCancelCheckMs = 50;
// The short timed reads: 5 ms per byte plus 5 ms in all, 5 ms of quiet between bytes.
constexpr int kTimedStepMs = 5;

int errorOf(int result)
{
    return result < 0 ? (errno != 0 ? errno : EIO) : 0;
}
} // namespace

SerialDevice::~SerialDevice()
{
    close();
}

int SerialDevice::open(const juce::String& deviceName)
{
    if (m_fd >= 0)
        return EBUSY;
    auto node = BoardProfile::deviceNode(deviceName);
    if (node.isEmpty())
        return ENOENT;
    // Non-blocking while opening, so that a line without carrier does not hold us.
    auto fd = posixCall([&] { return ::open(node.toRawUTF8(), O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK); });
    if (fd.failed())
        return fd.error;
    auto fail = [&](int error)
    {
        ::close(fd.value);
        return error;
    };
    // No sharing: one opener at a time, across processes too.
    auto locked = posixCall([&] { return ::flock(fd.value, LOCK_EX | LOCK_NB); });
    if (locked.failed())
        return fail(locked.error);

    termios tio{};
    if (::tcgetattr(fd.value, &tio) != 0)
        return fail(errorOf(-1));
    ::cfmakeraw(&tio);
    tio.c_cflag |= CLOCAL | CREAD;
    tio.c_cc[VMIN] = 0; // reads never block in the driver; waiting is done with poll
    tio.c_cc[VTIME] = 0;
    if (::tcsetattr(fd.value, TCSANOW, &tio) != 0)
        return fail(errorOf(-1));
    const int flags = ::fcntl(fd.value, F_GETFL);
    if (flags < 0 || ::fcntl(fd.value, F_SETFL, flags & ~O_NONBLOCK) != 0)
        return fail(errorOf(-1));

    m_fd = fd.value;
    m_cancelled = false;
    return 0;
}

void SerialDevice::close()
{
    if (m_fd < 0)
        return;
    ::close(m_fd);
    m_fd = -1;
}

int SerialDevice::getSettings(Settings& settings) const
{
    if (m_fd < 0)
        return EBADF;
    termios tio{};
    if (::tcgetattr(m_fd, &tio) != 0)
        return errorOf(-1);
    Settings read;
    const speed_t speed = ::cfgetospeed(&tio);
    for (auto& entry : kSpeeds)
        if (entry.code == speed)
            read.baud = entry.baud;
    switch (tio.c_cflag & CSIZE)
    {
    case CS5:
        read.dataBits = 5;
        break;
    case CS6:
        read.dataBits = 6;
        break;
    case CS7:
        read.dataBits = 7;
        break;
    default:
        read.dataBits = 8;
        break;
    }
    if (tio.c_cflag & PARENB)
    {
        const bool odd = (tio.c_cflag & PARODD) != 0;
        read.parity = (tio.c_cflag & CMSPAR) ? (odd ? 3 : 4) : (odd ? 1 : 2);
    }
    read.stopBits = (tio.c_cflag & CSTOPB) ? 2 : 0;
    read.hardwareFlow = (tio.c_cflag & CRTSCTS) != 0;
    read.xonOutput = (tio.c_iflag & IXON) != 0;
    read.xonInput = (tio.c_iflag & IXOFF) != 0;
    settings = read;
    return 0;
}

int SerialDevice::setSettings(const Settings& settings)
{
    if (m_fd < 0)
        return EBADF;
    termios tio{};
    if (::tcgetattr(m_fd, &tio) != 0)
        return errorOf(-1);

    const Speed* speed = nullptr;
    for (auto& entry : kSpeeds)
        if (entry.baud == settings.baud)
            speed = &entry;
    if (speed == nullptr || settings.dataBits < 5 || settings.dataBits > 8 || settings.parity < 0 || settings.parity > 4
        || (settings.stopBits != 0 && settings.stopBits != 2))
        return EINVAL; // one and a half stop bits do not exist on termios
    ::cfsetispeed(&tio, speed->code);
    ::cfsetospeed(&tio, speed->code);

    const tcflag_t sizes[] = {CS5, CS6, CS7, CS8};
    tio.c_cflag = (tio.c_cflag & ~CSIZE) | sizes[settings.dataBits - 5];
    tio.c_cflag &= ~(PARENB | PARODD | CMSPAR | CSTOPB | CRTSCTS);
    tio.c_iflag &= ~(INPCK | IXON | IXOFF);
    if (settings.parity != 0)
    {
        tio.c_cflag |= PARENB;
        tio.c_iflag |= INPCK;
        if (settings.parity == 1 || settings.parity == 3)
            tio.c_cflag |= PARODD;
        if (settings.parity >= 3)
            tio.c_cflag |= CMSPAR;
    }
    if (settings.stopBits == 2)
        tio.c_cflag |= CSTOPB;
    if (settings.hardwareFlow)
        tio.c_cflag |= CRTSCTS;
    if (settings.xonOutput)
        tio.c_iflag |= IXON;
    if (settings.xonInput)
        tio.c_iflag |= IXOFF;
    return ::tcsetattr(m_fd, TCSANOW, &tio) != 0 ? errorOf(-1) : 0;
}

int SerialDevice::waitReadable(int timeoutMs)
{
    const auto start = std::chrono::steady_clock::now();
    for (;;)
    {
        if (m_cancelled)
            return ECANCELED;
        int slice = kCancelCheckMs;
        if (timeoutMs >= 0)
        {
            const auto passed =
                (int)std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start)
                    .count();
            if (passed >= timeoutMs)
                return ETIMEDOUT;
            slice = std::min(slice, timeoutMs - passed);
        }
        pollfd entry{m_fd, POLLIN, 0};
        auto ready = posixCall([&] { return ::poll(&entry, 1, slice); });
        if (ready.failed())
            return ready.error;
        // A hung-up peer counts as readable: the read then tells what happened.
        if (ready.value > 0)
            return 0;
    }
}

int SerialDevice::read(void* data, size_t size, size_t& got)
{
    got = 0;
    if (m_fd < 0)
        return EBADF;
    auto* bytes = static_cast<unsigned char*>(data);
    const ReadMode mode = m_readMode;
    const int total = (int)std::min<size_t>(size, 100000) * kTimedStepMs + kTimedStepMs;
    const auto start = std::chrono::steady_clock::now();
    while (got < size)
    {
        if (mode != ReadMode::Immediate)
        {
            int wait = -1;
            if (mode == ReadMode::Timed)
            {
                const auto passed =
                    (int)std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start)
                        .count();
                wait = got > 0 ? kTimedStepMs : std::max(0, total - passed);
            }
            const int waited = waitReadable(wait);
            if (waited == ETIMEDOUT)
                return 0;
            if (waited != 0)
                return got > 0 && waited == ECANCELED ? 0 : waited;
        }
        auto result = posixCall([&] { return ::read(m_fd, bytes + got, size - got); });
        if (result.failed())
            return result.error == EAGAIN ? 0 : result.error;
        if (result.value == 0)
            return 0; // nothing there (or the end)
        got += (size_t)result.value;
        if (mode == ReadMode::Immediate)
            return 0;
    }
    return 0;
}

int SerialDevice::write(const void* data, size_t size, size_t& written)
{
    written = 0;
    if (m_fd < 0)
        return EBADF;
    while (written < size)
    {
        auto result =
            posixCall([&] { return ::write(m_fd, static_cast<const char*>(data) + written, size - written); });
        if (result.failed())
            return result.error;
        written += (size_t)result.value;
    }
    return 0;
}

} // namespace Platform
