#pragma once

#include <juce_events/juce_events.h>

#include <cstdio>
#include <functional>

namespace LmComTesting
{

/** A JUCE message thread for a test or a child role: the calling thread runs the dispatch
    loop for bounded times. */
class MessageLoop
{
public:
    /** Runs the loop until done() holds or the timeout passes; returns done(). */
    bool runUntil(const std::function<bool()>& done, int timeoutMs = 10000);
    /** Runs the loop for a while (for checks that something does NOT happen). */
    void runFor(int ms);

private:
    juce::ScopedJuceInitialiser_GUI m_juce;
};

/** One line on standard output, flushed at once (the parent reads it through a pipe). */
void say(const char* format, ...) __attribute__((format(printf, 1, 2)));

} // namespace LmComTesting
