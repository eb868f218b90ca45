#pragma once

#include <juce_core/juce_core.h>

#include <memory>

/** Register transfers on an I2C bus driver opened by name (on Linux an i2c-dev node named by
    the board profile; Platform::StreamDriver, kind I2C), and the transfers of the Apple
    authentication coprocessor (2.0C).

    Each transfer is one request (control code 0x220004) carrying the 56-byte record of
    Platform/I2CRequest.h; on this 64-bit port its pointer words hold the low 32 bits of the
    addresses and the full pointers travel after it. Register transfers retry every 10 ms for
    3 s; coprocessor transfers make up to 20 attempts and, from the eleventh on, alternate
    between its two address pairs (0x22/0x23 and 0x20/0x21), keeping process-wide the pair
    that worked. Copying moves the device (the source is left closed). One thread at a time.
*/
class I2CDevice
{
public:
    I2CDevice();
    /** Takes the device over from `other` (deliberately non-const: ownership moves). */
    I2CDevice(I2CDevice& other);
    /** Closes this device, then takes `other`'s over. */
    I2CDevice& operator=(I2CDevice& other);
    virtual ~I2CDevice();

    /** Closes a device that is open, then opens the named bus driver; keeps the clock. */
    bool open(const juce::String& name, int clock);
    /** Always true. */
    bool close();

    /** Writes `length` bytes to register `reg` of the slave at the 8-bit `address`, with the
        driver's two preambles unless `noPreamble`; false after 3 s of refusals. */
    bool write(unsigned char address, unsigned char reg, const unsigned char* data, int length,
               bool noPreamble = false);
    /** Reads `length` bytes from register `reg`; false at once for no buffer or no length. */
    bool read(unsigned char address, unsigned char reg, int length, unsigned char* data, bool noPreamble = false);
    /** For `reg` below 64: writes `reg` to register 0xE0 without preambles, then reads
        `length` bytes from `reg`. False without touching the bus otherwise. */
    bool readBack(unsigned char address, unsigned char reg, int length, unsigned char* data);
    /** Coprocessor write at 50 kHz; the address and last argument are not used. */
    bool writeiPod(unsigned char address, unsigned char reg, const unsigned char* data, int length, bool = false);
    /** Coprocessor read at 50 kHz: writes the register, then reads; prints each failed
        attempt and the first two bytes read on standard error. The address and last argument
        are not used. */
    bool readiPod(unsigned char address, unsigned char reg, int length, unsigned char* data, bool = false);

private:
    class Impl;
    std::unique_ptr<Impl> m_pImpl;
};
