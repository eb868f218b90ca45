#pragma once

#include <juce_core/juce_core.h>

#include <cstdarg>

/** The bridge to the head unit's logging library ("QN_Logcat"), loaded at run time.

    One instance per process, made and loaded on the first log call and kept for the life of
    the process. Without the library, or without an entry point, log calls do nothing and
    return 0. Safe to call from any thread; the library must be too.
*/
class LogBridge
{
public:
    /** The shape of every entry point of the logging library. */
    using LogFunction = int (*)(const char* file, int line, const char* tag, const char* format, va_list args);

    static LogBridge& instance();

    /** Loads the library; false when it is already loaded, cannot be found, or lacks one of
        the first five entry points (what was found is used anyway). */
    bool load();

    /** Logs a text at error level. The text is never read as a format. */
    int logError(const char* file, int line, const juce::String& tag, const juce::String& text);

    /** Logs a text at information level. The text is never read as a format. */
    int logInfo(const char* file, int line, const juce::String& tag, const juce::String& text);

    /** Logs a printf-style format with its arguments at error level. */
    int logErrorF(const char* file, int line, const char* tag, const char* format, ...)
        __attribute__((format(printf, 5, 6)));

private:
    LogBridge() = default;

    std::unique_ptr<juce::DynamicLibrary> m_module;
    LogFunction QN_LogDebug = nullptr;
    LogFunction QN_LogInfo = nullptr;
    LogFunction QN_LogWarn = nullptr;
    LogFunction QN_LogError = nullptr;
    void* QN_ReadLog = nullptr;
    void* QN_SaveLog = nullptr;

    JUCE_DECLARE_NON_COPYABLE(LogBridge)
};
