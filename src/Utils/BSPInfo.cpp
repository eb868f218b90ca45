#include "Utils/BSPInfo.h"

#include "Platform/Board.h"
#include "Platform/StreamDriver.h"

juce::String BSPInfo::getEBootVersion()
{
    return {};
}

juce::String BSPInfo::getOSVersion()
{
    return Platform::Board::current()->osVersion();
}

juce::String BSPInfo::getNBootVersion()
{
    return Platform::Board::current()->bootVersion();
}

juce::String BSPInfo::getSDID()
{
    juce::String text = "SDID_V ";
    if (auto id = Platform::Board::current()->sdCardId())
        text << *id;
    return text;
}

juce::String BSPInfo::getUUID()
{
    juce::String text = "UUID_V ";
    if (auto uuid = Platform::Board::current()->uuid())
        for (size_t i = 8; i < 16; ++i)
        {
            // A nibble of 10 to 15 gives two digits: readers of this text expect it so.
            text << (int)((*uuid)[i] >> 4);
            text << (int)((*uuid)[i] & 0x0F);
        }
    return text;
}

bool BSPInfo::setUUID(juce::String uuid)
{
    if (uuid.length() != 16)
        return false;
    unsigned char bytes[8];
    for (int i = 0; i < 8; ++i)
        bytes[i] = (unsigned char)((uuid[2 * i] << 4) | (uuid[2 * i + 1] & 0x0F));
    auto device = Platform::StreamDriver::current(Platform::StreamDriver::Kind::Node)->open("EPM1:");
    if (device == nullptr)
        return false;
    device->write(bytes, sizeof bytes); // the answer is whether the device opened
    return true;
}
