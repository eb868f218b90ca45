#pragma once

#include <string>
#include <vector>

namespace LmComTool
{

/** The lmcom command line: picks the sub-command, applies --bus, answers --help, and runs
    it. Returns the exit status; misuse throws UsageError (status 2), failures throw
    CommandFailure (status 1). */
class Tool
{
public:
    static int run(const std::vector<std::string>& words);
    /** The overview printed by "lmcom --help". */
    static std::string overview();
};

} // namespace LmComTool
