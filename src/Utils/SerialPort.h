#pragma once

#include <juce_core/juce_core.h>

#include <memory>

/** Receives what arrives on a SerialPort. */
class SerialCallBack
{
public:
    virtual ~SerialCallBack() = default;
    /** Called on the port's listener thread with at most 255 bytes; data[length] is a zero
        byte, so text protocols may read it as a C string. Hand the data to other threads
        yourself; a callback that hangs makes close() give up on the listener after 2 s. */
    virtual void onDataReceived(const char* data, int length) = 0;
};

/** A serial line ("COM2:" ..., or a path such as "/dev/ttyUSB0") with a listener thread that
    hands every received chunk to a SerialCallBack.

    The listener polls: every 20 ms it reads until the line is empty, in chunks of at most
    255 bytes. Copying moves the port: the copy owns it and the source holds nothing (its
    operations then fail). write, setCallBack and close may be called from any thread;
    nothing is locked beyond that.
*/
class SerialPort
{
public:
    /** The callback is not owned and may be null; the port is not opened. */
    explicit SerialPort(SerialCallBack* callback = nullptr);
    /** Takes the port over from `other`, which is left without one (deliberately non-const:
        ownership moves). */
    SerialPort(SerialPort& other);
    /** Releases the port this object held, then takes `other`'s over. */
    SerialPort& operator=(SerialPort& other);
    /** Stops the listener (at most 2 s) and closes the port. */
    virtual ~SerialPort();

    /** Opens the device with the listener started, at `baud` with 8 data bits, no parity and
        one stop bit, reads returning at once. False when the line could not be set up. */
    bool open(const juce::String& device, int baud);
    /** The next chunk goes to this callback. */
    void setCallBack(SerialCallBack* callback);
    /** Writes synchronously; the number of bytes written (0 on failure). */
    int write(void* data, int size);
    /** Stops the listener, waiting at most 2,000 ms, and closes the port; true when both went
        well. */
    bool close();

private:
    class Pimpl;
    std::unique_ptr<Pimpl> m_pImpl;
};
