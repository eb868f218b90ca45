#include "Utils/GpioFunc.h"

#include "Platform/StreamDriver.h"

#include <juce_core/juce_core.h>

#include <mutex>

namespace
{
constexpr const char* kDriverName = "GIO1:";
constexpr juce::uint32 kSetPinFunction = 0x220004;
constexpr juce::uint32 kReadPin = 0x220008;
constexpr juce::uint32 kWritePin = 0x22000C;
constexpr juce::uint32 kLevelHigh = 0x60;
constexpr juce::uint32 kLevelLow = 0x20;

std::unique_ptr<Platform::StreamDevice> openDriver()
{
    return Platform::StreamDriver::current(Platform::StreamDriver::Kind::Gpio)->open(kDriverName);
}

// Reads, writes and refused function requests never closed their driver handle; drivers may
// tie a pin's state to the handle, so it stays open. Only the latest is kept, so nothing grows.
void leaveOpen(std::unique_ptr<Platform::StreamDevice> device)
{
    static std::mutex lock;
    static std::unique_ptr<Platform::StreamDevice> open;
    std::unique_ptr<Platform::StreamDevice> previous;
    std::lock_guard<std::mutex> guard(lock);
    previous = std::move(open);
    open = std::move(device);
}
} // namespace

bool GpioFunc::setPinFunc(unsigned pin, unsigned function)
{
    auto device = openDriver();
    if (device == nullptr)
        return false;
    const juce::uint32 request[2] = {pin, function};
    if (!device->ioControl(kSetPinFunction, request, sizeof request, nullptr, 0))
    {
        leaveOpen(std::move(device));
        return false;
    }
    return true;
}

bool GpioFunc::writePin(unsigned pin, bool high)
{
    auto device = openDriver();
    const juce::uint32 request[2] = {pin, high ? kLevelHigh : kLevelLow};
    const bool done = device != nullptr && device->ioControl(kWritePin, request, sizeof request, nullptr, 0);
    leaveOpen(std::move(device));
    return done;
}

bool GpioFunc::readPin(unsigned pin, bool* high)
{
    auto device = openDriver();
    const juce::uint32 request = pin;
    unsigned char level = 0;
    const bool done = device != nullptr && device->ioControl(kReadPin, &request, sizeof request, &level, 1);
    leaveOpen(std::move(device));
    if (!done)
        return false;
    if (high != nullptr)
        *high = level != 0;
    return true;
}
