#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace Platform
{

/** The I2C bus driver's transfer request: the head unit's 56-byte record of 32-bit
    little-endian words, followed by the buffers it points to.

    Words (from 1): 1 slave write address, 2 slave read address, 3/4 first preamble and its
    length, 5/6 second preamble and its length, 7-9 unused, 10 bus clock, 11 register,
    12 direction (0 write, 1 read), 13 data buffer, 14 data length.

    The record was made for 32-bit pointers. In this 64-bit port the pointer words (3, 5, 13)
    hold the low 32 bits of each address, for a record that reads as the original did; drivers
    never follow them and use the full pointers that travel after the record instead.
*/
struct I2CRequest
{
    static constexpr std::uint32_t kTransferCode = 0x220004;
    static constexpr size_t kRecordSize = 56;

    unsigned char record[kRecordSize] = {};
    const unsigned char* firstPreamble = nullptr;
    const unsigned char* secondPreamble = nullptr;
    /** The data buffer of word 13: what a write sends, or where a read puts what came. */
    const unsigned char* writeData = nullptr;
    unsigned char* readData = nullptr;

    /** Word n (1 to 14) of the record. */
    std::uint32_t word(int n) const
    {
        const unsigned char* p = record + 4 * (n - 1);
        return (std::uint32_t)p[0] | (std::uint32_t)p[1] << 8 | (std::uint32_t)p[2] << 16 | (std::uint32_t)p[3] << 24;
    }
    void setWord(int n, std::uint32_t value)
    {
        unsigned char* p = record + 4 * (n - 1);
        for (int i = 0; i < 4; ++i)
            p[i] = (unsigned char)(value >> (8 * i));
    }
    static std::uint32_t low32(const void* pointer) { return (std::uint32_t)(std::uintptr_t)pointer; }
};

} // namespace Platform
