#include "RingFollower.h"

#include "Platform/Atomic.h"

#include <LmCom.h>

#include <atomic>
#include <cstring>
#include <thread>

namespace LmComTool
{

namespace
{
constexpr int kRingSize = MsgSession::kRingSize;
constexpr int kDataStart = MsgSession::kDataStart;
constexpr int kRecordOverhead = MsgSession::kRecordOverhead;
constexpr int kNextWriteField = 8;
constexpr int kSettleTries = 8;
const unsigned char kMagic[4] = {'m', 's', 'g', 0};

bool hasMagic(const unsigned char* p)
{
    return std::memcmp(p, kMagic, 4) == 0;
}

unsigned int byteSum(const unsigned char* p, size_t n)
{
    unsigned int sum = 0;
    for (size_t i = 0; i < n; ++i)
        sum += p[i];
    return sum & 0xFFFF;
}

bool isPosition(int next)
{
    return next >= kDataStart && next <= kRingSize;
}

std::string hex4(unsigned int value)
{
    char text[8];
    std::snprintf(text, sizeof text, "0x%04X", value);
    return text;
}
} // namespace

RingFollower::RingFollower(const unsigned char* ring, const Platform::BusStatistics* statistics)
    : m_ring(ring), m_statistics(statistics)
{
}

int RingFollower::nextWrite() const
{
    return Platform::SharedInt32::load(reinterpret_cast<const volatile std::int32_t*>(m_ring + kNextWriteField));
}

RingFollower::Observation RingFollower::observe() const
{
    Observation observation;
    for (int attempt = 0;; ++attempt)
    {
        // The position first, the counters after it: equal counters then mean that every
        // record below the position is complete.
        observation.next = nextWrite();
        if (m_statistics == nullptr)
            return observation;
        observation.counters = m_statistics->read();
        observation.settled = observation.counters.recordsWritten == observation.counters.recordsReserved;
        if (observation.settled || attempt >= kSettleTries)
            return observation;
        std::this_thread::yield();
    }
}

void RingFollower::start()
{
    const auto observation = observe();
    m_cursor = isPosition(observation.next) ? observation.next : kDataStart;
    m_lap = observation.counters.laps;
    m_nextNumber = observation.counters.recordsReserved;
    m_numberUncertain = m_statistics == nullptr;
    m_retryOffset.reset();
    m_uncountedWrapSince.reset();
}

int RingFollower::poll(const Sink& sink)
{
    int events = 0;
    const int startCursor = m_cursor;
    const std::uint32_t startLap = m_lap;
    struct Measure
    {
        RingFollower& follower;
        int startCursor;
        std::uint32_t startLap;
        ~Measure()
        {
            follower.m_lastPollBytes = follower.m_lap == startLap && follower.m_cursor >= startCursor
                                           ? follower.m_cursor - startCursor
                                           : kRingSize;
        }
    } measure{*this, startCursor, startLap};

    // A finished lap is followed by the new one in the same call; catching up may repeat.
    for (int round = 0; round < 4; ++round)
    {
        const auto observation = observe();
        if (!isPosition(observation.next))
            return events; // a damaged header: nothing to follow until it is sound again
        if (m_statistics != nullptr)
        {
            // Some record is half written: look again soon rather than read it now.
            if (!observation.settled)
            {
                const auto now = Clock::now();
                if (!m_unsettledSince)
                    m_unsettledSince = now;
                if (now - *m_unsettledSince < kRetryTime)
                    return events;
            }
            else
                m_unsettledSince.reset();
        }

        if (m_statistics == nullptr)
        {
            if (observation.next >= m_cursor)
            {
                if (readRegion(m_cursor, observation.next, m_lap, false, sink, events) != RegionResult::overrun)
                    return events;
            }
            reportMissed(std::nullopt, "the writers went round the ring; without bus statistics laps are not counted",
                         sink, events);
            m_cursor = kDataStart;
            m_numberUncertain = true;
            continue;
        }

        const std::uint32_t lapsAhead = observation.counters.laps - m_lap;
        if (lapsAhead == 0)
        {
            if (observation.next >= m_cursor)
            {
                m_uncountedWrapSince.reset();
                const auto result = readRegion(m_cursor, observation.next, m_lap, observation.settled, sink, events);
                if (result != RegionResult::overrun)
                    return events;
                catchUp(observe(), "the writers came round the ring into the records being read", sink, events);
                continue;
            }
            // Back at the start, but the lap is not counted yet: its writer is between the two
            // steps, or died there.
            const auto now = Clock::now();
            if (!m_uncountedWrapSince)
                m_uncountedWrapSince = now;
            if (now - *m_uncountedWrapSince < kPublishWait)
                return events;
            m_uncountedWrapSince.reset();
            reportMissed(std::nullopt, "the writers went back to the ring's start without counting the lap", sink,
                         events);
            m_cursor = kDataStart;
            m_numberUncertain = true;
            continue;
        }
        m_uncountedWrapSince.reset();

        if (lapsAhead == 1 && observation.next <= m_cursor && observation.counters.lapSettled)
        {
            // Finish the lap the cursor is in, up to where it ended.
            const int end = observation.counters.lastLapEnd;
            if (end >= m_cursor && end <= kRingSize)
            {
                const auto result = readRegion(m_cursor, end, m_lap, observation.settled, sink, events);
                if (result == RegionResult::pending)
                    return events;
                if (result == RegionResult::overrun)
                {
                    catchUp(observe(), "the writers came round the ring into the records being read", sink, events);
                    continue;
                }
            }
            enterLap(observation, sink, events);
            continue;
        }
        catchUp(observation, "fell a lap behind the writers", sink, events);
    }
    return events;
}

RingFollower::RegionResult RingFollower::readRegion(int from, int to, std::uint32_t lap, bool settled, const Sink& sink,
                                                    int& events)
{
    if (to <= from)
        return RegionResult::done;
    const size_t size = (size_t)(to - from);
    m_copy.assign(m_ring + from, m_ring + to);

    // Only a writer in the next lap can have reached these bytes while they were copied.
    std::atomic_thread_fence(std::memory_order_acquire);
    const int after = nextWrite();
    const std::uint32_t lapNow = m_statistics != nullptr ? m_statistics->laps() : lap;
    const bool intact = (lapNow == lap && (after >= to || after <= from)) || (lapNow == lap + 1 && after <= from);
    if (!intact)
        return RegionResult::overrun;

    size_t position = 0;
    while (position < size)
    {
        const int offset = from + (int)position;
        const unsigned char* record = m_copy.data() + position;
        const size_t left = size - position;
        if (left < (size_t)kRecordOverhead || !hasMagic(record))
        {
            if (retryLater(offset, settled))
            {
                m_cursor = offset;
                return RegionResult::pending;
            }
            reportInvalid(offset, (int)left, false,
                          left < (size_t)kRecordOverhead
                              ? std::to_string(left) + " bytes, too few for a record, before the writers' position"
                              : "no record here: " + std::to_string(left)
                                    + " bytes skipped up to the writers' position",
                          sink, events);
            m_numberUncertain = true;
            position = size;
            break;
        }

        const size_t length = (size_t)(record[4] | (record[5] << 8));
        const size_t end = position + length + kRecordOverhead;
        if (end > size)
        {
            if (retryLater(offset, settled))
            {
                m_cursor = offset;
                return RegionResult::pending;
            }
            reportInvalid(offset, (int)left, false,
                          "a record of " + std::to_string(length) + " bytes runs past the writers' position", sink,
                          events);
            m_numberUncertain = true;
            position = size;
            break;
        }

        const unsigned int stored = record[6 + length] | (record[7 + length] << 8);
        const unsigned int computed = byteSum(record + 6, length);
        if (stored != computed)
        {
            if (retryLater(offset, settled))
            {
                m_cursor = offset;
                return RegionResult::pending;
            }
            // A payload over 65535 bytes keeps only its low 16 bits in the length field: it
            // truly ends 64 KiB further on, where the next record or the writers' position is.
            size_t trueEnd = 0;
            for (size_t extra = 65536; extra <= 3 * 65536 && trueEnd == 0; extra += 65536)
            {
                const size_t candidate = end + extra;
                if (candidate == size || (candidate + 4 <= size && hasMagic(m_copy.data() + candidate)))
                    trueEnd = candidate;
            }
            if (trueEnd != 0)
            {
                reportInvalid(offset, (int)(trueEnd - position - kRecordOverhead), true,
                              "a payload of " + std::to_string(trueEnd - position - kRecordOverhead)
                                  + " bytes, over 65535: no receiver takes it",
                              sink, events);
                ++m_nextNumber;
                position = trueEnd;
                continue;
            }
            reportInvalid(offset, (int)length, true,
                          "checksum " + hex4(stored) + ", but the payload sums to " + hex4(computed), sink, events);
            ++m_nextNumber;
            position = end;
            continue;
        }

        m_retryOffset.reset();
        Event event;
        event.kind = Event::Kind::record;
        event.offset = offset;
        event.length = (int)length;
        if (!m_numberUncertain)
            event.number = m_nextNumber;
        event.payload = record + 6;
        event.endsAtRingEnd = from + (int)end == kRingSize;
        sink(event);
        ++events;
        ++m_recordsSeen;
        ++m_nextNumber;
        position = end;
    }
    m_cursor = from + (int)position;
    return RegionResult::done;
}

bool RingFollower::retryLater(int offset, bool settled)
{
    if (settled)
    {
        m_retryOffset.reset();
        return false;
    }
    const auto now = Clock::now();
    if (!m_retryOffset || *m_retryOffset != offset)
    {
        m_retryOffset = offset;
        m_retrySince = now;
        return true;
    }
    if (now - m_retrySince < kRetryTime)
        return true;
    m_retryOffset.reset();
    return false;
}

void RingFollower::enterLap(const Observation& observation, const Sink& sink, int& events)
{
    const std::uint32_t first = observation.counters.lapFirstRecord;
    // After unreadable bytes were skipped, the new lap's first number tells how many records
    // they held. (A small difference after a complete lap only means that two writers took
    // their numbers in another order than their places.)
    if (m_numberUncertain && (std::int32_t)(first - m_nextNumber) > 0)
        reportMissed(first - m_nextNumber, "unreadable bytes were skipped", sink, events);
    m_nextNumber = first;
    m_numberUncertain = false;
    m_lap = observation.counters.laps;
    m_cursor = kDataStart;
    m_retryOffset.reset();
}

void RingFollower::catchUp(const Observation& observation, const std::string& why, const Sink& sink, int& events)
{
    const std::uint32_t first = observation.counters.lapFirstRecord;
    std::optional<std::uint32_t> count;
    if (observation.counters.lapSettled && (std::int32_t)(first - m_nextNumber) >= 0)
        count = first - m_nextNumber;
    if (!count || *count != 0)
        reportMissed(count, why + "; resuming at the start of lap " + std::to_string(observation.counters.laps), sink,
                     events);
    m_nextNumber = first;
    m_numberUncertain = !observation.counters.lapSettled;
    m_lap = observation.counters.laps;
    m_cursor = kDataStart;
    m_retryOffset.reset();
}

void RingFollower::reportMissed(std::optional<std::uint32_t> count, const std::string& why, const Sink& sink,
                                int& events)
{
    Event event;
    event.kind = Event::Kind::missed;
    event.missed = count;
    event.problem = why;
    if (count)
        m_missedCounted += *count;
    else
        ++m_missedUncounted;
    sink(event);
    ++events;
}

void RingFollower::reportInvalid(int offset, int length, bool numbered, const std::string& problem, const Sink& sink,
                                 int& events)
{
    Event event;
    event.kind = Event::Kind::invalid;
    event.offset = offset;
    event.length = length;
    if (numbered && !m_numberUncertain)
        event.number = m_nextNumber;
    event.problem = problem;
    ++m_invalidSeen;
    sink(event);
    ++events;
}

} // namespace LmComTool
