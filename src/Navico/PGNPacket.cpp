#include "Navico/PGNPacket.h"

#include "Navico/PGNHelper.h"

namespace
{
// PGN, reserved byte, two header bytes, group function, commanded PGN.
constexpr int kFixedHeadLength = 10;
// Interval (4 bytes) and offset (2 bytes) of a request.
constexpr int kRequestPartLength = 6;
// The error byte that reports every field of a refused packet with error 4.
constexpr unsigned char kAllFiledsRefused = 0x44;
} // namespace

PGNPacket::~PGNPacket() = default;

PGNPacket::Ptr PGNPacket::parse(Parcel* parcel)
{
    Ptr ignored;
    return parse(parcel, ignored);
}

PGNPacket::Ptr PGNPacket::parse(Parcel* parcel, Ptr& packet)
{
    packet = nullptr;
    if (parcel == nullptr || parcel->dataAvail() < kFixedHeadLength)
        return nullptr;

    Ptr read(new PGNPacket());
    read->m_nPGN = PGNHelper::readPGNFromParcel(parcel);
    parcel->readByte(); // reserved
    read->m_header[0] = parcel->readByte();
    read->m_header[1] = parcel->readByte();
    read->m_eGroupFunction = (eGroupFunction)parcel->readByte();
    read->m_nCommandPGN = PGNHelper::readPGNFromParcel(parcel);
    packet = read;

    // Each part is checked before it is read, so that a short message never reads a sentinel
    // as a value.
    if (read->m_eGroupFunction == GF_Request)
    {
        if (parcel->dataAvail() < kRequestPartLength + 1)
            return nullptr;
        read->m_nInterval = (juce::uint32)parcel->readInt();
        read->m_nOffset = parcel->readShort();
    }
    else if (read->m_eGroupFunction == GF_Command)
    {
        if (parcel->dataAvail() < 2)
            return nullptr;
        read->m_nPriority = parcel->readByte() & 0x0F;
    }
    else
    {
        return nullptr;
    }
    read->m_nFiledsNumber = parcel->readByte();

    if (!PGNHelper::parseFileds(parcel, read.get()))
        return nullptr;
    return read;
}

int PGNPacket::getHeaderByte(int i) const
{
    return i == 0 || i == 1 ? m_header[i] : 0;
}

const _sFiledsValue* PGNPacket::getFiledsValue(int index) const
{
    const auto found = m_filedsValueMap.find(index);
    return found == m_filedsValueMap.end() ? nullptr : found->second;
}

const _sFiledsValue* PGNPacket::getFiledsAt(int position) const
{
    return position >= 0 && position < (int)m_fileds.size() ? m_fileds[(size_t)position].get() : nullptr;
}

int PGNPacket::getErrorCode(int position) const
{
    const _sFiledsValue* fileds = getFiledsAt(position);
    return fileds == nullptr ? FILEDS_Good : fileds->m_nErrorCode;
}

bool PGNPacket::isValid() const
{
    return (m_eGroupFunction == GF_Request || m_eGroupFunction == GF_Command) && m_nPGNErrorCode == 0
           && m_nTransmitErrorCode == 0;
}

_sFiledsValue* PGNPacket::addFileds(int index)
{
    auto fileds = std::make_unique<_sFiledsValue>();
    fileds->m_nIndex = index;
    fileds->m_nPosition = (int)m_fileds.size();
    m_filedsValueMap[index] = fileds.get();
    m_fileds.push_back(std::move(fileds));
    return m_fileds.back().get();
}

void PGNPacket::writeAckHead(Parcel* parcel) const
{
    PGNHelper::writePGNHead(parcel, this, m_nPGN);
    parcel->writeByte(GF_Acknowledge);
    PGNHelper::writePGNToParcel(parcel, m_nCommandPGN);
}

Parcel::Ptr PGNPacket::getAckPacket() const
{
    auto parcel = Parcel::obtain();
    writeAckHead(parcel.get());
    parcel->writeByte((unsigned char)((m_nPGNErrorCode & 0x0F) | ((m_nTransmitErrorCode & 0x0F) << 4)));
    if (m_nPGNErrorCode == PGN_AccessDenied || m_nPGNErrorCode == PGN_RequestNotSupported)
    {
        // The fields were not all read: none is reported.
        parcel->writeByte(0xFF);
        return parcel;
    }
    parcel->writeByte((unsigned char)m_nFiledsNumber);
    for (int position = 0; position < getParsedFiledsCount(); position += 2)
        parcel->writeByte(
            (unsigned char)((getErrorCode(position) & 0x0F) | ((getErrorCode(position + 1) & 0x0F) << 4)));
    return parcel;
}

Parcel::Ptr PGNPacket::getNAckPacket() const
{
    auto parcel = Parcel::obtain();
    writeAckHead(parcel.get());
    parcel->writeByte(0x00);
    parcel->writeByte((unsigned char)m_nFiledsNumber);
    const int count = getParsedFiledsCount();
    if (count >= 1)
        for (int i = 0; i < (count - 1) / 2 + 1; ++i)
            parcel->writeByte(kAllFiledsRefused);
    return parcel;
}
