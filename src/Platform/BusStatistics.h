#pragma once

#include "Platform/SharedMemory.h"

#include <cstdint>
#include <memory>

namespace Platform
{

/** Counters of one bus, kept beside its message ring in a small shared segment of their own
    ("LmIPCMsgStatistics", scoped by the bus like the ring), for tools that watch the bus.
    The ring's layout does not change for them.

    Layout (little-endian 32-bit words, each updated atomically; counters wrap modulo 2^32):

    | Offset | Field            | Meaning                                                        |
    |--------|------------------|----------------------------------------------------------------|
    | 0      | magic            | "LMST", written last by the creator                            |
    | 4      | version          | 1                                                              |
    | 8      | recordsReserved  | taken by a writer just before it reserves its place in the ring |
    | 12     | recordsWritten   | counted once a record is completely written                    |
    | 16     | laps             | how often the ring's writer went back to its start             |
    | 20     | lastLapEnd       | the next-write offset at which the last finished lap ended     |
    | 24     | lapFirstRecord   | the number (recordsReserved before it) of the lap's first record |
    | 28     | lapSequence      | odd while a new lap is being published                         |
    | 32     | refusedPosts     | posts and sends refused (no destination, queue full, too large) |
    | 36..63 | (zero)           | room for more                                                  |

    When recordsWritten equals recordsReserved, no record is half written. Every operation
    is lock-free and none fails: a writer without the segment simply counts nothing, so
    messaging never depends on it.
*/
class BusStatistics
{
public:
    static constexpr int kSize = 64;
    static constexpr std::int32_t kMagic = 0x54534D4C; // "LMST"
    static constexpr std::int32_t kVersion = 1;
    static constexpr const char* kName = "LmIPCMsgStatistics";

    /** A consistent reading of the counters. */
    struct Snapshot
    {
        std::uint32_t recordsReserved = 0;
        std::uint32_t recordsWritten = 0;
        std::uint32_t laps = 0;
        std::int32_t lastLapEnd = 0;
        std::uint32_t lapFirstRecord = 0;
        std::uint32_t refusedPosts = 0;
        /** False when a lap change stayed half published (its writer died): the lap fields
            may then belong to different laps. */
        bool lapSettled = true;
    };

    BusStatistics();
    ~BusStatistics();

    /** Opens the segment of the current bus, making it when there is none (writers). */
    bool openOrCreate();
    /** Opens an existing, complete segment only (readers that must not change the bus). */
    bool open();
    bool isOpen() const { return m_base != nullptr; }
    const juce::String& lastError() const { return m_lastError; }

    /** Before a writer reserves a record: returns the record's number. Any thread. */
    std::uint32_t beginRecord();
    /** After a writer's reservation went back to the ring's start: the finished lap ended at
        lastLapEnd, and the new lap begins with the record numbered firstRecord. */
    void publishLap(std::int32_t lastLapEnd, std::uint32_t firstRecord);
    /** After the record is completely in the ring. */
    void endRecord();
    void postRefused();

    /** The counters; recordsWritten is read before recordsReserved, so equal values mean that
        every record reserved before the call was complete. */
    Snapshot read() const;
    /** The laps counter alone (one load), for a quick check between full readings. */
    std::uint32_t laps() const;

    /** The system name of the current bus's segment (tests remove it). */
    static juce::String systemName();

private:
    enum FieldOffset
    {
        kMagicField = 0,
        kVersionField = 4,
        kReservedField = 8,
        kWrittenField = 12,
        kLapsField = 16,
        kLastLapEndField = 20,
        kLapFirstRecordField = 24,
        kLapSequenceField = 28,
        kRefusedField = 32
    };

    volatile std::int32_t* field(int offset) const;
    bool hasHeader() const;
    void writeHeader();

    std::unique_ptr<SharedMemory> m_memory;
    unsigned char* m_base = nullptr;
    juce::String m_lastError;

    JUCE_DECLARE_NON_COPYABLE(BusStatistics)
};

} // namespace Platform
