#pragma once

#include "Platform/BusStatistics.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace LmComTool
{

/** Follows the message ring of a bus while its writers fill it, and reports each new record
    once, in ring order. It only reads: the ring and the bus statistics are never written.

    Records are numbered as the bus statistics count them (the first record of a bus is 0).
    Between two polls the follower copies the bytes from its cursor up to the writers'
    position out of the ring, checks that no writer came round the ring into them meanwhile,
    and only then walks the records in the copy (magic "msg\0", 16-bit length, 16-bit byte
    sum). It finishes a lap where the bus statistics say it ended, then goes on at the start.

    When the writers went round the ring past the cursor, the follower resumes at the start
    of their current lap and reports how many records it missed: the difference between that
    lap's first record number and the number it expected next. With one writer at a time the
    count is exact; with several writing at the same instant it may be off by those in flight.
    Without bus statistics laps cannot be told apart and the count is unknown.

    A record that fails validation is reported as invalid. The follower reads when the
    statistics say that no record is half written; when writers are never all done for
    kRetryTime, it reads all the same, and then reads a failing record again for a short while
    before it reports it. One thread.
*/
class RingFollower
{
public:
    struct Event
    {
        enum class Kind
        {
            record,
            invalid,
            missed
        };
        Kind kind = Kind::record;
        /** record, invalid: where the record starts in the ring. */
        int offset = 0;
        /** record: the payload length; invalid: the length field, or the bytes skipped. */
        int length = 0;
        /** record, invalid: the record's number on the bus, when known. */
        std::optional<std::uint32_t> number;
        /** record: a copy of the payload, valid during the callback. */
        const unsigned char* payload = nullptr;
        /** record: it ends exactly at the ring's end, where receivers reject it. */
        bool endsAtRingEnd = false;
        /** invalid, missed: why. */
        std::string problem;
        /** missed: how many records, when that can be told. */
        std::optional<std::uint32_t> missed;
    };
    using Sink = std::function<void(const Event&)>;

    /** How long a record that fails while writers are busy is read again. */
    static constexpr std::chrono::milliseconds kRetryTime{20};
    /** How long a return to the ring's start may stay uncounted by the statistics. */
    static constexpr std::chrono::milliseconds kPublishWait{100};

    /** ring: the mapped ring (MsgSession::kRingSize bytes); statistics: the bus's counters, or
        null. Both must outlive the follower. */
    RingFollower(const unsigned char* ring, const Platform::BusStatistics* statistics);

    /** Starts at the writers' current position: only records written from now on count. */
    void start();
    /** Reports what was written since the last call. Returns the number of events. While a
        record is half written it waits for the next call (up to kRetryTime), so that nothing
        is read that is still being written. */
    int poll(const Sink& sink);
    /** How many bytes of the ring the last poll went through. */
    int lastPollBytes() const { return m_lastPollBytes; }

    int cursor() const { return m_cursor; }
    std::uint32_t lap() const { return m_lap; }
    std::uint64_t recordsSeen() const { return m_recordsSeen; }
    std::uint64_t invalidSeen() const { return m_invalidSeen; }
    std::uint64_t missedCounted() const { return m_missedCounted; }
    /** How often records were missed without a count. */
    std::uint64_t missedUncounted() const { return m_missedUncounted; }

private:
    struct Observation
    {
        int next = 0;
        Platform::BusStatistics::Snapshot counters;
        /** No record was half written when the observation was made. */
        bool settled = false;
    };
    enum class RegionResult
    {
        done,
        pending,
        overrun
    };
    using Clock = std::chrono::steady_clock;

    Observation observe() const;
    int nextWrite() const;
    RegionResult readRegion(int from, int to, std::uint32_t lap, bool settled, const Sink& sink, int& events);
    /** True when a failing record should be read again later rather than reported. */
    bool retryLater(int offset, bool settled);
    void catchUp(const Observation& observation, const std::string& why, const Sink& sink, int& events);
    void enterLap(const Observation& observation, const Sink& sink, int& events);
    void reportMissed(std::optional<std::uint32_t> count, const std::string& why, const Sink& sink, int& events);
    void reportInvalid(int offset, int length, bool numbered, const std::string& problem, const Sink& sink,
                       int& events);

    const unsigned char* m_ring;
    const Platform::BusStatistics* m_statistics;
    int m_cursor = 0;
    std::uint32_t m_lap = 0;
    std::uint32_t m_nextNumber = 0;
    /** Set when records may have been skipped since the numbers were last certain. */
    bool m_numberUncertain = true;
    std::vector<unsigned char> m_copy;
    std::optional<int> m_retryOffset;
    Clock::time_point m_retrySince;
    std::optional<Clock::time_point> m_uncountedWrapSince;
    std::optional<Clock::time_point> m_unsettledSince;
    int m_lastPollBytes = 0;
    std::uint64_t m_recordsSeen = 0;
    std::uint64_t m_invalidSeen = 0;
    std::uint64_t m_missedCounted = 0;
    std::uint64_t m_missedUncounted = 0;
};

} // namespace LmComTool
