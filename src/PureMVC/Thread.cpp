#include "PureMVC/Thread.h"

namespace PureMVC
{

class Thread::Runner : public juce::Thread
{
public:
    Runner(const juce::String& name, std::function<void()> function)
        : juce::Thread(name), m_function(std::move(function))
    {
    }
    ~Runner() override { stopThread(-1); }

    void run() override { m_function(); }

private:
    std::function<void()> m_function;
};

Thread::Thread(const juce::String& name) : m_name(name) {}

Thread::~Thread()
{
    join(-1);
}

bool Thread::start(std::function<void()> function)
{
    if (function == nullptr || isRunning())
        return false;
    m_runner = std::make_unique<Runner>(m_name, std::move(function));
    if (m_runner->startThread())
        return true;
    m_runner.reset();
    return false;
}

bool Thread::join(int timeoutMs)
{
    return m_runner == nullptr || m_runner->waitForThreadToExit(timeoutMs);
}

bool Thread::isRunning() const
{
    return m_runner != nullptr && m_runner->isThreadRunning();
}

} // namespace PureMVC
