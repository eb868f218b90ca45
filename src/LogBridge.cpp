#include "LogBridge.h"

#include "Platform/LibraryPath.h"

namespace
{
// Builds the va_list that the library's entry points take.
int callWithArguments(LogBridge::LogFunction function, const char* file, int line, const char* tag, const char* format,
                      ...)
{
    va_list args;
    va_start(args, format);
    const int result = function(file, line, tag, format, args);
    va_end(args);
    return result;
}

int logText(LogBridge::LogFunction function, const char* file, int line, const juce::String& tag,
            const juce::String& text)
{
    if (function == nullptr)
        return 0;
    // Texts carry titles and names from ini files and peers: hand them over as an argument
    // so that a percent sign in them is printed, never interpreted.
    return callWithArguments(function, file, line, tag.toRawUTF8(), "%s", text.toRawUTF8());
}
} // namespace

LogBridge& LogBridge::instance()
{
    // Made once, even when several threads log for the first time together; never freed, so
    // that logging keeps working while static objects are destroyed at exit.
    static LogBridge* bridge = []
    {
        auto* created = new LogBridge();
        created->load();
        return created;
    }();
    return *bridge;
}

bool LogBridge::load()
{
    if (m_module != nullptr)
        return false;

    auto library = std::make_unique<juce::DynamicLibrary>();
    bool opened = false;
    for (auto& candidate : Platform::LibraryPath::candidates("/NandFlash/Application/Bin/", "QN_Logcat.dll"))
        if ((opened = library->open(candidate)))
            break;
    if (!opened)
        return false;

    auto resolve = [&library](const char* name) { return library->getFunction(name); };
    QN_LogDebug = reinterpret_cast<LogFunction>(resolve("QN_LogDebug"));
    QN_LogInfo = reinterpret_cast<LogFunction>(resolve("QN_LogInfo"));
    QN_LogWarn = reinterpret_cast<LogFunction>(resolve("QN_LogWarn"));
    QN_LogError = reinterpret_cast<LogFunction>(resolve("QN_LogError"));
    QN_ReadLog = resolve("QN_ReadLog");
    QN_SaveLog = resolve("QN_SaveLog");
    m_module = std::move(library);

    // QN_SaveLog is not needed for the library to count as loaded.
    return QN_LogDebug != nullptr && QN_LogInfo != nullptr && QN_LogWarn != nullptr && QN_LogError != nullptr
           && QN_ReadLog != nullptr;
}

int LogBridge::logError(const char* file, int line, const juce::String& tag, const juce::String& text)
{
    return logText(QN_LogError, file, line, tag, text);
}

int LogBridge::logInfo(const char* file, int line, const juce::String& tag, const juce::String& text)
{
    return logText(QN_LogInfo, file, line, tag, text);
}

int LogBridge::logErrorF(const char* file, int line, const char* tag, const char* format, ...)
{
    if (QN_LogError == nullptr)
        return 0;
    va_list args;
    va_start(args, format);
    const int result = QN_LogError(file, line, tag, format, args);
    va_end(args);
    return result;
}
