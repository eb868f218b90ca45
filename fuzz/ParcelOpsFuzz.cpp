// A random sequence of Parcel reads and writes, steered by the input: every read stays in
// bounds and every write lands where the cursor says.
#include <LmCom.h>

#include "Platform/detail/Utf8.h"

#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    auto parcel = Parcel::obtain();
    size_t i = 0;
    const auto next = [&]() -> unsigned char { return i < size ? data[i++] : 0; };
    const auto nextInt = [&]
    {
        int value = 0;
        for (int b = 0; b < 4; ++b)
            value = (int)((unsigned)value << 8 | next());
        return value;
    };
    unsigned char room[64];
    while (i < size)
    {
        switch (next() % 20)
        {
        case 0:
            parcel->writeByte(next());
            break;
        case 1:
            parcel->writeBool(next() & 1);
            break;
        case 2:
            parcel->writeShort((unsigned short)nextInt());
            break;
        case 3:
            parcel->writeInt(nextInt());
            break;
        case 4:
        {
            const int bits = nextInt();
            float f;
            std::memcpy(&f, &bits, 4);
            parcel->writeFloat(f);
            break;
        }
        case 5:
        {
            const long long bits = (long long)nextInt() << 32 | (unsigned)nextInt();
            double d;
            std::memcpy(&d, &bits, 8);
            parcel->writeDouble(d);
            break;
        }
        case 6:
        {
            const size_t n = juce::jmin((size_t)next() % 32, size - i);
            parcel->writeData(data + i, (int)n);
            i += n;
            break;
        }
        case 7:
        {
            const size_t n = juce::jmin((size_t)next() % 32, size - i);
            parcel->writeByteArray(data + i, (int)n);
            i += n;
            break;
        }
        case 8:
        {
            const size_t n = juce::jmin((size_t)next() % 32, size - i);
            parcel->writeString(LmComDetail::decodeUtf8(data + i, n));
            i += n;
            break;
        }
        case 9:
            parcel->readByte();
            break;
        case 10:
            parcel->readBool();
            break;
        case 11:
            parcel->readShort();
            break;
        case 12:
            parcel->readInt();
            break;
        case 13:
            parcel->readFloat();
            break;
        case 14:
            parcel->readDouble();
            break;
        case 15:
            parcel->readString();
            break;
        case 16:
        {
            int len = next() % (int)sizeof room;
            parcel->readByteArray(room, len);
            break;
        }
        case 17:
            parcel->setDataPosition(nextInt() % 4096);
            break;
        case 18:
        {
            auto bundle = Bundle::obtain();
            parcel->readBundle(bundle.get());
            break;
        }
        default:
        {
            const size_t n = juce::jmin((size_t)next() % 64, size - i);
            parcel->fillData(data + i, (int)n);
            i += n;
            break;
        }
        }
        if (parcel->dataPosition() < 0 || parcel->dataSize() > parcel->dataCapacity())
            __builtin_trap();
    }
    return 0;
}
