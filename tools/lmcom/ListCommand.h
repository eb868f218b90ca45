#pragma once

#include "Arguments.h"

namespace LmComTool
{

/** "lmcom list": the endpoints of the bus, with the application each title belongs to and
    whether a live process holds it. */
class ListCommand
{
public:
    static const char* const kUsage;
    static const char* const kHelp;
    static std::vector<Arguments::Option> options();
    static int run(const Arguments& arguments);
};

} // namespace LmComTool
