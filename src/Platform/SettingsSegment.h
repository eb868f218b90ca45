#pragma once

#include "Platform/SharedMemory.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>

namespace Platform
{

/** The shared half of the settings store: system-information values and source states of one
    bus, in a small shared segment of their own ("LmShareMem", scoped by the bus like the ring,
    mode 0600, owner checked). Every value is one aligned 32-bit word stored and loaded
    atomically, so every process sees a write at once and never half of one.

    Layout (little-endian 32-bit words):

    | Offset | Field            | Meaning                                                       |
    |--------|------------------|---------------------------------------------------------------|
    | 0      | magic            | "LMSM", written last by the creator                           |
    | 4      | version          | 1                                                             |
    | 8      | sysInfoCount     | 256                                                           |
    | 12     | sourceCount      | 64                                                            |
    | 16     | setupGeneration  | counted up after every replacement of the setup file          |
    | 20..63 | (zero)           | room for more                                                 |
    | 64     | sysInfo[256]     | the system-information values                                 |
    | 1088   | source[64]       | the source states, by service type (0 unavailable, else available) |

    A segment of another version or layout is refused, never read. Indices are checked here
    too: an index outside the segment is never touched. Any thread.
*/
class SettingsSegment
{
public:
    static constexpr int kSize = 2048;
    static constexpr std::int32_t kMagic = 0x4D534D4C; // "LMSM"
    static constexpr std::int32_t kVersion = 1;
    static constexpr int kSysInfoCount = 256;
    static constexpr int kSourceCount = 64;
    static constexpr const char* kName = "LmShareMem";

    /** Receives the reason of each failed attempt to open the segment. */
    using Reporter = std::function<void(const juce::String&)>;

    explicit SettingsSegment(Reporter reporter = {});
    ~SettingsSegment();

    /** Opens the segment of the current bus, making it when there is none. Once open it stays
        open; after a failed attempt (reported) the next one is made a second later at the
        earliest, so a refused segment costs no system call per read. */
    bool open();

    /** False when the segment cannot be opened or the index is outside it (value untouched). */
    bool getSysInfo(int index, std::int32_t& value);
    bool setSysInfo(int index, std::int32_t value);
    bool getSource(int index, std::int32_t& value);
    bool setSource(int index, std::int32_t value);

    /** The setup file's generation (0 without a segment), and its step after a replacement. */
    std::uint32_t setupGeneration();
    void bumpSetupGeneration();

    /** The system name of the current bus's segment (tests remove it). */
    static juce::String systemName();

private:
    enum FieldOffset
    {
        kMagicField = 0,
        kVersionField = 4,
        kSysInfoCountField = 8,
        kSourceCountField = 12,
        kGenerationField = 16,
        kSysInfoField = 64,
        kSourceField = kSysInfoField + 4 * kSysInfoCount
    };
    static_assert(kSourceField + 4 * kSourceCount <= kSize, "the values fit the segment");

    static volatile std::int32_t* field(unsigned char* base, int offset);
    static bool hasMagic(unsigned char* base);
    bool checkLayout(unsigned char* base, juce::String& error) const;
    bool attemptOpen(juce::String& error);
    static void writeHeader(unsigned char* base);
    volatile std::int32_t* slot(int first, int count, int index);

    mutable std::mutex m_lock; // guards the opening, not the values
    std::unique_ptr<SharedMemory> m_memory;
    std::atomic<unsigned char*> m_base{nullptr}; // set once, under the lock
    Reporter m_reporter;
    juce::uint32 m_nextAttemptMs = 0;
    bool m_bFailedBefore = false;

    JUCE_DECLARE_NON_COPYABLE(SettingsSegment)
};

} // namespace Platform
