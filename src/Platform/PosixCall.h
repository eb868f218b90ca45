#pragma once

#include <cerrno>
#include <cstring>
#include <string>

namespace Platform
{

/** The result of one system call: its value and, on failure, the errno it left. */
template <typename T>
struct PosixResult
{
    T value;
    int error = 0;

    bool failed() const { return error != 0; }
    std::string message() const { return std::strerror(error); }
};

/** Calls a system function, retrying while it is interrupted (EINTR), and captures errno when
    the result is the failure value. */
template <typename Function, typename T = decltype(std::declval<Function>()())>
PosixResult<T> posixCall(Function&& call, T failureValue = T(-1))
{
    for (;;)
    {
        errno = 0;
        T value = call();
        if (value == failureValue)
        {
            if (errno == EINTR)
                continue;
            return {value, errno != 0 ? errno : EIO};
        }
        return {value, 0};
    }
}

} // namespace Platform
