#include "support/ChildProcess.h"

namespace LmComTesting
{

static std::vector<std::string> roleArguments(const std::string& role, const std::vector<std::string>& args)
{
    std::vector<std::string> all{"--lmcom-child", role};
    all.insert(all.end(), args.begin(), args.end());
    return all;
}

ChildProcess::ChildProcess(const std::string& role, const std::vector<std::string>& args)
    : Command("/proc/self/exe", roleArguments(role, args), false)
{
}

} // namespace LmComTesting
