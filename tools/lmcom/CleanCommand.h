#pragma once

#include "Arguments.h"

namespace LmComTool
{

/** "lmcom clean": removes what a bus left behind (its message ring, its statistics segment and
    its folder of endpoints) when no live process is on it. */
class CleanCommand
{
public:
    static const char* const kUsage;
    static const char* const kHelp;
    static std::vector<Arguments::Option> options();
    static int run(const Arguments& arguments);
};

} // namespace LmComTool
