#pragma once

#include "Platform/SerialDevice.h"

#include <juce_core/juce_core.h>

#include <atomic>

/** A serial port (a device name such as "COM2:", mapped to a Linux tty by the board profile).

    Every operation returns and keeps (`getLastError`) an error code: 0 success, 6 when the
    port is not open, 1247 when opening an open port, 0x80070057 for an unknown handshaking
    mode, otherwise the errno of the failing system call. Reads go by the read-timeout mode:
    0 return at once with what is there, 1 wait until the request is filled, any other short
    timed reads (5 ms). One thread may read while another writes; nothing else is locked.
*/
class CSerialInternal
{
public:
    static constexpr int kErrorNotOpen = 6;
    static constexpr int kErrorAlreadyOpen = 1247;
    static constexpr int kErrorBadMode = (int)0x80070057;
    static constexpr unsigned kInfinite = 0xFFFFFFFF;

    /** Event bits of setMask / waitEvent. */
    static constexpr unsigned kEventRxChar = 0x0001;
    static constexpr unsigned kEventRxFlag = 0x0002;
    static constexpr unsigned kEventBreak = 0x0040;
    static constexpr unsigned kEventErr = 0x0080;

    CSerialInternal() = default;
    virtual ~CSerialInternal();
    CSerialInternal(const CSerialInternal&) = delete;
    CSerialInternal& operator=(const CSerialInternal&) = delete;

    /** Opens the device (exclusively). The queue sizes are the driver's business on Linux and
        not used; so is `overlapped`, since every transfer here is synchronous. */
    virtual int open(const juce::String& device, unsigned inQueue = 0, unsigned outQueue = 0, bool overlapped = false);
    virtual int close();
    /** Baud rate, data bits (5 to 8), parity (0 none, 1 odd, 2 even, 3 mark, 4 space) and stop
        bits (0 one, 2 two; one and a half gives EINVAL on Linux). */
    virtual int setup(int baud, int dataBits, int parity, int stopBits);
    /** Keeps the event character (Linux drivers report no such event; the value is kept for
        getEventChar); with `adjustMask` the receive-flag event joins the mask. */
    virtual int setEventChar(char ch, bool adjustMask = true);
    virtual int setMask(unsigned mask);
    /** Sleeps 20 ms and reports a received character: the receive path deliberately polls,
        whatever events the driver has. Only overlapped = null and timeout = kInfinite are
        supported; anything else stops the process with a line on standard error. */
    virtual int waitEvent(void* overlapped = nullptr, unsigned timeout = kInfinite);
    /** 0 none, 1 hardware (RTS/CTS), 2 software (XON/XOFF both ways). */
    virtual int setupHandshaking(int mode);
    virtual int setupReadTimeouts(int mode);

    virtual int getBaudrate();
    virtual int getDataBits();
    virtual int getParity();
    virtual int getStopBits();
    virtual int getHandshaking();
    virtual unsigned getEventMask();
    virtual char getEventChar();

    /** Writes a zero-terminated text (see the other write). */
    virtual int write(const char* text, unsigned* written = nullptr, void* overlapped = nullptr,
                      unsigned timeout = kInfinite);
    /** Writes synchronously; the same two checks as waitEvent. */
    virtual int write(const void* data, unsigned size, unsigned* written = nullptr, void* overlapped = nullptr,
                      unsigned timeout = kInfinite);
    /** Reads once, as the read-timeout mode says. */
    virtual int read(void* data, unsigned size, unsigned* read);

    int getLastError() const { return m_lastError; }
    bool isOpen() const { return m_port.isOpen(); }

protected:
    /** Stops the process when asked for what only overlapped use would give. */
    static void checkSynchronous(void* overlapped, unsigned timeout);
    int fail(int error) { return m_lastError = error; }
    int readSettings(Platform::SerialDevice::Settings& settings);

    // Polling is the only mode: false at construction and never set otherwise.
    bool m_bEventMode = false;
    std::atomic<int> m_lastError{0}; // the listener's reads and the caller's writes both set it
    Platform::SerialDevice m_port;
    unsigned m_pendingEvent = 0;
    std::atomic<unsigned> m_eventMask{0};
    juce::String m_portName;
    char m_eventChar = 0;
};
