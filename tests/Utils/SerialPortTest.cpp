// Serial ports against pseudo-terminals (the test holds the other end) and against socat.
#include "support/Command.h"
#include "support/TestSupport.h"

#include "Platform/BoardProfile.h"
#include "Utils/CSerialInternal.h"
#include "Utils/SerialPort.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

using namespace LmComTesting;
using Clock = std::chrono::steady_clock;

namespace
{
/** A pseudo-terminal: the test writes and reads the master, the port opens the slave. */
struct Pty
{
    Pty()
    {
        master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
        if (master >= 0 && grantpt(master) == 0 && unlockpt(master) == 0)
            slave = ptsname(master);
    }
    ~Pty() { hangUp(); }
    void hangUp()
    {
        if (master >= 0)
            ::close(master);
        master = -1;
    }
    void send(const std::string& bytes) const
    {
        ASSERT_EQ(::write(master, bytes.data(), bytes.size()), (ssize_t)bytes.size());
    }

    int master = -1;
    std::string slave;
};

/** Records the chunks it gets; can be made to hold on to the listener. */
struct Recorder : SerialCallBack
{
    void onDataReceived(const char* data, int length) override
    {
        std::unique_lock<std::mutex> lock(m_lock);
        m_chunks.push_back(length);
        m_terminated = m_terminated && data[length] == 0;
        m_bytes.append(data, (size_t)length);
        m_changed.notify_all();
        m_changed.wait(lock, [&] { return !m_hold; });
    }
    bool waitFor(size_t bytes, int timeoutMs = 5000)
    {
        std::unique_lock<std::mutex> lock(m_lock);
        return m_changed.wait_for(lock, std::chrono::milliseconds(timeoutMs), [&] { return m_bytes.size() >= bytes; });
    }
    void hold(bool on)
    {
        std::lock_guard<std::mutex> lock(m_lock);
        m_hold = on;
        m_changed.notify_all();
    }

    std::mutex m_lock;
    std::condition_variable m_changed;
    std::vector<int> m_chunks;
    std::string m_bytes;
    bool m_terminated = true;
    bool m_hold = false;
};

double processCpuMs()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return (double)now.tv_sec * 1000.0 + (double)now.tv_nsec / 1e6;
}

class SerialPortTest : public LmComTest
{
protected:
    void SetUp() override
    {
        LmComTest::SetUp();
        if (m_pty.slave.empty())
            GTEST_SKIP() << "no pseudo-terminals on this machine";
    }
    Pty m_pty;
};
} // namespace

TEST_F(SerialPortTest, ErrorCodesSettingsAndReadModes)
{
    CSerialInternal port;
    unsigned got = 99;
    char buffer[16];
    EXPECT_EQ(port.read(buffer, sizeof buffer, &got), CSerialInternal::kErrorNotOpen);
    EXPECT_EQ(got, 0u);
    EXPECT_EQ(port.getBaudrate(), -1);
    EXPECT_EQ(port.getLastError(), CSerialInternal::kErrorNotOpen);
    EXPECT_EQ(port.open("COM9:"), ENOENT); // no profile entry, not a path
    EXPECT_EQ(port.open("/nonexistent/tty"), ENOENT);

    // The board's name for the line, through the profile.
    writeSystemFile(Platform::BoardProfile::kProfilePath, juce::String("[devices]\nCOM2: = ") + m_pty.slave + "\n");
    ASSERT_EQ(port.open("COM2:"), 0);
    EXPECT_EQ(port.open("COM2:"), CSerialInternal::kErrorAlreadyOpen);
    CSerialInternal other;
    EXPECT_EQ(other.open(m_pty.slave), EWOULDBLOCK); // no sharing
    EXPECT_EQ(port.getEventMask(), 0xC1u);

    EXPECT_EQ(port.setup(19200, 8, 0, 2), 0); // a pseudo-terminal keeps 8 bits, no parity
    EXPECT_EQ(port.getBaudrate(), 19200);
    EXPECT_EQ(port.getDataBits(), 8);
    EXPECT_EQ(port.getParity(), 0);
    EXPECT_EQ(port.getStopBits(), 2);
    EXPECT_EQ(port.setup(19200, 9, 0, 0), EINVAL);
    EXPECT_EQ(port.setup(12345, 8, 0, 0), EINVAL);
    EXPECT_EQ(port.setup(9600, 8, 0, 1), EINVAL); // one and a half stop bits
    for (int mode : {1, 2, 0})
    {
        EXPECT_EQ(port.setupHandshaking(mode), 0);
        EXPECT_EQ(port.getHandshaking(), mode);
    }
    EXPECT_EQ(port.setupHandshaking(3), CSerialInternal::kErrorBadMode);
    EXPECT_EQ(port.getLastError(), CSerialInternal::kErrorBadMode);
    EXPECT_EQ(port.setEventChar('\n'), 0);
    EXPECT_EQ(port.getEventChar(), '\n');
    EXPECT_EQ(port.getEventMask(), 0xC3u);

    // 0: at once with what is there; other: short timed reads; 1: until filled.
    EXPECT_EQ(port.setupReadTimeouts(0), 0);
    EXPECT_EQ(port.read(buffer, sizeof buffer, &got), 0);
    EXPECT_EQ(got, 0u);
    EXPECT_EQ(port.setupReadTimeouts(2), 0);
    m_pty.send("abc");
    EXPECT_EQ(port.read(buffer, sizeof buffer, &got), 0);
    EXPECT_EQ(std::string(buffer, got), "abc");
    EXPECT_EQ(port.read(buffer, sizeof buffer, &got), 0); // quiet line: ends without data
    EXPECT_EQ(got, 0u);
    EXPECT_EQ(port.setupReadTimeouts(1), 0);
    std::thread late([&] { m_pty.send("0123456789"); });
    EXPECT_EQ(port.read(buffer, 10, &got), 0);
    late.join();
    EXPECT_EQ(std::string(buffer, got), "0123456789");

    unsigned written = 0;
    EXPECT_EQ(port.write("hello", &written), 0);
    EXPECT_EQ(written, 5u);
    char echo[8] = {};
    EXPECT_EQ(::read(m_pty.master, echo, sizeof echo), 5);
    EXPECT_STREQ(echo, "hello");
    EXPECT_EQ(port.close(), 0);
    EXPECT_EQ(port.write("x", &written), CSerialInternal::kErrorNotOpen);
}

TEST_F(SerialPortTest, ABurstArrivesInChunksOfAtMost255EachFollowedByAZeroByte)
{
    Recorder recorder;
    SerialPort port(&recorder);
    EXPECT_FALSE(port.open("/nonexistent/tty", 9600));
    ASSERT_TRUE(port.open(m_pty.slave, 115200));
    EXPECT_TRUE(port.open(m_pty.slave, 115200)); // already open: setup still succeeds

    // Hold the listener in the first callback while the whole burst lands in the line.
    recorder.hold(true);
    m_pty.send("!");
    ASSERT_TRUE(recorder.waitFor(1));
    std::string burst;
    for (int i = 0; i < 600; ++i)
        burst += (char)('a' + i % 26);
    m_pty.send(burst);
    const int probe = ::open(m_pty.slave.c_str(), O_RDONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE(probe, 0);
    int queued = 0;
    for (auto start = Clock::now(); queued < 600 && Clock::now() - start < std::chrono::seconds(5);)
        ASSERT_EQ(ioctl(probe, FIONREAD, &queued), 0);
    ::close(probe);
    ASSERT_EQ(queued, 600);
    recorder.hold(false);

    ASSERT_TRUE(recorder.waitFor(601));
    EXPECT_EQ(recorder.m_chunks, (std::vector<int>{1, 255, 255, 90}));
    EXPECT_TRUE(recorder.m_terminated);
    EXPECT_EQ(recorder.m_bytes, "!" + burst);

    const char reply[] = "ok";
    EXPECT_EQ(port.write((void*)reply, 2), 2);
    EXPECT_EQ(port.write((void*)reply, 0), 0);
    EXPECT_TRUE(port.close());
    EXPECT_EQ(port.write((void*)reply, 2), 0);
}

TEST_F(SerialPortTest, AnIdleListenerAndAHungUpPeerCostAlmostNoCpu)
{
    Recorder recorder;
    SerialPort port(&recorder);
    ASSERT_TRUE(port.open(m_pty.slave, 9600));
    // A spinning listener takes a whole core; an idle one wakes 50 times a second. The sanitizer
    // build makes each wake-up several times dearer, so its bound is looser (still far from a spin).
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    const double bound = 0.05;
#else
    const double bound = 0.01;
#endif
    for (bool hungUp : {false, true})
    {
        if (hungUp)
            m_pty.hangUp();
        const double cpuBefore = processCpuMs();
        const auto wallBefore = Clock::now();
        std::this_thread::sleep_for(std::chrono::milliseconds(1000));
        const double wallMs = std::chrono::duration<double, std::milli>(Clock::now() - wallBefore).count();
        const double share = (processCpuMs() - cpuBefore) / wallMs;
        EXPECT_LT(share, bound) << (hungUp ? "after the peer hung up: " : "idle: ") << share * 100 << "% of a core";
    }
    EXPECT_TRUE(recorder.m_chunks.empty());
    EXPECT_TRUE(port.close());
}

TEST_F(SerialPortTest, CloseWhileDataFlowsAndCloseWithAHungCallback)
{
    auto recorder = std::make_unique<Recorder>();
    auto port = std::make_unique<SerialPort>(recorder.get());
    ASSERT_TRUE(port->open(m_pty.slave, 115200));
    std::atomic<bool> flowing{true};
    // Non-blocking: with the port closed nobody drains the line, and the writer must still end.
    ASSERT_EQ(fcntl(m_pty.master, F_SETFL, fcntl(m_pty.master, F_GETFL) | O_NONBLOCK), 0);
    std::thread writer(
        [&]
        {
            const std::string chunk(64, 'x');
            while (flowing)
                if (::write(m_pty.master, chunk.data(), chunk.size()) < 0)
                    std::this_thread::sleep_for(std::chrono::milliseconds(1));
        });
    ASSERT_TRUE(recorder->waitFor(4096));
    EXPECT_TRUE(port->close());
    const size_t afterClose = recorder->m_bytes.size();

    // Now a callback that hangs: close gives up on the listener after about 2 s.
    ASSERT_TRUE(port->open(m_pty.slave, 115200));
    recorder->hold(true);
    ASSERT_TRUE(recorder->waitFor(afterClose + 1));
    const auto start = Clock::now();
    EXPECT_TRUE(port->close());
    const auto waited = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
    EXPECT_GE(waited, 1900);
    EXPECT_LT(waited, 4000);
    flowing = false;
    writer.join();

    // The port goes; the let-go listener returns later without touching it.
    port.reset();
    const int calls = (int)recorder->m_chunks.size();
    recorder->hold(false);
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_EQ((int)recorder->m_chunks.size(), calls);
}

TEST_F(SerialPortTest, CopyingMovesThePort)
{
    Recorder recorder;
    SerialPort a(&recorder);
    ASSERT_TRUE(a.open(m_pty.slave, 9600));
    SerialPort b(a);
    char byte = 'z';
    EXPECT_EQ(a.write(&byte, 1), 0);
    EXPECT_FALSE(a.open(m_pty.slave, 9600));
    EXPECT_FALSE(a.close());
    EXPECT_EQ(b.write(&byte, 1), 1);
    m_pty.send("q");
    ASSERT_TRUE(recorder.waitFor(1));

    SerialPort c;
    c = b;
    EXPECT_EQ(b.write(&byte, 1), 0);
    Recorder other;
    c.setCallBack(&other);
    m_pty.send("r");
    ASSERT_TRUE(other.waitFor(1));
    EXPECT_EQ(other.m_bytes, "r");
    EXPECT_TRUE(c.close());
}

TEST_F(SerialPortTest, TalksToSocatAsAnOutsidePeer)
{
    const std::string socat = "/usr/bin/socat";
    if (access(socat.c_str(), X_OK) != 0)
        GTEST_SKIP() << "socat is not installed";
    const auto link = systemFile("/dev-socat").getFullPathName().toStdString();
    // socat makes a terminal and echoes back in upper case whatever arrives on it.
    Command peer(socat, {"-d", "-d", "PTY,raw,echo=0,link=" + link, "SYSTEM:stdbuf -o0 tr a-z A-Z"});
    ASSERT_TRUE(peer.waitForLine("starting data transfer loop", 10000, true));

    Recorder recorder;
    SerialPort port(&recorder);
    ASSERT_TRUE(port.open(link, 115200));
    char question[] = "ping\n";
    ASSERT_EQ(port.write(question, 5), 5);
    ASSERT_TRUE(recorder.waitFor(5));
    EXPECT_EQ(recorder.m_bytes, "PING\n");
    EXPECT_TRUE(port.close());
}
