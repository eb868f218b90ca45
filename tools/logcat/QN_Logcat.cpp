#include "QN_Logcat.h"

#include <ini.h>

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <syslog.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <ctime>
#include <mutex>
#include <string>

#define QN_LOGCAT_EXPORT __attribute__((visibility("default")))

namespace
{
enum Level
{
    kDebug,
    kInfo,
    kWarn,
    kError
};

struct Config
{
    bool toSyslog = false;
    Level lowest = kDebug;
};

constexpr const char* kConfigPath = "/NandFlash/Application/Bin/QN_Logcat.ini";
// A real configuration is a few lines; anything larger is not one.
constexpr off_t kMaxConfigBytes = 64 * 1024;
// The text of one line; longer ones are cut.
constexpr size_t kMaxTextBytes = 2048;

const char kLevelLetters[] = {'D', 'I', 'W', 'E'};
const int kSyslogPriorities[] = {LOG_DEBUG, LOG_INFO, LOG_WARNING, LOG_ERR};

void writeAll(int fd, const std::string& text)
{
    size_t done = 0;
    while (done < text.size())
    {
        const ssize_t n = ::write(fd, text.data() + done, text.size() - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return;
        done += (size_t)n;
    }
}

// A complaint about the configuration itself: there is nowhere else to say it.
void complain(const std::string& text)
{
    writeAll(2, "QN_Logcat: " + text + "\n");
}

std::string lowerCase(const char* text)
{
    std::string lower(text);
    for (auto& c : lower)
        if (c >= 'A' && c <= 'Z')
            c = (char)(c - 'A' + 'a');
    return lower;
}

int onConfigValue(void* user, const char* section, const char* name, const char* value)
{
    auto& config = *static_cast<Config*>(user);
    if (std::strcmp(section, "Logcat") != 0)
        return 1;
    const auto text = lowerCase(value);
    if (std::strcmp(name, "Output") == 0)
    {
        if (text == "stderr" || text == "syslog")
            config.toSyslog = text == "syslog";
        else
            complain("Output must be stderr or syslog; using stderr");
    }
    else if (std::strcmp(name, "Level") == 0)
    {
        if (text == "debug")
            config.lowest = kDebug;
        else if (text == "info")
            config.lowest = kInfo;
        else if (text == "warn" || text == "warning")
            config.lowest = kWarn;
        else if (text == "error")
            config.lowest = kError;
        else
            complain("Level must be debug, info, warn or error; using debug");
    }
    return 1;
}

// The file is untrusted: only a regular file of sensible size is read (never a FIFO or a
// device that would block or never end), and whatever it holds gives a configuration.
Config readConfig()
{
    Config config;
    const char* root = std::getenv("LMCOM_ROOT");
    std::string path = root != nullptr ? root : "";
    while (!path.empty() && path.back() == '/')
        path.pop_back();
    path += kConfigPath;

    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (fd < 0)
        return config;
    struct stat info = {};
    std::string content;
    if (fstat(fd, &info) != 0 || !S_ISREG(info.st_mode) || info.st_size > kMaxConfigBytes)
        complain(path + " is not a small regular file; using stderr");
    else
    {
        content.resize((size_t)info.st_size);
        size_t done = 0;
        while (done < content.size())
        {
            const ssize_t n = ::read(fd, &content[done], content.size() - done);
            if (n < 0 && errno == EINTR)
                continue;
            if (n <= 0)
                break;
            done += (size_t)n;
        }
        content.resize(done);
    }
    ::close(fd);
    // The text ends at the first NUL byte, as any C string would.
    ini_parse_string(content.c_str(), &onConfigValue, &config);
    return config;
}

const Config& config()
{
    static std::once_flag once;
    static Config loaded;
    std::call_once(once,
                   []
                   {
                       loaded = readConfig();
                       if (loaded.toSyslog)
                           openlog(program_invocation_short_name, LOG_PID, LOG_USER);
                   });
    return loaded;
}

// One entry is one line, whatever the text holds.
void makePrintable(std::string& text)
{
    for (auto& c : text)
        if ((unsigned char)c < 0x20 || c == 0x7F)
            c = (c == '\t') ? ' ' : '?';
}

std::string timestamp()
{
    timeval now = {};
    gettimeofday(&now, nullptr);
    tm local = {};
    localtime_r(&now.tv_sec, &local);
    char text[40];
    const size_t n = std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
    std::snprintf(text + n, sizeof text - n, ".%03d", (int)(now.tv_usec / 1000));
    return text;
}

int logLine(Level level, const char* file, int line, const char* tag, const char* format, va_list args)
{
    const auto& settings = config();
    if (level < settings.lowest)
        return 0;

    char buffer[kMaxTextBytes];
    int n = format != nullptr ? std::vsnprintf(buffer, sizeof buffer, format, args) : 0;
    std::string text(buffer, n < 0 ? 0 : (size_t)n < sizeof buffer ? (size_t)n : sizeof buffer - 1);
    std::string where = std::string(file != nullptr ? file : "?") + ":" + std::to_string(line);
    std::string module = tag != nullptr ? tag : "?";
    makePrintable(text);
    makePrintable(where);
    makePrintable(module);

    if (settings.toSyslog)
    {
        syslog(kSyslogPriorities[level], "%s %s: %s", module.c_str(), where.c_str(), text.c_str());
        return (int)text.size();
    }
    // One write per line, so lines of several threads or processes never interleave.
    writeAll(2, timestamp() + " " + kLevelLetters[level] + "/" + module + " " + program_invocation_short_name + "["
                    + std::to_string(getpid()) + "] " + where + ": " + text + "\n");
    return (int)text.size();
}
} // namespace

extern "C"
{
    QN_LOGCAT_EXPORT int QN_LogDebug(const char* file, int line, const char* tag, const char* format, va_list args)
    {
        return logLine(kDebug, file, line, tag, format, args);
    }
    QN_LOGCAT_EXPORT int QN_LogInfo(const char* file, int line, const char* tag, const char* format, va_list args)
    {
        return logLine(kInfo, file, line, tag, format, args);
    }
    QN_LOGCAT_EXPORT int QN_LogWarn(const char* file, int line, const char* tag, const char* format, va_list args)
    {
        return logLine(kWarn, file, line, tag, format, args);
    }
    QN_LOGCAT_EXPORT int QN_LogError(const char* file, int line, const char* tag, const char* format, va_list args)
    {
        return logLine(kError, file, line, tag, format, args);
    }
    QN_LOGCAT_EXPORT int QN_ReadLog()
    {
        return 0;
    }
    QN_LOGCAT_EXPORT int QN_SaveLog()
    {
        return 0;
    }
}
