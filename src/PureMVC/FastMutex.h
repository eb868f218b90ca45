#pragma once

#include <juce_core/juce_core.h>

namespace PureMVC
{

/** A spin lock (a juce::SpinLock) for a few instructions of work: not recursive, and the
    holder must never wait on anything while holding it. Any thread. */
class FastMutex
{
public:
    using ScopedLock = juce::GenericScopedLock<FastMutex>;

    FastMutex() = default;
    FastMutex(const FastMutex&) = delete;
    FastMutex& operator=(const FastMutex&) = delete;

    void lock() const noexcept { m_lock.enter(); }
    /** True when the lock was taken (without waiting). */
    bool tryLock() const noexcept { return m_lock.tryEnter(); }
    void unlock() const noexcept { m_lock.exit(); }

    // The names juce::GenericScopedLock calls.
    void enter() const noexcept { lock(); }
    void exit() const noexcept { unlock(); }

private:
    juce::SpinLock m_lock;
};

} // namespace PureMVC
