// Any bytes as an NMEA 2000 group-function packet, with the acknowledgements a caller answers.
#include <LmCom.h>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    auto parcel = Parcel::obtain();
    parcel->fillData(data, (int)size);
    PGNPacket::Ptr packet;
    PGNPacket::parse(parcel.get(), packet);
    if (packet != nullptr)
    {
        packet->getAckPacket();
        packet->getNAckPacket();
    }
    return 0;
}
