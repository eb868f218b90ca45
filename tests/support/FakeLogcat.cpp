// A stand-in for the head unit's logging library: keeps every line in memory so that a test
// that loaded it can read them back ("level|file|line|tag|text", one per entry).
#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <string>
#include <vector>

namespace
{
std::mutex sLock;
std::vector<std::string> sLines;

int record(const char* level, const char* file, int line, const char* tag, const char* format, va_list args)
{
    char text[2048];
    std::vsnprintf(text, sizeof text, format, args);
    std::lock_guard<std::mutex> lock(sLock);
    sLines.push_back(std::string(level) + "|" + file + "|" + std::to_string(line) + "|" + tag + "|" + text);
    return (int)sLines.size();
}
} // namespace

extern "C"
{
    __attribute__((visibility("default"))) int QN_LogDebug(const char* f, int l, const char* t, const char* fmt,
                                                           va_list a)
    {
        return record("D", f, l, t, fmt, a);
    }
    __attribute__((visibility("default"))) int QN_LogInfo(const char* f, int l, const char* t, const char* fmt,
                                                          va_list a)
    {
        return record("I", f, l, t, fmt, a);
    }
    __attribute__((visibility("default"))) int QN_LogWarn(const char* f, int l, const char* t, const char* fmt,
                                                          va_list a)
    {
        return record("W", f, l, t, fmt, a);
    }
    __attribute__((visibility("default"))) int QN_LogError(const char* f, int l, const char* t, const char* fmt,
                                                           va_list a)
    {
        return record("E", f, l, t, fmt, a);
    }
    __attribute__((visibility("default"))) int QN_ReadLog()
    {
        return 0;
    }
    __attribute__((visibility("default"))) int QN_SaveLog()
    {
        return 0;
    }

    /** For tests: the number of lines kept, and line i copied into buf. */
    __attribute__((visibility("default"))) int FakeLogcat_count()
    {
        std::lock_guard<std::mutex> lock(sLock);
        return (int)sLines.size();
    }
    __attribute__((visibility("default"))) int FakeLogcat_line(int i, char* buf, int size)
    {
        std::lock_guard<std::mutex> lock(sLock);
        if (i < 0 || i >= (int)sLines.size() || size <= 0)
            return -1;
        std::snprintf(buf, (size_t)size, "%s", sLines[(size_t)i].c_str());
        return (int)sLines[(size_t)i].size();
    }
    __attribute__((visibility("default"))) void FakeLogcat_clear()
    {
        std::lock_guard<std::mutex> lock(sLock);
        sLines.clear();
    }
}
