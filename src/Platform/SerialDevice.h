#pragma once

#include <juce_core/juce_core.h>

#include <atomic>

namespace Platform
{

/** A serial line on termios, opened by the head unit's device name through the board profile.

    Opened exclusively (a second opener, in this process or another, fails with EWOULDBLOCK)
    and raw: no echo, no line editing, no translation, 8 data bits until set otherwise.
    Every operation returns 0 or the errno of the failure. One thread may read while another
    writes; `cancel` may be called from any thread and makes a waiting read return at once.
*/
class SerialDevice
{
public:
    /** The settings the head unit's code uses, in its own terms: parity 0 none, 1 odd,
        2 even, 3 mark, 4 space; stop bits 0 one, 1 one and a half, 2 two. */
    struct Settings
    {
        int baud = 0;
        int dataBits = 8;
        int parity = 0;
        int stopBits = 0;
        bool hardwareFlow = false; // RTS/CTS
        bool xonOutput = false;    // XON/XOFF on what is sent
        bool xonInput = false;     // XON/XOFF on what is received
    };

    /** How a read waits: not at all, until the request is filled, or in short timed reads
        (what arrived within 5 ms per byte plus 5 ms, returning once the line stays quiet
        for 5 ms). */
    enum class ReadMode
    {
        Immediate,
        Blocking,
        Timed,
    };

    SerialDevice() = default;
    ~SerialDevice();
    SerialDevice(const SerialDevice&) = delete;
    SerialDevice& operator=(const SerialDevice&) = delete;

    int open(const juce::String& deviceName);
    void close();
    bool isOpen() const { return m_fd >= 0; }

    int getSettings(Settings& settings) const;
    int setSettings(const Settings& settings);
    void setReadMode(ReadMode mode) { m_readMode = mode; }

    /** Reads up to `size` bytes; `got` is what was read (0 with no data, and at the end). */
    int read(void* data, size_t size, size_t& got);
    /** Writes all bytes, waiting while the line's buffer is full; `written` is what went out. */
    int write(const void* data, size_t size, size_t& written);
    /** Makes a read that waits return now (and later ones, until the next open). */
    void cancel() { m_cancelled = true; }
    /** Lets reads wait again after a cancel. */
    void resume() { m_cancelled = false; }

private:
    /** Waits until the line has data or the time (ms, -1 forever) passed; 0, ETIMEDOUT,
        ECANCELED or an errno. */
    int waitReadable(int timeoutMs);

    int m_fd = -1;
    std::atomic<ReadMode> m_readMode{ReadMode::Immediate};
    std::atomic<bool> m_cancelled{false};
};

} // namespace Platform
