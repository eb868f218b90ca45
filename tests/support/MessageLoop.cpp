#include "support/MessageLoop.h"

#include <chrono>
#include <cstdarg>

namespace LmComTesting
{

bool MessageLoop::runUntil(const std::function<bool()>& done, int timeoutMs)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    while (!done())
    {
        if (std::chrono::steady_clock::now() >= deadline)
            return done();
        juce::MessageManager::getInstance()->runDispatchLoopUntil(5);
    }
    return true;
}

void MessageLoop::runFor(int ms)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    while (std::chrono::steady_clock::now() < deadline)
        juce::MessageManager::getInstance()->runDispatchLoopUntil(5);
}

void say(const char* format, ...)
{
    va_list args;
    va_start(args, format);
    std::vprintf(format, args);
    va_end(args);
    std::printf("\n");
    std::fflush(stdout);
}

} // namespace LmComTesting
