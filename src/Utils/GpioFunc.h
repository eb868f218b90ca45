#pragma once

/** The board's GPIO pins through the GPIO driver "GIO1:" (on Linux a GPIO character device
    named by the board profile; Platform::StreamDriver, kind Gpio). Static only; any thread.

    Requests to the driver: 0x220004 pin function {pin, function}, 0x220008 read {pin} into one
    byte, 0x22000C write {pin, level code}, where the level code is 0x60 for high and 0x20 for
    low (the driver's values, not 1 and 0). Function numbers are the driver's; the Linux driver
    takes 0 as input and any other as output.
*/
class GpioFunc
{
public:
    /** False when the driver does not open or refuses the request. */
    static bool setPinFunc(unsigned pin, unsigned function);
    /** Whether the driver took the request. */
    static bool writePin(unsigned pin, bool high);
    /** On success stores whether the pin is high and returns true. */
    static bool readPin(unsigned pin, bool* high);

private:
    GpioFunc() = delete;
};
