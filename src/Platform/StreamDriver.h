#pragma once

#include <juce_core/juce_core.h>

#include <memory>

namespace Platform
{

/** One opened device of the head unit, as its drivers were used: requests by control code
    with an input and an output buffer, and plain writes. Closed when destroyed. */
class StreamDevice
{
public:
    virtual ~StreamDevice() = default;
    /** Sends a request; false when the driver refused it or does not know the code. */
    virtual bool ioControl(juce::uint32 code, const void* in, size_t inSize, void* out, size_t outSize) = 0;
    /** Writes bytes; false unless all of them were written. */
    virtual bool write(const void* data, size_t size) = 0;
};

/** Opens device names ("GIO1:", "APD1:", an I2C bus name) through the board profile.

    A driver is chosen per kind of device, so that a test can put a recording driver in place
    of the Linux one and see exactly what was asked. The Linux drivers: plain nodes (open and
    write; no control codes exist), the GPIO character device (libgpiod), and i2c-dev. Any
    thread; a driver must be too.
*/
class StreamDriver
{
public:
    enum class Kind
    {
        Node,
        Gpio,
        I2C,
    };

    virtual ~StreamDriver() = default;
    /** Opens a device name; null when there is no such device or it cannot be opened. */
    virtual std::unique_ptr<StreamDevice> open(const juce::String& name) = 0;

    /** The driver now used for a kind of device. */
    static std::shared_ptr<StreamDriver> current(Kind kind);
    /** Puts a driver in place (null: back to the Linux driver). */
    static void install(Kind kind, std::shared_ptr<StreamDriver> driver);

    static std::unique_ptr<StreamDriver> linuxNodeDriver();
    /** Control codes 0x220004 (pin function: 0 input, otherwise output), 0x220008 (read
        level into one byte) and 0x22000C (write level code 0x60 high, 0x20 low). Line
        requests are held by the driver for the life of the process, as a board's GPIO driver
        holds its pins, so a level written stays after the device is closed. */
    static std::unique_ptr<StreamDriver> linuxGpioDriver();
    /** Control code 0x220004 with an I2CRequest as input (see I2CRequest.h). */
    static std::unique_ptr<StreamDriver> linuxI2CDriver();
};

} // namespace Platform
