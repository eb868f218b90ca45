// The Linux GPIO driver: the head unit's pin requests carried out on the GPIO character device
// through libgpiod.
#include "Platform/BoardProfile.h"
#include "Platform/StreamDriver.h"

#include <gpiod.h>

#include <cstring>
#include <map>
#include <mutex>

namespace Platform
{

namespace
{
constexpr juce::uint32 kSetPinFunction = 0x220004;
constexpr juce::uint32 kReadPin = 0x220008;
constexpr juce::uint32 kWritePin = 0x22000C;
constexpr juce::uint32 kLevelHigh = 0x60;
constexpr juce::uint32 kLevelLow = 0x20;
constexpr const char* kConsumer = "lmcom";

/** Open chips and requested lines, kept for the life of the process: a line request ends
    with its descriptor, and the level written must stay. */
class Chips
{
public:
    static Chips& instance()
    {
        static Chips chips;
        return chips;
    }

    ~Chips()
    {
        for (auto& chip : m_chips)
            gpiod_chip_close(chip.second);
    }

    bool control(const std::string& path, juce::uint32 code, const juce::uint32* words, size_t count,
                 unsigned char* out, size_t outSize)
    {
        std::lock_guard<std::mutex> lock(m_lock);
        auto* chip = open(path);
        if (chip == nullptr || count < 1)
            return false;
        auto* line = gpiod_chip_get_line(chip, words[0]);
        if (line == nullptr)
            return false;
        const bool requested = gpiod_line_is_requested(line);
        switch (code)
        {
        case kSetPinFunction:
            if (count < 2)
                return false;
            if (requested)
                gpiod_line_release(line);
            return words[1] == 0 ? gpiod_line_request_input(line, kConsumer) == 0
                                 : gpiod_line_request_output(line, kConsumer, 0) == 0;
        case kWritePin:
            if (count < 2 || (words[1] != kLevelHigh && words[1] != kLevelLow))
                return false;
            if (requested && gpiod_line_direction(line) != GPIOD_LINE_DIRECTION_OUTPUT)
                gpiod_line_release(line);
            if (!gpiod_line_is_requested(line))
                return gpiod_line_request_output(line, kConsumer, words[1] == kLevelHigh) == 0;
            return gpiod_line_set_value(line, words[1] == kLevelHigh) == 0;
        case kReadPin:
        {
            if (out == nullptr || outSize < 1)
                return false;
            if (!requested && gpiod_line_request_input(line, kConsumer) != 0)
                return false;
            const int value = gpiod_line_get_value(line);
            if (value < 0)
                return false;
            out[0] = (unsigned char)value;
            return true;
        }
        default:
            return false;
        }
    }

    /** Opens the chip if it is not open yet; false when the node is no GPIO chip. */
    bool available(const std::string& path)
    {
        std::lock_guard<std::mutex> lock(m_lock);
        return open(path) != nullptr;
    }

private:
    gpiod_chip* open(const std::string& path)
    {
        auto it = m_chips.find(path);
        if (it != m_chips.end())
            return it->second;
        auto* chip = gpiod_chip_open(path.c_str());
        if (chip != nullptr)
            m_chips[path] = chip;
        return chip;
    }

    std::mutex m_lock;
    std::map<std::string, gpiod_chip*> m_chips;
};

class GpioDevice : public StreamDevice
{
public:
    explicit GpioDevice(std::string path) : m_path(std::move(path)) {}

    bool ioControl(juce::uint32 code, const void* in, size_t inSize, void* out, size_t outSize) override
    {
        juce::uint32 words[2] = {};
        const size_t count = std::min<size_t>(inSize / 4, 2);
        if (in != nullptr)
            std::memcpy(words, in, count * 4);
        return Chips::instance().control(m_path, code, words, count, static_cast<unsigned char*>(out), outSize);
    }

    bool write(const void*, size_t) override { return false; }

private:
    std::string m_path;
};

class GpioChipDriver : public StreamDriver
{
public:
    std::unique_ptr<StreamDevice> open(const juce::String& name) override
    {
        auto node = BoardProfile::deviceNode(name).toStdString();
        if (node.empty() || !Chips::instance().available(node))
            return nullptr;
        return std::make_unique<GpioDevice>(node);
    }
};
} // namespace

std::unique_ptr<StreamDriver> StreamDriver::linuxGpioDriver()
{
    return std::make_unique<GpioChipDriver>();
}

} // namespace Platform
