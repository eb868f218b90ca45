#include "Platform/BusStatistics.h"

#include "Platform/Atomic.h"

#include <thread>

namespace Platform
{

BusStatistics::BusStatistics() : m_memory(std::make_unique<SharedMemory>(kName)) {}

BusStatistics::~BusStatistics() = default;

juce::String BusStatistics::systemName()
{
    return SharedMemory::systemNameFor(kName);
}

volatile std::int32_t* BusStatistics::field(int offset) const
{
    return reinterpret_cast<volatile std::int32_t*>(m_base + offset);
}

bool BusStatistics::hasHeader() const
{
    return SharedInt32::load(field(kMagicField)) == kMagic;
}

// The magic goes last, so whoever sees it sees a complete header.
void BusStatistics::writeHeader()
{
    SharedInt32::store(field(kVersionField), kVersion);
    SharedInt32::store(field(kMagicField), kMagic);
}

bool BusStatistics::openOrCreate()
{
    if (m_base != nullptr)
        return true;
    bool made = false;
    if (!m_memory->open(kSize))
    {
        // There, but not usable (too small, someone else's): no second wait for it.
        if (m_memory->lastError().isNotEmpty())
        {
            m_lastError = m_memory->lastError();
            return false;
        }
        made = m_memory->create(kSize);
        if (!made && !m_memory->open(kSize)) // made by another process meanwhile
        {
            m_lastError = m_memory->lastError();
            return false;
        }
    }
    m_base = m_memory->data();
    if (made)
        writeHeader();
    else
    {
        for (int attempt = 0; attempt < 200 && !hasHeader(); ++attempt)
            juce::Thread::sleep(5);
        if (!hasHeader())
            writeHeader(); // its maker died before finishing it
    }
    if (SharedInt32::load(field(kVersionField)) != kVersion)
    {
        m_lastError = "bus statistics of another version";
        m_base = nullptr;
        return false;
    }
    return true;
}

bool BusStatistics::open()
{
    if (m_base != nullptr)
        return true;
    if (!m_memory->open(kSize))
    {
        m_lastError = m_memory->lastError();
        return false;
    }
    m_base = m_memory->data();
    if (!hasHeader() || SharedInt32::load(field(kVersionField)) != kVersion)
    {
        m_lastError = "bus statistics not ready or of another version";
        m_base = nullptr;
        m_memory = std::make_unique<SharedMemory>(kName);
        return false;
    }
    return true;
}

std::uint32_t BusStatistics::beginRecord()
{
    return (std::uint32_t)SharedInt32::fetchAdd(field(kReservedField), 1);
}

void BusStatistics::publishLap(std::int32_t lastLapEnd, std::uint32_t firstRecord)
{
    // A sequence lock: readers retry while the lap fields change.
    SharedInt32::fetchAdd(field(kLapSequenceField), 1);
    SharedInt32::store(field(kLastLapEndField), lastLapEnd);
    SharedInt32::store(field(kLapFirstRecordField), (std::int32_t)firstRecord);
    SharedInt32::fetchAdd(field(kLapsField), 1);
    SharedInt32::fetchAdd(field(kLapSequenceField), 1);
}

void BusStatistics::endRecord()
{
    SharedInt32::fetchAdd(field(kWrittenField), 1);
}

void BusStatistics::postRefused()
{
    SharedInt32::fetchAdd(field(kRefusedField), 1);
}

std::uint32_t BusStatistics::laps() const
{
    return (std::uint32_t)SharedInt32::load(field(kLapsField));
}

BusStatistics::Snapshot BusStatistics::read() const
{
    Snapshot snapshot;
    if (m_base == nullptr)
        return snapshot;
    // A writer that died half way through publishing a lap leaves the sequence odd for good:
    // after a bounded number of tries the fields are taken as they are.
    for (int attempt = 0; attempt < 100; ++attempt)
    {
        const auto before = SharedInt32::load(field(kLapSequenceField));
        snapshot.recordsWritten = (std::uint32_t)SharedInt32::load(field(kWrittenField));
        snapshot.recordsReserved = (std::uint32_t)SharedInt32::load(field(kReservedField));
        snapshot.laps = (std::uint32_t)SharedInt32::load(field(kLapsField));
        snapshot.lastLapEnd = SharedInt32::load(field(kLastLapEndField));
        snapshot.lapFirstRecord = (std::uint32_t)SharedInt32::load(field(kLapFirstRecordField));
        snapshot.refusedPosts = (std::uint32_t)SharedInt32::load(field(kRefusedField));
        const auto after = SharedInt32::load(field(kLapSequenceField));
        snapshot.lapSettled = before == after && (before & 1) == 0;
        if (snapshot.lapSettled)
            break;
        std::this_thread::yield();
    }
    return snapshot;
}

} // namespace Platform
