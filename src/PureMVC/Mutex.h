#pragma once

#include <juce_core/juce_core.h>

namespace PureMVC
{

/** A recursive lock (a juce::CriticalSection): the thread that holds it may take it again.
    Any thread. Lock it with Mutex::ScopedLock. */
class Mutex
{
public:
    using ScopedLock = juce::GenericScopedLock<Mutex>;

    Mutex() = default;
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    void lock() const noexcept { m_lock.enter(); }
    /** True when the lock was taken (without waiting). */
    bool tryLock() const noexcept { return m_lock.tryEnter(); }
    void unlock() const noexcept { m_lock.exit(); }

    // The names juce::GenericScopedLock calls.
    void enter() const noexcept { lock(); }
    void exit() const noexcept { unlock(); }

private:
    juce::CriticalSection m_lock;
};

} // namespace PureMVC
