#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace LmComDetail
{

/** CRC-32C (Castagnoli), the check a sender puts beside a record it announces, so that the
    receiver never takes a record overwritten after a lap, or torn by a concurrent writer, for
    the one that was announced. Slice-by-8 tables. */
class Crc32c
{
public:
    static std::uint32_t of(const void* data, std::size_t size)
    {
        static const Tables tables;
        auto* p = static_cast<const unsigned char*>(data);
        std::uint32_t crc = 0xFFFFFFFFu;
        while (size >= 8)
        {
            const std::uint32_t low = crc
                                      ^ (std::uint32_t(p[0]) | std::uint32_t(p[1]) << 8 | std::uint32_t(p[2]) << 16
                                         | std::uint32_t(p[3]) << 24);
            crc = tables.t[7][low & 0xFF] ^ tables.t[6][(low >> 8) & 0xFF] ^ tables.t[5][(low >> 16) & 0xFF]
                  ^ tables.t[4][low >> 24] ^ tables.t[3][p[4]] ^ tables.t[2][p[5]] ^ tables.t[1][p[6]]
                  ^ tables.t[0][p[7]];
            p += 8;
            size -= 8;
        }
        while (size-- > 0)
            crc = tables.t[0][(crc ^ *p++) & 0xFF] ^ (crc >> 8);
        return crc ^ 0xFFFFFFFFu;
    }

private:
    struct Tables
    {
        std::array<std::array<std::uint32_t, 256>, 8> t;
        Tables()
        {
            for (std::uint32_t i = 0; i < 256; ++i)
            {
                std::uint32_t crc = i;
                for (int bit = 0; bit < 8; ++bit)
                    crc = (crc & 1) ? (crc >> 1) ^ 0x82F63B78u : crc >> 1;
                t[0][i] = crc;
            }
            for (std::uint32_t i = 0; i < 256; ++i)
                for (int k = 1; k < 8; ++k)
                    t[(size_t)k][i] = (t[(size_t)k - 1][i] >> 8) ^ t[0][t[(size_t)k - 1][i] & 0xFF];
        }
    };
};

} // namespace LmComDetail
