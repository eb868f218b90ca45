#include "Platform/SettingsSegment.h"

#include "Platform/Atomic.h"

namespace Platform
{

SettingsSegment::SettingsSegment(Reporter reporter) : m_reporter(std::move(reporter)) {}

SettingsSegment::~SettingsSegment() = default;

juce::String SettingsSegment::systemName()
{
    return SharedMemory::systemNameFor(kName);
}

volatile std::int32_t* SettingsSegment::field(unsigned char* base, int offset)
{
    return reinterpret_cast<volatile std::int32_t*>(base + offset);
}

bool SettingsSegment::hasMagic(unsigned char* base)
{
    return SharedInt32::load(field(base, kMagicField)) == kMagic;
}

// The magic goes last, so whoever sees it sees a complete header.
void SettingsSegment::writeHeader(unsigned char* base)
{
    SharedInt32::store(field(base, kVersionField), kVersion);
    SharedInt32::store(field(base, kSysInfoCountField), kSysInfoCount);
    SharedInt32::store(field(base, kSourceCountField), kSourceCount);
    SharedInt32::store(field(base, kMagicField), kMagic);
}

bool SettingsSegment::checkLayout(unsigned char* base, juce::String& error) const
{
    const auto magic = SharedInt32::load(field(base, kMagicField));
    const auto version = SharedInt32::load(field(base, kVersionField));
    const auto sysInfoCount = SharedInt32::load(field(base, kSysInfoCountField));
    const auto sourceCount = SharedInt32::load(field(base, kSourceCountField));
    if (magic == kMagic && version == kVersion && sysInfoCount == kSysInfoCount && sourceCount == kSourceCount)
        return true;
    error = "settings store " + m_memory->systemName() + " has another layout (magic 0x"
            + juce::String::toHexString((int)magic) + ", version " + juce::String(version) + ", "
            + juce::String(sysInfoCount) + " system values, " + juce::String(sourceCount) + " sources): refused";
    return false;
}

bool SettingsSegment::open()
{
    if (m_base.load(std::memory_order_acquire) != nullptr)
        return true;
    std::lock_guard<std::mutex> guard(m_lock);
    if (m_base.load(std::memory_order_relaxed) != nullptr)
        return true;
    const auto now = juce::Time::getMillisecondCounter();
    if (m_bFailedBefore && (juce::int32)(now - m_nextAttemptMs) < 0)
        return false;

    juce::String error;
    if (attemptOpen(error))
        return true;
    // Nothing stays mapped after a failure: the next attempt starts again.
    m_memory.reset();
    m_bFailedBefore = true;
    m_nextAttemptMs = now + 1000;
    if (m_reporter)
        m_reporter(error);
    return false;
}

bool SettingsSegment::attemptOpen(juce::String& error)
{
    m_memory = std::make_unique<SharedMemory>(kName);
    bool made = false;
    if (!m_memory->open(kSize))
    {
        // There, but not usable (too small, someone else's): no second wait for it.
        if (m_memory->lastError().isNotEmpty())
        {
            error = m_memory->lastError();
            return false;
        }
        made = m_memory->create(kSize);
        if (!made && !m_memory->open(kSize)) // made by another process meanwhile
        {
            error = m_memory->lastError().isNotEmpty() ? m_memory->lastError() : "settings store cannot be opened";
            return false;
        }
    }
    unsigned char* base = m_memory->data();
    if (made)
        writeHeader(base);
    else
    {
        for (int attempt = 0; attempt < 200 && !hasMagic(base); ++attempt)
            juce::Thread::sleep(5);
        // Its maker died before finishing the header: nothing was ever stored in it. Only
        // fields still zero are filled, so a header of another layout stays what it is.
        if (SharedInt32::load(field(base, kMagicField)) == 0)
        {
            const std::pair<int, std::int32_t> header[] = {{kVersionField, kVersion},
                                                           {kSysInfoCountField, kSysInfoCount},
                                                           {kSourceCountField, kSourceCount},
                                                           {kMagicField, kMagic}};
            for (auto& [offset, value] : header)
            {
                std::int32_t expected = 0;
                SharedInt32::compareExchange(field(base, offset), expected, value);
            }
        }
    }
    if (!checkLayout(base, error))
        return false;
    m_base.store(base, std::memory_order_release);
    return true;
}

volatile std::int32_t* SettingsSegment::slot(int first, int count, int index)
{
    if (index < 0 || index >= count || !open())
        return nullptr;
    return field(m_base.load(std::memory_order_acquire), first + 4 * index);
}

bool SettingsSegment::getSysInfo(int index, std::int32_t& value)
{
    auto* word = slot(kSysInfoField, kSysInfoCount, index);
    if (word == nullptr)
        return false;
    value = SharedInt32::load(word);
    return true;
}

bool SettingsSegment::setSysInfo(int index, std::int32_t value)
{
    auto* word = slot(kSysInfoField, kSysInfoCount, index);
    if (word == nullptr)
        return false;
    SharedInt32::store(word, value);
    return true;
}

bool SettingsSegment::getSource(int index, std::int32_t& value)
{
    auto* word = slot(kSourceField, kSourceCount, index);
    if (word == nullptr)
        return false;
    value = SharedInt32::load(word);
    return true;
}

bool SettingsSegment::setSource(int index, std::int32_t value)
{
    auto* word = slot(kSourceField, kSourceCount, index);
    if (word == nullptr)
        return false;
    SharedInt32::store(word, value);
    return true;
}

std::uint32_t SettingsSegment::setupGeneration()
{
    if (!open())
        return 0;
    return (std::uint32_t)SharedInt32::load(field(m_base.load(std::memory_order_acquire), kGenerationField));
}

void SettingsSegment::bumpSetupGeneration()
{
    if (open())
        SharedInt32::fetchAdd(field(m_base.load(std::memory_order_acquire), kGenerationField), 1);
}

} // namespace Platform
