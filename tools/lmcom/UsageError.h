#pragma once

#include <stdexcept>
#include <string>

namespace LmComTool
{

/** A misuse of the command line. The tool prints it as one line and exits with status 2. */
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/** A failure to do what was asked (no bus, no destination, nothing decoded). The tool prints
    it as one line and exits with status 1. */
class CommandFailure : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

} // namespace LmComTool
