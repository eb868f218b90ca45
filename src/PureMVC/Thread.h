#pragma once

#include <juce_core/juce_core.h>

#include <functional>
#include <memory>

namespace PureMVC
{

/** A named thread (a juce::Thread) that runs one function.

    start() runs the function once on a new thread; join() waits for it. The destructor waits
    for the function to end (it cannot be interrupted: a function that loops should watch a
    flag of its own). A Thread object is used by one thread at a time; the static helpers may
    be called from any thread.
*/
class Thread
{
public:
    explicit Thread(const juce::String& name = "PureMVC");
    /** Waits for the function to end. */
    ~Thread();
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;

    /** Runs function on a new thread. False (nothing started) while an earlier function still
        runs or when the system refuses a thread. */
    bool start(std::function<void()> function);
    /** Waits at most timeoutMs (-1: for ever) for the function to end; true when it has. */
    bool join(int timeoutMs = -1);
    bool isRunning() const;
    const juce::String& getName() const { return m_name; }

    static void sleep(int milliseconds) { juce::Thread::sleep(milliseconds); }
    static void yield() { juce::Thread::yield(); }
    /** The calling thread's identifier. */
    static juce::Thread::ThreadID currentThreadId() { return juce::Thread::getCurrentThreadId(); }

private:
    class Runner;
    juce::String m_name;
    std::unique_ptr<Runner> m_runner;
};

} // namespace PureMVC
