#pragma once

#include "support/MessageLoop.h"

#include <juce_events/juce_events.h>

namespace LmComTesting
{

/** The JUCE application that a child role runs: every optional hook is empty, several
    instances may run, and a quit request prints "QUIT" (the parent waits for that line) before
    the application quits. */
class ChildApplication : public juce::JUCEApplicationBase
{
public:
    const juce::String getApplicationName() override { return "child"; }
    const juce::String getApplicationVersion() override { return "1"; }
    bool moreThanOneInstanceAllowed() override { return true; }
    void anotherInstanceStarted(const juce::String&) override {}
    void suspended() override {}
    void resumed() override {}
    void unhandledException(const std::exception*, const juce::String&, int) override {}
    void systemRequestedQuit() override
    {
        say("QUIT");
        quit();
    }
};

} // namespace LmComTesting
