#pragma once

/** The head unit's logging library, libQN_Logcat.so: LmCom's log bridge loads it at run time
    and hands it every diagnostic line.

    Each line goes to standard error or to syslog, as chosen in
    $LMCOM_ROOT/NandFlash/Application/Bin/QN_Logcat.ini:

        [Logcat]
        Output=stderr     ; or syslog
        Level=debug       ; the lowest level written: debug, info, warn or error

    A missing or unreadable file, or a value that is not one of these, means standard error and
    every level. The file is read once, on the first line logged.

    Every logging entry point takes the caller's source file, line and module tag and a
    printf-style format with its arguments; it returns the length of the text written (0 when
    the level is filtered out). Safe to call from any thread.
*/

#include <cstdarg>

extern "C"
{
    int QN_LogDebug(const char* file, int line, const char* tag, const char* format, va_list args);
    int QN_LogInfo(const char* file, int line, const char* tag, const char* format, va_list args);
    int QN_LogWarn(const char* file, int line, const char* tag, const char* format, va_list args);
    int QN_LogError(const char* file, int line, const char* tag, const char* format, va_list args);

    /** Nothing is kept to read back or save: the lines are in standard error or syslog. Both
        return 0. */
    int QN_ReadLog();
    int QN_SaveLog();
}
