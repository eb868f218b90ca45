#pragma once

#include "Arguments.h"

namespace LmComTool
{

/** "lmcom board": the board profile's device map (the head unit's device names and the Linux
    nodes they open) and what BSPInfo reads on this board. */
class BoardCommand
{
public:
    static const char* const kUsage;
    static const char* const kHelp;
    static std::vector<Arguments::Option> options();
    static int run(const Arguments& arguments);
};

} // namespace LmComTool
