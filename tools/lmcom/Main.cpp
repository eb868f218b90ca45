// lmcom: sees and drives a running head unit from the command line.
#include "Tool.h"
#include "UsageError.h"

#include <cstdio>
#include <exception>
#include <string>

namespace
{
// Errors are one line whatever the words they quote hold.
int report(const char* text, int status)
{
    std::string line(text);
    for (auto& c : line)
        if ((unsigned char)c < 0x20 || c == 0x7F)
            c = '?';
    std::fprintf(stderr, "%s\n", line.c_str());
    return status;
}
} // namespace

int main(int argc, char** argv)
{
    try
    {
        return LmComTool::Tool::run(std::vector<std::string>(argv + 1, argv + argc));
    }
    catch (const LmComTool::UsageError& error)
    {
        return report(error.what(), 2);
    }
    catch (const LmComTool::CommandFailure& error)
    {
        return report(error.what(), 1);
    }
    catch (const std::exception& error)
    {
        return report(("lmcom: " + std::string(error.what())).c_str(), 1);
    }
    catch (...)
    {
        return report("lmcom: unexpected failure", 1);
    }
}
