#pragma once

#include "Arguments.h"

namespace LmComTool
{

/** "lmcom monitor": follows the bus's message ring live and prints each new record (see
    RecordFormatter for the format). It only reads the ring and the bus statistics; it waits
    for a bus that has not started yet. Stops on SIGINT or SIGTERM, or after --count records,
    and then prints a summary on standard error. */
class MonitorCommand
{
public:
    static const char* const kUsage;
    static const char* const kHelp;
    static std::vector<Arguments::Option> options();
    static int run(const Arguments& arguments);
};

} // namespace LmComTool
