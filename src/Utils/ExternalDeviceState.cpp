#include "Utils/ExternalDeviceState.h"

#include "Platform/Environment.h"
#include "Platform/StreamDriver.h"

#include <juce_core/juce_core.h>

#include <cstring>

namespace
{
constexpr const char* kAccessoryDevice = "APD1:";
constexpr juce::uint32 kPandoraStateRequest = 0x23041C;
constexpr size_t kPandoraAnswerSize = 12;
constexpr const char* kSDFolder = "/SD";
// Indexed by bit number; written without a leading separator, as they always were.
const char* const kUSBFolders[4] = {"Hard Disk", "Hard Disk2", "Hard Disk3", "Hard Disk4"};

std::unique_ptr<Platform::StreamDevice> openAccessory()
{
    return Platform::StreamDriver::current(Platform::StreamDriver::Kind::Node)->open(kAccessoryDevice);
}

bool isFolder(const char* systemPath)
{
    return juce::File(Platform::Environment::resolve(systemPath)).isDirectory();
}
} // namespace

bool ExternalDeviceState::isIPodConnect()
{
    return openAccessory() != nullptr;
}

bool ExternalDeviceState::isPandoraConnect()
{
    auto device = openAccessory();
    if (device == nullptr)
        return false;
    unsigned char answer[kPandoraAnswerSize] = {};
    if (!device->ioControl(kPandoraStateRequest, nullptr, 0, answer, sizeof answer))
        return false;
    juce::uint32 third = 0;
    std::memcpy(&third, answer + 8, sizeof third);
    return third != 0;
}

int ExternalDeviceState::getUSBConnect()
{
    int mask = 0;
    for (int i = 0; i < 4; ++i)
        if (isFolder(kUSBFolders[i]))
            mask |= 1 << i;
    return mask;
}

bool ExternalDeviceState::isSDConnect()
{
    return isFolder(kSDFolder);
}
