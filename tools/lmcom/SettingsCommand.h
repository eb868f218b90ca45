#pragma once

#include "Arguments.h"

namespace LmComTool
{

/** "lmcom settings": reads and writes the bus's settings store from a shell, in the spirit of
    dconf: list what is set, get one value, set one value. */
class SettingsCommand
{
public:
    static const char* const kUsage;
    static const char* const kHelp;
    static std::vector<Arguments::Option> options();
    static int run(const Arguments& arguments);
};

} // namespace LmComTool
