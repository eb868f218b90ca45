#pragma once

#include "support/Command.h"

namespace LmComTesting
{

/** The test binary started again to play a role (see LMCOM_CHILD_ROLE), with the test's bus
    and root. Its standard output is read line by line; its standard error is the test's. */
class ChildProcess : public Command
{
public:
    ChildProcess(const std::string& role, const std::vector<std::string>& args = {});

    /** Every line of standard output read so far. */
    const std::vector<std::string>& lines() const { return out(); }
};

} // namespace LmComTesting
